// What a file may hold after a cut.
#include "powercut/versions.h"

#include "support/test.h"

namespace {

const std::string SECRETS = "etc/ipsec.secrets";

std::vector<std::string> badOf(const XasTree &tree, const std::vector<XasTree> &versions,
                               std::size_t acknowledged, std::size_t begun)
{
    return xasCheckTree(tree, versions, acknowledged, begun).bad;
}

} // namespace

TEST(PowercutVersions, AFileIsAsAcknowledgedOrAsUnderWay)
{
    const std::vector<XasTree> versions{{{"etc/hosts", "0"}}, {{"etc/hosts", "1"}}, {{"etc/hosts", "2"}}};
    EXPECT_THAT(badOf({{"etc/hosts", "1"}}, versions, 1, 2), IsEmpty());
    EXPECT_THAT(badOf({{"etc/hosts", "2"}}, versions, 1, 2), IsEmpty());
    EXPECT_THAT(badOf({{"etc/hosts", "0"}}, versions, 1, 2),
                ElementsAre("etc/hosts is older than acknowledged"));
    EXPECT_THAT(badOf({{"etc/hosts", ""}}, versions, 1, 2), ElementsAre("etc/hosts is not whole"));
}

TEST(PowercutVersions, SecretsMayBeEmptyOnlyWhileTheyAreBeingChanged)
{
    const std::vector<XasTree> versions{
        {{SECRETS, "# keys\na\n"}}, {{SECRETS, "# keys\nb\n"}}, {{SECRETS, "# keys\nb\n"}}};
    const XasFinding finding = xasCheckTree({{SECRETS, ""}}, versions, 0, 1);
    EXPECT_THAT(finding.bad, IsEmpty());
    EXPECT_TRUE(finding.isSecretsEmptied);
    EXPECT_THAT(badOf({{SECRETS, ""}}, versions, 1, 1), ElementsAre(SECRETS + " is not whole"));
    EXPECT_THAT(badOf({{SECRETS, ""}}, versions, 1, 2), ElementsAre(SECRETS + " is not whole"));
    EXPECT_THAT(badOf({{SECRETS, std::string(7, '\0')}}, versions, 0, 1), IsEmpty());
    EXPECT_THAT(badOf({{SECRETS, "# ke"}}, versions, 0, 1), ElementsAre(SECRETS + " is not whole"));
}

TEST(PowercutVersions, LeftOversAreTemporaryFiles)
{
    const std::vector<XasTree> versions{{{SECRETS, ""}}};
    const XasTree tree{
        {SECRETS, ""}, {"etc/ipsec.secretsCJU5eO", ""}, {"etc/sedaB3xYz", ""}, {"etc/hosts.tmp", ""}};
    const XasFinding finding = xasCheckTree(tree, versions, 0, 0);
    EXPECT_THAT(finding.bad, IsEmpty());
    EXPECT_EQ(finding.leftOvers, 3U);
    EXPECT_THAT(badOf({{SECRETS, ""}, {"etc/other", ""}}, versions, 0, 0),
                ElementsAre("etc/other was never there"));
}
