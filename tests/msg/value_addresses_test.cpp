// Addresses and host records as text.
#include "msg/value_kinds.h"

#include "support/values.h"

namespace {

using enum XasFieldKind;
using MsgValueAddresses = XasValuesTest;

} // namespace

TEST_F(MsgValueAddresses, ABadIpv4AddressNamesTheFormThatIsExpected)
{
    for (const char *text :
         {"", "none", "1.2.3", "1.2.3.256", "1.2.3.4.5", "console1", "fd00::1", "1.2.3.4 "})
        expectRefused(xasTestField(ipv4, 4), text, "an IPv4 address such as 192.168.1.10");
}

TEST_F(MsgValueAddresses, AnIpv4AddressStandsInNetworkOrder)
{
    expectKept(xasTestField(ipv4, 4), "192.168.1.10");
    EXPECT_EQ(bytes(xasTestField(ipv4, 4)), xasFourBytes("\xC0\xA8\x01\x0A"));
    expectKept(xasTestField(ipv4, 4), "255.255.255.255");
    expectKept(xasTestField(ipv4, 4), "0.0.0.0");
}

TEST_F(MsgValueAddresses, NoIpv4AddressIsAllOnesWhereTheFieldKnowsNone)
{
    XasMsgField gateway = xasTestField(ipv4, 4);
    gateway.none = true;
    expectRefused(gateway, "nothing", "or none");
    expectKept(gateway, "none");
    EXPECT_EQ(bytes(gateway), "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(set(gateway, "10.0.0.1"), "");
    EXPECT_EQ(set(gateway, ""), "");
    EXPECT_EQ(read(gateway), "none");
    expectKept(gateway, "0.0.0.0");
}

TEST_F(MsgValueAddresses, AnIpv6AddressIsSixteenBytesAndZeroIsNone)
{
    expectRefused(xasTestField(ipv6, 16), "10.0.0.1", "an IPv6 address such as fd00::1");
    expectKept(xasTestField(ipv6, 16), "fd00::1");
    EXPECT_EQ(bytes(xasTestField(ipv6, 16)), "\xFD" + std::string(14, '\0') + "\x01");
    expectKept(xasTestField(ipv6, 16), "none");
    EXPECT_EQ(bytes(xasTestField(ipv6, 16)), std::string(16, '\0'));
}

TEST_F(MsgValueAddresses, AnIpv6SocketAddressCarriesItsFamily)
{
    expectRefused(xasTestField(sockaddr6, 28), "gateway", "an IPv6 address such as fd00::1");
    expectKept(xasTestField(sockaddr6, 28), "fe80::1");
    std::string expected(28, '\0');
    expected[0] = 10; // AF_INET6
    expected.replace(8, 2, "\xFE\x80");
    expected[23] = 1;
    EXPECT_EQ(bytes(xasTestField(sockaddr6, 28)), expected);
    expectKept(xasTestField(sockaddr6, 28), "none");
    EXPECT_EQ(bytes(xasTestField(sockaddr6, 28)), std::string(28, '\0'));
}

TEST_F(MsgValueAddresses, AnAddressRecordHoldsEitherFamily)
{
    const XasMsgField server = xasTestField(ipAddr, 20);
    expectRefused(server, "ns1.example.org", "an IPv4 or IPv6 address");
    expectKept(server, "fd00::35");
    EXPECT_EQ(bytes(server), xasFourBytes("\x01\0\0\0") + "\xFD" + std::string(14, '\0') + "\x35");
    expectKept(server, "10.0.0.53"); // nothing of the longer address is left
    EXPECT_EQ(bytes(server), std::string(4, '\0') + xasFourBytes("\x0A\0\0\x35") + std::string(12, '\0'));
    expectKept(server, "none");
    EXPECT_EQ(bytes(server), std::string(20, '\0'));
}

TEST_F(MsgValueAddresses, AHostRecordHoldsANameOrAnAddress)
{
    const XasMsgField host = xasTestField(hostAddr, 76);
    expectKept(host, "time.example.org");
    EXPECT_EQ(bytes(host), xasFourBytes("\x01\0\0\0") + std::string(4, '\0') + "time.example.org" +
                               std::string(68 - 16, '\0'));
    expectKept(host, "192.168.1.1");
    EXPECT_EQ(bytes(host), std::string(8, '\0') + "\xC0\xA8\x01\x01" + std::string(64, '\0'));
    expectKept(host, "fd00::7");
    EXPECT_EQ(bytes(host), std::string(4, '\0') + xasFourBytes("\x01\0\0\0") + "\xFD" +
                               std::string(14, '\0') + "\x07" + std::string(52, '\0'));
}

TEST_F(MsgValueAddresses, AnUnusedHostIsAnEmptyName)
{
    const XasMsgField host = xasTestField(hostAddr, 76);
    for (const char *unused : {"none", ""}) {
        EXPECT_EQ(set(host, unused), "");
        EXPECT_EQ(bytes(host), xasFourBytes("\x01\0\0\0") + std::string(72, '\0'));
        EXPECT_EQ(read(host), "none");
    }
}

TEST_F(MsgValueAddresses, AnAllZeroHostReadsAsAddress)
{
    block.assign(128, std::byte{0});
    EXPECT_EQ(read(xasTestField(hostAddr, 76)), "0.0.0.0");
}

TEST_F(MsgValueAddresses, WhatIsNeitherHostNameNorAddressIsRefusedUnlessForced)
{
    const XasMsgField host = xasTestField(hostAddr, 76);
    for (const char *text : {"10.0.0", "10.0.0.256", "a b", "fd00::g", "tab\t"})
        expectRefused(host, text, "a host name of at most 67 characters");
    expectKept(host, std::string(67, 'n'));
    expectRefused(host, std::string(68, 'n'), "at most 67", XasValueCheck::anyThatFits);
    EXPECT_EQ(set(host, "a b", XasValueCheck::anyThatFits), "");
    EXPECT_EQ(read(host), "a b");
}
