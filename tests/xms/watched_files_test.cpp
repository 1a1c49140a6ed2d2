#include "xms/watched_files.h"

#include "support/files.h"
#include "support/message.h"
#include "xms/error.h"

#include <unistd.h>

namespace {

class XmsWatchedFilesTest : public XasFilesTest {
  protected:
    /** A list that names `hosts`, `link` and the directory itself. */
    std::string list() const
    {
        std::string text = "<SYSAPP><APP><NAME>hostname</NAME>";
        for (const std::string &path : {dir.path("hosts"), dir.path("link"), dir.path()})
            text += "<CFGFILE><TYPE>t</TYPE><PATH>" + path + "</PATH></CFGFILE>";
        return dir.write("sysapp.xml", text + "</APP></SYSAPP>");
    }

    /** "NAME: DIFFERENCE" of each change. */
    static std::vector<std::string> changesOf(XmsWatchedFiles &files)
    {
        std::vector<std::string> texts;
        for (const XmsFileChange &change : files.takeChanges())
            texts.push_back(change.path.substr(change.path.rfind('/') + 1) + ": " + change.difference +
                            (change.isClosed ? "closed" : ""));
        return texts;
    }
};

XmsFileChange closed(const std::string &difference)
{
    return {.path = "/etc/x", .difference = difference, .isClosed = true};
}

} // namespace

TEST_F(XmsWatchedFilesTest, AListThatIsNotThereIsAComplaint)
{
    EXPECT_THROW(XmsWatchedFiles{dir.path("none.xml")}, XmsError);
}

TEST_F(XmsWatchedFilesTest, EachChangeIsToldOnce)
{
    dir.write("hosts", "a\n");
    XmsWatchedFiles files{list()};
    EXPECT_THAT(changesOf(files), IsEmpty());
    dir.write("hosts", "b\n");
    EXPECT_THAT(changesOf(files), ElementsAre("hosts: @@ -1 +1 @@\n-a\n+b\n"));
    EXPECT_THAT(changesOf(files), IsEmpty());
    unlink(dir.path("hosts").c_str());
    ASSERT_EQ(symlink("/usr/share/zoneinfo/UTC", dir.path("link").c_str()), 0);
    EXPECT_THAT(changesOf(files), ElementsAre("hosts: @@ -1 +0,0 @@\n-b\n",
                                              "link: @@ -0,0 +1 @@\n+-> /usr/share/zoneinfo/UTC\n"));
}

TEST_F(XmsWatchedFilesTest, RightsAreTold)
{
    dir.write("hosts", "a\n");
    XmsWatchedFiles files{list()};
    ASSERT_EQ(chmod(dir.path("hosts").c_str(), 0600), 0);
    EXPECT_THAT(changesOf(files), ElementsAre("hosts: [closed to others]\nclosed"));
    dir.write("hosts", "b\n", 0644);
    EXPECT_THAT(changesOf(files), ElementsAre("hosts: @@ -1 +1 @@\n-a\n+b\nclosed")) << "it was until now";
}

TEST_F(XmsWatchedFilesTest, WhatIsNoTextOrVeryLargeIsToldByItsSize)
{
    dir.write("hosts", "a\n");
    XmsWatchedFiles files{list()};
    dir.write("hosts", std::string_view{"a\0b", 3});
    EXPECT_THAT(changesOf(files), ElementsAre("hosts: @@ -1 +1 @@\n-a\n+[3 bytes that are no text]\n"));
    dir.write("hosts", std::string(300000, 'x'));
    EXPECT_THAT(changesOf(files),
                ElementsAre("hosts: @@ -1 +1 @@\n-[3 bytes that are no text]\n+[300000 bytes]\n"));
}

TEST(XmsMaskedChange, OfAClosedFileOnlyTheFirstWordsAreShown)
{
    EXPECT_EQ(
        xmsMaskedChange(closed("@@ -1,3 +1,4 @@\n bindpw reading\n-alice:$1$x:1\n+ : PSK \"between us\"\n"
                               "+-----BEGIN\n+MIIEpAIBAAKCAQEA\n \n\\ No newline at end of file\n"),
                        {})
            .difference,
        "@@ -1,3 +1,4 @@\n bindpw ********\n-alice:********\n+ :********\n"
        "+********\n+********\n \n\\ No newline at end of file\n");
    EXPECT_EQ(xmsMaskedChange(closed("[closed to others]\n"), {}).difference, "[closed to others]\n");
}

TEST(XmsMaskedChange, OfAnyOtherTheKnownSecretsAreHidden)
{
    XmsKnownSecrets secrets;
    secrets.learn(XasMessageBuilder{XMSG_TACACS}.set("server1_secret", "testing-tacacs"));
    XmsFileChange change{.path = "/etc/x", .difference = "+auth secret=testing-tacacs debug\n"};
    EXPECT_EQ(xmsMaskedChange(change, secrets).difference, "+auth secret=******** debug\n");
}
