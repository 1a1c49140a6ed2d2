// Time, logging, time zone and routing messages through the built daemon: files, acknowledgement and log.
#include "support/hosts.h"
#include "support/message_files.h"

namespace {

XasLogLine updateFailed(const std::string &application)
{
    return xasErrorLine("Error updating configuration for application: " + application + "\n");
}

class DaemonNtp : public XasMessageFilesTest {
  protected:
    DaemonNtp() : XasMessageFilesTest{"ntp", {"stepTickers", "ntp"}}
    {
        files.write("stepTickers", "old\n");
        files.write("ntp", "server old\n");
    }

    static XasMessageBuilder message(std::uint32_t sync, std::uint32_t poll)
    {
        return XasMessageBuilder{XMSG_NTP}
            .set("enabled", 1)
            .set("sync", sync)
            .set("poll", poll)
            .set("server1=one server2=10.0.0.2 server3=");
    }
};

class DaemonSyslog : public XasMessageFilesTest {
  protected:
    DaemonSyslog() : XasMessageFilesTest{"syslog", {"syslog", "logrotate"}}
    {
        files.write("syslog", "local0.*    /var/log/network\n");
        files.write("logrotate", "size 1k\n");
    }

    static XasMessageBuilder message(std::uint32_t level)
    {
        return XasMessageBuilder{XMSG_SYSLOG}.set("local0", level).set("remote1= remote2= log_size=64");
    }
};

class DaemonTimezone : public XasMessageFilesTest {
  protected:
    DaemonTimezone() : XasMessageFilesTest{"timezone", {"tzpathbase", "cfglink"}}
    {
        files.write("tzpathbase/Europe/Berlin", "TZif2");
        files.write("cfglink", "old");
    }
};

class DaemonRouting : public XasMessageFilesTest {
  protected:
    DaemonRouting() : XasMessageFilesTest{"router", {"zebra", "ripd"}}
    {
        files.write("zebra", "hostname a\nip route 10.0.0.0 255.0.0.0 10.0.0.1\n");
        files.write("ripd", "router rip\n!\nline vty\n");
    }
};

} // namespace

TEST_F(DaemonNtp, RefusesAnUnknownPollingType)
{
    start();
    EXPECT_EQ(outcome(message(1, 2)), "0 1 Invalid NTP polling type");
    EXPECT_THAT(logLines(), ElementsAre(xasErrorLine("Invalid NTP polling type\n"), updateFailed("ntp")));
    EXPECT_EQ(files.read("stepTickers"), "old\n");
}

TEST_F(DaemonNtp, FailsWithoutAReasonForAStepFileThatCannotBeEmptied)
{
    files.remove("stepTickers");
    start();
    EXPECT_EQ(outcome(message(0, 0)), "0 0 ");
    EXPECT_THAT(logLines(), ElementsAre(renameOldFailed("stepTickers"), updateFailed("ntp")));
    EXPECT_EQ(files.read("stepTickers"), "");
    EXPECT_EQ(files.read("ntp"), "server old\n");
}

TEST_F(DaemonNtp, WritesBothFiles)
{
    start();
    EXPECT_EQ(outcome(message(1, 0)), "1 0 ");
    EXPECT_EQ(files.read("stepTickers"), "one\n10.0.0.2\n\n");
    EXPECT_EQ(files.read("ntp"), "server one\nserver 10.0.0.2\n");
    EXPECT_EQ(outcome(message(0, 0)), "1 0 ");
    EXPECT_EQ(files.read("stepTickers"), "");
    EXPECT_EQ(files.read("stepTickers.old"), "one\n10.0.0.2\n\n");
    EXPECT_EQ(files.read("ntp"), "#server one\n#server 10.0.0.2\n");
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(DaemonSyslog, RefusesAnUnknownLevelWithoutAReason)
{
    start();
    EXPECT_EQ(outcome(message(5)), "0 0 ");
    EXPECT_THAT(logLines(), ElementsAre(updateFailed("syslog")));
    EXPECT_EQ(files.read("syslog"), "local0.*    /var/log/network\n");
    EXPECT_EQ(files.read("logrotate"), "size 1k\n");
}

TEST_F(DaemonSyslog, WritesBothFiles)
{
    start();
    EXPECT_EQ(outcome(message(3)), "1 0 ");
    EXPECT_EQ(files.read("syslog"), "local0.err    /var/log/network\n");
    EXPECT_EQ(files.read("logrotate"), "size 64k\n");
    EXPECT_THAT(commands(), ElementsAre("/bin/killall syslogd", "/bin/killall klogd"));
}

TEST_F(DaemonTimezone, FailsWithoutAReasonForAZoneWithoutAFile)
{
    start();
    EXPECT_EQ(outcome(XasMessageBuilder{XMSG_TIMEZONE}.set("zone", "Mars")), "0 0 ");
    EXPECT_THAT(logLines(), ElementsAre(xasErrorLine("timezone file " + files.path("tzpathbase/Mars") +
                                                     " does not exist\n"),
                                        updateFailed("timezone")));
    EXPECT_EQ(files.read("cfglink"), "old");
}

TEST_F(DaemonTimezone, PointsTheLinkAtTheZone)
{
    start();
    EXPECT_EQ(outcome(XasMessageBuilder{XMSG_TIMEZONE}.set("zone", "Europe/Berlin")), "1 0 ");
    EXPECT_EQ(std::filesystem::read_symlink(files.path("cfglink")), files.path("tzpathbase/Europe/Berlin"));
    EXPECT_THAT(logLines(), IsEmpty());
}

TEST_F(DaemonRouting, FailsWithoutAReasonWhereAFileIsMissing)
{
    start("ripd");
    EXPECT_EQ(outcome(XasMessageBuilder{XMSG_ROUTING}), "0 0 ");
    EXPECT_THAT(logLines(),
                ElementsAre(xasErrorLine("Error determining router config file\n"), updateFailed("router")));
}

TEST_F(DaemonRouting, WritesBothFiles)
{
    start();
    EXPECT_EQ(outcome(XasMessageBuilder{XMSG_ROUTING}.set("rip_enabled", 1).set("rip_version", 2)), "1 0 ");
    EXPECT_EQ(files.read("zebra"), "hostname a\n");
    EXPECT_EQ(files.read("ripd"),
              "interface eth0\n  ip rip send version 1 2\n  ip rip receive version 1 2\n!\n"
              "interface eth1\n  ip rip send version 1 2\n  ip rip receive version 1 2\n!\n"
              "router rip\n  network eth0\n  network eth1\n!\nline vty\n");
    EXPECT_THAT(logLines(), IsEmpty());
}
