#include "config/dns.h"

#include "support/test.h"

#include <arpa/inet.h>

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
    EXPECT_EQ(xasDnsPrecText({.dns1 = {}, .dns2 = {}, .dns3 = {}, .prefer_ipv4 = 1}), "IPV4_PRECEDENCE=yes");
    EXPECT_EQ(xasDnsPrecText({}), "IPV4_PRECEDENCE=no");
}
