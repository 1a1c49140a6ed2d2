#include "core/log.h"

#include "support/log.h"

TEST(Log, HasNoTagForFacilitiesOutsideItsTable)
{
    EXPECT_EQ(xasFacilityTag(LOG_LOCAL2), "");
    EXPECT_EQ(xasFacilityTag(LOG_LOCAL7), "");
    EXPECT_EQ(xasFacilityTag(LOG_AUTH), "");
    EXPECT_EQ(xasFacilityTag(-1), "");
}

TEST(Log, HasNoTagForLevelsOutsideItsTable)
{
    EXPECT_EQ(xasLevelTag(0), "");
    EXPECT_EQ(xasLevelTag(LOG_ALERT), "");
    EXPECT_EQ(xasLevelTag(LOG_CRIT), "");
    EXPECT_EQ(xasLevelTag(LOG_NOTICE), "");
    EXPECT_EQ(xasLevelTag(8), "");
}

TEST(Log, TagsFacilitiesByTheirShortNames)
{
    EXPECT_EQ(xasFacilityTag(LOG_LOCAL0), "net");
    EXPECT_EQ(xasFacilityTag(LOG_LOCAL1), "srv");
    EXPECT_EQ(xasFacilityTag(LOG_AUTHPRIV), "auth");
    EXPECT_EQ(xasFacilityTag(LOG_LOCAL3), "dev");
    EXPECT_EQ(xasFacilityTag(LOG_LOCAL4), "diag");
    EXPECT_EQ(xasFacilityTag(LOG_LOCAL5), "gen");
    EXPECT_EQ(xasFacilityTag(LOG_LOCAL6), "sw");
}

TEST(Log, TagsLevelsByTheirShortNames)
{
    EXPECT_EQ(xasLevelTag(LOG_INFO), "info");
    EXPECT_EQ(xasLevelTag(LOG_WARNING), "warn");
    EXPECT_EQ(xasLevelTag(LOG_ERR), "err");
    EXPECT_EQ(xasLevelTag(LOG_DEBUG), "dbg");
}

TEST(Log, PassesTheBareLevelWhoseTagIsPrinted)
{
    const XasLogCapture log;
    xasLogError("one %d\n", 1);
    xasLogWarning("two %s\n", "2");
    xasLogInfo("three\n");
    EXPECT_THAT(log.lines(),
                ElementsAre(XasLogLine{LOG_ERR, "sw/err-one 1\n"}, XasLogLine{LOG_WARNING, "sw/warn-two 2\n"},
                            XasLogLine{LOG_INFO, "sw/info-three\n"}));
}

TEST(Log, AddsNoLineFeedToATextWithoutOne)
{
    const XasLogCapture log;
    xasLogError("fork error");
    EXPECT_THAT(log.lines(), ElementsAre(XasLogLine{LOG_ERR, "sw/err-fork error"}));
}

TEST(Log, PrintsAnotherFacilitysTagOnRequestAtTheSamePriority)
{
    const XasLogCapture log;
    xasLogErrorTagged(LOG_AUTHPRIV, "text\n");
    EXPECT_THAT(log.lines(), ElementsAre(XasLogLine{LOG_ERR, "auth/err-text\n"}));
}

TEST(Log, NeverReadsALoggedTextAsAFormat)
{
    const XasLogCapture log;
    xasLogError("%s", "%n%s%d\n");
    EXPECT_THAT(log.lines(), ElementsAre(XasLogLine{LOG_ERR, "sw/err-%n%s%d\n"}));
}

TEST(Log, LogsLongTextsWhole)
{
    const XasLogCapture log;
    const std::string text(4000, 'x');
    xasLogInfo("%s\n", text.c_str());
    EXPECT_THAT(log.lines(), ElementsAre(XasLogLine{LOG_INFO, "sw/info-" + text + "\n"}));
}

TEST(Log, IsOpenedUnderTheDaemonsNameAndFacility)
{
    EXPECT_EQ(xasOpenedLog(), std::nullopt);
    xasOpenLog();
    EXPECT_EQ(xasOpenedLog(), (XasOpenedLog{"xasd", LOG_CONS, LOG_LOCAL6}));
}

TEST(Log, CannotBeForgedByAValue)
{
    const XasLogCapture log;
    xasLogError("timezone file %s does not exist\n", "a\n<0>kern/emerg-\x1B[2J\t\x7F\x01");
    xasLogInfo("Running %s\n", "script\n");
    xasLogError("NULL\n %s\n", "x\r");
    xasLogError("NULL\n %s\n", "x\ny");
    xasLogError("%s", "own text\n");
    xasLogError("\xC3\xA4 \x80\xFF");
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine(
                                "timezone file a\\012<0>kern/emerg-\\033[2J\\011\\177\\001 does not exist\n"),
                            xasInfoLine("Running script\\012\n"), xasErrorLine("NULL\n x\\015\n"),
                            xasErrorLine("NULL\\012 x\\012y\n"), xasErrorLine("own text\n"),
                            xasErrorLine("\xC3\xA4 \x80\xFF")));
}
