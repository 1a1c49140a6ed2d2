// RADIUS: the server file.
#include "auth/radius.h"

#include "support/hosts.h"
#include "support/test.h"

namespace {

XasRadiusServer serverOf(const XasHostAddr &host, std::string_view secret, std::uint16_t port)
{
    XasRadiusServer server{.host = host, .secret = {}, .port = port};
    xasSetFieldText(server.secret, secret);
    return server;
}

XasRadiusPayload settings(const XasHostAddr &host1, const XasHostAddr &host2)
{
    return {.enabled = 1,
            .order = 0,
            .server1 = serverOf(host1, "one", 1812),
            .server2 = serverOf(host2, "two", 65535),
            .timeout = 255};
}

} // namespace

TEST(RadiusText, KeepsOnlyCommentsWhenDisabled)
{
    XasRadiusPayload cfgRadius = settings(xasNamedHost("rad1"), xasNamedHost("rad2"));
    cfgRadius.enabled = 0;
    EXPECT_EQ(xasRadiusText("# one\nserver secret 3\n\n # indented\n#two\n", cfgRadius), "# one\n#two\n");
}

TEST(RadiusText, TakesAnyNumberButZeroForYes)
{
    XasHostAddr name = xasNamedHost("rad");
    name.is_name = 0x80000000U;
    XasRadiusPayload cfgRadius = settings(name, name);
    cfgRadius.enabled = 2;
    EXPECT_EQ(xasRadiusText("", cfgRadius), "rad:1812   one    255\nrad:65535   two    255\n");
    XasHostAddr ipv6 = xasHostWithAddress("fd00::42");
    ipv6.is_ipv6 = 2;
    EXPECT_EQ(xasRadiusText("", settings(ipv6, ipv6)),
              "[fd00::42]:1812    one    255\n[fd00::42]:65535    two    255\n");
}

TEST(RadiusText, HasADifferentNumberOfBlanksForEachServerAndKindOfAddress)
{
    const XasHostAddr name = xasNamedHost("rad");
    const XasHostAddr ipv4 = xasHostWithAddress("10.0.0.42");
    const XasHostAddr ipv6 = xasHostWithAddress("fd00::42");
    EXPECT_EQ(xasRadiusText("", settings(name, name)), "rad:1812   one    255\nrad:65535   two    255\n");
    EXPECT_EQ(xasRadiusText("", settings(ipv4, ipv4)),
              "10.0.0.42:1812   one    255\n10.0.0.42:65535    two    255\n");
    EXPECT_EQ(xasRadiusText("", settings(ipv6, ipv6)),
              "[fd00::42]:1812    one    255\n[fd00::42]:65535    two    255\n");
}

TEST(RadiusText, WritesTheFirstServerAlwaysAndTheSecondUnlessItIsAnEmptyName)
{
    EXPECT_EQ(xasRadiusText("", settings(xasNamedHost(""), xasNamedHost(""))), ":1812   one    255\n");
    EXPECT_EQ(xasRadiusText("", settings({}, {})),
              "0.0.0.0:1812   one    255\n0.0.0.0:65535    two    255\n");
}

TEST(RadiusText, TakesANameThatReadsAsAnUnusableAddressForAName)
{
    const XasHostAddr name = xasNamedHost("<invalid>");
    EXPECT_EQ(xasRadiusText("", settings(name, name)),
              "<invalid>:1812   one    255\n<invalid>:65535   two    255\n");
}

TEST(RadiusText, ReadsASecretWithoutEndUpToTheWidthOfItsField)
{
    XasRadiusPayload cfgRadius = settings(xasNamedHost("r"), xasNamedHost(""));
    std::string(130, 's').copy(cfgRadius.server1.secret, 130);
    EXPECT_EQ(xasRadiusText("", cfgRadius), "r:1812   " + std::string(130, 's') + "    255\n");
}
