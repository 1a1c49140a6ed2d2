// Every byte in each text that goes into a command: refused, or one word of the very command that a harmless
// text gives. The shell and the filter's script are real, the programs note how they are called.
#include "auth/local_users.h"
#include "dispatch/ipfilter_assign.h"
#include "dispatch/ipfilter_set.h"
#include "dispatch/settings.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"
#include "support/reply.h"
#include "support/stub.h"
#include "support/test.h"
#include "support/users.h"

namespace {

using Calls = std::vector<std::vector<std::string>>;

class CommandText : public XasFilesTest {
  protected:
    CommandText()
    {
        for (const char *program : {"/bin/iptables", "/bin/adduser", "/bin/deluser"})
            stubs.put(program);
        xasWriteFile("/usr/bin/xas_iptables.sh", "#!/bin/sh\nIPTABLES=/bin/iptables\n", 0755);
        std::filesystem::create_directories("/etc/zel");
        ::setenv("XMS_STORE", dir.path().c_str(), 1);
    }
    ~CommandText() override { ::unsetenv("XMS_STORE"); }

    /** What the programs are called with for a text, or none when the message is refused. */
    std::optional<Calls> callsWith(const XasMessageBuilder &harmless, const char *field,
                                   const std::string &text)
    {
        XasMessage msg = XasMessageBuilder{harmless}.raw(field, text + '\0');
        const XasSetting &setting = *xasFindSetting(msg.xH.msgtype);
        stubs.forget();
        log.take();
        const XasCfgFileList cfgFiles;
        XasReplyStatus reply;
        const bool isUnfit = !xasFindUnfitText(setting.texts, msg).empty();
        const bool isUpdated = !isUnfit && setting.update(&msg, &cfgFiles, &reply) == 0;
        if (!isUpdated) {
            EXPECT_THAT(stubs.calls(), IsEmpty()) << "what is refused runs nothing";
            return std::nullopt;
        }
        return stubs.calls();
    }

    /** Each byte but NUL in the middle of the text gives the calls of "xzy" with the text in its place. */
    void expectOneWord(const XasMessageBuilder &harmless, const char *field, std::string_view splitting = {})
    {
        const auto model = callsWith(harmless, field, "xzy");
        ASSERT_TRUE(model);
        ASSERT_FALSE(model->empty());
        unsigned taken = 0;
        for (int byte = 1; byte <= 255; ++byte) {
            if (splitting.find(static_cast<char>(byte)) != std::string_view::npos)
                continue;
            const std::string text{'x', static_cast<char>(byte), 'y'};
            const auto calls = callsWith(harmless, field, text);
            if (!calls)
                continue;
            ++taken;
            Calls expected = *model;
            for (auto &words : expected)
                std::ranges::replace(words, std::string{"xzy"}, text);
            ASSERT_EQ(*calls, expected) << field << " with byte " << byte;
        }
        EXPECT_GE(taken, 190U) << "only what breaks something is refused";
        EXPECT_FALSE(xasExists("y"));
    }

    XasStubs stubs;
    XasLogCapture log;
};

} // namespace

TEST_F(CommandText, NameOfAFilterSetIsOneWordOfItsCommands)
{
    expectOneWord(XasMessageBuilder{XMSG_IPFILTER_SET}.set("id=1 action=create"), "name");
}

TEST_F(CommandText, PortsOfAFilterRuleAreOneWordEach)
{
    expectOneWord(XasMessageBuilder{XMSG_IPFILTER_SET}.set(
                      "id=1 name=office action=create num_rules=1 rule1.protocol=tcp rule1.ip=10.0.0.1"),
                  "rule1.portrange", ",");
}

TEST_F(CommandText, NameOfAnAssignedFilterIsOneWordOfItsCommand)
{
    expectOneWord(XasMessageBuilder{XMSG_IPFILTER_ASSIGN}.set("iface_type=eth iface_id=1"), "filterName");
}

TEST_F(CommandText, LoginAndPasswordOfAUserAreOneWordEach)
{
    expectOneWord(XasMessageBuilder{XMSG_USER}.set("action=password login=bob"), "password");
    expectOneWord(XasMessageBuilder{XMSG_USER}.set("action=edit password=secret"), "login");
    expectOneWord(XasMessageBuilder{XMSG_USER}.set("action=add password=secret"), "login");
}

TEST_F(CommandText, SequencesOfAUserNeverAddALineToHisPortFile)
{
    for (const char *field : {"escseq", "brkseq"}) {
        for (int byte = 1; byte <= 255; ++byte) {
            const std::string text{'x', static_cast<char>(byte), 'y'};
            if (!callsWith(XasMessageBuilder{XMSG_USER}.set("action=add login=bob"), field, text))
                continue;
            const std::string portFile = xasReadFile("/etc/zel/bob.conf");
            ASSERT_EQ(std::ranges::count(portFile, '\n'), 5) << field << " with byte " << byte;
            ASSERT_THAT(portFile, HasSubstr("=\"" + text + "\"\n"));
        }
    }
}
