#include "xms/record.h"

#include "support/message.h"
#include "xms/error.h"

#include <functional>
#include <gmock/gmock.h>

using testing::HasSubstr;

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

TEST(XmsRecord, AHostNameAndADomainStandAtTheirOffsets)
{
    const XasMessage record = assigned(XMSG_HOSTNAME, {{"hostname", "console1"}, {"domain", "example.org"}});
    EXPECT_EQ(record.xH.msgtype, 2U);
    EXPECT_EQ(xasMessageText(record, 120), "console1");
    EXPECT_EQ(xasMessageText(record, 185), "example.org");
}

TEST(XmsRecord, AnEthernetRecordStartsFromUsefulDefaults)
{
    const XasMessage record = xmsDefaultRecord(XMSG_ETH);
    EXPECT_EQ(xasMessageWord(record, 120), 1U);          // eth1 is in use
    EXPECT_EQ(xasMessageWord(record, 128), 1U);          // and takes its address by DHCP
    EXPECT_EQ(xasMessageWord(record, 168), 1U);          // so is eth2
    EXPECT_EQ(xasMessageWord(record, 212), 1500U);       // its MTU
    EXPECT_EQ(xasMessageWord(record, 220), 0xFFFFFFFFU); // no gateway
    EXPECT_EQ(xasMessageWord(record, 252), 0U);          // no bonding
    EXPECT_EQ(xasMessageBytes(record, 268, 1), "\x01");  // pings leave by eth1
}

TEST(XmsRecord, ASecondPortIsSetOnItsOwn)
{
    const XasMessage record =
        assigned(XMSG_ETH, {{"eth2.source", "static"}, {"eth2.ip", "192.168.1.10"}, {"eth2.mode", "6"}});
    EXPECT_EQ(xasMessageWord(record, 176), 2U);
    EXPECT_EQ(xasMessageBytes(record, 180, 4), "\xC0\xA8\x01\x0A");
    EXPECT_EQ(xasMessageWord(record, 208), 6U);
    EXPECT_EQ(xasMessageWord(record, 128), 1U); // the first port is as it was
    EXPECT_EQ(xasMessageWord(record, 132), 0U);
}

TEST(XmsRecord, ForcedValuesMayBeOnesThatTheDaemonRefuses)
{
    XasMessage record = xmsDefaultRecord(XMSG_ETH);
    xmsAssign(record, {{"bonding", "4"}}, XasValueCheck::anyThatFits);
    EXPECT_EQ(xasMessageWord(record, 252), 4U);
}

TEST(XmsRecord, ARawPayloadReplacesEverythingBehindTheHeader)
{
    XasMessage record = xmsDefaultRecord(XMSG_ETH);
    xmsSetRawPayload(record, "01 02 03");
    EXPECT_EQ(record.xH.msgtype, 1U);
    EXPECT_EQ(xasMessageBytes(record, 120, 2368), "\x01\x02\x03" + std::string(2365, '\0'));
}

namespace {

/** A list of two routes and their number, as several settings have one. */
constexpr XasMsgGroup ROUTES = {.name = "route", .place = {124, 16}, .stride = 8};
constexpr XasMsgField ROUTE_FIELDS[] = {
    {.name = "num_routes", .place = {120, 4}, .meaning = "how many", .counts = &ROUTES},
    {.name = "to", .place = {124, 4}, .kind = XasFieldKind::ipv4, .meaning = "where", .group = &ROUTES},
    {.name = "metric", .place = {128, 4}, .meaning = "how far", .initial = "5", .group = &ROUTES}};
constexpr XasMsgFields ROUTING = {.fields = ROUTE_FIELDS};

XasMessage routed(const std::vector<XmsAssignment> &assignments)
{
    XasMessage record{};
    xmsAssignIn(std::as_writable_bytes(std::span{&record, 1}), ROUTING, assignments, XasValueCheck::allowed);
    return record;
}

} // namespace

TEST(XmsRecord, ACountFollowsItsGroupAndAnElementComesWithItsDefaults)
{
    const XasMessage record = routed({{"route2.to", "10.0.0.1"}});
    EXPECT_EQ(xasMessageWord(record, 120), 2U); // up to the last one in use
    EXPECT_EQ(xasMessageBytes(record, 124, 8), std::string(8, '\0'));
    EXPECT_EQ(xasMessageBytes(record, 132, 4), std::string("\x0A\0\0\x01", 4));
    EXPECT_EQ(xasMessageWord(record, 136), 5U);
}

TEST(XmsRecord, ACountThatIsNamedStaysAsNamed)
{
    EXPECT_EQ(xasMessageWord(routed({{"route1.to", "10.0.0.1"}, {"num_routes", "9"}}), 120), 9U);
    EXPECT_EQ(xasMessageWord(routed({{"num_routes", "1"}}), 120), 1U);
}

TEST(XmsRecord, AnElementInUseKeepsWhatIsNotNamed)
{
    const XasMessage record = routed({{"route1.metric", "7"}, {"route1.to", "10.0.0.1"}});
    EXPECT_EQ(xasMessageWord(record, 128), 7U);
}
