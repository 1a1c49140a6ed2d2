#include "core/script.h"

#include "core/wait.h"
#include "support/faults.h"
#include "support/supervision.h"

namespace {

class Script : public testing::Test {
  protected:
    XasLogCapture log;
    XasStubs stubs;
};

} // namespace

TEST_F(Script, FailsWhenThereIsNone)
{
    EXPECT_EQ(xasRunScript(std::nullopt), -1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("NULL configuration script\n")));
}

TEST_F(Script, FailsWhenItHasNoWord)
{
    EXPECT_EQ(xasRunScript(""), -1);
    EXPECT_EQ(xasRunScript("  "), -1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error building script  argument list\n"),
                                         xasErrorLine("Error building script    argument list\n")));
}

TEST_F(Script, IsRefusedWhenItsLineIsLongerThan255Characters)
{
    const std::string line = stubs.make("run") + " " + std::string(255, 'x');
    EXPECT_EQ(xasRunScript(line), -1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error building script " + line + " argument list\n")));
    EXPECT_THAT(stubs.calls(), IsEmpty());
}

TEST_F(Script, CountsAsDoneWhenNoChildCanBeMade)
{
    const std::string path = stubs.make("run");
    const XasFault fault{"fork", EAGAIN};
    EXPECT_EQ(xasRunScript(path + " a"), 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("fork " + path + " script failed\n")));
}

TEST_F(Script, FailsWhenItCannotBeWaitedFor)
{
    const std::string path = stubs.make("run");
    const XasFault fault{"waitpid", ECHILD};
    EXPECT_EQ(xasRunScript(path), -1);
    EXPECT_THAT(log.lines(), Contains(xasErrorLine("error waiting for script " + path + " to finish\n")));
}

TEST_F(Script, GivesStatus255WhenItCannotBeExecuted)
{
    EXPECT_EQ(xasRunScript("/missing/script a"), 255);
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("Running /missing/script\n"),
                                         xasErrorLine("exec /missing/script failed\n"),
                                         xasErrorLine("error 255 calling script /missing/script\n")));
}

TEST_F(Script, FailsWhenASignalEndsIt)
{
    const std::string path = stubs.make("run", 0, "kill -9 $$");
    EXPECT_EQ(xasRunScript(path + " a"), -1);
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("Running " + path + "\n"),
                                         xasErrorLine("error calling script " + path + "\n")));
}

TEST_F(Script, GivesItsExitStatusAndLogsIt)
{
    const std::string path = stubs.make("run", 3);
    EXPECT_EQ(xasRunScript(path + " a"), 3);
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("Running " + path + "\n"),
                                         xasErrorLine("error 3 calling script " + path + "\n")));
}

TEST_F(Script, RunsWithTheWordsOfItsLine)
{
    const std::string path = stubs.make("run");
    EXPECT_EQ(xasRunScript(path + " 0  1\t2 'a b'"), 0);
    EXPECT_THAT(stubs.calls(), ElementsAre(ElementsAre(path, "0", "1\t2", "'a", "b'")));
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("Running " + path + "\n")));
}

TEST_F(Script, IsLookedForOnThePathWhenItsNameHasNoSlash)
{
    EXPECT_EQ(xasRunScript("true"), 0);
    EXPECT_EQ(xasRunScript("false"), 1);
}

TEST_F(Script, LetsSignalsBeServedWhileItRuns)
{
    const std::string path = stubs.make(
        "run", 0, "kill -TERM $PPID\nwhile [ ! -e " + stubs.path("served") + " ]; do sleep 0.01; done");
    xasServe([&] { xasWriteFile(stubs.path("served"), ""); });
    EXPECT_EQ(xasRunScript(path), 0);
    EXPECT_TRUE(xasExists(stubs.path("served")));
}
