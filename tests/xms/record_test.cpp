#include "xms/record.h"

#include "support/message.h"
#include "support/test.h"
#include "xms/error.h"

#include <functional>

namespace {

/** The complaint of `action`; a test that gets none, or one with another status, fails. */
std::string complaintOf(const std::function<void()> &action)
{
    try {
        action();
    } catch (const XmsError &error) {
        EXPECT_EQ(error.status, XmsExit::usage);
        return error.what();
    }
    ADD_FAILURE() << "no complaint";
    return {};
}

XasMessage assigned(std::uint32_t msgtype, const std::vector<XmsAssignment> &assignments)
{
    XasMessage record = xmsDefaultRecord(msgtype);
    xmsAssign(record, assignments);
    return record;
}

} // namespace

TEST(XmsRecord, AnUnknownTypeNamesTheCloseOnes)
{
    EXPECT_EQ(complaintOf([] { xmsTypeFromText("hostnam"); }),
              "no message type is called \"hostnam\" (did you mean hostname?); xms types lists them");
    EXPECT_THAT(complaintOf([] { xmsTypeFromText("XMSG_ROUTNG"); }), HasSubstr("did you mean routing?"));
    EXPECT_EQ(complaintOf([] { xmsTypeFromText("frobnicate"); }),
              "no message type is called \"frobnicate\"; xms types lists them");
}

TEST(XmsRecord, AnUnknownFieldNamesTheCloseOnes)
{
    EXPECT_EQ(complaintOf([] {
                  assigned(XMSG_HOSTNAME, {{"hostnme", "a"}});
              }),
              "hostname has no field \"hostnme\" (did you mean hostname?); xms describe hostname lists them");
    EXPECT_THAT(complaintOf([] {
                    assigned(XMSG_ETH, {{"ip", "10.0.0.1"}});
                }),
                HasSubstr("(did you mean eth1.ip or eth2.ip?)"));
}

TEST(XmsRecord, AValueThatWillNotDoNamesItsFieldAndWhatIsExpected)
{
    EXPECT_EQ(complaintOf([] {
                  assigned(XMSG_ETH, {{"probes", "65536"}});
              }),
              "probes: \"65536\" will not do, expected: 0 to 65535");
    EXPECT_EQ(complaintOf([] {
                  assigned(XMSG_ETH, {{"bonding", "4"}});
              }),
              "bonding: \"4\" will not do, expected: none, active-backup, 802.3ad or balance-tlb");
}

TEST(XmsRecord, ATypeWithoutFieldsTakesNoAssignments)
{
    EXPECT_EQ(complaintOf([] {
                  assigned(XMSG_SSH, {{"port", "22"}});
              }),
              "XMSG_SSH has no fields to set by name");
    EXPECT_EQ(complaintOf([] {
                  assigned(XMSG_USERLIST, {{"a", "b"}});
              }),
              "XMSG_USERLIST has no fields to set by name");
}

TEST(XmsRecord, AnArgumentWithoutNameOrEqualsSignIsRefused)
{
    EXPECT_EQ(complaintOf([] { xmsParseAssignments({"hostname"}); }),
              "\"hostname\" is not of the form field=value");
    EXPECT_EQ(complaintOf([] { xmsParseAssignments({"=console1"}); }),
              "\"=console1\" is not of the form field=value");
}

TEST(XmsRecord, ARawPayloadThatIsNoHexOrTooLongIsRefused)
{
    XasMessage record{};
    EXPECT_THAT(complaintOf([&] { xmsSetRawPayload(record, "12 3"); }), HasSubstr("hexadecimal"));
    EXPECT_EQ(complaintOf([&] { xmsSetRawPayload(record, std::string(std::size_t{2} * 2369, '0')); }),
              "the raw payload has 2369 bytes, there is room for 2368");
}

TEST(XmsRecord, AnArgumentIsSplitAtItsFirstEqualsSign)
{
    const auto assignments = xmsParseAssignments({"a=b=c", "empty="});
    ASSERT_EQ(assignments.size(), 2U);
    EXPECT_EQ(assignments[0].name, "a");
    EXPECT_EQ(assignments[0].value, "b=c");
    EXPECT_EQ(assignments[1].name, "empty");
    EXPECT_EQ(assignments[1].value, "");
}

TEST(XmsRecord, TypesAreFoundByAnyName)
{
    EXPECT_EQ(xmsTypeFromText("dns"), XMSG_DNS);
    EXPECT_EQ(xmsTypeFromText("XMSG_DNS"), XMSG_DNS);
    EXPECT_EQ(xmsTypeFromText("3"), XMSG_DNS);
}

TEST(XmsRecord, AHostNameAndADomainAreSetByTheirNames)
{
    const XasMessage record = assigned(XMSG_HOSTNAME, {{"hostname", "console1"}, {"domain", "example.org"}});
    EXPECT_EQ(record.xH.msgtype, 2U);
    EXPECT_EQ(xasValueIn(record, "hostname"), "console1");
    EXPECT_EQ(xasValueIn(record, "domain"), "example.org");
}

TEST(XmsRecord, AnEthernetRecordStartsFromUsefulDefaults)
{
    const XasMessage record = xmsDefaultRecord(XMSG_ETH);
    EXPECT_EQ(xasValueIn(record, "eth1.marker"), "yes");
    EXPECT_EQ(xasValueIn(record, "eth1.source"), "dhcp");
    EXPECT_EQ(xasValueIn(record, "eth2.marker"), "yes");
    EXPECT_EQ(xasValueIn(record, "eth2.mtu"), "1500");
    EXPECT_EQ(xasValueIn(record, "gateway"), "none");
    EXPECT_EQ(xasValueIn(record, "bonding"), "none");
    EXPECT_EQ(xasValueIn(record, "ping_ifc"), "eth1");
}

TEST(XmsRecord, ASecondPortIsSetOnItsOwn)
{
    const XasMessage record =
        assigned(XMSG_ETH, {{"eth2.source", "static"}, {"eth2.ip", "192.168.1.10"}, {"eth2.mode", "6"}});
    EXPECT_EQ(xasValueIn(record, "eth2.source"), "static");
    EXPECT_EQ(xasValueIn(record, "eth2.ip"), "192.168.1.10");
    EXPECT_EQ(xasValueIn(record, "eth2.mode"), "6");
    EXPECT_EQ(xasValueIn(record, "eth1.source"), "dhcp") << "the first port is as it was";
    EXPECT_EQ(xasValueIn(record, "eth1.ip"), "0.0.0.0");
}

TEST(XmsRecord, ForcedValuesMayBeOnesThatTheDaemonRefuses)
{
    XasMessage record = xmsDefaultRecord(XMSG_ETH);
    xmsAssign(record, {{"bonding", "4"}}, XasValueCheck::anyThatFits);
    EXPECT_EQ(xasValueIn(record, "bonding"), "4");
}

TEST(XmsRecord, ARawPayloadReplacesEverythingBehindTheHeader)
{
    XasMessage record = xmsDefaultRecord(XMSG_ETH);
    xmsSetRawPayload(record, "01 02 03");
    EXPECT_EQ(record.xH.msgtype, 1U);
    EXPECT_EQ(xasPayloadBytes(record), "\x01\x02\x03" + std::string(2365, '\0'));
}

namespace {

/** A list of two routes and their number, as several settings have one. */
constexpr XasMsgGroup ROUTES = {.name = "route", .place = {124, 16}, .stride = 8};
constexpr XasMsgField ROUTE_FIELDS[] = {
    {.name = "num_routes", .place = {120, 4}, .meaning = "how many", .counts = &ROUTES},
    {.name = "to", .place = {124, 4}, .kind = XasFieldKind::ipv4, .meaning = "where", .group = &ROUTES},
    {.name = "metric", .place = {128, 4}, .meaning = "how far", .initial = "5", .group = &ROUTES}};
constexpr XasMsgFields ROUTING = {.fields = ROUTE_FIELDS};

/** The record with these values, as the tool shows it. */
std::string routed(const std::vector<XmsAssignment> &assignments)
{
    XasMessage record{};
    xmsAssignIn(xasBytesOf(record), ROUTING, assignments, XasValueCheck::allowed);
    std::string text;
    for (const XasMsgFieldAt &where : xasListFields(ROUTING))
        text += (text.empty() ? "" : " ") + msgValueText(xasBytesOf(record), where);
    return text;
}

} // namespace

TEST(XmsRecord, ACountFollowsItsGroupAndAnElementComesWithItsDefaults)
{
    EXPECT_EQ(routed({{"route2.to", "10.0.0.1"}}), "2 0.0.0.0 0 10.0.0.1 5") << "up to the last one in use";
}

TEST(XmsRecord, ACountThatIsNamedStaysAsNamed)
{
    EXPECT_EQ(routed({{"route1.to", "10.0.0.1"}, {"num_routes", "9"}}), "9 10.0.0.1 5 0.0.0.0 0");
    EXPECT_EQ(routed({{"num_routes", "1"}}), "1 0.0.0.0 0 0.0.0.0 0");
}

TEST(XmsRecord, AnElementInUseKeepsWhatIsNotNamed)
{
    EXPECT_EQ(routed({{"route1.metric", "7"}, {"route1.to", "10.0.0.1"}}), "1 10.0.0.1 7 0.0.0.0 0");
}
