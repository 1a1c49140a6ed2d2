// The lines of the IP filter's working script, text only.
#include "dispatch/ipfilter_script.h"

#include "support/files.h"
#include "support/ipfilter.h"
#include "support/log.h"

namespace {

/** What a set of one rule makes of it, behind the line that empties the chain "set". */
std::string linesOf(const XasTestRule &rule)
{
    const XasFilterLines lines = xasIPFilterRulesText(xasTestFilterSet("set", {rule}), false);
    EXPECT_TRUE(lines.complete);
    const std::string flush = "${IPTABLES} -F set\n";
    EXPECT_EQ(lines.text.substr(0, flush.size()), flush);
    return lines.text.substr(flush.size());
}

std::string sourceOf(const char *ip, const char *rangeEnd, std::uint32_t masklength)
{
    return xasIPFilterSourceSpec(
        xasTestRuleRecord({.ip = ip, .rangeEnd = rangeEnd, .masklength = masklength}));
}

/** What a writer puts into an open file. */
template <class Write>
std::string writtenBy(Write write)
{
    char *text = nullptr;
    std::size_t size = 0;
    FILE *file = ::open_memstream(&text, &size);
    write(file);
    std::fclose(file);
    std::string copy{text, size};
    std::free(text);
    return copy;
}

/** The stored assignments are files in the test's directory. */
class FilterInput : public XasFilesTest {
  protected:
    FilterInput() { ::setenv("XMS_STORE", dir.path().c_str(), 1); }
    ~FilterInput() override { ::unsetenv("XMS_STORE"); }

    void assign(const std::string &key, std::uint32_t type, std::uint8_t id, std::string_view set) const
    {
        const XasMessage record = xasTestAssignMessage(type, id, set);
        dir.write("XMSG_IPFILTER_ASSIGN-" + key, xasMessageBytes(record));
    }
};

} // namespace

TEST(FilterSource, IsAPrefixWithoutARangeEnd)
{
    EXPECT_EQ(sourceOf("10.0.0.0", "255.255.255.255", 8), "-s 10.0.0.0/8");
    EXPECT_EQ(sourceOf("0.0.0.0", "255.255.255.255", 0), "-s 0.0.0.0/0");
    EXPECT_EQ(sourceOf("198.51.100.7", "255.255.255.255", 33), "-s 198.51.100.7/33");
}

TEST(FilterSource, PrintsThePrefixAsASignedNumber)
{
    EXPECT_EQ(sourceOf("10.0.0.0", "255.255.255.255", 0xFFFFFFFF), "-s 10.0.0.0/-1");
}

TEST(FilterSource, IsARangeWithOneWhateverThePrefix)
{
    EXPECT_EQ(sourceOf("10.0.0.1", "10.0.0.9", 8), "-m iprange --src-range 10.0.0.1-10.0.0.9");
    EXPECT_EQ(sourceOf("10.0.0.1", "0.0.0.0", 8), "-m iprange --src-range 10.0.0.1-0.0.0.0");
    EXPECT_EQ(sourceOf("10.0.0.1", "255.255.255.254", 8), "-m iprange --src-range 10.0.0.1-255.255.255.254");
}

TEST(FilterRule, IsSkippedWithProtocol0)
{
    EXPECT_EQ(linesOf({.protocol = 0, .portrange = "22"}), "");
}

TEST(FilterRule, HasTheOptionsOfItsProtocolCode)
{
    EXPECT_EQ(linesOf({.protocol = 1}), "${IPTABLES} -A set -p ALL -s 192.0.2.1/32 -j ACCEPT\n");
    EXPECT_EQ(linesOf({.protocol = 2}), "${IPTABLES} -A set -p tcp -s 192.0.2.1/32 -j ACCEPT\n");
    EXPECT_EQ(linesOf({.protocol = 3}), "${IPTABLES} -A set -p tcp --syn -s 192.0.2.1/32 -j ACCEPT\n");
    EXPECT_EQ(linesOf({.protocol = 4}), "${IPTABLES} -A set -p tcp ! --syn -s 192.0.2.1/32 -j ACCEPT\n");
    EXPECT_EQ(linesOf({.protocol = 5}), "${IPTABLES} -A set -p udp -s 192.0.2.1/32 -j ACCEPT\n");
    EXPECT_EQ(linesOf({.protocol = 6}), "${IPTABLES} -A set -p icmp -s 192.0.2.1/32 -j ACCEPT\n");
    EXPECT_EQ(linesOf({.protocol = 7}),
              "${IPTABLES} -A set -p icmp --icmp-type echo-request -s 192.0.2.1/32 -j ACCEPT\n");
    EXPECT_EQ(linesOf({.protocol = 8}), "${IPTABLES} -A set -p 50 -s 192.0.2.1/32 -j ACCEPT\n");
}

TEST(FilterRule, IsAnEchoRequestForEveryOtherProtocolCode)
{
    const std::string echo =
        "${IPTABLES} -A set -p icmp --icmp-type echo-request -s 192.0.2.1/32 -j ACCEPT\n";
    for (const std::uint32_t protocol : {9U, 50U, 0x80000000U, 0xFFFFFFFFU})
        EXPECT_EQ(linesOf({.protocol = protocol}), echo) << protocol;
}

TEST(FilterRule, HasTheTargetOfItsCode)
{
    EXPECT_EQ(linesOf({.protocol = 5, .target = 0}), "${IPTABLES} -A set -p udp -s 192.0.2.1/32 -j ACCEPT\n");
    EXPECT_EQ(linesOf({.protocol = 5, .target = 1}), "${IPTABLES} -A set -p udp -s 192.0.2.1/32 -j REJECT\n");
    for (const std::uint32_t target : {2U, 5U, 0xFFFFFFFFU})
        EXPECT_EQ(linesOf({.protocol = 5, .target = target}),
                  "${IPTABLES} -A set -p udp -s 192.0.2.1/32 -j DROP\n");
}

TEST(FilterRule, IsOneLineForEachPort)
{
    EXPECT_EQ(linesOf({.protocol = 2, .portrange = "22"}),
              "${IPTABLES} -A set -p tcp -s 192.0.2.1/32 --destination-port 22 -j ACCEPT\n");
    EXPECT_EQ(linesOf({.protocol = 5, .portrange = "161,5000:5010,9", .target = 1}),
              "${IPTABLES} -A set -p udp -s 192.0.2.1/32 --destination-port 161 -j REJECT\n"
              "${IPTABLES} -A set -p udp -s 192.0.2.1/32 --destination-port 5000:5010 -j REJECT\n"
              "${IPTABLES} -A set -p udp -s 192.0.2.1/32 --destination-port 9 -j REJECT\n");
    EXPECT_EQ(linesOf({.ip = "10.1.0.1", .rangeEnd = "10.1.0.9", .protocol = 3, .portrange = "1:2,3"}),
              "${IPTABLES} -A set -p tcp --syn -m iprange --src-range 10.1.0.1-10.1.0.9"
              " --destination-port 1:2 -j ACCEPT\n"
              "${IPTABLES} -A set -p tcp --syn -m iprange --src-range 10.1.0.1-10.1.0.9"
              " --destination-port 3 -j ACCEPT\n");
}

TEST(FilterRule, TakesNoPortBetweenTwoCommas)
{
    EXPECT_EQ(linesOf({.protocol = 4, .portrange = ",22,,80,"}),
              "${IPTABLES} -A set -p tcp ! --syn -s 192.0.2.1/32 --destination-port 22 -j ACCEPT\n"
              "${IPTABLES} -A set -p tcp ! --syn -s 192.0.2.1/32 --destination-port 80 -j ACCEPT\n");
    EXPECT_EQ(linesOf({.protocol = 2, .portrange = ","}), "");
}

TEST(FilterRule, ReadsAListThatFillsItsFieldToItsEnd)
{
    EXPECT_EQ(linesOf({.protocol = 8, .portrange = "1111111,22222222", .target = 2}),
              "${IPTABLES} -A set -p 50 -s 192.0.2.1/32 --destination-port 1111111 -j DROP\n"
              "${IPTABLES} -A set -p 50 -s 192.0.2.1/32 --destination-port 22222222 -j DROP\n");
}

TEST(FilterRule, LooksAtNoPortWhereTheProtocolHasNone)
{
    EXPECT_EQ(linesOf({.protocol = 1, .portrange = "22"}),
              "${IPTABLES} -A set -p ALL -s 192.0.2.1/32 -j ACCEPT\n");
    EXPECT_EQ(linesOf({.protocol = 6, .portrange = "22"}),
              "${IPTABLES} -A set -p icmp -s 192.0.2.1/32 -j ACCEPT\n");
    EXPECT_EQ(linesOf({.protocol = 7, .portrange = "22"}),
              "${IPTABLES} -A set -p icmp --icmp-type echo-request -s 192.0.2.1/32 -j ACCEPT\n");
}

TEST(FilterRule, HasPortsWithACodeThatOnlyStandsForAnEchoRequest)
{
    EXPECT_EQ(linesOf({.protocol = 9, .portrange = "22"}),
              "${IPTABLES} -A set -p icmp --icmp-type echo-request -s 192.0.2.1/32"
              " --destination-port 22 -j ACCEPT\n");
}

TEST(FilterRule, KeepsEveryPortAndNameOneWordOfTheShell)
{
    const XasIpFilterSetPayload set = xasTestFilterSet(
        "a b;$(id)", {{.protocol = 2, .portrange = "22 80,`id`"}, {.protocol = 2, .portrange = "1\n2,-j"}});
    const XasFilterLines lines = xasIPFilterRulesText(set, true);
    EXPECT_TRUE(lines.complete);
    const std::string rule = "${IPTABLES} -A 'a b;$(id)' -p tcp -s 192.0.2.1/32 --destination-port ";
    EXPECT_EQ(lines.text, "${IPTABLES} -N 'a b;$(id)'\n${IPTABLES} -F 'a b;$(id)'\n" + rule +
                              "'22 80' -j ACCEPT\n" + rule + "'`id`' -j ACCEPT\n" + rule +
                              "'1\n2' -j ACCEPT\n" + rule + "'-j' -j ACCEPT\n");
    EXPECT_EQ(xasIPFilterRemovalText(set).text, "${IPTABLES} -F 'a b;$(id)'\n${IPTABLES} -X 'a b;$(id)'\n");
}

TEST(FilterRule, IsNeverCutWhereItIsQuoted)
{
    // Each apostrophe takes four characters: name and port fill 66 each.
    const std::string quotes(16, '\'');
    const XasTestRule rule{
        .ip = "192.168.100.100", .rangeEnd = "192.168.100.200", .protocol = 9, .portrange = quotes};
    const XasFilterLines lines =
        xasIPFilterRulesText(xasTestFilterSet(quotes, {rule, {.protocol = 1}}), false);
    EXPECT_FALSE(lines.complete);
    EXPECT_THAT(lines.text, Not(HasSubstr("--destination-port")));
    EXPECT_THAT(lines.text, HasSubstr(" -p ALL -s 192.0.2.1/32 -j ACCEPT\n"));
}

TEST(FilterSet, MakesItsChainOnlyWhenItIsCreated)
{
    const XasIpFilterSetPayload set = xasTestFilterSet(
        "office", {{.ip = "10.0.0.0", .masklength = 8, .protocol = 2, .portrange = "22,80"}});
    const std::string rules = "${IPTABLES} -F office\n"
                              "${IPTABLES} -A office -p tcp -s 10.0.0.0/8 --destination-port 22 -j ACCEPT\n"
                              "${IPTABLES} -A office -p tcp -s 10.0.0.0/8 --destination-port 80 -j ACCEPT\n";
    EXPECT_EQ(xasIPFilterRulesText(set, true).text, "${IPTABLES} -N office\n" + rules);
    EXPECT_EQ(xasIPFilterRulesText(set, false).text, rules);
}

TEST(FilterSet, TakesAllSixteenCharactersOfAName)
{
    const XasIpFilterSetPayload set = xasTestFilterSet("sixteen-letters_", {});
    EXPECT_EQ(xasIPFilterRulesText(set, true).text,
              "${IPTABLES} -N sixteen-letters_\n${IPTABLES} -F sixteen-letters_\n");
}

TEST(FilterSet, NeverFlushesAllChainsForAnEmptyName)
{
    EXPECT_EQ(xasIPFilterRulesText(xasTestFilterSet("", {}), false).text, "${IPTABLES} -F ''\n");
}

TEST(FilterSet, KeepsTheOrderOfItsRulesAndLeavesOutSkippedOnes)
{
    const XasIpFilterSetPayload set = xasTestFilterSet(
        "set", {{.protocol = 6, .target = 1}, {.protocol = 0}, {.protocol = 1, .target = 2}});
    EXPECT_EQ(xasIPFilterRulesText(set, false).text, "${IPTABLES} -F set\n"
                                                     "${IPTABLES} -A set -p icmp -s 192.0.2.1/32 -j REJECT\n"
                                                     "${IPTABLES} -A set -p ALL -s 192.0.2.1/32 -j DROP\n");
}

TEST(FilterSet, ReadsAsManyRulesAsTheMessageHoldsWhateverTheCountSays)
{
    // The payload ends its block, so that a sanitizer sees a read behind it.
    const auto set =
        std::make_unique<XasIpFilterSetPayload>(xasTestFilterSet("set", std::vector<XasTestRule>(65)));
    std::string all = "${IPTABLES} -F set\n";
    for (int i = 0; i < 65; ++i)
        all += "${IPTABLES} -A set -p ALL -s 192.0.2.1/32 -j ACCEPT\n";
    XasLogCapture log;
    EXPECT_EQ(xasIPFilterRulesText(*set, false).text, all);
    EXPECT_THAT(log.take(), IsEmpty());
    set->num_rules = 66;
    EXPECT_EQ(xasIPFilterRulesText(*set, false).text, all);
    EXPECT_THAT(log.take(), ElementsAre(xasWarningLine("IP Filter set has 66 rules, only 65 are taken\n")));
    set->num_rules = 0xFFFFFFFF;
    EXPECT_EQ(xasIPFilterRulesText(*set, false).text, all);
    EXPECT_THAT(log.take(),
                ElementsAre(xasWarningLine("IP Filter set has 4294967295 rules, only 65 are taken\n")));
}

TEST_F(FilterInput, IsNothingWhenNothingIsAssigned)
{
    EXPECT_EQ(xasIPFilterInputText().text, "");
}

TEST_F(FilterInput, TellsOfABrokenRecordOnStandardOutput)
{
    const std::string path = dir.write("XMSG_IPFILTER_ASSIGN-1-2", std::string(2487, 'x'));
    testing::internal::CaptureStdout();
    const XasFilterLines lines = xasIPFilterInputText();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), path + ": not a record of 2488 bytes\n");
    EXPECT_TRUE(lines.complete);
    EXPECT_EQ(lines.text, "");
}

TEST_F(FilterInput, HasAJumpForEveryInterfaceWithASetEthernetPortsFirst)
{
    assign("2-51", 2, 51, "last");
    assign("2-1", 2, 1, "first");
    assign("1-2", 1, 2, "lab");
    assign("1-1", 1, 1, "office");
    EXPECT_EQ(xasIPFilterInputText().text, "${IPTABLES} -A INPUT -i eth0 -j office\n"
                                           "${IPTABLES} -A INPUT -i eth1 -j lab\n"
                                           "${IPTABLES} -A INPUT -i ppp1 -j first\n"
                                           "${IPTABLES} -A INPUT -i ppp51 -j last\n");
}

TEST_F(FilterInput, HasNoneForAnEmptyNameAndForInterfacesThatAreNotThere)
{
    assign("1-1", 1, 1, "");
    assign("1-3", 1, 3, "third");
    assign("2-0", 2, 0, "zeroth");
    assign("2-52", 2, 52, "behind");
    EXPECT_EQ(xasIPFilterInputText().text, "");
}

TEST_F(FilterInput, CutsALongPlainNameAndKeepsTheNextLineApart)
{
    assign("1-1", 1, 1, std::string(1000, 'x'));
    assign("1-2", 1, 2, "lab");
    const std::string begin = "${IPTABLES} -A INPUT -i eth0 -j ";
    const XasFilterLines lines = xasIPFilterInputText();
    EXPECT_TRUE(lines.complete);
    EXPECT_EQ(lines.text,
              begin + std::string(254 - begin.size(), 'x') + "\n" + "${IPTABLES} -A INPUT -i eth1 -j lab\n");
}

TEST_F(FilterInput, IsIncompleteWithALongNameThatNeedsQuotes)
{
    assign("1-1", 1, 1, std::string(300, ' '));
    assign("1-2", 1, 2, "lab");
    const XasFilterLines lines = xasIPFilterInputText();
    EXPECT_FALSE(lines.complete);
    EXPECT_EQ(lines.text, "${IPTABLES} -A INPUT -i eth1 -j lab\n");
}

TEST_F(FilterInput, FollowsTheRemovalOfASet)
{
    assign("2-7", 2, 7, "office");
    const XasMessage msg =
        xasTestFilterSetMessage(xasTestFilterSet("old", {{.protocol = 1}}, XAS_FILTER_REMOVE));
    EXPECT_EQ(writtenBy([&](FILE *file) { EXPECT_EQ(xasIPFilterSetRemove(&msg, file), 0); }),
              "${IPTABLES} -F old\n${IPTABLES} -X old\n${IPTABLES} -A INPUT -i ppp7 -j office\n");
    EXPECT_EQ(writtenBy([&](FILE *file) { EXPECT_EQ(xasIPFilterAddInput(file), 0); }),
              "${IPTABLES} -A INPUT -i ppp7 -j office\n");
    assign("2-7", 2, 7, std::string(300, ' '));
    writtenBy([&](FILE *file) { EXPECT_EQ(xasIPFilterSetRemove(&msg, file), 1); });
}
