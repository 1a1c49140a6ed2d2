// TACACS+: the client's file from its template.
#include "auth/tacacs.h"

#include "auth/pam.h"
#include "support/files.h"
#include "support/hosts.h"

namespace {

constexpr const char *TEMPLATE = "server1 = $(SERVER_1)\nserver2 = $(SERVER_2)\nserver3 = $(SERVER_3)\n"
                                 "server1_secret = $(SERVER_1_SECRET)\nencrypt = $(ENCRYPT)\n"
                                 "login = $(SERVICE)\n";

XasTacacsPayload settings()
{
    XasTacacsPayload cfgTacacs{};
    cfgTacacs.servers[0] = xasHostWithAddress("10.0.0.43");
    cfgTacacs.servers[1] = xasNamedHost("");
    cfgTacacs.servers[2] = xasHostWithAddress("fd00::43");
    xasSetFieldText(cfgTacacs.server1_secret, "s3cret");
    cfgTacacs.encrypt = 1;
    cfgTacacs.service = XAS_TACACS_LOGIN;
    return cfgTacacs;
}

class TacacsFile : public XasFilesTest {
  protected:
    XasTacacsPayload cfgTacacs = settings();
    XasReplyStatus reply;
};

} // namespace

TEST_F(TacacsFile, IsWrittenWhenDisabledTooAndIsTheOwnersAlone)
{
    const std::string path = dir.write("tacplus.conf", "old", 0644);
    EXPECT_EQ(xasEditTacacsCfgFile(dir.write("template", TEMPLATE).c_str(), path.c_str(), &cfgTacacs, &reply),
              0);
    EXPECT_EQ(dir.read("tacplus.conf"), "server1 = 10.0.0.43\nserver2 = \nserver3 = [fd00::43]\n"
                                        "server1_secret = s3cret\nencrypt = 1\nlogin = login\n");
    EXPECT_EQ(xasModeOf(path), 0600U);
}

TEST_F(TacacsFile, ReadsBackWhatTheMessageSaid)
{
    const std::string text = xasTacacsText(TEMPLATE, cfgTacacs);
    const std::string path = dir.write("tacplus.conf", text);
    const auto valueOf = [&](const char *tag) {
        std::string value;
        EXPECT_EQ(xasGetConfData(path.c_str(), tag, &value), 0) << tag;
        return value;
    };
    EXPECT_EQ(valueOf("server1"), "10.0.0.43");
    EXPECT_EQ(valueOf("server2"), "");
    EXPECT_EQ(valueOf("server3"), "[fd00::43]");
    EXPECT_EQ(valueOf("server1_secret"), "s3cret");
    EXPECT_EQ(valueOf("encrypt"), "1");
    EXPECT_EQ(valueOf("login"), "login");
}

TEST(TacacsText, NamesTheServiceAndTakesPapForEveryOtherNumber)
{
    XasTacacsPayload cfgTacacs = settings();
    const auto serviceOf = [&](std::uint32_t service) {
        cfgTacacs.service = service;
        return xasTacacsText("$(SERVICE)", cfgTacacs);
    };
    EXPECT_EQ(serviceOf(0), "pap");
    EXPECT_EQ(serviceOf(1), "chap");
    EXPECT_EQ(serviceOf(2), "login");
    EXPECT_EQ(serviceOf(3), "pap");
    EXPECT_EQ(serviceOf(0xFFFFFFFFU), "pap");
}

TEST(TacacsText, HasBracketsAroundAnAddressFlaggedAsIpv6ByAnyNumberButZero)
{
    XasTacacsPayload cfgTacacs = settings();
    cfgTacacs.servers[0] = xasHostWithAddress("fd00::1");
    cfgTacacs.servers[0].is_ipv6 = 0x80000000U;
    EXPECT_EQ(xasTacacsText("$(SERVER_1)", cfgTacacs), "[fd00::1]");
}

TEST(TacacsText, HasNoBracketsAroundANameThatIsAlsoFlaggedAsIpv6)
{
    XasTacacsPayload cfgTacacs = settings();
    cfgTacacs.servers[0] = xasNamedHost("tac1");
    cfgTacacs.servers[0].is_ipv6 = 1;
    cfgTacacs.servers[1] = {};
    cfgTacacs.encrypt = 0x80000000U;
    std::string(128, 's').copy(cfgTacacs.server1_secret, 128);
    EXPECT_EQ(xasTacacsText("$(SERVER_1) $(SERVER_2) $(ENCRYPT) $(SERVER_1_SECRET)", cfgTacacs),
              "tac1 0.0.0.0 -2147483648 " + std::string(128, 's'));
}
