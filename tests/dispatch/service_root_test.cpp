// A script's exit status is never lost, whatever dies at the same moment.
#include "core/script.h"
#include "support/supervision.h"

namespace {

constexpr int ROUNDS = 1000;

class ScriptStatus : public XasServedTest {
  protected:
    ScriptStatus()
    {
        apps = xasTestAppList({{.name = "web", .exes = {"/bin/sleep 1000", "/bin/sleep 1000"}}});
    }

    std::vector<XasDaemon> &daemons() { return apps.front().daemons; }

    /** Both daemons have died and have been started again. */
    bool areRenewed(const std::array<pid_t, 2> &before)
    {
        xasWait(0ms);
        return daemons()[0].pid > 0 && daemons()[0].pid != before[0] && daemons()[1].pid > 0 &&
               daemons()[1].pid != before[1];
    }

    XasTestDir dir;
};

} // namespace

TEST_F(ScriptStatus, IsNeverLostWhileDaemonsDieAndStart)
{
    // Each script ends both daemons: before its own end, at it, and one before and one at it.
    const std::array scripts = {dir.write("before", "kill -9 $1 $2\nexit $3\n"),
                                dir.write("at", "{ kill -9 $1; kill -9 $2; } &\nexit $3\n"),
                                dir.write("both", "kill -9 $1\nkill -9 $2 &\nexit $3\n")};
    for (XasDaemon &daemon : daemons())
        xasStartDaemon(&daemon, apps.front());
    for (int round = 0; round < ROUNDS; ++round) {
        const std::array pids = {daemons()[0].pid, daemons()[1].pid};
        const int status = round % 256;
        const std::string line = "/bin/sh " + scripts[static_cast<std::size_t>(round) % scripts.size()] +
                                 " " + std::to_string(pids[0]) + " " + std::to_string(pids[1]) + " " +
                                 std::to_string(status);
        ASSERT_EQ(xasRunScript(line), status) << "round " << round;
        ASSERT_TRUE(xasEventually([&] { return areRenewed(pids); })) << "round " << round;
        xasResetRestarts(apps);
    }
    const auto lines = log.lines();
    const auto count = [&](std::string_view part) {
        return std::ranges::count_if(
            lines, [&](const XasLogLine &one) { return one.text.find(part) != std::string::npos; });
    };
    EXPECT_EQ(count("WIFSIGNALED on sig Child exited\n"), 2 * ROUNDS);
    EXPECT_EQ(count("] /bin/sleep started\n"), 2 + 2 * ROUNDS);
}
