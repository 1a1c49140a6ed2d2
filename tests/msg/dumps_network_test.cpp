// The dumps of network settings and of answers, against lines worked out by hand.
#include "msg/print.h"
#include "support/hosts.h"
#include "support/message.h"
#include "support/test.h"

using namespace std::string_view_literals;

TEST(MsgDumpHostname, TextsEndWithTheirFields)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_HOSTNAME}), "hostname:  domain: \n");
    EXPECT_EQ(
        msgAllText(XasMessageBuilder{XMSG_HOSTNAME}.set("hostname", "console1").set("domain", "example.org")),
        "hostname: console1 domain: example.org\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_HOSTNAME}
                             .set("hostname", std::string(65, 'h'))
                             .set("domain", std::string(2303, 'd'))),
              "hostname: " + std::string(65, 'h') + " domain: " + std::string(2303, 'd') + "\n");
}

TEST(MsgDumpDns, AnUnsetServerReadsNone)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_DNS}), "dns: none,none,none\n"
                                                       "prefer IPv4 DNS records: n\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_DNS}
                             .set("dns1", "10.0.0.53")
                             .set("dns3", "2001:db8::53")
                             .set("prefer_ipv4", 1)),
              "dns: 10.0.0.53,none,2001:db8::53\n"
              "prefer IPv4 DNS records: y\n");
}

TEST(MsgDumpNtp, TheFirstServerIsShown)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NTP}), "enabled: n sync: n poll: n local1: 0.0.0.0\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NTP}.set(
                  "enabled=1 sync=1 poll=1 server1=ntp1.example.org single=other.example.org")),
              "enabled: y sync: y poll: y local1: ntp1.example.org\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NTP}
                             .raw("server1", xasHostBytes(xasNamedHost(std::string(68, 's'))))
                             .set("server2", "next")),
              "enabled: n sync: n poll: n local1: " + std::string(68, 's') + "\n");
}

TEST(MsgDumpTimezone, TheZoneEndsWithTheRecord)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_TIMEZONE}.set("zone", "Europe/Berlin")),
              "zone: Europe/Berlin\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_TIMEZONE}.set("zone", std::string(2368, 'z'))),
              "zone: " + std::string(2368, 'z') + "\n");
}

TEST(MsgDumpRouting, NoMoreRoutesAreShownThanTheRecordHolds)
{
    const std::string text =
        msgAllText(XasMessageBuilder{XMSG_ROUTING}
                       .set("rip_version=0xFFFFFFFF num_routes=65 route64.destination=10.63.0.0")
                       .behind("route64.gateway", "next"));
    std::string lines = "static_enabled: n rip_enabled: n rip_version: both num_routes: 65\n";
    for (int route = 0; route < 63; ++route)
        lines += "  destination: 0.0.0.0 mask: 0.0.0.0 gateway: 0.0.0.0\n";
    EXPECT_EQ(text, lines + "  destination: 10.63.0.0 mask: 0.0.0.0 gateway: 0.0.0.0\n");
}

TEST(MsgDumpRouting, AsManyRoutesAreShownAsAreUsed)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_ROUTING}.set(
                  "static_enabled=1 rip_enabled=1 rip_version=1 num_routes=1 route1.destination=10.1.0.0 "
                  "route1.mask=255.255.0.0 route1.gateway=192.168.10.1 route2.destination=10.2.0.0")),
              "static_enabled: y rip_enabled: y rip_version: 2 num_routes: 1\n"
              "  destination: 10.1.0.0 mask: 255.255.0.0 gateway: 192.168.10.1\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_ROUTING}),
              "static_enabled: n rip_enabled: n rip_version: 1 num_routes: 0\n");
}

TEST(MsgDumpReply, TheReasonEndsWithItsField)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_ACKNAK}
                             .set("complete", 1)
                             .set("rcode", 4294967295U)
                             .set("rstr", std::string(500, 'r'))
                             .behind("rstr", "next")),
              "success: n complete: y\nrcode: 4294967295 rstr: " + std::string(500, 'r') + "\n");
}

TEST(MsgDumpReply, SuccessHasNoReason)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_ACKNAK}.set("success", 1).set("complete", 1)),
              "success: y complete: y\nrcode: 0 rstr: \n");
}
