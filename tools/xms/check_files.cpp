#include "xms/check.h"

#include "core/command_line.h"
#include "dispatch/settings.h"

#include <filesystem>
#include <sys/stat.h>

namespace {

constexpr int LINKS_MAX = 40;

/** Where `path` of the appliance is below `root`, links followed as the appliance would. */
std::filesystem::path placeBelow(const std::filesystem::path &root, const std::filesystem::path &path)
{
    std::filesystem::path rest = path.lexically_normal().relative_path();
    std::filesystem::path inside = "/"; // as the appliance names it
    for (int links = 0; !rest.empty();) {
        const std::filesystem::path first = *rest.begin();
        const std::filesystem::path behind = rest.lexically_relative(first);
        rest = behind == "." ? std::filesystem::path{} : behind;
        std::error_code error;
        const auto target = std::filesystem::read_symlink(root / (inside / first).relative_path(), error);
        if (error || ++links > LINKS_MAX) {
            inside /= first;
            continue;
        }
        rest = ((target.is_absolute() ? target : inside / target) / rest).lexically_normal().relative_path();
        inside = "/";
    }
    return root / inside.relative_path();
}

enum class Place { fit, missing, noDirectory, unfit };

struct Below {
    std::string root;

    template <class Fit>
    [[nodiscard]] Place look(const std::string &path, const Fit &isFit) const
    {
        const std::filesystem::path place = placeBelow(root, path);
        struct stat status {};
        if (::stat(place.c_str(), &status) == 0)
            return isFit(status) ? Place::fit : Place::unfit;
        return ::stat(place.parent_path().c_str(), &status) == 0 ? Place::missing : Place::noDirectory;
    }

    /** What is in a directory that the root does not have may come from elsewhere, but for a whole appliance.
     */
    [[nodiscard]] XmsWorry worryOf(Place place) const
    {
        return place == Place::noDirectory && root != "/" ? XmsWorry::hint : XmsWorry::error;
    }

    [[nodiscard]] std::string complaint(const std::string &path, Place place, const char *unfit) const
    {
        if (place == Place::unfit)
            return path + " is " + unfit;
        const std::string missing = path + " is not there";
        return worryOf(place) == XmsWorry::hint ? missing + ", nor is its directory, in " + root : missing;
    }
};

bool isProgram(const struct stat &status)
{
    return S_ISREG(status.st_mode) && (status.st_mode & S_IXUSR) != 0;
}

void checkProgram(const Below &below, const std::string &commandLine, int line, XmsFindings &findings)
{
    const std::string program{xasProgramOf(commandLine)};
    if (!program.starts_with('/'))
        return; // which has been said
    const Place place = below.look(program, isProgram);
    if (place != Place::fit)
        findings.push_back({line, below.worryOf(place), "program",
                            below.complaint(program, place, "no program that can be run")});
}

/** What a setting wants of a file. */
enum class Want { file, directory, place };

/** An edit that reads the old text needs the file; a directory of files is read; the rest is made. */
Want wantOf(const XasFileRow &row)
{
    if (row.type == "tzpathbase")
        return Want::directory;
    if (row.type == "cfglink")
        return Want::place;
    const bool isRead = row.edit.run == nullptr && row.edit.texts == nullptr;
    const bool isEdited =
        row.edit.texts != nullptr && !row.edit.texts->anew && row.edit.templateReason == nullptr;
    return isRead || isEdited ? Want::file : Want::place;
}

bool isWanted(const struct stat &status, Want want)
{
    return want == Want::directory ? S_ISDIR(status.st_mode) : S_ISREG(status.st_mode);
}

void checkFile(const Below &below, const XasFileRow &row, const XmsCheckedApp &checked, XmsFindings &findings)
{
    std::size_t n = 0;
    while (n < checked.app.cfgFiles.size() && checked.app.cfgFiles[n].type != row.type)
        ++n;
    if (n == checked.app.cfgFiles.size() || !checked.app.cfgFiles[n].path)
        return;
    const std::string &path = *checked.app.cfgFiles[n].path;
    const Want want = wantOf(row);
    const Place place = below.look(path, [&](const struct stat &status) { return isWanted(status, want); });
    if (place == Place::fit || (place == Place::missing && want == Want::place) || !path.starts_with('/'))
        return;
    findings.push_back({checked.lineOfFile(n), below.worryOf(place), "file",
                        below.complaint(path, place, want == Want::directory ? "no directory" : "no file")});
}

} // namespace

void xmsCheckFiles(const std::vector<XmsCheckedApp> &apps, const std::string &root, XmsFindings &findings)
{
    const Below below{root};
    for (const XmsCheckedApp &checked : apps) {
        for (std::size_t n = 0; n < checked.app.daemons.size(); ++n)
            checkProgram(below, checked.app.daemons[n].exe, checked.lineOf("EXE", n), findings);
        if (checked.app.startScript)
            checkProgram(below, *checked.app.startScript, checked.lineOf("STARTSCRIPT"), findings);
        if (checked.app.stopScript)
            checkProgram(below, *checked.app.stopScript, checked.lineOf("STOPSCRIPT"), findings);
        for (const XasSetting &setting : xasSettings()) {
            if (checked.app.name != setting.application || setting.update.files == nullptr)
                continue;
            for (const XasFileRow &row : setting.update.files->files)
                checkFile(below, row, checked, findings);
        }
    }
}
