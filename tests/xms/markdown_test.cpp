#include "xms/markdown.h"
#include "xms/settings_text.h"

#include "dispatch/settings.h"
#include "msg/type_names.h"
#include "support/files.h"

TEST(XmsMarkdown, TheReferenceInTheDocumentsIsUpToDate)
{
    EXPECT_TRUE(xasReadFile(XAS_DOCS_DIR "/messages.md") == xmsMarkdown())
        << "docs/messages.md is not what the fields' descriptions give: run ./dev docs";
}

TEST(XmsMarkdown, TheDocumentOfTheSettingsIsUpToDate)
{
    EXPECT_TRUE(xasReadFile(XAS_DOCS_DIR "/settings.md") == xmsSettingsMarkdown())
        << "docs/settings.md is not what the rows give: run ./dev docs";
}

TEST(XmsMarkdown, EveryTypeThatIsActedUponHasItsSection)
{
    const std::string text = xmsMarkdown();
    for (const XasSetting &row : xasSettings())
        EXPECT_THAT(text, HasSubstr("\n## " + msgShortName(row.msgtype) + "\n"));
}

TEST(XmsMarkdown, AFieldIsALineOfATable)
{
    const std::string text = xmsMarkdown();
    EXPECT_THAT(text, HasSubstr("\n## nat_notify\n"
                                "\n"
                                "`XMSG_NAT_NOTIFY` (63): address translation changes (never answered).\n"
                                "Handling: never answered, not stored; application: nat.\n"
                                "\n"
                                "| field | offset | bytes | kind | default | meaning (values) |\n"
                                "|---|---|---|---|---|---|\n"
                                "| `add` | 120 | 4 | flag | yes | yes: add the address, no: delete it |\n"
                                "| `address` | 124 | 4 | IPv4 | 0.0.0.0 | the address to translate |\n"));
    EXPECT_THAT(text,
                HasSubstr("\n`eth<n>`: n is 1 to 2, 48 bytes apart; the ports as people see them; their "
                          "devices are eth0 and eth1\n"));
}

TEST(XmsMarkdown, TheHeaderHasTheNamesOfActionsAndSenders)
{
    const std::string text = xmsMarkdown();
    EXPECT_THAT(text, HasSubstr("| `action` | 4 | 4 | 0 Set, 1 Get, 2 Return |\n"));
    EXPECT_THAT(text,
                HasSubstr("| `sender` | 8 | 4 | 0 XCS, 1 XMS, 2 XWS, 3 CLI, 4 APP, 5 LCD, 6 XLD, 7 XPB, "
                          "8 XDD, 9 XPC, 10 SNMPD |\n"));
    EXPECT_THAT(text, HasSubstr("| 3 | [`XMSG_DNS`](#dns) | dns | name servers |\n"));
    EXPECT_THAT(text, HasSubstr("| 14 | `XMSG_SSH` |  |  |\n"));
}
