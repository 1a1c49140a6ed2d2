// The dumps of types that are shown field by field, against lines worked out by hand.
#include "msg/print.h"
#include "support/hosts.h"
#include "support/message.h"

#include <gtest/gtest.h>

using namespace std::string_view_literals;

namespace {

/** A value of a choice at `offset`, and what the dump calls it. */
void expectChoice(std::uint32_t msgtype, std::size_t offset, std::string_view name,
                  const std::vector<std::string> &texts)
{
    for (std::uint32_t value = 0; value < texts.size(); ++value) {
        const std::string text = msgAllText(XasMessageBuilder{msgtype}.word(offset, value).build());
        const std::string pair = std::string{name} + ": " + texts[value];
        const std::size_t place = text.find(pair);
        ASSERT_NE(place, std::string::npos) << pair << " is not in:\n" << text;
        const std::string end = text.substr(place + pair.size(), 1);
        EXPECT_TRUE(end == " " || end == "\n") << pair << " goes on in:\n" << text;
    }
}

} // namespace

TEST(MsgDumpFields, ATypeWithoutFieldsHasNoLines)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_USERLIST}.word(120, 1).build()), "");
}

TEST(MsgDumpFields, FlagsHaveTheNamesOfYesAndNo)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NAT_NOTIFY}.build()), "add: n address: 0.0.0.0\n");
    EXPECT_EQ(msgAllText(
                  XasMessageBuilder{XMSG_NAT_NOTIFY}.word(120, 0x100).bytes(124, "\x0a\x01\x02\x03").build()),
              "add: y address: 10.1.2.3\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_FIREWALL}.word(120, 1).word(124, 0xFFFFFFFF).build()),
              "enabled: y test_time: -1 reject_method: reject invisible: n ssh: n telnet: n www: n https: n "
              "smb: n\n");
}

TEST(MsgDumpFields, AChoiceWithoutANameShowsItsNumber)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_APPLICATION}.word(120, 2).word(124, 1).build()),
              "application: snmptrapd start: y\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_APPLICATION}.word(120, 5).build()),
              "application: 5 start: n\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NOTIFY}.word(120, 3).bytes(136, "Eth1 Link Down").build()),
              "code: link-down text: Eth1 Link Down\n");
}

TEST(MsgDumpFields, ATextEndsWithTheRecord)
{
    EXPECT_EQ(
        msgAllText(XasMessageBuilder{XMSG_NOTIFY}.word(120, 2).bytes(136, std::string(2352, 't')).build()),
        "code: link-up text: " + std::string(2352, 't') + "\n");
}

TEST(MsgDumpFields, ElementsOfAListHaveLinesOfTheirOwn)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_TACACS}
                             .word(120, 1)
                             .byte(124, 1)
                             .bytes(128, xasHostBytes(xasHostWithAddress("192.168.10.43")))
                             .bytes(204, xasHostBytes(xasNamedHost("")))
                             .bytes(280, xasHostBytes(xasNamedHost("tac3")))
                             .bytes(356, std::string(128, 's'))
                             .word(484, 1)
                             .word(488, 2)
                             .build()),
              "enabled: y order: 1\n"
              "server1: 192.168.10.43\n"
              "server2: none\n"
              "server3: tac3\n"
              "server1_secret: " +
                  std::string(128, 's') + " encrypt: y service: login\n");
}

TEST(MsgDumpFields, ElementsThatAreNotInUseAreLeftOut)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_IPFILTER_SET}.byte(120, 3).build()),
              "id: 3 name:  action: create num_rules: 0\n");
}

TEST(MsgDumpFields, TheInterfaceOfASetIsNamedByItsKindAndNumber)
{
    EXPECT_EQ(
        msgAllText(
            XasMessageBuilder{XMSG_IPFILTER_ASSIGN}.word(120, 1).byte(124, 255).bytes(125, "office").build()),
        "iface_type: eth iface_id: 255 filterName: office\n");
}

TEST(MsgDumpFields, ThePortsOfAnEthernetMessageStandBeforeWhatTheyShare)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_ETH}
                             .word(120, 1)
                             .word(124, 1)
                             .word(128, 2)
                             .bytes(132, "\xc0\xa8\x0a\x06\xff\xff\xff\x00"sv)
                             .bytes(140, "\x20\x01\x0d\xb8\0\0\0\0\0\0\0\0\0\0\0\x06"sv)
                             .word(156, 64)
                             .word(160, 3)
                             .word(164, 1500)
                             .build()),
              "eth1.marker: y eth1.enabled: y eth1.source: static eth1.ip: 192.168.10.6 eth1.mask: "
              "255.255.255.0 eth1.ipv6: 2001:db8::6 eth1.maskv6: 64 eth1.mode: 10mbit-full eth1.mtu: 1500\n"
              "eth2.marker: n eth2.enabled: n eth2.source: disabled eth2.ip: 0.0.0.0 eth2.mask: 0.0.0.0 "
              "eth2.ipv6: none eth2.maskv6: 0 eth2.mode: auto eth2.mtu: 0\n"
              "ipv6_enabled: n gateway: 0.0.0.0 gateway_ipv6: none bonding: none gw_precedence: none "
              "alt_gateway: 0.0.0.0 ping_ip: 0.0.0.0 ping_ifc: 0 ping_delay: 0 ping_failed: 0 timer: 0 "
              "probes: 0 interval: 0 ip_forwarding: n\n");
}

TEST(MsgDumpFields, LogLevelsServersAndSizes)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_SYSLOG}
                             .word(124, 4)
                             .bytes(144, xasHostBytes(xasNamedHost("log1")))
                             .bytes(220, xasHostBytes(xasNamedHost("")))
                             .half(296, 30)
                             .half(298, 65535)
                             .build()),
              "local0: off local1: debug authpriv: off local3: off local4: off local5: off\n"
              "remote1: log1\n"
              "remote2: none\n"
              "nut_size: 30 log_size: 65535\n");
}

TEST(MsgDumpFields, ATunnelIsOneLine)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_VPN}
                             .word(120, 1)
                             .bytes(124, "office")
                             .word(144, 1)
                             .word(148, 1)
                             .bytes(152, "a key")
                             .bytes(668, xasHostBytes(xasHostWithAddress("10.0.0.9")))
                             .bytes(744, "@remote")
                             .bytes(764, "\xff\xff\xff\xff")
                             .bytes(768, "10.1.0.0/16")
                             .word(956, 1)
                             .word(960, 2)
                             .word(964, 2)
                             .word(980, 1)
                             .bytes(992, "me")
                             .bytes(1025, "secret")
                             .build()),
              "tunnel: y name: office ifac: eth1 auth: psk auth_key: a key remote_host: 10.0.0.9 remote_id: "
              "@remote remote_hop: none remote_subnet: 10.1.0.0/16 local_id:  local_hop: 0.0.0.0 "
              "local_subnet:  aggressive: n ike_enc: 3des ike_hash: md5 ike_dhgroup: dhg5 esp_enc: any "
              "esp_hash: any esp_dhgroup: any pfs: y modecfg: n xauth: n xauth_login: me xauth_passwd: "
              "secret\n");
}

TEST(MsgDumpFields, EnumerationsHaveTheirOwnNames)
{
    for (const auto &[offset, name] : {std::pair{128U, "eth1.source"}, std::pair{176U, "eth2.source"}})
        expectChoice(XMSG_ETH, offset, name, {"disabled", "rip", "static", "UNKNOWN"});
    std::size_t level = 120;
    for (const char *name : {"local0", "local1", "authpriv", "local3", "local4", "local5"}) {
        expectChoice(XMSG_SYSLOG, level, name, {"off", "info", "warn", "error", "debug", "UNKNOWN"});
        level += 4;
    }
    for (const auto &[offset, name] : {std::pair{956U, "ike_enc"}, std::pair{968U, "esp_enc"}})
        expectChoice(XMSG_VPN, offset, name, {"any", "3des", "aes", "UNKNOWN"});
    for (const auto &[offset, name] : {std::pair{960U, "ike_hash"}, std::pair{972U, "esp_hash"}})
        expectChoice(XMSG_VPN, offset, name, {"any", "sha1", "md5", "UNKNOWN"});
    for (const auto &[offset, name] : {std::pair{964U, "ike_dhgroup"}, std::pair{976U, "esp_dhgroup"}})
        expectChoice(XMSG_VPN, offset, name, {"any", "dhg2", "dhg5", "UNKNOWN"});
}

TEST(MsgDumpFields, TheRulesOfASetAreShownOneALine)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_IPFILTER_SET}
                             .byte(120, 64)
                             .bytes(121, "office")
                             .word(140, 1)
                             .word(144, 2)
                             .bytes(148, "\x0a\x00\x00\x01\x0a\x00\x00\x09"sv)
                             .word(156, 32)
                             .word(160, 2)
                             .bytes(164, "22,8000:8080")
                             .word(180, 2)
                             .bytes(184, "\x0a\x01\x00\x00\xff\xff\xff\xff"sv)
                             .word(192, 16)
                             .word(196, 9)
                             .build()),
              "id: 64 name: office action: replace num_rules: 2\n"
              "rule1.ip: 10.0.0.1 rule1.range_end: 10.0.0.9 rule1.masklength: 32 rule1.protocol: tcp "
              "rule1.portrange: 22,8000:8080 rule1.target: drop\n"
              "rule2.ip: 10.1.0.0 rule2.range_end: none rule2.masklength: 16 rule2.protocol: 9 "
              "rule2.portrange:  rule2.target: accept\n");
}
