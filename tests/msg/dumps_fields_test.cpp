// The dumps of types that are shown field by field, against lines worked out by hand.
#include "msg/print.h"
#include "support/message.h"
#include "support/test.h"

using namespace std::string_view_literals;

namespace {

/** What the dump calls each value of a choice. */
void expectChoice(std::uint32_t msgtype, const std::string &name, const std::vector<std::string> &texts)
{
    for (std::uint32_t value = 0; value < texts.size(); ++value) {
        const std::string text = msgAllText(XasMessageBuilder{msgtype}.set(name, value));
        const std::string pair = name + ": " + texts[value];
        const std::size_t place = text.find(pair);
        ASSERT_NE(place, std::string::npos) << pair << " is not in:\n" << text;
        const std::string end = text.substr(place + pair.size(), 1);
        EXPECT_TRUE(end == " " || end == "\n") << pair << " goes on in:\n" << text;
    }
}

} // namespace

TEST(MsgDumpFields, ATypeWithoutFieldsHasNoLines)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_USERLIST}.bytes(120, "\x01")), "");
}

TEST(MsgDumpFields, FlagsHaveTheNamesOfYesAndNo)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NAT_NOTIFY}), "add: n address: 0.0.0.0\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NAT_NOTIFY}.set("add", 0x100).set("address", "10.1.2.3")),
              "add: y address: 10.1.2.3\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_FIREWALL}.set("enabled", 1).set("test_time", -1)),
              "enabled: y test_time: -1 reject_method: reject invisible: n ssh: n telnet: n www: n https: n "
              "smb: n\n");
}

TEST(MsgDumpFields, AChoiceWithoutANameShowsItsNumber)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_APPLICATION}.set("application", 2).set("start", 1)),
              "application: snmptrapd start: y\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_APPLICATION}.set("application", 5)),
              "application: 5 start: n\n");
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NOTIFY}.set("code", 3).set("text", "Eth1 Link Down")),
              "code: link-down text: Eth1 Link Down\n");
}

TEST(MsgDumpFields, ATextEndsWithTheRecord)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NOTIFY}.set("code", 2).set("text", std::string(2352, 't'))),
              "code: link-up text: " + std::string(2352, 't') + "\n");
}

TEST(MsgDumpFields, ElementsOfAListHaveLinesOfTheirOwn)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_TACACS}
                             .set("enabled=1 order=1 server1=192.168.10.43 server2= server3=tac3")
                             .set("server1_secret", std::string(128, 's'))
                             .set("encrypt", 1)
                             .set("service", 2)),
              "enabled: y order: 1\n"
              "server1: 192.168.10.43\n"
              "server2: none\n"
              "server3: tac3\n"
              "server1_secret: " +
                  std::string(128, 's') + " encrypt: y service: login\n");
}

TEST(MsgDumpFields, ElementsThatAreNotInUseAreLeftOut)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_IPFILTER_SET}.set("id", 3)),
              "id: 3 name:  action: create num_rules: 0\n");
}

TEST(MsgDumpFields, TheInterfaceOfASetIsNamedByItsKindAndNumber)
{
    EXPECT_EQ(msgAllText(
                  XasMessageBuilder{XMSG_IPFILTER_ASSIGN}.set("iface_type=1 iface_id=255 filterName=office")),
              "iface_type: eth iface_id: 255 filterName: office\n");
}

TEST(MsgDumpFields, ThePortsOfAnEthernetMessageStandBeforeWhatTheyShare)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_ETH}.set(
                  "eth1.marker=1 eth1.enabled=1 eth1.source=2 eth1.ip=192.168.10.6 eth1.mask=255.255.255.0 "
                  "eth1.ipv6=2001:db8::6 eth1.maskv6=64 eth1.mode=3 eth1.mtu=1500")),
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
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_SYSLOG}.set(
                  "local1=4 remote1=log1 remote2= nut_size=30 log_size=65535")),
              "local0: off local1: debug authpriv: off local3: off local4: off local5: off\n"
              "remote1: log1\n"
              "remote2: none\n"
              "nut_size: 30 log_size: 65535\n");
}

TEST(MsgDumpFields, ATunnelIsOneLine)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_VPN}
                             .set("tunnel=1 name=office ifac=1 auth=1")
                             .set("auth_key", "a key")
                             .set("remote_host=10.0.0.9 remote_id=@remote remote_hop=255.255.255.255 "
                                  "remote_subnet=10.1.0.0/16 ike_enc=1 ike_hash=2 ike_dhgroup=2 pfs=1 "
                                  "xauth_login=me xauth_passwd=secret")),
              "tunnel: y name: office ifac: eth1 auth: psk auth_key: a key remote_host: 10.0.0.9 remote_id: "
              "@remote remote_hop: none remote_subnet: 10.1.0.0/16 local_id:  local_hop: 0.0.0.0 "
              "local_subnet:  aggressive: n ike_enc: 3des ike_hash: md5 ike_dhgroup: dhg5 esp_enc: any "
              "esp_hash: any esp_dhgroup: any pfs: y modecfg: n xauth: n xauth_login: me xauth_passwd: "
              "secret\n");
}

TEST(MsgDumpFields, EnumerationsHaveTheirOwnNames)
{
    for (const char *name : {"eth1.source", "eth2.source"})
        expectChoice(XMSG_ETH, name, {"disabled", "rip", "static", "UNKNOWN"});
    for (const char *name : {"local0", "local1", "authpriv", "local3", "local4", "local5"})
        expectChoice(XMSG_SYSLOG, name, {"off", "info", "warn", "error", "debug", "UNKNOWN"});
    for (const std::string phase : {"ike", "esp"}) {
        expectChoice(XMSG_VPN, phase + "_enc", {"any", "3des", "aes", "UNKNOWN"});
        expectChoice(XMSG_VPN, phase + "_hash", {"any", "sha1", "md5", "UNKNOWN"});
        expectChoice(XMSG_VPN, phase + "_dhgroup", {"any", "dhg2", "dhg5", "UNKNOWN"});
    }
}

TEST(MsgDumpFields, TheRulesOfASetAreShownOneALine)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_IPFILTER_SET}.set(
                  "id=64 name=office action=1 num_rules=2 rule1.ip=10.0.0.1 rule1.range_end=10.0.0.9 "
                  "rule1.masklength=32 rule1.protocol=2 rule1.portrange=22,8000:8080 rule1.target=2 "
                  "rule2.ip=10.1.0.0 rule2.range_end=255.255.255.255 rule2.masklength=16 rule2.protocol=9")),
              "id: 64 name: office action: replace num_rules: 2\n"
              "rule1.ip: 10.0.0.1 rule1.range_end: 10.0.0.9 rule1.masklength: 32 rule1.protocol: tcp "
              "rule1.portrange: 22,8000:8080 rule1.target: drop\n"
              "rule2.ip: 10.1.0.0 rule2.range_end: none rule2.masklength: 16 rule2.protocol: 9 "
              "rule2.portrange:  rule2.target: accept\n");
}
