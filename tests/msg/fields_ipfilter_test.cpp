// The fields of the IP filter's messages and of the tunnel's: places in the record, and rules as a list.
#include "msg/fields.h"
#include "msg/values.h"

#include <gmock/gmock.h>

namespace {

XasMsgFieldAt at(std::uint32_t msgtype, std::string_view name)
{
    const XasMsgFields *fields = msgFieldsOf(msgtype);
    auto where = fields == nullptr ? std::nullopt : xasFindField(*fields, name);
    if (!where)
        throw std::out_of_range{std::string{name}};
    return *std::move(where);
}

void expectPlace(std::uint32_t msgtype, std::string_view name, std::size_t offset, std::size_t width)
{
    const XasMsgFieldAt where = at(msgtype, name);
    EXPECT_EQ(where.place.offset, offset) << name;
    EXPECT_EQ(where.place.width, width) << name;
}

/** The number that `text` stands for in a field; "refused" otherwise. */
std::string numberOf(std::uint32_t msgtype, std::string_view name, std::string_view text)
{
    XasMessage record{};
    const XasMsgFieldAt where = at(msgtype, name);
    if (!msgSetValue(std::as_writable_bytes(std::span{&record, 1}), where, text).empty())
        return "refused";
    return std::to_string(msgValueNumber(std::as_bytes(std::span{&record, 1}), where.place));
}

} // namespace

TEST(IpFilterFields, TheRecordHasRoomFor65Rules)
{
    const XasMsgFields &set = *msgFieldsOf(XMSG_IPFILTER_SET);
    EXPECT_FALSE(xasFindField(set, "rule0.ip"));
    EXPECT_FALSE(xasFindField(set, "rule66.ip"));
    EXPECT_TRUE(xasFindField(set, "rule65.target"));
    EXPECT_EQ(numberOf(XMSG_IPFILTER_SET, "num_rules", "65"), "65");
    EXPECT_EQ(numberOf(XMSG_IPFILTER_SET, "num_rules", "66"), "refused");
}

TEST(IpFilterFields, ASetsNumberIs1To64)
{
    EXPECT_EQ(numberOf(XMSG_IPFILTER_SET, "id", "0"), "refused");
    EXPECT_EQ(numberOf(XMSG_IPFILTER_SET, "id", "65"), "refused");
    EXPECT_EQ(numberOf(XMSG_IPFILTER_SET, "id", "64"), "64");
}

TEST(IpFilterFields, HaveTheirPlaces)
{
    expectPlace(XMSG_IPFILTER_SET, "id", 120, 1);
    expectPlace(XMSG_IPFILTER_SET, "name", 121, 16);
    expectPlace(XMSG_IPFILTER_SET, "action", 140, 4);
    expectPlace(XMSG_IPFILTER_SET, "num_rules", 144, 4);
    expectPlace(XMSG_IPFILTER_SET, "rule1.ip", 148, 4);
    expectPlace(XMSG_IPFILTER_SET, "rule1.range_end", 152, 4);
    expectPlace(XMSG_IPFILTER_SET, "rule1.masklength", 156, 4);
    expectPlace(XMSG_IPFILTER_SET, "rule1.protocol", 160, 4);
    expectPlace(XMSG_IPFILTER_SET, "rule1.portrange", 164, 16);
    expectPlace(XMSG_IPFILTER_SET, "rule1.target", 180, 4);
    expectPlace(XMSG_IPFILTER_SET, "rule65.target", 180 + 64 * 36, 4);
    expectPlace(XMSG_IPFILTER_ASSIGN, "iface_type", 120, 4);
    expectPlace(XMSG_IPFILTER_ASSIGN, "iface_id", 124, 1);
    expectPlace(XMSG_IPFILTER_ASSIGN, "filterName", 125, 2488 - 125);
}

TEST(IpFilterFields, NameEveryCode)
{
    constexpr std::string_view PROTOCOLS[] = {"none", "all",  "tcp",       "tcp-syn", "tcp-not-syn",
                                              "udp",  "icmp", "icmp-echo", "esp"};
    for (std::size_t code = 0; code < std::size(PROTOCOLS); ++code)
        EXPECT_EQ(numberOf(XMSG_IPFILTER_SET, "rule2.protocol", PROTOCOLS[code]), std::to_string(code));
    EXPECT_EQ(numberOf(XMSG_IPFILTER_SET, "rule1.target", "accept"), "0");
    EXPECT_EQ(numberOf(XMSG_IPFILTER_SET, "rule1.target", "reject"), "1");
    EXPECT_EQ(numberOf(XMSG_IPFILTER_SET, "rule1.target", "drop"), "2");
    EXPECT_EQ(numberOf(XMSG_IPFILTER_SET, "action", "create"), "0");
    EXPECT_EQ(numberOf(XMSG_IPFILTER_SET, "action", "replace"), "1");
    EXPECT_EQ(numberOf(XMSG_IPFILTER_SET, "action", "remove"), "2");
    EXPECT_EQ(numberOf(XMSG_IPFILTER_ASSIGN, "iface_type", "eth"), "1");
    EXPECT_EQ(numberOf(XMSG_IPFILTER_ASSIGN, "iface_type", "ppp"), "2");
}

TEST(IpFilterFields, ANewRuleMeansOneAddressAndAllPackets)
{
    XasMessage record{};
    const auto bytes = std::as_writable_bytes(std::span{&record, 1});
    const XasMsgFields &set = *msgFieldsOf(XMSG_IPFILTER_SET);
    msgSetElementDefaults(bytes, set, *at(XMSG_IPFILTER_SET, "rule3.ip").field->group, 2);
    EXPECT_EQ(msgValueText(bytes, at(XMSG_IPFILTER_SET, "rule3.range_end")), "none");
    EXPECT_EQ(msgValueText(bytes, at(XMSG_IPFILTER_SET, "rule3.masklength")), "32");
    EXPECT_EQ(msgValueText(bytes, at(XMSG_IPFILTER_SET, "rule3.protocol")), "all");
    EXPECT_EQ(msgValueText(bytes, at(XMSG_IPFILTER_SET, "rule3.target")), "accept");
}

TEST(VpnFields, HaveTheirPlaces)
{
    expectPlace(XMSG_VPN, "tunnel", 120, 4);
    expectPlace(XMSG_VPN, "name", 124, 20);
    expectPlace(XMSG_VPN, "ifac", 144, 4);
    expectPlace(XMSG_VPN, "auth", 148, 4);
    expectPlace(XMSG_VPN, "auth_key", 152, 516);
    expectPlace(XMSG_VPN, "remote_host", 668, 76);
    expectPlace(XMSG_VPN, "remote_id", 744, 20);
    expectPlace(XMSG_VPN, "remote_hop", 764, 4);
    expectPlace(XMSG_VPN, "remote_subnet", 768, 80);
    expectPlace(XMSG_VPN, "local_id", 848, 20);
    expectPlace(XMSG_VPN, "local_hop", 868, 4);
    expectPlace(XMSG_VPN, "local_subnet", 872, 80);
    expectPlace(XMSG_VPN, "aggressive", 952, 4);
    expectPlace(XMSG_VPN, "ike_enc", 956, 4);
    expectPlace(XMSG_VPN, "ike_hash", 960, 4);
    expectPlace(XMSG_VPN, "ike_dhgroup", 964, 4);
    expectPlace(XMSG_VPN, "esp_enc", 968, 4);
    expectPlace(XMSG_VPN, "esp_hash", 972, 4);
    expectPlace(XMSG_VPN, "esp_dhgroup", 976, 4);
    expectPlace(XMSG_VPN, "pfs", 980, 4);
    expectPlace(XMSG_VPN, "modecfg", 984, 4);
    expectPlace(XMSG_VPN, "xauth", 988, 4);
    expectPlace(XMSG_VPN, "xauth_login", 992, 33);
    expectPlace(XMSG_VPN, "xauth_passwd", 1025, 2488 - 1025);
}

TEST(VpnFields, NameEveryCode)
{
    EXPECT_EQ(numberOf(XMSG_VPN, "ifac", "eth1"), "1");
    EXPECT_EQ(numberOf(XMSG_VPN, "ifac", "eth2"), "2");
    EXPECT_EQ(numberOf(XMSG_VPN, "auth", "rsa"), "0");
    EXPECT_EQ(numberOf(XMSG_VPN, "auth", "psk"), "1");
    EXPECT_EQ(numberOf(XMSG_VPN, "auth", "none"), "2");
    for (const std::string phase : {"ike", "esp"}) {
        EXPECT_EQ(numberOf(XMSG_VPN, phase + "_enc", "none"), "0");
        EXPECT_EQ(numberOf(XMSG_VPN, phase + "_enc", "3des"), "1");
        EXPECT_EQ(numberOf(XMSG_VPN, phase + "_enc", "aes"), "2");
        EXPECT_EQ(numberOf(XMSG_VPN, phase + "_hash", "sha1"), "1");
        EXPECT_EQ(numberOf(XMSG_VPN, phase + "_hash", "md5"), "2");
        EXPECT_EQ(numberOf(XMSG_VPN, phase + "_dhgroup", "modp1024"), "1");
        EXPECT_EQ(numberOf(XMSG_VPN, phase + "_dhgroup", "modp1536"), "2");
    }
}
