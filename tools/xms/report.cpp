#include "xms/report.h"

#include "auth/user_message.h"
#include "msg/fields.h"
#include "msg/type_names.h"
#include "msg/values.h"
#include "wire/message_names.h"
#include "xms/protocol.h"
#include "xms/secrets.h"
#include "xms/setting.h"

#include <algorithm>
#include <cstdio>

namespace {

/** Puts the events of a recording together to steps. */
class Reporter {
  public:
    Reporter(XmsReport &all, bool isOpen) : report{all}, withSecrets{isOpen} {}

    void take(const XmsRecordedTraffic &recorded)
    {
        const XmsTraffic traffic = withSecrets ? recorded.traffic : xmsMasked(recorded.traffic);
        noteTime(traffic.timeMs);
        if (traffic.toDaemon && xmsUserCount(traffic.bytes.size()) && !report.steps.empty())
            return addUsers(traffic);
        if (isAnswer(traffic))
            return addAnswer(traffic, xmsTrafficMessage(traffic));
        report.steps.push_back(stepOf(traffic));
        last = report.steps.size() - 1;
    }

    void take(const XmsLogLine &line)
    {
        noteTime(line.timeMs);
        const auto awaited = std::ranges::find(report.steps, XmsStepEnd::unanswered, &XmsReportStep::end);
        std::vector<std::string> &log = awaited != report.steps.end() ? awaited->log
                                        : report.steps.empty()        ? report.before
                                                                      : report.steps.back().log;
        log.push_back(withSecrets ? line.text : secrets.hide(line.text));
    }

    void take(const XmsFileChange &change)
    {
        noteTime(change.timeMs);
        if (!report.steps.empty())
            report.steps[last].changes.push_back(withSecrets ? change : xmsMaskedChange(change, secrets));
    }

    XmsKnownSecrets secrets;

  private:
    void noteTime(std::int64_t timeMs)
    {
        if (report.beginMs == 0)
            report.beginMs = timeMs;
        report.endMs = std::max(report.endMs, timeMs);
    }

    /** The step that the record answers. */
    std::vector<XmsReportStep>::iterator askedBy(const XasMessage &answer)
    {
        return std::ranges::find_if(report.steps, [&](const XmsReportStep &step) {
            return step.end == XmsStepEnd::unanswered && step.id == answer.xH.orig_id;
        });
    }

    bool isAnswer(const XmsTraffic &traffic)
    {
        const XasMessage record = xmsTrafficMessage(traffic);
        return !traffic.toDaemon && record.xH.msgtype == XMSG_ACKNAK && askedBy(record) != report.steps.end();
    }

    void addAnswer(const XmsTraffic &traffic, const XasMessage &answer)
    {
        const auto step = askedBy(answer);
        const auto reply = xasReadPayload<XasReplyPayload>(answer);
        step->end = reply.success != 0 ? XmsStepEnd::applied : XmsStepEnd::refused;
        step->tookMs = std::max<std::int64_t>(traffic.timeMs - step->timeMs, 0);
        step->rcode = reply.rcode;
        step->reason =
            withSecrets ? std::string{xasFieldText(reply.rstr)} : secrets.hide(xasFieldText(reply.rstr));
        last = static_cast<std::size_t>(step - report.steps.begin());
    }

    static void addFields(XmsReportStep &step, std::span<const std::byte> block, const XasMsgFields &fields,
                          const std::string &prefix)
    {
        for (const XasMsgFieldAt &where : xasListFields(fields)) {
            if (!xasIsZero(block, where.place) && xasIsUsed(block, where))
                step.fields.emplace_back(prefix + where.name, msgValueText(block, where));
        }
    }

    void addUsers(const XmsTraffic &traffic)
    {
        std::vector<std::byte> bytes = traffic.bytes;
        for (std::size_t user = 0; user < xmsUserCount(bytes.size()).value_or(0); ++user)
            addFields(report.steps.back(), xmsUserBlock(bytes, user), XAS_LISTED_USER_MESSAGE,
                      "user" + std::to_string(user + 1) + ".");
    }

    static XmsReportStep stepOf(const XmsTraffic &traffic)
    {
        XmsReportStep step;
        step.timeMs = traffic.timeMs;
        step.toDaemon = traffic.toDaemon;
        if (traffic.bytes.size() != XAS_MESSAGE_SIZE) {
            step.title = "odd record of " + std::to_string(traffic.bytes.size()) + " bytes";
            return step;
        }
        const XasMessage record = xmsTrafficMessage(traffic);
        const XasMsgHeader &head = record.xH;
        step.msgtype = head.msgtype;
        step.title = msgShortName(head.msgtype);
        step.from = nameOr(xasSenderName(head.sender), head.sender) + " " +
                    nameOr(xasActionName(head.action), head.action);
        step.id = head.id;
        step.answers = head.orig_id;
        if (traffic.toDaemon && head.action == XAS_ACTION_SET && xmsIsAnswered(head.msgtype))
            step.end = XmsStepEnd::unanswered;
        if (const XasMsgFields *fields = msgFieldsOf(head.msgtype))
            addFields(step, std::as_bytes(std::span{&record, 1}), *fields, "");
        return step;
    }

    static std::string nameOr(std::string_view name, std::uint32_t number)
    {
        return name.empty() ? std::to_string(number) : std::string{name};
    }

    XmsReport &report;
    bool withSecrets;
    std::size_t last = 0; /**< the step that the daemon told of last */
};

} // namespace

XmsReport xmsReportOf(std::istream &recording, const std::string &name, bool withSecrets)
{
    XmsReport report;
    report.name = name;
    report.hasSecrets = withSecrets;
    std::vector<XmsRecordedEvent> events;
    Reporter reporter{report, withSecrets};
    xmsReadRecording(recording, name, [&](XmsRecordedEvent event) {
        if (const auto *recorded = std::get_if<XmsRecordedTraffic>(&event))
            reporter.secrets.learn(recorded->traffic); // all of them, for old values stand in files too
        events.push_back(std::move(event));
    });
    for (const XmsRecordedEvent &event : events)
        std::visit([&](const auto &each) { reporter.take(each); }, event);
    return report;
}

XmsExit xmsReportCommand(const XmsOptions &options, const std::string &path)
{
    std::ifstream file;
    const std::string page = xmsReportPage(xmsReportOf(xmsOpenInput(path, file), path, options.secrets));
    std::fputs(page.c_str(), stdout);
    return XmsExit::applied;
}
