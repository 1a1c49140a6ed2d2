/** The dispatcher inside the test program: real queues, scripts and files, time that passes only in waits. */
#ifndef XAS_TEST_ROOT_DISPATCHER_FIXTURE_H
#define XAS_TEST_ROOT_DISPATCHER_FIXTURE_H

#include "core/msgqueue.h"
#include "dispatch/process_msg.h"
#include "support/daemon.h"
#include "support/supervision.h"

class XasDispatcherTest : public XasServedTest {
  protected:
    XasDispatcherTest()
    {
        if (xasInitMsgQueues() != 0)
            throw std::runtime_error{"no queues"};
        stubs.put("/bin/killall");
    }

    /** One message from the queue to its end. Returns the dispatcher's result. */
    int process(const XasMessage &msg)
    {
        queues.send(msg);
        return xasProcessMsg(apps, [](XasMessage &) { return XasIdleResult::failed; });
    }

    /** The acknowledgement, which must be there. */
    XasMessage answer()
    {
        const auto msg = queues.receive(std::chrono::milliseconds{0});
        EXPECT_TRUE(msg) << "no acknowledgement";
        return msg.value_or(XasMessage{});
    }

    /** The acknowledgement to a message: "1 0 reason" for success, rcode and rstr. */
    std::string outcome(const XasMessage &msg)
    {
        EXPECT_EQ(process(msg), 0);
        const XasMessage reply = answer();
        EXPECT_EQ(reply.xH.orig_id, msg.xH.id);
        return xasOutcomeIn(reply);
    }

    /** True when nothing was answered. */
    bool isSilent() { return !queues.receive(std::chrono::milliseconds{0}); }

    XasApp &app(std::string_view name) { return *xasFindApp(name, apps); }

    /** A script of an application; its calls are noted. */
    std::string script(std::string_view name, int exitStatus = 0) { return stubs.make(name, exitStatus); }

    /** An application with a start and a stop script of its name. */
    XasTestApp scripted(const std::string &name)
    {
        return {.name = name,
                .startScript = script("start-" + name) + " a",
                .stopScript = script("stop-" + name) + " o"};
    }

    /** The calls so far, by the names of the programs alone. */
    std::vector<std::string> programs()
    {
        std::vector<std::string> names;
        for (const auto &words : stubs.calls())
            names.push_back(words.front().substr(words.front().rfind('/') + 1));
        return names;
    }

    XasTestQueues queues;
};

inline const XasLogLine XAS_NOT_FOUND = xasErrorLine("Could not find application in app list\n");

/** A message of a type with an empty payload and the id 77. */
inline XasMessage xasPlainMessage(std::uint32_t msgtype)
{
    return XasMessageBuilder{msgtype}.id(77);
}

#endif
