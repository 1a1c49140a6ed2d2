#include "files/config_file.h"

#include "core/assert.h"
#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t PLAIN_MODE = 0644;
constexpr mode_t SECRET_MODE = 0600;
constexpr mode_t PERMISSION_BITS = 07777;

/** Gives the temporary the live file's owner and mode, or those of a new file. It is 0600 until then. */
void setOwnerAndMode(int fd, const std::string &liveFile, XasSecrecy secrecy)
{
    mode_t mode = PLAIN_MODE;
    struct stat live {};
    if (::stat(liveFile.c_str(), &live) == 0 && S_ISREG(live.st_mode)) {
        // Where the owner cannot be kept (no privilege for it), the content still must be replaced.
        [[maybe_unused]] const int owned = ::fchown(fd, live.st_uid, live.st_gid);
        mode = live.st_mode & PERMISSION_BITS;
    }
    ::fchmod(fd, secrecy == XasSecrecy::secret ? SECRET_MODE : mode);
}

XasFile createTemporary(const XasCfgFile &cf, XasSecrecy secrecy)
{
    ::unlink(cf.tmpFileName.c_str());
    const int fd =
        ::open(cf.tmpFileName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, SECRET_MODE);
    if (fd < 0)
        return nullptr;
    setOwnerAndMode(fd, cf.cfgFileName, secrecy);
    XasFile file{::fdopen(fd, "w")};
    if (!file)
        ::close(fd);
    return file;
}

int openTemporary(XasCfgFile &cf, XasSecrecy secrecy)
{
    cf.tmpFileName = cf.cfgFileName + ".tmp";
    cf.outFile = createTemporary(cf, secrecy);
    if (!cf.outFile)
        return xasLogFailure("Error opening output file \"%s\"\n", cf.tmpFileName.c_str());
    return 0;
}

/** True when all that was written is on its medium. A medium that knows no syncing counts as synced. */
bool isWrittenOut(FILE *file)
{
    if (std::fflush(file) != 0 || std::ferror(file) != 0)
        return false;
    return ::fsync(::fileno(file)) == 0 || errno == EINVAL || errno == ENOTSUP;
}

void syncDirectory(const std::string &path)
{
    const std::string directory = path.substr(0, path.find_last_of('/') + 1);
    const int fd = ::open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd >= 0) {
        ::fsync(fd);
        ::close(fd);
    }
}

enum class Backup {
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

/** Makes the live file's content the backup, under a second name where the file system has such. */
Backup makeBackup(const std::string &path, const std::string &backup)
{
    const std::string link = backup + ".tmp";
    ::unlink(link.c_str());
    if (::link(path.c_str(), link.c_str()) != 0)
        return hasNoHardLinks(errno) ? moveToBackup(path, backup) : Backup::failed;
    const bool made = ::rename(link.c_str(), backup.c_str()) == 0;
    ::unlink(link.c_str()); // it stays when both names were one file already, or when the rename failed
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
    if (!createTemporary(cf, XasSecrecy::plain))
        return false;
    if (::rename(cf.tmpFileName.c_str(), cf.cfgFileName.c_str()) == 0)
        return true;
    ::unlink(cf.tmpFileName.c_str());
    return false;
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
    const bool written = !cf->outFile || isWrittenOut(cf->outFile.get());
    xasCloseCfgFile(cf);
    if (!written)
        return xasLogFailure("Error printing line to file\n");
    const char *path = cf->cfgFileName.c_str();
    const std::string backupName = cf->cfgFileName + ".old";
    Backup backup = Backup::linked;
    if (xasIsRegularFile(path) != 0)
        backup = makeBackup(cf->cfgFileName, backupName);
    if (backup == Backup::failed)
        xasLogError("Error renaming old config file \"%s\"\n", path);
    if (::rename(cf->tmpFileName.c_str(), path) != 0) {
        xasLogError("Error renaming new config file \"%s\"\n", path);
        if (backup == Backup::moved)
            ::rename(backupName.c_str(), path);
        return 1;
    }
    syncDirectory(cf->cfgFileName);
    return backup == Backup::failed ? 1 : 0;
}

int xasEmptyCfgFile(const char *cfgFileName)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    XasCfgFile cf;
    cf.cfgFileName = cfgFileName;
    cf.tmpFileName = cf.cfgFileName + ".empty"; // ".tmp" belongs to the editors, and an abandoned one stays
    const bool backedUp = xasIsRegularFile(cfgFileName) != 0 &&
                          makeBackup(cf.cfgFileName, cf.cfgFileName + ".old") != Backup::failed;
    if (!backedUp)
        xasLogError("Error renaming old config file \"%s\"\n", cfgFileName);
    if (!putEmptyFile(cf)) {
        xasLogError("Error opening file \"%s\"\n", cfgFileName);
        if (!takeBackup(cf.cfgFileName))
            xasLogError("Error renaming old config file \"%s\"\n", cfgFileName);
        return 1;
    }
    syncDirectory(cf.cfgFileName);
    return backedUp ? 0 : 1;
}

int xasRestoreCfgFile(const char *cfgFileName)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssert(std::strlen(cfgFileName) > 0, "strlen(cfgFileName) > 0");
    if (!takeBackup(cfgFileName))
        return xasLogFailure("Error restoring old config file \"%s\"\n", cfgFileName);
    syncDirectory(cfgFileName);
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
