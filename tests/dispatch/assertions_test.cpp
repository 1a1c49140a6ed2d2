// Programming errors end the process with the assertion's text: every one on a message's way through the
// transport, the process manager, the safe replacement and the host-name and DNS editors. (Those of the
// script parameters are in script_params_test.cpp, those of all handlers in settings_test.cpp.)
#include "config/dns.h"
#include "config/hostname.h"
#include "core/daemon.h"
#include "core/msgqueue.h"
#include "files/config_file.h"
#include "support/test.h"

namespace {

/** The report of an assertion: its text and the function that it stands in. */
auto assertion(const std::string &text, const std::string &function)
{
    return AllOf(HasSubstr("Assertion `" + text + "' failed."), HasSubstr(": " + function + ": "));
}

class AssertionsDeathTest : public testing::Test {
  protected:
    XasDnsPayload servers{};
    XasReplyStatus reply;
    XasCfgFile cf;
};

} // namespace

TEST_F(AssertionsDeathTest, OfTheTransportNameTheMessage)
{
    XasUserList users;
    const XasIdleWork idle = [](XasMessage &) {
        return XasIdleResult::failed;
    };
    EXPECT_DEATH(xasSendMessage(nullptr), assertion("msg != ((void *)0)", "xasSendMessage"));
    EXPECT_DEATH(xasGetMessage(nullptr, true), assertion("msg != ((void *)0)", "xasGetMessage"));
    EXPECT_DEATH(xasReceiveMessage(nullptr, users, idle),
                 assertion("msg != ((void *)0)", "xasReceiveMessage"));
}

TEST_F(AssertionsDeathTest, OfTheProcessManagerNameTheDaemon)
{
    EXPECT_DEATH(xasStopDaemon(nullptr), assertion("daemon != ((void *)0)", "xasStopDaemon"));
}

TEST_F(AssertionsDeathTest, OfTheSafeReplacementNameTheArgument)
{
    EXPECT_DEATH(xasCfgOpenFiles(nullptr, &cf), assertion("cfgFileName != ((void *)0)", "xasCfgOpenFiles"));
    EXPECT_DEATH(xasCfgOpenFiles("/x", nullptr), assertion("cf != ((void *)0)", "xasCfgOpenFiles"));
    EXPECT_DEATH(xasCfgOpenOutFile(nullptr, &cf),
                 assertion("cfgFileName != ((void *)0)", "xasCfgOpenOutFile"));
    EXPECT_DEATH(xasCfgOpenOutFile("/x", nullptr), assertion("cf != ((void *)0)", "xasCfgOpenOutFile"));
    EXPECT_DEATH(xasOutputLine(nullptr, "", false), assertion("outFile != ((void *)0)", "xasOutputLine"));
    EXPECT_DEATH(xasOutputLine(stdout, nullptr, false), assertion("line != ((void *)0)", "xasOutputLine"));
    EXPECT_DEATH(xasCloseCfgFile(nullptr), assertion("cf != ((void *)0)", "xasCloseCfgFile"));
    EXPECT_DEATH(xasSaveCfgFile(nullptr), assertion("cf != ((void *)0)", "xasSaveCfgFile"));
}

TEST_F(AssertionsDeathTest, OfARestoreNameThePathAndItsLength)
{
    EXPECT_DEATH(xasRestoreCfgFile(nullptr), assertion("cfgFileName != ((void *)0)", "xasRestoreCfgFile"));
    EXPECT_DEATH(xasRestoreCfgFile(""), assertion("strlen(cfgFileName) > 0", "xasRestoreCfgFile"));
}

TEST_F(AssertionsDeathTest, OfEditorsNameTheArgument)
{
    EXPECT_DEATH(xasEditDNSCfgFile(nullptr, &servers, &reply), "cfgFileName != \\(\\(void \\*\\)0\\)");
    EXPECT_DEATH(xasEditDNSCfgFile("/x", nullptr, &reply), "dnsInfo != \\(\\(void \\*\\)0\\)");
}
