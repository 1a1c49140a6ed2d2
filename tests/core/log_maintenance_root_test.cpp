// Log maintenance tick by tick, an hour in milliseconds.
#include "core/log_maintenance.h"

#include "support/apps.h"
#include "support/log.h"
#include "support/stub.h"

namespace {

class LogMaintenance : public testing::Test {
  protected:
    LogMaintenance()
    {
        for (const char *program : {"/bin/cp", "/usr/sbin/logrotate", "/bin/killall"})
            stubs.put(program);
        std::remove("/tmp/logrotate.txt");
        std::remove("/tmp/logrotate_debug");
    }
    ~LogMaintenance() override { ::alarm(0); }

    void tick(int times)
    {
        for (int i = 0; i < times; ++i)
            xasMaintainLogs(apps);
    }

    /** Eleven ticks that only copy. */
    void almostAnHour()
    {
        tick(11);
        stubs.forget();
        log.take();
    }

    XasStubs stubs;
    XasLogCapture log;
    XasAppList apps;
};

} // namespace

TEST_F(LogMaintenance, ArmsTheNextAlarm)
{
    tick(1);
    const unsigned left = ::alarm(0);
    EXPECT_GT(left, 290U);
    EXPECT_LE(left, 300U);
}

TEST_F(LogMaintenance, ReadsTheOutputInPiecesOf255Characters)
{
    // 7 + 248 characters fill the first piece; the rest is a line of its own, which begins otherwise.
    stubs.put("/usr/sbin/logrotate", 1, "echo 'error: " + std::string(248, 'x') + "error: y'");
    almostAnHour();
    tick(1);
    EXPECT_THAT(log.take(), ElementsAre(xasInfoLine("Running /usr/sbin/logrotate\n"),
                                        xasErrorLine("error calling script /usr/sbin/logrotate\n"),
                                        xasErrorLine(std::string(248, 'x')), xasErrorLine("y\n")));
}

TEST_F(LogMaintenance, BeginsTheRestartBudgetOfEveryDaemonAnewOnlyOnceAnHour)
{
    apps = xasTestAppList({{.name = "a", .exes = {"/bin/1", "/bin/2"}}, {.name = "b", .exes = {"/bin/3"}}});
    for (XasApp &app : apps) {
        for (XasDaemon &daemon : app.daemons)
            daemon.restarts = 10;
    }
    tick(11);
    EXPECT_EQ(apps.front().daemons[0].restarts, 10);
    tick(1);
    EXPECT_EQ(apps.front().daemons[0].restarts, 0);
    EXPECT_EQ(apps.front().daemons[1].restarts, 0);
    EXPECT_EQ(apps.back().daemons[0].restarts, 0);
}
