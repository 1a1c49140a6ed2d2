// RADIUS: the server file.
#include "auth/radius.h"

#include "support/faults.h"
#include "support/files.h"
#include "support/hosts.h"
#include "support/log.h"
#include "support/reply.h"

#include <cerrno>
#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::IsEmpty;

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

class RadiusFile : public XasFilesTest {
  protected:
    XasRadiusPayload cfgRadius = settings(xasNamedHost("rad1"), xasNamedHost(""));
    XasLogCapture log;
    XasReplyStatus reply;
};

using RadiusFileDeathTest = RadiusFile;

} // namespace

TEST_F(RadiusFileDeathTest, NeedsItsPathAndSettings)
{
    EXPECT_DEATH(xasEditRadiusCfgFile(nullptr, &cfgRadius, &reply), "cfgFileName != \\(\\(void \\*\\)0\\)");
    EXPECT_DEATH(xasEditRadiusCfgFile("/x", nullptr, &reply), "cfgRadius != \\(\\(void \\*\\)0\\)");
}

TEST_F(RadiusFile, MustExist)
{
    const std::string path = dir.path("server");
    EXPECT_EQ(xasEditRadiusCfgFile(path.c_str(), &cfgRadius, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening /etc/raddb/server file");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error opening config file \"" + path + "\"\n")));
}

TEST_F(RadiusFile, StaysWhenItCannotBeSaved)
{
    const std::string path = dir.write("server", "old\n");
    const XasFault fault{"rename", EIO, 1};
    EXPECT_EQ(xasEditRadiusCfgFile(path.c_str(), &cfgRadius, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new /etc/raddb/server file");
    EXPECT_EQ(dir.read("server"), "old\n");
}

TEST_F(RadiusFile, IsTheOwnersAloneAndSoIsItsTemporary)
{
    const std::string path = dir.write("server", "# comment\nold 1 2\n", 0644);
    EXPECT_EQ(xasEditRadiusCfgFile(path.c_str(), &cfgRadius, &reply), 0);
    EXPECT_EQ(xasModeOf(path), 0600U);
    EXPECT_EQ(dir.read("server"), "# comment\nrad1:1812   one    255\n");
    const XasFault fault{"rename", EIO, 1};
    EXPECT_EQ(xasEditRadiusCfgFile(path.c_str(), &cfgRadius, &reply), 1);
    EXPECT_EQ(xasModeOf(path + ".tmp"), 0600U);
}

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
