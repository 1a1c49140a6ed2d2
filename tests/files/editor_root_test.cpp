// What editors do when the disk fills up under them, beside what all settings share.
#include "config/firewall_services.h"
#include "config/hostname.h"
#include "config/ntp.h"
#include "config/routing.h"
#include "config/syslog.h"

#include "support/hosts.h"
#include "support/log.h"
#include "support/reply.h"
#include "support/small_disk.h"

namespace {

const XasLogLine NOT_PRINTED = xasErrorLine("Error printing line to file\n");

/** `first`, then comments that fill the file to the last byte that the disk takes, less `room`. */
std::string filled(const std::string &first, std::size_t room = 0)
{
    std::string text = first;
    while (text.size() + 100 < XasSmallDisk::FILE_SIZE - room)
        text += "#" + std::string(62, 'c') + "\n";
    text += "#" + std::string(XasSmallDisk::FILE_SIZE - room - text.size() - 2, 'c') + "\n";
    return text;
}

class FullDisk : public testing::Test {
  protected:
    XasSmallDisk disk;
    XasLogCapture log;
    XasReplyStatus reply;
};

} // namespace

TEST_F(FullDisk, LeavesTheSyslogConfigurationAndSaysThatItCouldNotBeSavedForAForwardingRule)
{
    const std::string text = filled("mail.*\t/a\n", 50);
    const std::string path = disk.write("syslog.conf", text);
    XasSyslogPayload sysLogInfo{};
    sysLogInfo.remotes[0] = xasNamedHost("loghost");
    EXPECT_EQ(xasEditSyslogCfgFile(path.c_str(), &sysLogInfo, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new syslog config file");
    EXPECT_THAT(log.lines(),
                ElementsAre(NOT_PRINTED, xasErrorLine("Error printing line to syslog config file\n")));
    EXPECT_EQ(disk.read("syslog.conf"), text);
    EXPECT_FALSE(disk.has("syslog.conf.old"));
}

TEST_F(FullDisk, LeavesARoutingFileAndSaysOnceThatItCouldNotBeSaved)
{
    const std::string text = filled("hostname r\n");
    const std::string path = disk.write("zebra.conf", text);
    XasRoutingPayload routerCfg{};
    routerCfg.static_enabled = 1;
    EXPECT_EQ(xasEditZebraCfgFile(path.c_str(), &routerCfg, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new firewall config file");
    EXPECT_THAT(log.lines(), ElementsAre(NOT_PRINTED));
    EXPECT_EQ(disk.read("zebra.conf"), text);
    EXPECT_FALSE(disk.has("zebra.conf.old"));
}

TEST_F(FullDisk, LeavesTheFirewallSettingsAndNamesAnotherFileForAComment)
{
    const std::string text = filled("INVISIBLE_TO_PING=x\n");
    const std::string path = disk.write("firewall", text);
    const XasFirewallCfg fWallCfg{};
    EXPECT_EQ(xasEditFirewallCfgFile(path.c_str(), &fWallCfg, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(),
                ElementsAre(NOT_PRINTED, xasErrorLine("Error printing line to DNS config file\n")));
    EXPECT_EQ(disk.read("firewall"), text);
}

TEST_F(FullDisk, LeavesTheFirewallSettingsAndNamesThemForASetting)
{
    const std::string setting = "INVISIBLE_TO_PING=x\n";
    const std::string text = filled("", setting.size()) + setting;
    ASSERT_EQ(text.size(), 4096U);
    const std::string path = disk.write("firewall", text);
    const XasFirewallCfg fWallCfg{};
    EXPECT_EQ(xasEditFirewallCfgFile(path.c_str(), &fWallCfg, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(),
                ElementsAre(NOT_PRINTED, xasErrorLine("Error printing line to firewall config file\n")));
    EXPECT_EQ(disk.read("firewall"), text);
}

TEST_F(FullDisk, LeavesTheHostsFileAndTellsALineThatIsCopiedFromTheFirst)
{
    const std::string text = filled("192.168.10.1\tgateway\n");
    const std::string path = disk.write("hosts", text);
    XasHostnamePayload hostname{};
    xasSetFieldText(hostname.hostname, "console"); // its line is new, the last of the copied ones has no room
    EXPECT_EQ(xasEditHostsFile(path.c_str(), &hostname, &reply), 1);
    EXPECT_EQ(log.lines().back(), xasErrorLine("Error printing other line to hostname config file\n"));
    EXPECT_EQ(disk.read("hosts"), text);
    EXPECT_FALSE(disk.has("hosts.old"));
}
