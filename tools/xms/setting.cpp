#include "xms/setting.h"

#include "dispatch/settings.h"
#include "xms/error.h"

#include <iostream>
#include <iterator>

namespace {

std::string readHexFile(const std::string &path)
{
    std::ifstream file;
    return {std::istreambuf_iterator<char>{xmsOpenInput(path, file)}, {}};
}

/** The bytes of a file, with the assignments over them. */
XmsSetting rawSetting(std::uint32_t msgtype, const XmsSetOptions &set)
{
    XmsSetting setting{.record = xmsDefaultRecord(msgtype),
                       .assignments = xmsParseAssignments(set.assignments),
                       .users = {}};
    xmsSetRawPayload(setting.record, readHexFile(set.rawFile));
    if (msgtype == XMSG_LOCALUSERS)
        setting.users = xmsTakeUsers(setting.assignments, xmsCheckOf(set));
    xmsAssign(setting.record, setting.assignments, xmsCheckOf(set));
    if (!set.force)
        xmsRequireMatchingCount(setting.record, setting.users);
    return setting;
}

} // namespace

std::istream &xmsOpenInput(const std::string &path, std::ifstream &file)
{
    if (path != "-")
        file.open(path);
    std::istream &input = path == "-" ? std::cin : file;
    if (!input)
        throw XmsError{XmsExit::usage, "cannot read " + path};
    return input;
}

XasValueCheck xmsCheckOf(const XmsSetOptions &set)
{
    return set.force ? XasValueCheck::anyThatFits : XasValueCheck::allowed;
}

void xmsRequireFitTexts(const XasMessage &record)
{
    const XasSetting *row = xasFindSetting(record.xH.msgtype);
    const std::string field = row == nullptr ? "" : xasFindUnfitText(row->texts, record);
    if (!field.empty())
        throw XmsError{XmsExit::usage, "Invalid character in " + field};
}

void xmsRequireFitTexts(const XasMessage &record, const XmsSetOptions &set)
{
    if (!set.force && set.rawFile.empty())
        xmsRequireFitTexts(record);
}

XmsSetting xmsBuildSetting(std::uint32_t msgtype, std::vector<XmsAssignment> assignments, XasValueCheck check)
{
    XmsSetting setting{
        .record = xmsDefaultRecord(msgtype), .assignments = std::move(assignments), .users = {}};
    if (msgtype == XMSG_LOCALUSERS)
        setting.users = xmsTakeUsers(setting.assignments, check);
    xmsAnnounceUsers(setting.record, setting.users);
    xmsAssign(setting.record, setting.assignments, check);
    if (check == XasValueCheck::allowed)
        xmsRequireMatchingCount(setting.record, setting.users);
    return setting;
}

XmsSetting xmsSettingFrom(const XmsSetOptions &set)
{
    const std::uint32_t msgtype = xmsTypeFromText(set.type);
    XmsSetting setting;
    if (set.rawFile.empty()) {
        setting = xmsBuildSetting(msgtype, xmsParseAssignments(set.assignments), xmsCheckOf(set));
    } else {
        setting = rawSetting(msgtype, set);
    }
    xmsRequireFitTexts(setting.record, set);
    return setting;
}
