#include "xms/logs.h"

#include "support/files.h"

#include <fstream>

namespace {

class XmsLogFiles : public XasFilesTest {
  protected:
    static std::vector<std::string> textsOf(const std::vector<XmsLogLine> &lines)
    {
        std::vector<std::string> texts;
        for (const XmsLogLine &line : lines)
            texts.push_back(line.text);
        return texts;
    }

    void append(std::string_view name, std::string_view text) const
    {
        std::ofstream{dir.path(name), std::ios::app} << text;
    }
};

} // namespace

TEST(XmsLogs, DateAndHostAreLeftOut)
{
    EXPECT_EQ(xmsLogText("Nov 22 05:21:43 console xasd: sw/info-Running /r58/bin/dns "),
              "xasd: sw/info-Running /r58/bin/dns");
    EXPECT_EQ(xmsLogText("Nov  2 05:21:43 console dns: a  b\r"), "dns: a  b");
    EXPECT_EQ(xmsLogText("no date here, but five words"), "no date here, but five words");
    EXPECT_EQ(xmsLogText("Nov 22 05:21:43 alone"), "alone");
    EXPECT_EQ(xmsLogText("Nov 22 05:21:43 "), "Nov 22 05:21:43");
    EXPECT_EQ(xmsLogText(""), "");
}

TEST_F(XmsLogFiles, WhatWasThereBeforeIsNotTaken)
{
    dir.write("sw", "old\n");
    XmsLogs logs{{dir.path("sw")}};
    EXPECT_THAT(logs.take(), IsEmpty());
    append("sw", "one\ntwo\n");
    EXPECT_THAT(textsOf(logs.take()), ElementsAre("one", "two"));
    EXPECT_THAT(logs.take(), IsEmpty());
}

TEST_F(XmsLogFiles, ALineIsTakenOnceItIsWhole)
{
    dir.write("sw", "");
    XmsLogs logs{{dir.path("sw")}};
    append("sw", "on");
    EXPECT_THAT(logs.take(), IsEmpty());
    append("sw", "e\ntw");
    EXPECT_THAT(textsOf(logs.take()), ElementsAre("one"));
}

TEST_F(XmsLogFiles, AFileThatAppearsLaterIsTakenWhole)
{
    XmsLogs logs{{dir.path("sw"), dir.path("general")}};
    EXPECT_THAT(logs.take(), IsEmpty());
    dir.write("general", "one\n");
    EXPECT_THAT(textsOf(logs.take()), ElementsAre("one"));
}

TEST_F(XmsLogFiles, ALogThatIsRotatedOrEmptiedIsFollowed)
{
    dir.write("sw", "a long line of before\n");
    XmsLogs logs{{dir.path("sw")}};
    ASSERT_EQ(rename(dir.path("sw").c_str(), dir.path("sw.1").c_str()), 0);
    dir.write("sw", "a line of the new file that is longer than the other\n");
    EXPECT_THAT(textsOf(logs.take()), ElementsAre("a line of the new file that is longer than the other"));
    std::ofstream{dir.path("sw")} << "short\n";
    EXPECT_THAT(textsOf(logs.take()), ElementsAre("short"));
}

TEST_F(XmsLogFiles, WhatIsNoFileIsNotWaitedFor)
{
    ASSERT_EQ(mkfifo(dir.path("sw").c_str(), 0600), 0);
    XmsLogs logs{{dir.path("sw"), dir.path()}};
    EXPECT_THAT(logs.take(), IsEmpty());
    EXPECT_THAT(logs.settle(), IsEmpty());
}

TEST_F(XmsLogFiles, ASettledLogHasGivenEverything)
{
    dir.write("sw", "");
    XmsLogs logs{{dir.path("sw")}};
    append("sw", "one\n");
    EXPECT_THAT(textsOf(logs.settle()), ElementsAre("one"));
    EXPECT_THAT(XmsLogs{{}}.settle(), IsEmpty());
}
