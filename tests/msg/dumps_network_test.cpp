// The dumps of network settings and of answers, against lines worked out by hand.
#include "msg/print.h"
#include "support/hosts.h"
#include "support/message.h"

#include <gtest/gtest.h>

using namespace std::string_view_literals;

TEST(MsgDumpHostname, TextsEndWithTheirFields)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_HOSTNAME}.build()), "hostname:  domain: \n");
    EXPECT_EQ(
        msgAllText(XasMessageBuilder{XMSG_HOSTNAME}.bytes(120, "console1").bytes(185, "example.org").build()),
        "hostname: console1 domain: example.org\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_HOSTNAME}
                             .bytes(120, std::string(65, 'h'))
                             .bytes(185, std::string(2303, 'd'))
                             .build()),
              "hostname: " + std::string(65, 'h') + " domain: " + std::string(2303, 'd') + "\n");
}

TEST(MsgDumpDns, AnUnsetServerReadsNone)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_DNS}.build()), "dns: none,none,none\n"
                                                               "prefer IPv4 DNS records: n\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_DNS}
                             .bytes(124, "\x0a\x00\x00\x35"sv)
                             .word(160, 1)
                             .bytes(164, "\x20\x01\x0d\xb8\0\0\0\0\0\0\0\0\0\0\0\x53"sv)
                             .word(180, 1)
                             .build()),
              "dns: 10.0.0.53,none,2001:db8::53\n"
              "prefer IPv4 DNS records: y\n");
}

TEST(MsgDumpNtp, TheFirstServerIsShown)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NTP}.build()),
              "enabled: n sync: n poll: n local1: 0.0.0.0\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NTP}
                             .word(120, 1)
                             .word(124, 1)
                             .word(128, 1)
                             .bytes(132, xasHostBytes(xasNamedHost("ntp1.example.org")))
                             .bytes(360, xasHostBytes(xasNamedHost("other.example.org")))
                             .build()),
              "enabled: y sync: y poll: y local1: ntp1.example.org\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NTP}
                             .bytes(132, xasHostBytes(xasNamedHost(std::string(68, 's'))))
                             .word(208, 0x6E6E6E6E)
                             .build()),
              "enabled: n sync: n poll: n local1: " + std::string(68, 's') + "\n");
}

TEST(MsgDumpTimezone, TheZoneEndsWithTheRecord)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_TIMEZONE}.bytes(120, "Europe/Berlin").build()),
              "zone: Europe/Berlin\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_TIMEZONE}.bytes(120, std::string(2368, 'z')).build()),
              "zone: " + std::string(2368, 'z') + "\n");
}

TEST(MsgDumpRouting, NoMoreRoutesAreShownThanTheRecordHolds)
{
    const std::string text = msgAllText(XasMessageBuilder{XMSG_ROUTING}
                                            .word(132, 0xFFFFFFFF)
                                            .word(136, 65)
                                            .bytes(140 + 63 * 12, "\x0a\x3f\x00\x00"sv)
                                            .bytes(140 + 64 * 12, "\xff\xff\xff\xff")
                                            .build());
    std::string lines = "static_enabled: n rip_enabled: n rip_version: both num_routes: 65\n";
    for (int route = 0; route < 63; ++route)
        lines += "  destination: 0.0.0.0 mask: 0.0.0.0 gateway: 0.0.0.0\n";
    EXPECT_EQ(text, lines + "  destination: 10.63.0.0 mask: 0.0.0.0 gateway: 0.0.0.0\n");
}

TEST(MsgDumpRouting, AsManyRoutesAreShownAsAreUsed)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_ROUTING}
                             .word(124, 1)
                             .word(128, 1)
                             .word(132, 1)
                             .word(136, 1)
                             .bytes(140, "\x0a\x01\x00\x00\xff\xff\x00\x00\xc0\xa8\x0a\x01"sv)
                             .bytes(152, "\x0a\x02\x00\x00")
                             .build()),
              "static_enabled: y rip_enabled: y rip_version: 2 num_routes: 1\n"
              "  destination: 10.1.0.0 mask: 255.255.0.0 gateway: 192.168.10.1\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_ROUTING}.build()),
              "static_enabled: n rip_enabled: n rip_version: 1 num_routes: 0\n");
}

TEST(MsgDumpReply, TheReasonEndsWithItsField)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_ACKNAK}
                             .word(124, 1)
                             .word(128, 4294967295U)
                             .bytes(132, std::string(500, 'r'))
                             .word(632, 0x6E6E6E6E)
                             .build()),
              "success: n complete: y\nrcode: 4294967295 rstr: " + std::string(500, 'r') + "\n");
}

TEST(MsgDumpReply, SuccessHasNoReason)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_ACKNAK}.word(120, 1).word(124, 1).build()),
              "success: y complete: y\nrcode: 0 rstr: \n");
}
