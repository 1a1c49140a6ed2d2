// Memory that runs out while a login method's file is made fails that file alone.
#include "auth/tacacs.h"

#include "support/faults.h"
#include "support/login_files.h"

using testing::ElementsAre;

namespace {

class LoginMemory : public XasLoginFilesTest {};

} // namespace

TEST_F(LoginMemory, ThatRunsOutFailsTheFileOfATemplateAndTheOthersFollow)
{
    constexpr std::size_t BIG = 1 << 20;
    dir.write("tacplustmpl", std::string(2 * BIG, '#'));
    dir.write("tacplus", "old\n");
    int result = 0;
    {
        const XasFailingNew fault{BIG};
        result = handle(xasUpdateTacacsCfg, XasMessageBuilder{XMSG_TACACS},
                        {"tacplustmpl", "tacplus", "nsswitch", "system-auth"});
    }
    EXPECT_EQ(result, 1);
    expectReply(3, "Error writing to tacplus.conf file");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("std::bad_alloc\n"),
                                         xasErrorLine("Error editing " + dir.path("tacplus") + "\n")));
    EXPECT_EQ(dir.read("tacplus"), "old\n");
    expectDerivedFiles();
}
