#include "faults/run.h"

#include "faults/tracer.h"
#include "support/daemon.h"

#include <fstream>
#include <span>
#include <sys/msg.h>

namespace fs = std::filesystem;

namespace {

/** The daemon of the machine that dies in the middle of other work. */
constexpr const char *WATCHED = "/r58/sbin/xdd";

constexpr const char *BLOCKS_COUNTED = "/blocks";

std::size_t descriptorsOf(pid_t pid)
{
    const fs::directory_iterator all{"/proc/" + std::to_string(pid) + "/fd"};
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

void endWatched(pid_t parent)
{
    for (const XasProcess &process : xasOtherProcesses()) {
        if (process.command == WATCHED)
            ::kill(process.pid, SIGKILL);
    }
    while (!xasHasUncollectedChild(parent))
        ::usleep(100);
}

/** A message that nobody handles, but which is answered. */
XasSent probe()
{
    return {.message = XasMessageBuilder{XMSG_SSH}.id(4711)};
}

class Conversation : public XasTracedConversation {
  public:
    Conversation(const XasSession &what, const XasCut &where) : session{what}, cut{where}
    {
        session.push_back(probe());
    }

    [[nodiscard]] int queueToRead() const override { return queues.fromXms; }

    void send() override
    {
        const XasSent &next = session.at(number);
        queues.send(next.message);
        if (!next.users.empty())
            queues.send(1, next.users);
        if (isLast())
            xasTakeCalls();
    }

    /** The daemon is done with a message. True when there is another one. */
    bool finish() override
    {
        const auto answer = queues.receive(0ms);
        if (isLast())
            run.answer = answer;
        run.servedAfterwards = number + 1 == session.size() && answer;
        return ++number < session.size();
    }

    [[nodiscard]] bool isLast() const override { return number + 2 == session.size(); }
    [[nodiscard]] bool isAnswered() const override { return session.at(number).answered; }

    std::optional<int> call(pid_t daemon, pid_t pid, XasCall call) override
    {
        run.calls.push_back(std::move(call));
        const XasCall &made = run.calls.back();
        if (cut.kind == XasCutKind::block || made.process != cut.process || made.index != cut.call)
            return std::nullopt;
        run.wasCut = cut.kind != XasCutKind::none;
        if (cut.kind == XasCutKind::kill)
            return ::kill(pid, SIGKILL);
        if (cut.kind == XasCutKind::signal)
            ::kill(pid, cut.value);
        else if (cut.kind == XasCutKind::death)
            endWatched(daemon);
        return cut.kind == XasCutKind::error ? std::optional{cut.value} : std::nullopt;
    }

    void result(std::size_t callNumber, std::int64_t value) override
    {
        run.calls.at(callNumber).result = value;
    }
    [[nodiscard]] std::size_t callCount() const override { return run.calls.size(); }

    XasTestQueues queues;
    XasSession session;
    XasCut cut;
    XasRun run;
    std::size_t number = 0;
};

std::size_t recordsBeforeLast(const XasSession &session)
{
    std::size_t records = 0;
    for (const XasSent &sent : std::span{session}.first(session.size() - 1))
        records += sent.users.empty() ? 1 : 2;
    return records;
}

std::vector<std::string> environmentFor(const XasSession &session, const XasCut &cut)
{
    if (cut.kind != XasCutKind::block)
        return {};
    return {std::string{"LD_PRELOAD="} + XAS_FAILING_MALLOC_PATH,
            "XAS_FAILING_BLOCK=" + std::to_string(cut.value),
            "XAS_FAILING_MESSAGE=" + std::to_string(recordsBeforeLast(session)),
            std::string{"XAS_BLOCKS_COUNTED="} + BLOCKS_COUNTED};
}

/** What is seen of the daemon while it still serves. */
void look(XasRun &run, pid_t daemon)
{
    xasAwaitQuiet(daemon);
    run.descriptors = descriptorsOf(daemon);
    run.leftChildren = xasHasUncollectedChild(daemon);
    for (const XasProcess &process : xasOtherProcesses()) {
        if (process.pid != daemon)
            run.running.push_back(process.command);
    }
    std::ranges::sort(run.running);
}

} // namespace

XasRun xasRunDaemon(const XasSession &session, const XasCut &cut)
{
    ::unlink(BLOCKS_COUNTED);
    xasTakeCalls();
    XasFaultsLog log;
    Conversation conversation{session, cut};
    XasTracer tracer{conversation, log, environmentFor(session, cut)};
    tracer.follow();
    XasRun &run = conversation.run;
    run.hung = tracer.hasHung();
    run.ended = tracer.ended();
    if (!run.ended)
        look(run, tracer.daemon());
    xasEndProcesses();
    run.log = log.take();
    run.commands = xasTakeCalls();
    run.files = xasFilesNow();
    std::ifstream{BLOCKS_COUNTED} >> run.blocks;
    if (cut.kind == XasCutKind::block)
        run.wasCut = cut.value >= 0 && static_cast<unsigned>(cut.value) < run.blocks;
    return std::move(run);
}
