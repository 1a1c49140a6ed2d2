#include "files/generated_file.h"

#include "core/log.h"
#include "files/sync.h"

#include <array>
#include <cerrno>
#include <climits>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr unsigned LINKS_MAX = 40;

/** What the path leads to, which need not exist; empty when that cannot be told. */
std::string targetOf(std::string path, XasFileLink link)
{
    std::array<char, PATH_MAX> text; // NOLINT(cppcoreguidelines-pro-type-member-init): filled by readlink
    for (unsigned links = 0; links < LINKS_MAX; ++links) {
        const ssize_t size = ::readlink(path.c_str(), text.data(), text.size());
        if (size < 0)
            return path;
        if (link == XasFileLink::refused)
            return {};
        const std::string_view next{text.data(), static_cast<std::size_t>(size)};
        path.resize(next.starts_with('/') ? 0 : path.find_last_of('/') + 1);
        path += next;
    }
    return {};
}

/** True when a regular file stands there, or nothing. */
bool isReplaceable(const std::string &path)
{
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? S_ISREG(status.st_mode) : errno == ENOENT;
}

} // namespace

XasGeneratedFile::XasGeneratedFile(const std::string &path, XasFileAccess access, XasFileLink link)
    : target{targetOf(path, link)}, temporary{target + ".tmp"}
{
    if (!target.empty() && isReplaceable(target))
        file = xasCreateFile(temporary, target, access);
}

XasGeneratedFile::~XasGeneratedFile()
{
    if (file)
        ::unlink(temporary.c_str());
}

bool XasGeneratedFile::write(std::string_view text)
{
    isWhole = isWhole && xasWriteText(file.get(), text) == text.size();
    return isWhole;
}

bool XasGeneratedFile::save()
{
    xasNoteTouched(target);
    const bool isKept = xasCloseWritten(file) && isWhole;
    if (isKept && ::rename(temporary.c_str(), target.c_str()) == 0)
        return true;
    ::unlink(temporary.c_str());
    return false;
}

int xasGenerateFile(const std::string &path, std::string_view text, XasFileAccess access, XasFileLink link)
{
    XasGeneratedFile file{path, access, link};
    if (!file)
        return xasLogFailure("Error opening config file \"%s\"\n", path.c_str());
    file.write(text);
    if (!file.save())
        return xasLogFailure("Error printing line to file\n");
    return 0;
}

int xasAppendToFile(const std::string &path, std::string_view text, XasFileAccess access)
{
    std::string whole;
    const XasReading reading = xasReadWhole(path, whole);
    if (reading == XasReading::notRead || (reading == XasReading::notOpened && errno != ENOENT))
        return 1;
    XasGeneratedFile file{path, access};
    if (!file)
        return 1;
    file.write(whole);
    file.write(text);
    return file.save() ? 0 : 1;
}

void xasRemoveFile(const char *path)
{
    xasNoteTouched(path);
    ::unlink(path);
}
