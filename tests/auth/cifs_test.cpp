// The share that is offered: smb.conf and the SMB password file.
#include "auth/cifs.h"

#include "support/log.h"
#include "support/reply.h"

namespace {

constexpr const char *LANMAN = "E52CAC67419A9A224A3B108F3FA6CB6D";
constexpr const char *NT = "8846F7EAEE8FB117AD06BDD830B7586C";
constexpr const char *CHANGED = "LCT-4F3A2B1C";
constexpr const char *ENTRY =
    "cifsuser:100:E52CAC67419A9A224A3B108F3FA6CB6D:8846F7EAEE8FB117AD06BDD830B7586C:"
    "[U          ]:LCT-4F3A2B1C:Cifs User\n";

/** A file as it may have grown on an appliance. */
constexpr const char *LIFELIKE = "# Samba configuration of the console server\n"
                                 "; workgroup = COMMENTED\n"
                                 "[global]\n"
                                 "\n"
                                 "   workgroup = WORKGROUP\n"
                                 "\tserver string = %h (Samba)\n"
                                 "   interfaces = 127.0.0.0/8 eth0 eth1\n"
                                 "   bind interfaces only = yes\n"
                                 "   log file = /var/log/samba/log.%m\n"
                                 "#  interfaces = 10.0.0.1\n"
                                 "   workgroup owner = nobody\n"
                                 "[logs]\n"
                                 "   comment = workgroup = none\n"
                                 "   path = /var/log\n"
                                 "   valid users = cifsuser\n";

XasCifsPayload settings()
{
    XasCifsPayload cifs{};
    cifs.enabled = 1;
    cifs.eth1 = 1;
    xasSetFieldText(cifs.lanman_pwd, LANMAN);
    xasSetFieldText(cifs.nt_pwd, NT);
    xasSetFieldText(cifs.lct_field, CHANGED);
    xasSetFieldText(cifs.workgroup, "ENGINEERING");
    return cifs;
}

/** What becomes of one line of smb.conf. */
std::string lineText(const std::string &line, const XasCifsPayload &cifs = settings())
{
    return xasSmbText(line + "\n", cifs);
}

class SmbPassText : public testing::Test {
  protected:
    /** The complete text; "refused" otherwise. */
    std::string text(std::string_view oldText)
    {
        const XasNewText newText = xasSmbPassText(oldText, cifs, &reply);
        return newText.complete ? newText.text : "refused";
    }

    XasCifsPayload cifs = settings();
    XasLogCapture log;
    XasReplyStatus reply;
};

} // namespace

TEST(SmbText, ReplacesAWholeFile)
{
    EXPECT_EQ(xasSmbText(LIFELIKE, settings()), "# Samba configuration of the console server\n"
                                                "; workgroup = COMMENTED\n"
                                                "[global]\n"
                                                "\n"
                                                "   workgroup = ENGINEERING\n"
                                                "\tserver string = %h (Samba)\n"
                                                "   interfaces = 127.0.0.1 eth0 \n"
                                                "   bind interfaces only = yes\n"
                                                "   log file = /var/log/samba/log.%m\n"
                                                "#  interfaces = 10.0.0.1\n"
                                                "   workgroup = ENGINEERING\n"
                                                "[logs]\n"
                                                "   comment = workgroup = none\n"
                                                "   path = /var/log\n"
                                                "   valid users = cifsuser\n");
}

TEST(SmbText, KeepsLinesWhoseFirstPieceIsNoneOfItsOwn)
{
    for (const char *line :
         {"", " ", "\t", "=", " = = ", "#workgroup = x", ";interfaces = x", "# interfaces = x",
          "Workgroup = x", "workgroups = x", "interface = x", "bind interfaces only = yes", "[workgroup]",
          "a = workgroup", "=\t= workgroup", "\t workgroup = x"})
        EXPECT_EQ(lineText(line), std::string{line} + "\n") << line;
}

TEST(SmbText, TakesBlanksTabsAndEqualsSignsInFrontOfAKeyForNothing)
{
    for (const char *line :
         {"workgroup", "workgroup=x", "workgroup =x", "  workgroup = x", "\tworkgroup = x", "workgroup\t= x",
          "\t\tworkgroup\t=x", "= workgroup", "workgroup=", "workgroup x y"})
        EXPECT_EQ(lineText(line), "   workgroup = ENGINEERING\n") << line;
    for (const char *line : {"interfaces", "interfaces=lo", " \tinterfaces\t = lo", "==interfaces== lo"})
        EXPECT_EQ(lineText(line), "   interfaces = 127.0.0.1 eth0 \n") << line;
}

TEST(SmbText, TakesACommentSignThatDoesNotBeginTheLineForPartOfTheKey)
{
    EXPECT_EQ(lineText(" #workgroup = x"), " #workgroup = x\n");
    EXPECT_EQ(lineText(" ; interfaces = x"), " ; interfaces = x\n");
}

TEST(SmbText, ListsTheLoopbackAddressAndThePortsThatServe)
{
    struct Case {
        std::uint32_t eth1, eth2;
        const char *interfaces;
    };
    constexpr Case CASES[] = {{0, 0, "127.0.0.1 "},
                              {1, 0, "127.0.0.1 eth0 "},
                              {0, 1, "127.0.0.1 eth1"},
                              {1, 1, "127.0.0.1 eth0 eth1"},
                              {2, 0, "127.0.0.1 eth0 "},
                              {0, 0x80000000, "127.0.0.1 eth1"},
                              {256, 256, "127.0.0.1 eth0 eth1"}};
    for (const Case &c : CASES) {
        XasCifsPayload cifs = settings();
        cifs.eth1 = c.eth1;
        cifs.eth2 = c.eth2;
        EXPECT_EQ(lineText("interfaces = x", cifs), "   interfaces = " + std::string{c.interfaces} + "\n");
    }
}

TEST(SmbText, WritesAnEmptyWorkgroupToo)
{
    EXPECT_EQ(lineText("workgroup = x", {}), "   workgroup = \n");
}

TEST(SmbText, CutsALineAfter511CharactersItsLineFeedWithThem)
{
    XasCifsPayload cifs = settings();
    // "   workgroup = " has 15 characters
    xasSetFieldText(cifs.workgroup, std::string(495, 'w'));
    EXPECT_EQ(xasSmbText("workgroup = x\nnext\n", cifs),
              "   workgroup = " + std::string(495, 'w') + "\nnext\n");
    xasSetFieldText(cifs.workgroup, std::string(496, 'w'));
    EXPECT_EQ(xasSmbText("workgroup = x\nnext\n", cifs),
              "   workgroup = " + std::string(496, 'w') + "next\n");
    std::memset(cifs.workgroup, 'w', sizeof cifs.workgroup);
    EXPECT_EQ(xasSmbText("workgroup = x\nnext\n", cifs),
              "   workgroup = " + std::string(496, 'w') + "next\n");
}

TEST(SmbText, TakesALongLineInPiecesOf511Bytes)
{
    const std::string comment = "#" + std::string(510, 'c');
    const std::string key = "workgroup=" + std::string(501, 'x');
    ASSERT_EQ(key.size(), 511U);
    EXPECT_EQ(xasSmbText(comment + key + "tail\n", settings()),
              comment + "   workgroup = ENGINEERING\n" + "tail\n");
}

TEST(SmbText, ReadsLinesWithCarriageReturnsAndEndsAReplacedLastLine)
{
    EXPECT_EQ(xasSmbText("interfaces\r\n[a]\r\nworkgroup", settings()),
              "   interfaces = 127.0.0.1 eth0 \n[a]\r\n   workgroup = ENGINEERING\n");
    EXPECT_EQ(xasSmbText("[a]", settings()), "[a]");
}

TEST(SmbText, DoesNotChangeWhenItIsMadeTwice)
{
    const std::string once = xasSmbText(LIFELIKE, settings());
    EXPECT_EQ(xasSmbText(once, settings()), once);
}

TEST_F(SmbPassText, RefusesAPasswordThatLacksAPart)
{
    const auto refusal = [](const char *lanman, const char *nt, const char *changed) {
        return xasErrorLine("Invalid samba password, lanman_pwd = " + std::string{lanman} +
                            ", nt_pwd = " + nt + ", lct_field = " + changed + "\n");
    };
    xasSetFieldText(cifs.nt_pwd, "");
    EXPECT_EQ(text(ENTRY), "refused");
    xasSetFieldText(cifs.lanman_pwd, "");
    EXPECT_EQ(text(ENTRY), "refused");
    xasSetFieldText(cifs.nt_pwd, NT);
    EXPECT_EQ(text(ENTRY), "refused");
    xasSetFieldText(cifs.lanman_pwd, LANMAN);
    xasSetFieldText(cifs.lct_field, "");
    EXPECT_EQ(text(ENTRY), "refused");
    EXPECT_THAT(log.lines(), ElementsAre(refusal(LANMAN, "", CHANGED), refusal("", "", CHANGED),
                                         refusal("", NT, CHANGED), refusal(LANMAN, NT, "")));
    EXPECT_EQ(xasReplyText(reply), "1 Invalid samba password");
}

TEST_F(SmbPassText, ReplacesAWholeFile)
{
    EXPECT_EQ(
        text("#\n"
             "# SMB password file.\n"
             "#\n"
             "#cifsuser:100:X:X:[U          ]:LCT-00000000:commented\n"
             "root:0:XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX:XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX:[U          ]:LCT-"
             "00000000:root\n"
             "cifsuser:100:AAD3B435B51404EEAAD3B435B51404EE:31D6CFE0D16AE931B73C59D7E0C089C0:[U          "
             "]:LCT-00000000:Cifs User\n"
             "\n"
             "operator:37:01FC5A6BE7BC6929AAD3B435B51404EE:0CB6948805F797BF2A82807973B89537:[U          "
             "]:LCT-4F3A2B1C:Operator\n"),
        "#\n"
        "# SMB password file.\n"
        "#\n"
        "#cifsuser:100:X:X:[U          ]:LCT-00000000:commented\n"
        "root:0:XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX:XXXXXXXXXXXXXXXXXXXXXXXXXXXXXXXX:[U          ]:LCT-"
        "00000000:root\n"
        "\n"
        "operator:37:01FC5A6BE7BC6929AAD3B435B51404EE:0CB6948805F797BF2A82807973B89537:[U          "
        "]:LCT-4F3A2B1C:Operator\n"
        "cifsuser:100:E52CAC67419A9A224A3B108F3FA6CB6D:8846F7EAEE8FB117AD06BDD830B7586C:[U          "
        "]:LCT-4F3A2B1C:Cifs User\n");
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
}

TEST_F(SmbPassText, DropsEveryLineThatBeginsWithTheFourLettersOfTheUser)
{
    EXPECT_EQ(text("cifs\ncifs2:1\ncifsadmin:2\ncif:3\nCifs:4\n cifs:5\nxcifs:6\n"),
              "cif:3\nCifs:4\n cifs:5\nxcifs:6\n" + std::string{ENTRY});
}

TEST_F(SmbPassText, StaysAsItIsWhenTheShareIsOff)
{
    cifs.enabled = 0;
    xasSetFieldText(cifs.nt_pwd, "");
    EXPECT_EQ(text("# c\ncifsuser:100:\nroot:0:"), "# c\ncifsuser:100:\nroot:0:");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(SmbPassText, JoinsTheUserToALastLineWithoutLineFeed)
{
    EXPECT_EQ(text("root:0:X"), "root:0:X" + std::string{ENTRY});
}
