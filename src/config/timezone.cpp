#include "config/timezone.h"

#include "core/log.h"
#include "files/sync.h"

#include <cerrno>
#include <cstdio>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/** A zone that leads out of the directory of zones counts as one that is not there. */
bool isZoneFileThere(const std::string &zoneFile, std::string_view zone)
{
    const bool leadsOut = xasHasParentComponent(zone);
    struct stat status {};
    if (!leadsOut && ::stat(zoneFile.c_str(), &status) == 0)
        return true;
    if (leadsOut || errno == ENOENT)
        xasLogError("timezone file %s does not exist\n", zoneFile.c_str());
    else
        xasLogError("failure getting information about file %s\n", zoneFile.c_str());
    return false;
}

/** True when a new link can take the place of what is at `path`: a file or a link, but no directory. */
bool isReplaceable(const char *path)
{
    struct stat status {};
    return ::lstat(path, &status) == 0 && !S_ISDIR(status.st_mode);
}

/** Makes the link beside `path` and renames it into place, so that there is a time zone at every instant. 0;
 * or why it cannot be, as errno has it. */
int putLink(const char *path, const std::string &target)
{
    const std::string newLink = std::string{path} + ".tmp";
    ::unlink(newLink.c_str());
    xasNoteTouched(path);
    if (::symlink(target.c_str(), newLink.c_str()) == 0 && ::rename(newLink.c_str(), path) == 0)
        return 0;
    const int error = errno;
    ::unlink(newLink.c_str());
    return error;
}

/** True for the errors of a directory that would not let the old link go either. */
bool isOfDirectory(int error)
{
    return error == EACCES || error == EPERM || error == EROFS;
}

constexpr XasFileRow FILES[] = {
    {.type = "tzpathbase", .missingLog = "Error determining timezone base path\n"},
    {.type = "cfglink", .missingLog = "Error determining timezone config file link\n"},
};

} // namespace

constexpr XasFilesUpdate xasTimezoneFiles{.msgtype = XMSG_TIMEZONE, .files = FILES};

int xasUpdateTimezoneCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertUpdate(msg, XMSG_TIMEZONE, cfgFiles);
    const char *base = xasFindRowFile(FILES[0], *cfgFiles, reply);
    if (base == nullptr)
        return 1;
    const auto payload = xasReadPayload<XasTimezonePayload>(*msg);
    const std::string_view zone = xasFieldText(payload.zone);
    const std::string zoneFile = std::string{base}.append("/").append(zone);
    if (!isZoneFileThere(zoneFile, zone))
        return 1;
    const char *link = xasFindRowFile(FILES[1], *cfgFiles, reply);
    if (link == nullptr)
        return 1;
    const bool isThere = isReplaceable(link);
    const int error = putLink(link, zoneFile);
    if (!isThere || isOfDirectory(error))
        xasLogWarning("failure unlinking timezone symlink file\n");
    if (error != 0)
        return xasLogFailure("Error creating symlink to path %s\n", zoneFile.c_str());
    return 0;
}
