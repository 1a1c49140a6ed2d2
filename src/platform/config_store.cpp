#include "platform/config_store.h"

#include "platform/config_library.h"
#include "wire/message_names.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace {

/** Reads the whole record from `path`, waiting for nobody who may write it. A file that is not exactly one
 * record long is reported and refused. */
bool readRecord(const std::string &path, FILE *diag, XasMessage &record)
{
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return false;
    std::array<char, sizeof(XasMessage) + 1> bytes{};
    const ssize_t size = ::read(fd, bytes.data(), bytes.size());
    ::close(fd);
    if (size != sizeof(XasMessage)) {
        std::fprintf(diag, "%s: not a record of %zu bytes\n", path.c_str(), sizeof(XasMessage));
        return false;
    }
    std::memcpy(&record, bytes.data(), sizeof record);
    return true;
}

} // namespace

std::string xasStoreDirectory()
{
    const char *directory = std::getenv("XMS_STORE");
    return directory != nullptr && *directory != '\0' ? directory : "/r58/store";
}

std::string xasStoreRecordName(std::uint32_t msgtype, const XasMessage &msg)
{
    std::string name{xasMsgTypeName(msgtype)};
    const auto appendKey = [&](std::uint32_t key) {
        name.append("-").append(std::to_string(key));
    };
    if (msgtype == XMSG_IPFILTER_SET)
        appendKey(xasPayloadValue<std::uint8_t, 120>(msg));
    if (msgtype == XMSG_IPFILTER_ASSIGN) {
        appendKey(xasPayloadWord<0>(msg));
        appendKey(xasPayloadValue<std::uint8_t, 124>(msg));
    }
    return name;
}

int xmlGetMsg(FILE *diag, unsigned msgtype, XasMessage *msg)
{
    const std::string name = xasStoreRecordName(msgtype, *msg);
    if (name.empty())
        return 1;
    return readRecord(xasStoreDirectory() + "/" + name, diag, *msg) ? 0 : 1;
}
