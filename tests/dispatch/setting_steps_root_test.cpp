// The Ethernet message around its handler: script parameters, the router, the bonding setting that is
// remembered.
#include "dispatch/setting_steps.h"
#include "support/dispatcher_fixture.h"

namespace {

/** The list holds none of the handler's files, so that the handler fails; the steps around it are the same.
 */
class EthAndRouter : public XasDispatcherTest {
  protected:
    EthAndRouter()
    {
        XasTestApp eth{.name = "eth",
                       .startScript = script("eth-up") + " 9 9 9",
                       .stopScript = script("eth-down") + " 9 9 9"};
        apps = xasTestAppList({eth, scripted("router")});
        app("eth").running = 1;
    }

    /** The error lines since the last call that are not the handler's own. */
    std::vector<std::string> errors()
    {
        std::vector<std::string> found;
        for (const XasLogLine &line : log.take()) {
            if (line.priority == LOG_ERR && line.text.find("application: eth") == std::string::npos)
                found.push_back(line.text);
        }
        return found;
    }

    XasMessage eth(std::uint32_t bonding = 0)
    {
        return XasMessageBuilder{XMSG_ETH}.id(77).set("eth2.marker", 1).set("bonding", bonding);
    }
};

} // namespace

TEST_F(EthAndRouter, StopsNothingWhenTheStopScriptHasNotItsThreeDigits)
{
    app("eth").stopScript = stubs.path("eth-down") + " a 1 1";
    EXPECT_EQ(outcome(eth()), XAS_FAILED);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid network stop script:\n " +
                                                      stubs.path("eth-down") + " a 1 1\n")));
    EXPECT_THAT(stubs.lines(), IsEmpty());
    EXPECT_EQ(app("eth").running, 1);
}

TEST_F(EthAndRouter, UsesTheNewParametersForTheStopAndTheStart)
{
    process(eth());
    EXPECT_THAT(stubs.lines(),
                ElementsAre(stubs.path("eth-down") + " 0 1 0", stubs.path("eth-up") + " 0 1 0"));
}

TEST_F(EthAndRouter, RemembersTheBondingOnlyOfAMessageThatWasAppliedCompletely)
{
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(outcome(eth(1)).front(), '0') << "the handler finds no file";
        EXPECT_EQ(app("eth").stopScript, stubs.path("eth-down") + " 1 1 2");
        EXPECT_FALSE(xasIsBondingOn());
    }
}

TEST_F(EthAndRouter, FailsWithoutARouterInTheList)
{
    xasFreeApp(apps, &app("router"));
    EXPECT_EQ(outcome(eth()).front(), '0');
    EXPECT_EQ(errors().back(), "sw/err-Could not find routing application in app list\n");
    EXPECT_THAT(programs(), ElementsAre("eth-down", "eth-up"));
}

TEST_F(EthAndRouter, LeavesARouterAloneThatIsNotRunning)
{
    process(eth());
    EXPECT_THAT(programs(), ElementsAre("eth-down", "eth-up"));
    EXPECT_EQ(app("router").running, 0);
}

TEST_F(EthAndRouter, RestartsARouterThatRuns)
{
    app("router").running = 1;
    process(eth());
    EXPECT_THAT(programs(), ElementsAre("eth-down", "eth-up", "stop-router", "start-router"));
    EXPECT_EQ(app("router").running, 1);
}

TEST_F(EthAndRouter, FailsWhenTheRouterCannotBeStopped)
{
    app("router").stopScript = script("stop-router", 30);
    app("router").running = 1;
    EXPECT_EQ(outcome(eth()), "0 1 Mount/unmount of NFS share failed");
    EXPECT_EQ(errors().back(), "sw/err-Error stopping routing application\n");
    EXPECT_THAT(programs(), ElementsAre("eth-down", "eth-up", "stop-router"));
}

TEST_F(EthAndRouter, FailsWhenTheRouterCannotBeStarted)
{
    app("router").startScript = script("start-router", 1);
    app("router").running = 1;
    EXPECT_EQ(outcome(eth()), "0 1 Internal error attempting to apply settings");
    EXPECT_EQ(errors().back(), "sw/err-Error starting routing application\n");
    EXPECT_EQ(app("router").running, 0);
}

TEST_F(EthAndRouter, DoesNotReachTheRouterWhenStartingTheNetworkFails)
{
    app("eth").startScript = script("eth-up", 2) + " 0 0 0";
    app("router").running = 1;
    EXPECT_EQ(outcome(eth()), "0 1 Error applying settings");
    EXPECT_EQ(errors().back(), "sw/err-Error starting application\n");
    EXPECT_THAT(programs(), ElementsAre("eth-down", "eth-up"));
}

namespace {

/** The same with all files of the handler, which therefore succeeds. */
class EthWithFiles : public EthAndRouter {
  protected:
    EthWithFiles()
    {
        for (const std::string name :
             {"gatewayprec", "kernel", "modprobe", "bond0", "eth0", "eth1", "network", "altgateway"})
            app("eth").cfgFiles.push_back({.type = name, .path = files.write(name, "")});
    }

    /** A message with neither port in use. */
    XasMessage bonding(std::uint32_t mode) { return XasMessageBuilder{XMSG_ETH}.id(77).set("bonding", mode); }

    /** The codes that both scripts were called with. */
    std::string codes()
    {
        EXPECT_EQ(app("eth").stopScript->substr(stubs.path("eth-down").size()),
                  app("eth").startScript->substr(stubs.path("eth-up").size()));
        return app("eth").startScript->substr(stubs.path("eth-up").size() + 1);
    }

    XasTestDir files;
};

} // namespace

TEST_F(EthWithFiles, ForcesThePortsWhenBondingChangesAndNoMoreTheSecondTime)
{
    EXPECT_EQ(outcome(bonding(1)), XAS_APPLIED);
    EXPECT_EQ(codes(), "1 1 2");
    EXPECT_TRUE(xasIsBondingOn());
    EXPECT_EQ(outcome(bonding(1)), XAS_APPLIED);
    EXPECT_EQ(codes(), "0 0 0");
    EXPECT_EQ(outcome(bonding(2)), XAS_APPLIED);
    EXPECT_EQ(codes(), "1 1 2");
    EXPECT_EQ(outcome(bonding(0)), XAS_APPLIED);
    EXPECT_EQ(codes(), "1 1 1");
    EXPECT_FALSE(xasIsBondingOn());
}

TEST_F(EthWithFiles, ForgetsTheBondingOfAMessageWhoseRouterFailed)
{
    app("router").startScript = script("start-router", 1);
    app("router").running = 1;
    EXPECT_EQ(outcome(bonding(1)), "0 1 Internal error attempting to apply settings");
    EXPECT_FALSE(xasIsBondingOn());
    EXPECT_EQ(outcome(bonding(1)), XAS_APPLIED) << "the router is down now, and left alone";
    EXPECT_EQ(codes(), "1 1 2");
    EXPECT_TRUE(xasIsBondingOn());
}

TEST_F(EthWithFiles, KeepsTheBondingOfTheMessageBeforeWhenTheHandlerFails)
{
    EXPECT_EQ(outcome(bonding(1)), XAS_APPLIED);
    std::remove(files.path("kernel").c_str());
    EXPECT_EQ(outcome(bonding(0)).front(), '0');
    EXPECT_TRUE(xasIsBondingOn());
}
