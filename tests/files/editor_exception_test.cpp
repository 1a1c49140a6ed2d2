// An exception inside an editor is that editor's failure: memory that runs out ends nothing but the change.
#include "config/hostname.h"
#include "files/editor.h"

#include "support/apps.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"
#include "support/reply.h"

#include <gmock/gmock.h>
#include <stdexcept>

using testing::ElementsAre;

namespace {

constexpr XasEditTexts TEXTS{.openReason = "not opened", .saveReason = "not saved"};

class EditorException : public XasFilesTest {
  protected:
    template <class Make>
    int edit(const Make &make)
    {
        return xasEditFile(dir.path("live").c_str(), TEXTS, &reply, make);
    }

    XasLogCapture log;
    XasReplyStatus reply;
};

const XasLogLine NO_MEMORY = xasErrorLine("std::bad_alloc\n");

} // namespace

TEST_F(EditorException, IsLoggedAndFailsTheSaveAndTheFileStays)
{
    dir.write("live", "old\n");
    EXPECT_EQ(
        edit([](std::string_view /*oldText*/) -> XasNewText { throw std::runtime_error{"what it says"}; }),
        1);
    EXPECT_EQ(xasReplyText(reply), "3 not saved");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("what it says\n")));
    EXPECT_EQ(dir.read("live"), "old\n");
    EXPECT_FALSE(dir.has("live.old"));
}

TEST_F(EditorException, OfAnyKindIsOne)
{
    dir.write("live", "old\n");
    EXPECT_EQ(edit([](std::string_view /*oldText*/) -> XasNewText { throw 7; }), 1);
    EXPECT_EQ(xasReplyText(reply), "3 not saved");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Unknown error\n")));
}

TEST_F(EditorException, IsToldWhenNoMemoryIsLeftAtAll)
{
    constexpr XasEditTexts LONG{.openReason = "not opened",
                                .saveReason = "a reason that is longer than any short text is"};
    int result = 0;
    {
        const XasFailingNew fault;
        result = xasGuardEdit(&LONG, &reply, []() -> int { throw std::bad_alloc{}; });
    }
    EXPECT_EQ(result, 1);
    EXPECT_THAT(log.lines(), ElementsAre(NO_MEMORY));
    EXPECT_EQ(xasReplyText(reply), "3 a reason that is longer than any short text is");
}

TEST_F(EditorException, OfAHandlersEditorRollsBackTheEarlierFiles)
{
    constexpr std::size_t BIG = 1 << 20;
    const std::string hosts = dir.write("hosts", "old hosts\n");
    const std::string hostname = dir.write("hostname", std::string(2 * BIG, '#'));
    const XasCfgFileList files = xasTestCfgFiles({{"hosts", hosts},
                                                  {"hostname", hostname},
                                                  {"network", dir.write("network", "")},
                                                  {"domain", dir.write("domain", "")}});
    XasMessage msg = XasMessageBuilder{XMSG_HOSTNAME}.set("hostname", "box");
    int result = 0;
    {
        const XasFailingNew fault{BIG};
        result = xasUpdateHostnameCfg(&msg, &files, &reply);
    }
    EXPECT_EQ(result, 1);
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new hostname config file");
    EXPECT_THAT(log.lines(), ElementsAre(NO_MEMORY, xasErrorLine("Error editing hostname file\n")));
    EXPECT_EQ(dir.read("hosts"), "old hosts\n") << "rolled back";
    EXPECT_FALSE(dir.has("hosts.old"));
    EXPECT_EQ(dir.read("hostname").size(), 2 * BIG);
}
