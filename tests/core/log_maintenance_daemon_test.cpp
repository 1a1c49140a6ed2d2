// The ticks of the built daemon's log maintenance, made to come by sending SIGALRM.
#include "support/daemon.h"

namespace {

const std::string COPY = "/bin/cp -f /var/log/debug /var/log/devports /var/log/diag /var/log/general "
                         "/var/log/messages /var/log/network /var/log/secure /var/log/services /var/log/sw "
                         "/var/log/syslog /www/savelogs/";
const std::string ROTATE = "/usr/sbin/logrotate -v /etc/logrotate.conf";
const std::string REOPEN = "/bin/killall -SIGHUP syslogd";

constexpr const char *OUTPUT = "/tmp/logrotate.txt";

const XasLogLine RUNNING = xasInfoLine("Running /usr/sbin/logrotate\n");
const XasLogLine FAILED = xasErrorLine("error calling script /usr/sbin/logrotate\n");

class DaemonLogMaintenance : public testing::Test {
  protected:
    DaemonLogMaintenance() { daemon.stubs.put("/bin/cp"); }

    void start()
    {
        daemon.start({});
        daemon.ask(XasMessageBuilder{XMSG_SSH});
        daemon.stubs.forget();
        daemon.log.clear();
    }

    /** One tick, which calls `calls` programs. */
    void tick(std::size_t calls = 1)
    {
        const std::size_t before = daemon.stubs.calls().size();
        daemon.signal(SIGALRM);
        ASSERT_TRUE(daemon.stubs.await(before + calls));
    }

    /** Twelve ticks, the last of which is over. */
    void rotate()
    {
        for (int i = 1; i < 12; ++i)
            tick();
        tick(3);
        daemon.ask(XasMessageBuilder{XMSG_SSH});
    }

    XasTestDaemon daemon;
};

} // namespace

TEST_F(DaemonLogMaintenance, CopiesTheLogsAtEveryTickAndRotatesThemAtEveryTwelfth)
{
    start();
    std::vector<std::string> expected;
    for (int hour = 0; hour < 2; ++hour) {
        for (int i = 0; i < 11; ++i) {
            tick();
            expected.push_back(COPY);
        }
        EXPECT_EQ(daemon.stubs.lines(), expected);
        EXPECT_EQ(daemon.log.lines().size(), static_cast<std::size_t>(hour));
        tick(3);
        expected.insert(expected.end(), {COPY, ROTATE, REOPEN});
        EXPECT_EQ(daemon.stubs.lines(), expected);
    }
    EXPECT_THAT(daemon.log.lines(), ElementsAre(RUNNING, RUNNING));
    daemon.ask(XasMessageBuilder{XMSG_SSH});
    EXPECT_FALSE(xasExists(OUTPUT));
}

TEST_F(DaemonLogMaintenance, LogsTheErrorsOfAFailedRotation)
{
    const std::string longTail(300, 'x');
    daemon.stubs.put(
        "/usr/sbin/logrotate", 1,
        "echo 'reading config file'; echo 'error: first.conf:3 unknown option' >&2; echo 'the error: none'; "
        "echo ' error: none'; echo 'error:none'; echo 'error: " +
            longTail + "'; printf 'error: last'");
    start();
    rotate();
    EXPECT_THAT(daemon.log.lines(),
                ElementsAre(RUNNING, FAILED, xasErrorLine("first.conf:3 unknown option\n"),
                            xasErrorLine(longTail.substr(0, 248)), xasErrorLine("last")));
    EXPECT_EQ(daemon.stubs.lines().back(), REOPEN);
    EXPECT_FALSE(xasExists(OUTPUT));
}

TEST_F(DaemonLogMaintenance, LogsNoErrorsOfARotationThatSucceeded)
{
    daemon.stubs.put("/usr/sbin/logrotate", 0, "echo 'error: harmless'");
    start();
    rotate();
    EXPECT_THAT(daemon.log.lines(), ElementsAre(RUNNING));
    EXPECT_FALSE(xasExists(OUTPUT));
}

TEST_F(DaemonLogMaintenance, KeepsTheRotationsOutputWhileTheMarkerIsThere)
{
    daemon.stubs.put("/usr/sbin/logrotate", 1, "echo 'error: seen'; echo done >&2");
    xasWriteFile("/tmp/logrotate_debug", "");
    start();
    rotate();
    EXPECT_EQ(xasReadFile(OUTPUT), "error: seen\ndone\n");
    EXPECT_THAT(daemon.log.lines(), ElementsAre(RUNNING, FAILED, xasErrorLine("seen\n")));
}

TEST_F(DaemonLogMaintenance, LogsTheFailureAloneWhenTheOutputIsGone)
{
    daemon.stubs.put("/usr/sbin/logrotate", 2, "rm " + std::string{OUTPUT});
    start();
    rotate();
    EXPECT_THAT(daemon.log.lines(), ElementsAre(RUNNING, FAILED));
    EXPECT_EQ(daemon.stubs.lines().back(), REOPEN);
}

TEST_F(DaemonLogMaintenance, CountsARotationThatWasKilledAsFailed)
{
    daemon.stubs.put("/usr/sbin/logrotate", 0, "echo 'error: half'; kill -9 $$");
    start();
    rotate();
    EXPECT_THAT(daemon.log.lines(), ElementsAre(RUNNING, FAILED, xasErrorLine("half\n")));
}
