#include "xms/check.h"

#include "config/firewall_services.h"
#include "dispatch/settings.h"
#include "msg/type_names.h"
#include "wire/field.h"
#include "xms/suggest.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

namespace {

constexpr std::string_view FIREWALL = "firewall";

/** The applications of all settings; one setting names one of several itself. */
std::set<std::string, std::less<>> usedNames()
{
    std::set<std::string, std::less<>> names;
    for (const XasSetting &setting : xasSettings()) {
        names.emplace(setting.application);
        for (std::uint32_t index = 0; setting.application.empty(); ++index) {
            XasMessage msg{};
            xasWritePayload(msg, index);
            const std::string_view name = xasApplicationName(setting, msg);
            if (name == "INVALID_APP")
                break;
            names.emplace(name);
        }
    }
    names.erase("");
    return names;
}

const XmsCheckedApp *findApp(const std::vector<XmsCheckedApp> &apps, std::string_view name)
{
    const auto found =
        std::ranges::find_if(apps, [&](const XmsCheckedApp &checked) { return checked.app.name == name; });
    return found == apps.end() ? nullptr : &*found;
}

void checkNames(const std::vector<XmsCheckedApp> &apps, XmsFindings &findings)
{
    const auto used = usedNames();
    for (const XmsCheckedApp &checked : apps) {
        const int line = checked.lineOf("NAME");
        if (!checked.app.name)
            findings.push_back(
                {line, XmsWorry::error, "name", "an application without a NAME is never found"});
        else if (!used.contains(*checked.app.name))
            findings.push_back({line, XmsWorry::warning, "name",
                                "no message concerns an application " + *checked.app.name +
                                    xmsDidYouMean(*checked.app.name, {used.begin(), used.end()})});
        else if (findApp(apps, *checked.app.name) != &checked)
            findings.push_back(
                {line, XmsWorry::warning, "name",
                 "there is an application " + *checked.app.name + " before this one, which is never found"});
    }
    for (const std::string &name : used) {
        if (findApp(apps, name) == nullptr)
            findings.push_back({1, XmsWorry::hint, "application",
                                "there is no application " + name + ": its settings are refused"});
    }
}

/** The TYPEs that the settings of an application look for. The file of the firewall's settings is one: it has
 * its update, although the filter takes the messages. */
std::set<std::string_view> typesOf(std::string_view application)
{
    std::set<std::string_view> types;
    if (application == FIREWALL)
        for (const XasFileRow &row : xasUpdateFirewallCfg.files)
            types.insert(row.type);
    for (const XasSetting &setting : xasSettings()) {
        if (setting.application != application || setting.update.files == nullptr)
            continue;
        for (const XasFileRow &row : setting.update.files->files)
            types.insert(row.type);
    }
    return types;
}

/** Which file of a setting an application lacks. */
std::string lackText(const XmsCheckedApp &checked, const XasFileRow &row, const XasSetting &setting)
{
    std::string text = checked.name() + " has no file of TYPE ";
    return text.append(row.type).append(" for the setting ").append(msgShortName(setting.msgtype));
}

void checkNeeds(const XasSetting &setting, const XmsCheckedApp &checked, XmsFindings &findings)
{
    for (const XasFileRow &row : setting.update.files->files) {
        if (xasGetCfgFilePath(row.type, checked.app.cfgFiles) != nullptr)
            continue;
        const bool isNeeded = row.missingLog != nullptr;
        const char *result = isNeeded ? ", which fails without it" : ", which can do without it";
        findings.push_back({checked.lineOf("NAME"), isNeeded ? XmsWorry::error : XmsWorry::hint, "type",
                            lackText(checked, row, setting).append(result)});
    }
}

void checkEntry(const XmsCheckedApp &checked, std::size_t n, const std::set<std::string_view> &types,
                XmsFindings &findings)
{
    const XasCfgFileEntry &entry = checked.app.cfgFiles.at(n);
    const int line = checked.lineOfFile(n);
    if (!entry.type || !entry.path) {
        findings.push_back({line, XmsWorry::error, "cfgfile",
                            entry.type ? "a CFGFILE without a PATH is never used"
                                       : "a CFGFILE without a TYPE is never used"});
        return;
    }
    const auto before = checked.app.cfgFiles.begin() + static_cast<std::ptrdiff_t>(n);
    if (std::find_if(checked.app.cfgFiles.begin(), before,
                     [&](const XasCfgFileEntry &other) { return other.type == entry.type; }) != before)
        findings.push_back({line, XmsWorry::warning, "cfgfile",
                            checked.name() + " has a file of TYPE " + *entry.type +
                                " before this one, which is never used"});
    else if (!types.contains(*entry.type))
        findings.push_back({line, XmsWorry::hint, "unused",
                            "no setting of " + checked.name() + " changes a file of TYPE " + *entry.type});
    if (!entry.path->starts_with('/'))
        findings.push_back({line, XmsWorry::error, "path", *entry.path + " is no absolute path"});
}

/** One file that is edited as two kinds of files. */
void checkPaths(const std::vector<XmsCheckedApp> &apps, XmsFindings &findings)
{
    std::map<std::string, std::string> typeOfPath;
    for (const XmsCheckedApp &checked : apps) {
        for (std::size_t n = 0; n < checked.app.cfgFiles.size(); ++n) {
            const XasCfgFileEntry &entry = checked.app.cfgFiles[n];
            if (!entry.type || !entry.path)
                continue;
            const auto &[path, type] = *typeOfPath.emplace(*entry.path, *entry.type).first;
            if (type == *entry.type)
                continue;
            std::string text = path;
            text.append(" is of TYPE ").append(*entry.type);
            text.append(" here and of TYPE ").append(type).append(" before");
            findings.push_back({checked.lineOfFile(n), XmsWorry::warning, "path", std::move(text)});
        }
    }
}

} // namespace

void xmsCheckSettings(const std::vector<XmsCheckedApp> &apps, XmsFindings &findings)
{
    checkNames(apps, findings);
    for (const XasSetting &setting : xasSettings()) {
        const XmsCheckedApp *checked = findApp(apps, setting.application);
        if (checked != nullptr && setting.update.files != nullptr)
            checkNeeds(setting, *checked, findings);
    }
    for (const XmsCheckedApp &checked : apps) {
        const auto types = typesOf(checked.app.name.value_or(""));
        for (std::size_t n = 0; n < checked.app.cfgFiles.size(); ++n)
            checkEntry(checked, n, types, findings);
    }
    checkPaths(apps, findings);
}
