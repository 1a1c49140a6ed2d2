#include "xms/commands.h"

#include "msg/type_names.h"
#include "xms/asking.h"
#include "xms/hex.h"
#include "xms/protocol.h"

#include <cstdio>

namespace {

void print(const std::string &line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

/** The stored record with the named fields set over it, or the setting's own when there is nothing to start
 * from. */
XasMessage overStored(const XmsDescriptor &server, const XmsSetting &setting, const XmsSetOptions &set)
{
    const XasMessage &record = setting.record;
    if (set.fresh || !set.rawFile.empty() || !xmsIsKept(record.xH.msgtype))
        return record;
    auto stored = xmsAskStored(server, record);
    if (!stored)
        return record;
    xmsAnnounceUsers(*stored, setting.users); // the list itself is not stored
    xmsAssign(*stored, setting.assignments, xmsCheckOf(set));
    xmsRequireFitTexts(*stored, set);
    return *stored;
}

} // namespace

XmsExit xmsSetCommand(const XmsOptions &options, const XmsSetOptions &set)
{
    const XmsSetting setting = xmsSettingFrom(set);
    const XmsDescriptor server = xmsConnect(options.socket);
    const XasMessage record = overStored(server, setting, set);
    const auto tellSlow = [&] {
        std::fprintf(stderr, "xms: %s is being applied, waiting up to %g s\n",
                     msgShortName(record.xH.msgtype).c_str(), set.timeoutSeconds);
    };
    const XmsOutcome outcome =
        xmsAskToSet(server, record, setting.users, set.timeoutSeconds, {.tell = tellSlow});
    print(options.json ? xmsJsonLine(xmsOutcomeJson(outcome)) : xmsOutcomeText(outcome, options.paint));
    return xmsOutcomeExit(outcome);
}

XmsExit xmsGetCommand(const XmsOptions &options, const std::string &type,
                      const std::vector<std::string> &keys)
{
    XasMessage request = xmsDefaultRecord(xmsTypeFromText(type));
    xmsAssign(request, xmsParseAssignments(keys));
    const auto stored = xmsAskStored(xmsConnect(options.socket), request);
    if (!stored)
        throw XmsError{XmsExit::refused, "nothing is stored for " + msgLongName(request.xH.msgtype)};
    const bool isDescribed = msgFieldsOf(stored->xH.msgtype) != nullptr;
    if (options.json)
        print(xmsJsonLine({{"type", msgShortName(stored->xH.msgtype)}, {"fields", xmsFieldsJson(*stored)}}));
    else if (isDescribed)
        std::fputs(xmsFieldsTable(*stored).c_str(), stdout);
    else
        print(xmsToHex(stored->payload));
    return XmsExit::applied;
}
