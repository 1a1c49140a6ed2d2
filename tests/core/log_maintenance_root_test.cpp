// Log maintenance tick by tick, an hour in milliseconds.
#include "core/log_maintenance.h"

#include "support/apps.h"
#include "support/log.h"
#include "support/stub.h"

namespace {

const std::string COPY = "/bin/cp -f /var/log/debug /var/log/devports /var/log/diag /var/log/general "
                         "/var/log/messages /var/log/network /var/log/secure /var/log/services /var/log/sw "
                         "/var/log/syslog /www/savelogs/";
const std::string ROTATE = "/usr/sbin/logrotate -v /etc/logrotate.conf";
const std::string REOPEN = "/bin/killall -SIGHUP syslogd";

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

TEST_F(LogMaintenance, OnlyCopiesTheLogsAtTheFirstElevenTicks)
{
    tick(11);
    EXPECT_THAT(stubs.lines(), AllOf(testing::SizeIs(11), Each(COPY)));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(LogMaintenance, ArmsTheNextAlarm)
{
    tick(1);
    const unsigned left = ::alarm(0);
    EXPECT_GT(left, 290U);
    EXPECT_LE(left, 300U);
}

TEST_F(LogMaintenance, RotatesTheLogsAtEveryTwelfthTick)
{
    almostAnHour();
    tick(1);
    EXPECT_THAT(stubs.lines(), ElementsAre(COPY, ROTATE, REOPEN));
    EXPECT_THAT(log.take(), ElementsAre(xasInfoLine("Running /usr/sbin/logrotate\n")));
    EXPECT_FALSE(xasExists("/tmp/logrotate.txt"));
    almostAnHour();
    tick(1);
    EXPECT_THAT(stubs.lines(), ElementsAre(COPY, ROTATE, REOPEN));
}

TEST_F(LogMaintenance, LogsTheErrorLinesOfAFailedRotation)
{
    stubs.put("/usr/sbin/logrotate", 1,
              "echo 'reading config'\necho 'error: one: two'\necho ' error: not at the beginning'\n"
              "echo 'error: last' >&2");
    almostAnHour();
    tick(1);
    EXPECT_THAT(log.take(), ElementsAre(xasInfoLine("Running /usr/sbin/logrotate\n"),
                                        xasErrorLine("error calling script /usr/sbin/logrotate\n"),
                                        xasErrorLine("one: two\n"), xasErrorLine("last\n")));
    EXPECT_FALSE(xasExists("/tmp/logrotate.txt"));
    EXPECT_THAT(stubs.lines(), ElementsAre(COPY, ROTATE, REOPEN));
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

TEST_F(LogMaintenance, LogsNoErrorLineWhenTheOutputIsGone)
{
    stubs.put("/usr/sbin/logrotate", 1, "rm /tmp/logrotate.txt");
    almostAnHour();
    tick(1);
    EXPECT_THAT(log.take(), ElementsAre(xasInfoLine("Running /usr/sbin/logrotate\n"),
                                        xasErrorLine("error calling script /usr/sbin/logrotate\n")));
}

TEST_F(LogMaintenance, KeepsTheOutputWhileTheMarkerIsThere)
{
    xasWriteFile("/tmp/logrotate_debug", "");
    stubs.put("/usr/sbin/logrotate", 0, "echo output");
    almostAnHour();
    tick(1);
    EXPECT_EQ(xasReadFile("/tmp/logrotate.txt"), "output\n");
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
