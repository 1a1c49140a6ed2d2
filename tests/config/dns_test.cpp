#include "config/dns.h"

#include "support/apps.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"
#include "support/reply.h"

#include <arpa/inet.h>
#include <cerrno>
#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/** The address record of a text; the unset one of an empty text. */
XasIpAddr addressOf(std::string_view text)
{
    XasIpAddr address{};
    address.is_ipv6 = text.find(':') != std::string_view::npos ? 1 : 0;
    const int family = address.is_ipv6 != 0 ? AF_INET6 : AF_INET;
    if (!text.empty() && ::inet_pton(family, std::string{text}.c_str(), address.address) != 1)
        ADD_FAILURE() << "no address: " << text;
    return address;
}

XasDnsPayload serversOf(std::string_view first, std::string_view second, std::string_view third)
{
    return {.dns1 = addressOf(first), .dns2 = addressOf(second), .dns3 = addressOf(third), .prefer_ipv4 = 0};
}

class DnsHandler : public XasFilesTest {
  protected:
    DnsHandler()
    {
        dir.write("resolv", "192.0.2.1\n");
        dir.write("dnsprec", "IPV4_PRECEDENCE=yes");
    }

    int apply(const XasDnsPayload &payload, std::string_view without = {})
    {
        std::vector<std::pair<std::string, std::string>> files;
        for (const char *type : {"resolv", "dnsprec"}) {
            if (type != without)
                files.emplace_back(type, dir.path(type));
        }
        const XasCfgFileList cfgFiles = xasTestCfgFiles(files);
        XasMessage msg = XasMessageBuilder{XMSG_DNS}.payload(payload);
        return xasUpdateDnsCfg(&msg, &cfgFiles, &reply);
    }

    XasLogCapture log;
    XasReplyStatus reply;
};

} // namespace

TEST(DnsText, IsEmptyWithoutServers)
{
    EXPECT_EQ(xasDnsText({}), "");
}

TEST(DnsText, SkipsServersThatAreUnset)
{
    EXPECT_EQ(xasDnsText(serversOf("", "192.0.2.2", "")), "192.0.2.2\n");
}

TEST(DnsText, ListsBareAddressesOneALineInTheirOrder)
{
    EXPECT_EQ(xasDnsText(serversOf("192.0.2.3", "2001:db8::53", "10.0.0.1")),
              "192.0.2.3\n2001:db8::53\n10.0.0.1\n");
}

TEST(DnsPrecText, EndsWithoutALineFeed)
{
    EXPECT_EQ(xasDnsPrecText(true), "IPV4_PRECEDENCE=yes");
    EXPECT_EQ(xasDnsPrecText(false), "IPV4_PRECEDENCE=no");
}

TEST(DnsDeathTest, NeedsItsArgumentsAndItsMessageType)
{
    XasReplyStatus reply;
    const XasCfgFileList cfgFiles;
    XasMessage msg = XasMessageBuilder{XMSG_HOSTNAME};
    EXPECT_DEATH(xasUpdateDnsCfg(nullptr, &cfgFiles, &reply), "msg != \\(\\(void \\*\\)0\\)");
    EXPECT_DEATH(xasUpdateDnsCfg(&msg, &cfgFiles, &reply), "XMSG_DNS == msg->xH.msgtype");
    msg.xH.msgtype = XMSG_DNS;
    EXPECT_DEATH(xasUpdateDnsCfg(&msg, nullptr, &reply), "cfgFiles != \\(\\(void \\*\\)0\\)");
    EXPECT_DEATH(xasEditDNSCfgFile("/x", nullptr, &reply), "dnsInfo != \\(\\(void \\*\\)0\\)");
}

TEST_F(DnsHandler, FailsWithoutTheServersFile)
{
    EXPECT_EQ(apply({}, "resolv"), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error determining dns config file");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error determining config file for dns\n")));
    EXPECT_EQ(dir.read("dnsprec"), "IPV4_PRECEDENCE=yes");
}

TEST_F(DnsHandler, RollsTheServersBackWithoutThePrecedenceFile)
{
    EXPECT_EQ(apply(serversOf("192.0.2.9", "", ""), "dnsprec"), 1);
    EXPECT_EQ(xasReplyText(reply), "1 Error determining dns precedence config file");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error determining precedence config file for dns\n")));
    EXPECT_EQ(dir.read("resolv"), "192.0.2.1\n");
    EXPECT_FALSE(dir.has("resolv.old"));
}

TEST_F(DnsHandler, RestoresNothingWhenTheServersFileIsNotThere)
{
    std::remove(dir.path("resolv").c_str());
    EXPECT_EQ(apply({}), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening DNS config file");
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error opening config file \"" + dir.path("resolv") + "\"\n"),
                            xasErrorLine("Error editing DNS config file\n")));
    EXPECT_EQ(dir.read("dnsprec"), "IPV4_PRECEDENCE=yes");
}

TEST_F(DnsHandler, ReportsServersThatCannotBeSavedAndRestoresNothing)
{
    const XasFault fault{"rename", EIO, 1, 1};
    EXPECT_EQ(apply(serversOf("192.0.2.9", "", "")), 1);
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new DNS config file");
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error renaming new config file \"" + dir.path("resolv") + "\"\n"),
                            xasErrorLine("Error editing DNS config file\n")));
    EXPECT_EQ(dir.read("resolv"), "192.0.2.1\n");
}

TEST_F(DnsHandler, RollsTheServersBackWhenThePrecedenceFileCannotBeSaved)
{
    const XasFault fault{"rename", EIO, 3, 1};
    EXPECT_EQ(apply(serversOf("192.0.2.9", "", "")), 1);
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new DNS precedence config file");
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error renaming new config file \"" + dir.path("dnsprec") + "\"\n"),
                            xasErrorLine("Error editing DNS precedence config file\n")));
    EXPECT_EQ(dir.read("resolv"), "192.0.2.1\n");
    EXPECT_EQ(dir.read("dnsprec"), "IPV4_PRECEDENCE=yes");
}

TEST_F(DnsHandler, RollsTheServersBackWhenThePrecedenceFileCannotBeOpened)
{
    dir.write("dnsprec.tmp/inside", ""); // a directory stands where the temporary should be
    EXPECT_EQ(apply(serversOf("192.0.2.9", "", "")), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening DNS precedence config file");
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error opening output file \"" + dir.path("dnsprec.tmp") + "\"\n"),
                            xasErrorLine("Error editing DNS precedence config file\n")));
    EXPECT_EQ(dir.read("resolv"), "192.0.2.1\n");
}

TEST_F(DnsHandler, WritesBothFilesAndKeepsTheirOldContent)
{
    XasDnsPayload payload = serversOf("192.0.2.9", "", "2001:db8::1");
    payload.prefer_ipv4 = 0;
    EXPECT_EQ(apply(payload), 0);
    EXPECT_EQ(dir.read("resolv"), "192.0.2.9\n2001:db8::1\n");
    EXPECT_EQ(dir.read("resolv.old"), "192.0.2.1\n");
    EXPECT_EQ(dir.read("dnsprec"), "IPV4_PRECEDENCE=no");
    EXPECT_EQ(dir.read("dnsprec.old"), "IPV4_PRECEDENCE=yes");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(DnsHandler, PrefersIPv4ForAnyNonZeroFlag)
{
    XasDnsPayload payload{};
    payload.prefer_ipv4 = 0x80000000U;
    EXPECT_EQ(apply(payload), 0);
    EXPECT_EQ(dir.read("dnsprec"), "IPV4_PRECEDENCE=yes");
    EXPECT_EQ(dir.read("resolv"), "");
}

TEST_F(DnsHandler, MakesThePrecedenceFileWhenItIsNotThere)
{
    std::remove(dir.path("dnsprec").c_str());
    EXPECT_EQ(apply({}), 0);
    EXPECT_EQ(dir.read("dnsprec"), "IPV4_PRECEDENCE=no");
    EXPECT_FALSE(dir.has("dnsprec.old"));
}
