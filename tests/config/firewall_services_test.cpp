// The firewall script's settings.
#include "config/firewall_services.h"

#include "support/apps.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"
#include "support/reply.h"

namespace {

constexpr const char *LIFELIKE = "# Firewall settings, sourced by the firewall script\n"
                                 "#TCP_PUBLIC_SERVICES=\"www\"\n"
                                 "\n"
                                 "INTERFACES=\"eth0 eth1\"\n"
                                 "TCP_PUBLIC_SERVICES=\"www https ssh telnet \"\n"
                                 "UDP_PUBLIC_SERVICES=\"ntp router\" # and more\n"
                                 "\n"
                                 "# REJECT or DROP\n"
                                 "REJECT_METHOD=DENY\n"
                                 "INVISIBLE_TO_PING=maybe\n"
                                 " REJECT_METHOD=kept\n"
                                 "export TRUSTED=\"a=b\"\n";

constexpr XasFirewallCfg CLOSED{.reject_method = 0,
                                .invisible = 0,
                                .ssh = 0,
                                .ssh_port = 22,
                                .telnet = 0,
                                .www = 0,
                                .https = 0,
                                .smb = 0};
constexpr XasFirewallCfg OPEN{.reject_method = 1,
                              .invisible = 1,
                              .ssh = 1,
                              .ssh_port = 22,
                              .telnet = 1,
                              .www = 1,
                              .https = 1,
                              .smb = 1};

std::string text(std::string_view oldText, const XasFirewallCfg &fWallCfg)
{
    XasReplyStatus reply;
    const XasNewText newText = xasFirewallText(oldText, fWallCfg, &reply);
    EXPECT_EQ(reply.rcode, 0U);
    EXPECT_TRUE(newText.complete);
    EXPECT_EQ(newText.tail, "");
    return newText.text;
}

/** The TCP line for these services. */
std::string tcpLine(const XasFirewallCfg &fWallCfg)
{
    return text("TCP_PUBLIC_SERVICES=old\n", fWallCfg);
}

/** The handler with a store of its own, which holds SSH settings with a port when told to. */
class FirewallUpdate : public XasFilesTest {
  protected:
    XasMessageBuilder message{XMSG_FIREWALL};
    std::string path = dir.write("firewall", "TCP_PUBLIC_SERVICES=a\nREJECT_METHOD=b\nINVISIBLE_TO_PING=c\n");
    XasCfgFileList files = xasTestCfgFiles({{"firewall", path}});
    XasLogCapture log;
    XasReplyStatus reply;

    FirewallUpdate()
    {
        ::setenv("XMS_STORE", dir.path("store").c_str(), 1);
        message.set("reject_method=1 invisible=1 ssh=1 telnet=1 www=1");
    }
    ~FirewallUpdate() override { ::unsetenv("XMS_STORE"); }
    FirewallUpdate(const FirewallUpdate &) = delete;
    FirewallUpdate &operator=(const FirewallUpdate &) = delete;

    void storeSshPort(std::uint16_t port) const
    {
        const XasMessage record =
            XasMessageBuilder{XMSG_SSH}.bytes(142, {reinterpret_cast<const char *>(&port), sizeof port});
        dir.write("store/XMSG_SSH", xasMessageBytes(record));
    }

    int update()
    {
        XasMessage msg = message;
        return xasUpdateFirewallCfg(&msg, &files, &reply);
    }
};

using FirewallFile = FirewallUpdate;

} // namespace

TEST(FirewallText, EndsInFrontOfTheRejectMethodWhenThatIsUnknown)
{
    XasFirewallCfg fWallCfg = OPEN;
    for (const std::uint32_t method : {2U, 0xFFFFFFFFU}) {
        fWallCfg.reject_method = method;
        XasReplyStatus reply;
        const XasNewText newText = xasFirewallText(
            "INVISIBLE_TO_PING=no\nREJECT_METHOD=DROP\nINVISIBLE_TO_PING=no\n", fWallCfg, &reply);
        EXPECT_EQ(reply.rstr, "Invalid reject method");
        EXPECT_FALSE(newText.complete);
        EXPECT_EQ(newText.text, "INVISIBLE_TO_PING=\"yes\"\n");
    }
}

TEST(FirewallText, TakesAnUnknownRejectMethodInAFileWithoutItsLine)
{
    XasFirewallCfg fWallCfg = OPEN;
    fWallCfg.reject_method = 2;
    EXPECT_EQ(text("#REJECT_METHOD=DROP\nINVISIBLE_TO_PING=no\n", fWallCfg),
              "#REJECT_METHOD=DROP\nINVISIBLE_TO_PING=\"yes\"\n");
}

TEST(FirewallText, ReplacesAWholeFile)
{
    EXPECT_EQ(text(LIFELIKE, OPEN),
              "# Firewall settings, sourced by the firewall script\n"
              "#TCP_PUBLIC_SERVICES=\"www\"\n"
              "\n"
              "INTERFACES=\"eth0 eth1\"\n"
              "TCP_PUBLIC_SERVICES=\"www https ssh telnet 135 netbios-ssn microsoft-ds\"\n"
              "UDP_PUBLIC_SERVICES=\"ntp router 161 162 30718:30721 135 netbios-ns netbios-dgm\"\n"
              "\n"
              "# REJECT or DROP\n"
              "REJECT_METHOD=\"DROP\"\n"
              "INVISIBLE_TO_PING=\"yes\"\n"
              " REJECT_METHOD=kept\n"
              "export TRUSTED=\"a=b\"\n");
}

TEST(FirewallText, LeavesTheFixedUdpServicesOpenWhenEverythingIsClosed)
{
    EXPECT_EQ(
        text("TCP_PUBLIC_SERVICES=x\nUDP_PUBLIC_SERVICES=x\nREJECT_METHOD=x\nINVISIBLE_TO_PING=x\n", CLOSED),
        "TCP_PUBLIC_SERVICES=\"\"\nUDP_PUBLIC_SERVICES=\"ntp router 161 162 30718:30721 \"\n"
        "REJECT_METHOD=\"REJECT\"\nINVISIBLE_TO_PING=\"no\"\n");
}

TEST(FirewallText, OpensEachTcpServiceByItsOwnSwitch)
{
    XasFirewallCfg fWallCfg = CLOSED;
    fWallCfg.www = 1;
    EXPECT_EQ(tcpLine(fWallCfg), "TCP_PUBLIC_SERVICES=\"www \"\n");
    fWallCfg = CLOSED;
    fWallCfg.https = 2;
    EXPECT_EQ(tcpLine(fWallCfg), "TCP_PUBLIC_SERVICES=\"https \"\n");
    fWallCfg = CLOSED;
    fWallCfg.ssh = 1;
    EXPECT_EQ(tcpLine(fWallCfg), "TCP_PUBLIC_SERVICES=\"ssh \"\n");
    fWallCfg = CLOSED;
    fWallCfg.telnet = 1;
    EXPECT_EQ(tcpLine(fWallCfg), "TCP_PUBLIC_SERVICES=\"telnet \"\n");
    fWallCfg = CLOSED;
    fWallCfg.smb = 1;
    EXPECT_EQ(tcpLine(fWallCfg), "TCP_PUBLIC_SERVICES=\"135 netbios-ssn microsoft-ds\"\n");
}

TEST(FirewallText, NamesSshByItsPortWhenThatIsNot22)
{
    XasFirewallCfg fWallCfg = CLOSED;
    fWallCfg.ssh = fWallCfg.www = fWallCfg.telnet = 1;
    fWallCfg.ssh_port = 2222;
    EXPECT_EQ(tcpLine(fWallCfg), "TCP_PUBLIC_SERVICES=\"www 2222 telnet \"\n");
    fWallCfg.ssh_port = 0;
    EXPECT_EQ(tcpLine(fWallCfg), "TCP_PUBLIC_SERVICES=\"www 0 telnet \"\n");
    fWallCfg.ssh = 0;
    EXPECT_EQ(tcpLine(fWallCfg), "TCP_PUBLIC_SERVICES=\"www telnet \"\n");
}

TEST(FirewallText, OpensTheUdpServicesOfSmbNetworking)
{
    XasFirewallCfg fWallCfg = CLOSED;
    fWallCfg.smb = 1;
    EXPECT_EQ(text("UDP_PUBLIC_SERVICES=\n", fWallCfg),
              "UDP_PUBLIC_SERVICES=\"ntp router 161 162 30718:30721 135 netbios-ns netbios-dgm\"\n");
}

TEST(FirewallText, FindsAKeyInFrontOfTheFirstEqualsSignOnly)
{
    EXPECT_EQ(text("=INVISIBLE_TO_PING=no\nINVISIBLE_TO_PING\nINVISIBLE_TO_PING =no\n"
                   "INVISIBLE_TO_PINGS=no\nX=INVISIBLE_TO_PING\ninvisible_to_ping=no\n====\n",
                   OPEN),
              "INVISIBLE_TO_PING=\"yes\"\nINVISIBLE_TO_PING=\"yes\"\nINVISIBLE_TO_PING =no\n"
              "INVISIBLE_TO_PINGS=no\nX=INVISIBLE_TO_PING\ninvisible_to_ping=no\n====\n");
}

TEST(FirewallText, EndsAReplacedLastLineButNotACopiedOne)
{
    EXPECT_EQ(text("INVISIBLE_TO_PING=no", OPEN), "INVISIBLE_TO_PING=\"yes\"\n");
    EXPECT_EQ(text("TRUSTED=lo", OPEN), "TRUSTED=lo");
}

TEST(FirewallText, LosesTheCarriageReturnsOfReplacedLinesOnly)
{
    EXPECT_EQ(text("TRUSTED=lo\r\nINVISIBLE_TO_PING\r\n\r\n", OPEN),
              "TRUSTED=lo\r\nINVISIBLE_TO_PING=\"yes\"\n\r\n");
}

TEST(FirewallText, TakesALongLineInPiecesOf511Bytes)
{
    const std::string first = "#" + std::string(510, 'c');
    EXPECT_EQ(text(first + "INVISIBLE_TO_PING=no\n", OPEN), first + "INVISIBLE_TO_PING=\"yes\"\n");
}

TEST(FirewallText, DoesNotChangeWhenItIsWrittenTwice)
{
    const std::string once = text(LIFELIKE, OPEN);
    EXPECT_EQ(text(once, OPEN), once);
}

// The editor.

TEST_F(FirewallFile, StaysAsItIsWhenTheNewOneCannotBePutInPlace)
{
    const XasFault fault{"rename", EIO, 1};
    EXPECT_EQ(xasEditFirewallCfgFile(path.c_str(), &OPEN, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new firewall config file");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error renaming new config file \"" + path + "\"\n")));
    EXPECT_EQ(dir.read("firewall"), "TCP_PUBLIC_SERVICES=a\nREJECT_METHOD=b\nINVISIBLE_TO_PING=c\n");
}

// The handler.

TEST_F(FirewallUpdate, NeedsItsFileInTheListAndGivesNoReason)
{
    files = xasTestCfgFiles({{"zebra", path}});
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error determining firewall config file\n")));
}

TEST_F(FirewallUpdate, RefusesAnUnknownRejectMethodAndKeepsTheLiveFile)
{
    message.set("reject_method", 2);
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Invalid reject method");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error editing firewall config file\n")));
    EXPECT_EQ(dir.read("firewall"), "TCP_PUBLIC_SERVICES=a\nREJECT_METHOD=b\nINVISIBLE_TO_PING=c\n");
    EXPECT_EQ(dir.read("firewall.tmp"), "TCP_PUBLIC_SERVICES=\"www ssh telnet \"\n");
    EXPECT_FALSE(dir.has("firewall.old"));
}

TEST_F(FirewallUpdate, ReportsAFileThatCannotBeEdited)
{
    std::filesystem::remove(path);
    EXPECT_EQ(update(), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening firewall config file");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error opening config file \"" + path + "\"\n"),
                                         xasErrorLine("Error editing firewall config file\n")));
}

TEST_F(FirewallUpdate, OpensTheStoredPortOfSsh)
{
    storeSshPort(2222);
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(dir.read("firewall"), "TCP_PUBLIC_SERVICES=\"www 2222 telnet \"\nREJECT_METHOD=\"DROP\"\n"
                                    "INVISIBLE_TO_PING=\"yes\"\n");
    EXPECT_EQ(dir.read("firewall.old"), "TCP_PUBLIC_SERVICES=a\nREJECT_METHOD=b\nINVISIBLE_TO_PING=c\n");
}

TEST_F(FirewallUpdate, OpensSshByItsNameWhenPort22OrNothingIsStored)
{
    EXPECT_EQ(update(), 0);
    EXPECT_THAT(dir.read("firewall"), StartsWith("TCP_PUBLIC_SERVICES=\"www ssh telnet \"\n"));
    storeSshPort(22);
    EXPECT_EQ(update(), 0);
    EXPECT_THAT(dir.read("firewall"), StartsWith("TCP_PUBLIC_SERVICES=\"www ssh telnet \"\n"));
}

TEST_F(FirewallUpdate, ReadsEverySwitchFromItsOwnPlace)
{
    xasWriteFile(path, "TCP_PUBLIC_SERVICES=\nREJECT_METHOD=\nINVISIBLE_TO_PING=\n");
    const auto applied = [&](const char *field) {
        XasMessage msg = XasMessageBuilder{XMSG_FIREWALL}.set(field, 1);
        EXPECT_EQ(xasUpdateFirewallCfg(&msg, &files, &reply), 0);
        return dir.read("firewall");
    };
    const auto file = [](std::string_view tcp, std::string_view method, std::string_view invisible) {
        return "TCP_PUBLIC_SERVICES=\"" + std::string{tcp} + "\"\nREJECT_METHOD=\"" + std::string{method} +
               "\"\nINVISIBLE_TO_PING=\"" + std::string{invisible} + "\"\n";
    };
    EXPECT_EQ(applied("enabled"), file("", "REJECT", "no"));
    EXPECT_EQ(applied("reject_method"), file("", "DROP", "no"));
    EXPECT_EQ(applied("invisible"), file("", "REJECT", "yes"));
    EXPECT_EQ(applied("ssh"), file("ssh ", "REJECT", "no"));
    EXPECT_EQ(applied("telnet"), file("telnet ", "REJECT", "no"));
    EXPECT_EQ(applied("www"), file("www ", "REJECT", "no"));
    EXPECT_EQ(applied("https"), file("https ", "REJECT", "no"));
    EXPECT_EQ(applied("smb"), file("135 netbios-ssn microsoft-ds", "REJECT", "no"));
}
