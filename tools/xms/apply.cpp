#include "xms/apply.h"

#include "msg/fields.h"
#include "msg/type_names.h"
#include "platform/config_store.h"
#include "xms/asking.h"
#include "xms/protocol.h"
#include "xms/secrets.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

constexpr auto ORDER = std::to_array<std::uint32_t>(
    {XMSG_ETH,        XMSG_HOSTNAME, XMSG_DNS,      XMSG_ROUTING, XMSG_IPFILTER_SET, XMSG_IPFILTER_ASSIGN,
     XMSG_FIREWALL,   XMSG_TIMEZONE, XMSG_NTP,      XMSG_SYSLOG,  XMSG_VPN,          XMSG_NIS,
     XMSG_LDAP,       XMSG_RADIUS,   XMSG_KERBEROS, XMSG_TACACS,  XMSG_LOCALUSERS,   XMSG_USER,
     XMSG_USERLIST,   XMSG_AUTH,     XMSG_SNMP,     XMSG_NFS,     XMSG_CIFS,         XMSG_APPLICATION,
     XMSG_NAT_NOTIFY, XMSG_NOTIFY});

std::size_t placeOf(const XmsPlanned &planned)
{
    return static_cast<std::size_t>(std::ranges::find(ORDER, planned.record.xH.msgtype) - ORDER.begin());
}

/** The stored record of the type and keys of `record`, or none. */
const XasMessage *storedOf(const XasMessage &record, const std::vector<XasMessage> &stored)
{
    const std::string name = xasStoreRecordName(record.xH.msgtype, record);
    const auto found = std::ranges::find_if(
        stored, [&](const XasMessage &other) { return xasStoreRecordName(other.xH.msgtype, other) == name; });
    return found == stored.end() ? nullptr : &*found;
}

/** "ipfilter_set 2": the keys are what the name in the store ends with. */
std::string nameOf(const XasMessage &record)
{
    const std::string stored = xasStoreRecordName(record.xH.msgtype, record);
    const std::size_t key = stored.find('-');
    return msgShortName(record.xH.msgtype) + (key == std::string::npos ? "" : " " + stored.substr(key + 1));
}

/** Builds the setting of one entry of the file; throws XmsError with what is wrong. */
class Planner {
  public:
    Planner(const XmsFileSetting &entry, const std::vector<XasMessage> &records,
            const XmsApplyOptions &options)
        : setting{entry}, stored{records}, apply{options}
    {
    }

    XmsPlanned plan()
    {
        msgtype = xmsTypeFromText(setting.type);
        requireFields();
        XmsSetting built = xmsBuildSetting(msgtype, assignments(true), XasValueCheck::allowed);
        const XasMessage *before = xmsIsKept(msgtype) ? storedOf(built.record, stored) : nullptr;
        built = xmsBuildSetting(msgtype, assignments(false), XasValueCheck::allowed);
        if (before != nullptr)
            complete(built, *before);
        requireSecrets(before);
        xmsRequireFitTexts(built.record);
        return {.name = nameOf(built.record),
                .record = built.record,
                .users = built.users,
                .isStored = before != nullptr && built.users.empty() && isSame(built.record, *before)};
    }

    [[nodiscard]] std::size_t line() const { return where; }

  private:
    [[nodiscard]] bool isMasked(const XmsFileField &field) const
    {
        const XasMsgFields *fields = msgFieldsOf(msgtype);
        const auto found = fields == nullptr ? std::nullopt : xasFindField(*fields, field.assignment.name);
        return found && found->field->isSecret && field.assignment.value == XMS_MASK;
    }

    [[nodiscard]] std::vector<XmsAssignment> assignments(bool withMasks) const
    {
        std::vector<XmsAssignment> list;
        for (const XmsFileField &field : setting.fields) {
            if (withMasks || !isMasked(field))
                list.push_back(field.assignment);
        }
        return list;
    }

    /** Each field by itself, so that the line of a wrong one is known. */
    void requireFields()
    {
        if (msgFieldsOf(msgtype) == nullptr)
            throw XmsError{XmsExit::usage, "its fields are not described, so it cannot be set from a file"};
        for (const XmsFileField &field : setting.fields) {
            where = field.line;
            std::vector<XmsAssignment> one = {field.assignment};
            if (msgtype == XMSG_LOCALUSERS)
                xmsTakeUsers(one, XasValueCheck::anyThatFits);
            XasMessage scratch = xmsDefaultRecord(msgtype);
            xmsAssign(scratch, one);
        }
        where = setting.line;
    }

    void complete(XmsSetting &built, const XasMessage &before) const
    {
        XasMessage base = before;
        if (!apply.keep) {
            base = built.record;
            for (const XmsFileField &field : setting.fields) {
                if (isMasked(field))
                    copyField(base, before, field.assignment.name);
            }
        } else {
            xmsAnnounceUsers(base, built.users);
            xmsAssign(base, built.assignments);
        }
        built.record = base;
    }

    static void copyField(XasMessage &to, const XasMessage &from, const std::string &name)
    {
        const auto field = xasFindField(*msgFieldsOf(to.xH.msgtype), name);
        const auto bytes =
            std::as_bytes(std::span{&from, 1}).subspan(field->place.offset, field->place.width);
        std::ranges::copy(bytes,
                          std::as_writable_bytes(std::span{&to, 1}).subspan(field->place.offset).begin());
    }

    void requireSecrets(const XasMessage *before)
    {
        for (const XmsFileField &field : setting.fields) {
            if (before != nullptr || !isMasked(field))
                continue;
            where = field.line;
            throw XmsError{XmsExit::usage,
                           field.assignment.name +
                               " is masked, and none is stored here; a file with its secrets is "
                               "written by `xms get --all --yaml --secrets`"};
        }
    }

    static bool isSame(const XasMessage &record, XasMessage before)
    {
        xmsAnnounceUsers(before, {});
        return xmsFieldsJson(record) == xmsFieldsJson(before);
    }

    const XmsFileSetting &setting;
    const std::vector<XasMessage> &stored;
    const XmsApplyOptions &apply;
    std::uint32_t msgtype = 0;
    std::size_t where = setting.line;
};

/** How many settings ended how. */
struct Tally {
    std::size_t applied = 0;
    std::size_t refused = 0;
    std::size_t unsent = 0;
    std::size_t stored = 0;
};

std::string tallyText(const Tally &tally, bool isDryRun)
{
    const std::size_t all = tally.applied + tally.refused + tally.unsent + tally.stored;
    std::string text = std::to_string(all) + (all == 1 ? " setting: " : " settings: ");
    if (isDryRun)
        return text + std::to_string(tally.unsent) + " would be sent, " + std::to_string(tally.stored) +
               " as stored";
    text += std::to_string(tally.applied) + " applied, " + std::to_string(tally.refused) + " refused";
    if (tally.unsent != 0)
        text += ", " + std::to_string(tally.unsent) + " not sent";
    return text + ", " + std::to_string(tally.stored) + " as stored";
}

void print(const std::string &line)
{
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

void printTally(const XmsOptions &options, const XmsApplyOptions &apply, const Tally &tally)
{
    if (!options.json)
        return print(tallyText(tally, apply.dryRun));
    print(xmsJsonLine({{"applied", tally.applied},
                       {"refused", tally.refused},
                       {"not_sent", tally.unsent},
                       {"as_stored", tally.stored}}));
}

/** Sends what is to be sent, until one is refused or all are through. */
XmsExit sendAll(const XmsOptions &options, const XmsApplyOptions &apply, const XmsDescriptor &server,
                const std::vector<XmsPlanned> &plan, Tally &tally)
{
    XmsExit worst = XmsExit::applied;
    for (const XmsPlanned &planned : plan) {
        const bool isLeft = planned.isStored && !apply.again;
        if (isLeft)
            ++tally.stored;
        else if (apply.dryRun || worst == XmsExit::noServer || (worst == XmsExit::refused && !apply.goOn))
            ++tally.unsent;
        if (apply.dryRun && !isLeft && !options.json)
            print(planned.name + ": would be sent");
        if (isLeft || tally.unsent != 0)
            continue;
        const XmsOutcome outcome =
            xmsSendSetting(options, server, {planned.record, {}, planned.users}, apply.timeoutSeconds);
        const XmsExit exit = xmsOutcomeExit(outcome);
        exit == XmsExit::applied ? ++tally.applied : ++tally.refused;
        worst = std::max(worst, exit);
    }
    return worst;
}

/** The settings of the file. Throws XmsError when anything is wrong, after saying all of it. */
std::vector<XmsPlanned> readPlan(const XmsApplyOptions &apply, const std::vector<XasMessage> &stored)
{
    std::ifstream file;
    std::vector<std::string> complaints;
    const auto settings = xmsReadSettings(xmsOpenInput(apply.file, file), apply.file, complaints);
    std::vector<XmsPlanned> plan = xmsPlan(settings, stored, apply, complaints);
    for (const std::string &complaint : complaints)
        std::fprintf(stderr, "xms: %s\n", complaint.c_str());
    if (!complaints.empty())
        throw XmsError{XmsExit::usage, std::to_string(complaints.size()) +
                                           (complaints.size() == 1 ? " mistake" : " mistakes") +
                                           ", nothing was sent"};
    return plan;
}

} // namespace

std::span<const std::uint32_t> xmsApplyOrder()
{
    return ORDER;
}

std::vector<XmsPlanned> xmsPlan(std::span<const XmsFileSetting> settings,
                                const std::vector<XasMessage> &stored, const XmsApplyOptions &apply,
                                std::vector<std::string> &complaints)
{
    std::vector<XmsPlanned> plan;
    for (const XmsFileSetting &setting : settings) {
        Planner planner{setting, stored, apply};
        try {
            plan.push_back(planner.plan());
        } catch (const XmsError &error) {
            complaints.push_back(apply.file + ":" + std::to_string(planner.line()) + ": " + setting.type +
                                 ": " + error.what());
        }
    }
    std::ranges::stable_sort(plan, {}, placeOf);
    return plan;
}

XmsExit xmsApplyCommand(const XmsOptions &options, const XmsApplyOptions &apply)
{
    const XmsDescriptor server = xmsConnect(options.socket);
    const std::vector<XmsPlanned> plan = readPlan(apply, xmsAskAllStored(server));
    Tally tally;
    const XmsExit exit = sendAll(options, apply, server, plan, tally);
    printTally(options, apply, tally);
    return exit;
}
