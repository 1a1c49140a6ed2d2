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

void xmsRequireFitTexts(const XasMessage &record, const XmsSetOptions &set)
{
    const XasSetting *row = xasFindSetting(record.xH.msgtype);
    if (row == nullptr || set.force || !set.rawFile.empty())
        return;
    const std::string field = xasFindUnfitText(row->texts, record);
    if (!field.empty())
        throw XmsError{XmsExit::usage, "Invalid character in " + field};
}

XmsSetting xmsSettingFrom(const XmsSetOptions &set)
{
    XmsSetting setting{.record = xmsDefaultRecord(xmsTypeFromText(set.type)),
                       .assignments = xmsParseAssignments(set.assignments),
                       .users = {}};
    if (!set.rawFile.empty())
        xmsSetRawPayload(setting.record, readHexFile(set.rawFile));
    if (setting.record.xH.msgtype == XMSG_LOCALUSERS)
        setting.users = xmsTakeUsers(setting.assignments, xmsCheckOf(set));
    if (set.rawFile.empty())
        xmsAnnounceUsers(setting.record, setting.users);
    xmsAssign(setting.record, setting.assignments, xmsCheckOf(set));
    if (!set.force)
        xmsRequireMatchingCount(setting.record, setting.users);
    xmsRequireFitTexts(setting.record, set);
    return setting;
}
