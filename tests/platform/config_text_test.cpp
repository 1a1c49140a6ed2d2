#include "platform/config_library.h"

#include "support/test.h"
#include "wire/address.h"
#include "wire/message.h"

#include <arpa/inet.h>

namespace {

XasHostAddr hostNamed(std::string_view name)
{
    XasHostAddr host{};
    host.is_name = 1;
    name.copy(host.value, sizeof host.value);
    return host;
}

} // namespace

TEST(AddressText, OfAnUnsetAddressIsEmptyUnlessItIsIPv6)
{
    const XasIpAddr unset{};
    EXPECT_STREQ(xmlIPv4Or6ToStr(&unset), "");
    const XasIpAddr allZeroIpv6{.is_ipv6 = 1, .address = {}};
    EXPECT_STREQ(xmlIPv4Or6ToStr(&allZeroIpv6), "::");
}

TEST(AddressText, OfAnIPv4AddressIsDotted)
{
    const XasIpAddr address{.is_ipv6 = 0, .address = {192, 0, 2, 1}};
    EXPECT_STREQ(xmlIPv4Or6ToStr(&address), "192.0.2.1");
    const XasIpAddr broadcast{.is_ipv6 = 0, .address = {255, 255, 255, 255}};
    EXPECT_STREQ(xmlIPv4Or6ToStr(&broadcast), "255.255.255.255");
}

TEST(AddressText, OfAnIPv6AddressIsTheShortForm)
{
    const XasIpAddr address{.is_ipv6 = 1,
                            .address = {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}};
    EXPECT_STREQ(xmlIPv4Or6ToStr(&address), "2001:db8::1");
    XasIpAddr marked = address;
    marked.is_ipv6 = 0x80000000U;
    EXPECT_STREQ(xmlIPv4Or6ToStr(&marked), "2001:db8::1");
}

TEST(HostText, OfAnAllZeroRecordIsTheZeroAddress)
{
    const XasHostAddr host{};
    EXPECT_STREQ(xmlNameOrIpToStr(&host), "0.0.0.0");
}

TEST(HostText, OfAnUnusedServerIsAnEmptyName)
{
    const XasHostAddr host = hostNamed("");
    EXPECT_STREQ(xmlNameOrIpToStr(&host), "");
}

TEST(HostText, OfAShorterNameHasNothingOfALongerOneBefore)
{
    const XasHostAddr longer = hostNamed("time.example.org");
    EXPECT_STREQ(xmlNameOrIpToStr(&longer), "time.example.org");
    const XasHostAddr shorter = hostNamed("ntp1");
    EXPECT_STREQ(xmlNameOrIpToStr(&shorter), "ntp1");
}

TEST(HostText, OfANameWithoutANulEndsWithItsField)
{
    const XasHostAddr host = hostNamed(std::string(68, 'n'));
    EXPECT_EQ(xmlNameOrIpToStr(&host), std::string(68, 'n'));
}

TEST(HostText, IsTheNameWhateverTheFamilyFlagSays)
{
    XasHostAddr host = hostNamed("ntp.example.org");
    host.is_ipv6 = 1;
    EXPECT_STREQ(xmlNameOrIpToStr(&host), "ntp.example.org");
}

TEST(HostText, OfAnAddressIsItsText)
{
    XasHostAddr host{};
    ::inet_pton(AF_INET, "10.1.2.3", host.value);
    EXPECT_STREQ(xmlNameOrIpToStr(&host), "10.1.2.3");
    host.is_ipv6 = 1;
    ::inet_pton(AF_INET6, "fe80::1", host.value);
    EXPECT_STREQ(xmlNameOrIpToStr(&host), "fe80::1");
}

TEST(SocketAddressText, IsTheAddressAlone)
{
    sockaddr_in6 address{};
    EXPECT_STREQ(xmlSockAddr6ToStr(&address), "::");
    address.sin6_port = 80;
    address.sin6_scope_id = 2;
    ::inet_pton(AF_INET6, "2001:db8::ff", &address.sin6_addr);
    EXPECT_STREQ(xmlSockAddr6ToStr(&address), "2001:db8::ff");
}
