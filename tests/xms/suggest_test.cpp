#include "xms/suggest.h"

#include "support/test.h"

TEST(XmsSuggest, NothingIsSuggestedForWhatIsFarFromEverything)
{
    EXPECT_THAT(xmsCloseNames("frobnicate", {"hostname", "domain"}), IsEmpty());
    EXPECT_EQ(xmsDidYouMean("frobnicate", {"hostname", "domain"}), "");
}

TEST(XmsSuggest, AShortNameIsNotSuggestedForOneThatSharesNothing)
{
    EXPECT_THAT(xmsCloseNames("xy", {"ab", "cd"}), IsEmpty());
}

TEST(XmsSuggest, TheDistanceCountsSingleEdits)
{
    EXPECT_EQ(xmsEditDistance("", ""), 0U);
    EXPECT_EQ(xmsEditDistance("eth", "eth"), 0U);
    EXPECT_EQ(xmsEditDistance("", "eth"), 3U);
    EXPECT_EQ(xmsEditDistance("eth", ""), 3U);
    EXPECT_EQ(xmsEditDistance("kitten", "sitting"), 3U);
    EXPECT_EQ(xmsEditDistance("dsn", "dns"), 2U);
}

TEST(XmsSuggest, TheClosestComeFirst)
{
    EXPECT_THAT(xmsCloseNames("hostnme", {"domain", "postname", "hostname"}),
                ElementsAre("hostname", "postname"));
}

TEST(XmsSuggest, MembersOfGroupsAreFoundByTheirLastPart)
{
    EXPECT_THAT(xmsCloseNames("mask", {"eth1.mask", "eth1.maskv6", "eth2.mask", "gateway"}),
                ElementsAre("eth1.mask", "eth2.mask"));
}

TEST(XmsSuggest, AtMostFourAreNamed)
{
    EXPECT_EQ(xmsDidYouMean("dns", {"dns1", "dns2", "dns3", "dns4", "dns5"}),
              " (did you mean dns1, dns2, dns3 or dns4?)");
    EXPECT_EQ(xmsDidYouMean("dns", {"dns1"}), " (did you mean dns1?)");
}
