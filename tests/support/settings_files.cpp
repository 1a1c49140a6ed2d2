#include "support/settings_files.h"

#include "support/settings_outcome.h"

#include <filesystem>

namespace {

void put(const XasExpectedFile &file, const XasTestDir &dir)
{
    const std::string name = XasSituation::name(file);
    if (file.way == XasFileWay::directory)
        dir.write(name + "/inside", file.oldText);
    else if (file.way == XasFileWay::link)
        std::filesystem::create_symlink(file.oldText, dir.path(name));
    else
        dir.write(name, file.oldText, file.secret ? XAS_SETTING_SECRET_MODE : XAS_SETTING_FILE_MODE);
}

} // namespace

void xasPutSettingFiles(const XasExpectedSetting &setting, const XasTestDir &dir)
{
    for (const std::string &name : dir.names())
        std::filesystem::remove_all(dir.path(name));
    if (setting.hasFixedPaths) {
        std::filesystem::remove_all("/etc/sysconfig");
        std::filesystem::create_directory_symlink(dir.path(), "/etc/sysconfig");
        for (const char *path : {"/etc/krb5.conf", "/etc/tacplus.conf", "/etc/ipsec.secrets", "/www/xml",
                                 "/tmp/.save/fips_mode"})
            std::filesystem::remove_all(path);
        dir.write("r58authconfig", "LOCAL=0\n", XAS_SETTING_FILE_MODE);
    }
    for (const XasExpectedFile &file : setting.files)
        put(file, dir);
}

std::vector<std::pair<std::string, std::string>> xasSettingFileList(const XasExpectedSetting &setting,
                                                                    const XasTestDir &dir)
{
    std::vector<std::pair<std::string, std::string>> list;
    for (const XasExpectedFile &file : setting.files)
        list.emplace_back(file.type, dir.path(XasSituation::name(file)));
    return list;
}
