#include "xms/store.h"

#include "platform/config_library.h"
#include "platform/config_store.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <system_error>
#include <unistd.h>

namespace {

/** The action word of an IP filter set, and the action that removes the set. */
constexpr std::size_t FILTER_SET_ACTION_OFFSET = 140;
constexpr std::uint32_t FILTER_SET_REMOVE = 2;

std::string failure(const std::string &what, const std::string &path)
{
    return "cannot " + what + " " + path + ": " + std::strerror(errno);
}

bool removesItsRecord(const XasMessage &setting)
{
    return setting.xH.msgtype == XMSG_IPFILTER_SET &&
           xasPayloadValue<std::uint32_t, FILTER_SET_ACTION_OFFSET>(setting) == FILTER_SET_REMOVE;
}

/** Writes and syncs the whole record into a new file at `path`. */
bool writeWhole(const std::string &path, const XasMessage &record)
{
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (file < 0)
        return false;
    const bool isWritten = write(file, &record, sizeof record) == ssize_t{sizeof record} && fsync(file) == 0;
    return close(file) == 0 && isWritten;
}

std::string writeRecord(const std::string &path, const XasMessage &record)
{
    const std::string temporary = path + ".tmp";
    std::string problem;
    if (!writeWhole(temporary, record))
        problem = failure("write", temporary);
    else if (std::rename(temporary.c_str(), path.c_str()) != 0)
        problem = failure("replace", path);
    if (!problem.empty())
        unlink(temporary.c_str());
    return problem;
}

} // namespace

std::optional<XasMessage> xmsReadStored(const XasMessage &request)
{
    XasMessage record = request;
    if (xmlGetMsg(stderr, request.xH.msgtype, &record) != 0)
        return std::nullopt;
    return record;
}

std::vector<XasMessage> xmsReadAllStored()
{
    std::map<std::string, XasMessage> records;
    std::error_code none; // a directory that is not there holds nothing
    for (const auto &entry : std::filesystem::directory_iterator(xasStoreDirectory(), none)) {
        XasMessage record{};
        std::ifstream file{entry.path(), std::ios::binary};
        if (!entry.is_regular_file(none) || !file.read(reinterpret_cast<char *>(&record), sizeof record))
            continue;
        const std::string name = entry.path().filename();
        if (name == xasStoreRecordName(record.xH.msgtype, record))
            records[name] = record;
    }
    std::vector<XasMessage> list;
    list.reserve(records.size());
    for (const auto &[name, record] : records)
        list.push_back(record);
    return list;
}

std::string xmsStoreApplied(const XasMessage &setting)
{
    const std::string name = xasStoreRecordName(setting.xH.msgtype, setting);
    if (name.empty())
        return "a message type without a name cannot be stored";
    std::error_code ignored; // a directory that cannot be made shows when the record is written
    std::filesystem::create_directories(xasStoreDirectory(), ignored);
    const std::string path = xasStoreDirectory() + "/" + name;
    if (!removesItsRecord(setting))
        return writeRecord(path, setting);
    return unlink(path.c_str()) == 0 || errno == ENOENT ? "" : failure("delete", path);
}
