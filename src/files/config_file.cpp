#include "files/config_file.h"

#include "core/assert.h"
#include "core/log.h"
#include "core/text.h"
#include "files/new_file.h"
#include "files/sync.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t SECRET_MODE = 0600;
constexpr mode_t OTHERS = 077;

int openTemporary(XasCfgFile &cf, XasSecrecy secrecy)
{
    cf.secrecy = secrecy;
    cf.tmpFileName = cf.cfgFileName + ".tmp";
    cf.outFile = xasCreateFile(cf.tmpFileName, cf.cfgFileName,
                               secrecy == XasSecrecy::secret ? XasFileAccess::owner : XasFileAccess::kept);
    if (!cf.outFile)
        return xasLogFailure("Error opening output file \"%s\"\n", cf.tmpFileName.c_str());
    return 0;
}

enum class Backup {
    none,   /**< there is nothing to back up */
    linked, /**< a second name of the live file */
    moved,  /**< the live file itself; its path is missing until the new file comes */
    failed
};

bool hasNoHardLinks(int error)
{
    return error == EPERM || error == EOPNOTSUPP || error == ENOSYS || error == EMLINK;
}

Backup moveToBackup(const std::string &path, const std::string &backup)
{
    return ::rename(path.c_str(), backup.c_str()) == 0 ? Backup::moved : Backup::failed;
}

/** Gives the file a further name, which nothing else keeps. */
bool linkAnew(const char *path, const char *name)
{
    if (::link(path, name) == 0)
        return true;
    return errno == EEXIST && ::unlink(name) == 0 && ::link(path, name) == 0;
}

/** Makes the live file's content the backup, under a second name where the file system has such. */
Backup makeBackup(const std::string &path, const std::string &backup, nlink_t names)
{
    const std::string link = backup + ".tmp";
    if (!linkAnew(path.c_str(), link.c_str()))
        return hasNoHardLinks(errno) ? moveToBackup(path, backup) : Backup::failed;
    const bool made = ::rename(link.c_str(), backup.c_str()) == 0;
    if (!made || names > 1)
        ::unlink(link.c_str()); // it stays when the rename failed, or when both names were one file already
    return made ? Backup::linked : Backup::failed;
}

/** Makes the backup the live file again; no backup remains. */
bool takeBackup(const std::string &path)
{
    const std::string backup = path + ".old";
    if (::rename(backup.c_str(), path.c_str()) != 0)
        return false;
    ::unlink(backup.c_str()); // it stays when both names were one file already
    return true;
}

/** Puts an empty file at the live path; no temporary remains. */
bool putEmptyFile(const XasCfgFile &cf)
{
    XasFile empty = xasCreateFile(cf.tmpFileName, cf.cfgFileName, XasFileAccess::kept);
    if (!empty)
        return false;
    if (xasCloseWritten(empty) && ::rename(cf.tmpFileName.c_str(), cf.cfgFileName.c_str()) == 0)
        return true;
    ::unlink(cf.tmpFileName.c_str());
    return false;
}

/** What stands at the live path before a save. */
struct LiveFile {
    bool isThere;
    bool isClosed; /**< to others, where the new file is */
    nlink_t names;
};

/** Looks at the live file; one that is to hold secrets is closed to others, whatever becomes of the save. */
LiveFile prepareLive(const XasCfgFile &cf)
{
    struct stat live {};
    if (::stat(cf.cfgFileName.c_str(), &live) != 0 || !S_ISREG(live.st_mode))
        return {.isThere = false, .isClosed = true, .names = 0};
    const bool isClosed = cf.secrecy == XasSecrecy::plain || (live.st_mode & OTHERS) == 0 ||
                          ::chmod(cf.cfgFileName.c_str(), SECRET_MODE) == 0;
    return {.isThere = true, .isClosed = isClosed, .names = live.st_nlink};
}

/** Makes the live file, if there is one, the backup. */
Backup backUp(const XasCfgFile &cf, const LiveFile &live)
{
    if (!live.isThere)
        return Backup::none;
    return live.isClosed ? makeBackup(cf.cfgFileName, cf.cfgFileName + ".old", live.names) : Backup::failed;
}

} // namespace

int xasCfgOpenFiles(const char *cfgFileName, XasCfgFile *cf, XasSecrecy secrecy)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(cf, "cf");
    *cf = {};
    cf->cfgFileName = cfgFileName;
    cf->inFile = xasOpenFile(cf->cfgFileName);
    if (!cf->inFile)
        return xasLogFailure("Error opening config file \"%s\"\n", cfgFileName);
    if (openTemporary(*cf, secrecy) != 0) {
        cf->inFile.reset();
        return 1;
    }
    return 0;
}

int xasCfgOpenOutFile(const char *cfgFileName, XasCfgFile *cf, XasSecrecy secrecy)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(cf, "cf");
    *cf = {};
    cf->cfgFileName = cfgFileName;
    return openTemporary(*cf, secrecy);
}

int xasOutputLine(FILE *outFile, const char *line, bool commentOut)
{
    xasAssertGiven(outFile, "outFile");
    xasAssertGiven(line, "line");
    // Flushed, so that a failed write shows at its line.
    if (std::fprintf(outFile, commentOut ? "#%s" : "%s", line) < 0 || std::fflush(outFile) != 0)
        return xasLogFailure("Error printing line to file\n");
    return 0;
}

void xasCloseCfgFile(XasCfgFile *cf)
{
    xasAssertGiven(cf, "cf");
    cf->inFile.reset();
    cf->outFile.reset();
}

int xasSaveCfgFile(XasCfgFile *cf)
{
    xasAssertGiven(cf, "cf");
    const LiveFile live = prepareLive(*cf);
    cf->inFile.reset();
    if (!xasCloseWritten(cf->outFile))
        return xasLogFailure("Error printing line to file\n");
    const char *path = cf->cfgFileName.c_str();
    const Backup backup = backUp(*cf, live);
    if (backup == Backup::failed)
        xasLogError("Error renaming old config file \"%s\"\n", path);
    xasNoteTouched(cf->cfgFileName);
    if (::rename(cf->tmpFileName.c_str(), path) != 0) {
        xasLogError("Error renaming new config file \"%s\"\n", path);
        if (backup == Backup::moved)
            ::rename((cf->cfgFileName + ".old").c_str(), path);
        return 1;
    }
    return backup == Backup::failed ? 1 : 0;
}

int xasEmptyCfgFile(const char *cfgFileName)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    XasCfgFile cf;
    cf.cfgFileName = cfgFileName;
    cf.tmpFileName = cf.cfgFileName + ".empty"; // ".tmp" belongs to the editors, and an abandoned one stays
    const Backup backup = backUp(cf, prepareLive(cf));
    const bool isBackedUp = backup == Backup::linked || backup == Backup::moved;
    if (!isBackedUp)
        xasLogError("Error renaming old config file \"%s\"\n", cfgFileName);
    xasNoteTouched(cf.cfgFileName);
    if (!putEmptyFile(cf)) {
        xasLogError("Error opening file \"%s\"\n", cfgFileName);
        if (isBackedUp && !takeBackup(cf.cfgFileName))
            xasLogError("Error renaming old config file \"%s\"\n", cfgFileName);
        return 1;
    }
    return isBackedUp ? 0 : 1;
}

int xasRestoreCfgFile(const char *cfgFileName)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssert(std::strlen(cfgFileName) > 0, "strlen(cfgFileName) > 0");
    xasNoteTouched(cfgFileName);
    if (!takeBackup(cfgFileName))
        return xasLogFailure("Error restoring old config file \"%s\"\n", cfgFileName);
    return 0;
}

int xasFileHasSlash(const char *text)
{
    return text != nullptr && std::strchr(text, '/') != nullptr ? 1 : 0;
}

int xasGetCfgNumber(std::string_view key, std::string_view line, std::uint32_t *value)
{
    constexpr std::string_view DIGITS = "0123456789";
    std::string_view rest = line.substr(std::min(line.find_first_not_of(" \t\n\v\f\r"), line.size()));
    if (!rest.starts_with(key))
        return 0;
    xasNextToken(rest, "=");
    const std::string_view number = xasNextToken(rest, "=");
    const std::size_t first = number.find_first_of(DIGITS);
    if (first == std::string_view::npos)
        return 0;
    const std::string digits{number.substr(first, number.find_last_of(DIGITS) + 1 - first)};
    *value = static_cast<std::uint32_t>(std::atoi(digits.c_str()));
    return 1;
}

int xasReplaceString(std::string &text, const char *pattern, const char *replacement)
{
    if (pattern == nullptr || *pattern == '\0')
        return 1;
    const std::string_view from = pattern;
    const std::string_view to = replacement != nullptr ? replacement : "";
    text.resize(std::min(text.size(), XAS_REPLACE_MAX));
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
        text.replace(at, from.size(), to);
    return 0;
}
