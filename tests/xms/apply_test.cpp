#include "xms/apply.h"

#include "msg/fields.h"
#include "support/message.h"
#include "support/test.h"
#include "xms/protocol.h"

#include <set>

namespace {

/** Plans the file's text over what is stored. */
class XmsPlanTest : public testing::Test {
  protected:
    std::vector<XmsPlanned> plan(const std::string &text)
    {
        std::istringstream file{text};
        complaints.clear();
        const auto settings = xmsReadSettings(file, "file", complaints);
        return xmsPlan(settings, stored, apply, complaints);
    }

    std::vector<std::string> namesOf(const std::string &text)
    {
        std::vector<std::string> names;
        for (const XmsPlanned &planned : plan(text))
            names.push_back(planned.name + (planned.isStored ? " as stored" : ""));
        EXPECT_THAT(complaints, IsEmpty());
        return names;
    }

    std::vector<XasMessage> stored;
    std::vector<std::string> complaints;
    XmsApplyOptions apply{.file = "file"};
};

} // namespace

TEST_F(XmsPlanTest, EveryMistakeOfAFileIsToldWithItsLine)
{
    plan("dsn:\n"
         "  dns1: 10.0.0.1\n"
         "dns:\n"
         "  dns1: 10.0.0.1\n"
         "  dns2: ns2\n"
         "hostname:\n"
         "  hostnme: console1\n"
         "ntp: {}\n"
         "ssh: {port: 22}\n"
         "snmp:\n"
         "  syscontact: \"a\\nb\"\n"
         "localusers:\n"
         "  user2.login: bob\n");
    ASSERT_EQ(complaints.size(), 6U);
    EXPECT_EQ(complaints[0],
              "file:1: dsn: no message type is called \"dsn\" (did you mean dns, vpn or ssh?); "
              "xms types lists them");
    EXPECT_EQ(complaints[1],
              "file:5: dns: dns2: \"ns2\" will not do, expected: an IPv4 or IPv6 address such as "
              "192.168.1.10 or fd00::1, or none");
    EXPECT_EQ(complaints[2],
              "file:7: hostname: hostname has no field \"hostnme\" (did you mean hostname?); xms "
              "describe hostname lists them");
    EXPECT_EQ(complaints[3], "file:9: ssh: its fields are not described, so it cannot be set from a file");
    EXPECT_EQ(complaints[4], "file:10: snmp: Invalid character in syscontact");
    EXPECT_EQ(complaints[5], "file:12: localusers: user1 has no login");
}

TEST_F(XmsPlanTest, AMaskedSecretMustBeStored)
{
    plan("radius:\n  secret1: \"********\"\n");
    EXPECT_THAT(complaints,
                ElementsAre("file:2: radius: secret1 is masked, and none is stored here; a file with "
                            "its secrets is written by `xms get --all --yaml --secrets`"));
    stored = {XasMessageBuilder{XMSG_RADIUS}.set("secret1", "testing")};
    const auto planned = plan("radius:\n  secret1: \"********\"\n");
    ASSERT_THAT(complaints, IsEmpty());
    EXPECT_EQ(xasValueIn(planned.at(0).record, "secret1"), "testing");
    EXPECT_EQ(xasValueIn(plan("snmp: {syscontact: \"********\"}").at(0).record, "syscontact"), "********")
        << "that is no secret";
}

TEST_F(XmsPlanTest, WhatTheAppliancesStandsOnComesFirst)
{
    EXPECT_THAT(namesOf("auth: {radius: 1}\n"
                        "firewall: {enabled: yes}\n"
                        "ipfilter_assign: {iface_type: ppp, iface_id: 2, filterName: office}\n"
                        "radius: {secret1: testing}\n"
                        "ipfilter_set: [{id: 2, name: office}, {id: 1, name: a}]\n"
                        "dns: {dns1: 10.0.0.1}\n"
                        "eth: {bonding: none}\n"),
                ElementsAre("eth", "dns", "ipfilter_set 2", "ipfilter_set 1", "ipfilter_assign 2-2",
                            "firewall", "radius", "auth"));
}

TEST_F(XmsPlanTest, EverySettingHasItsPlaceInTheOrder)
{
    const std::set<std::uint32_t> ordered{xmsApplyOrder().begin(), xmsApplyOrder().end()};
    EXPECT_EQ(ordered.size(), xmsApplyOrder().size());
    for (std::uint32_t msgtype = 1; msgtype <= 68; ++msgtype)
        EXPECT_EQ(ordered.contains(msgtype), msgFieldsOf(msgtype) != nullptr && msgtype != XMSG_ACKNAK)
            << msgtype;
}

TEST_F(XmsPlanTest, WhatIsNotNamedHasItsDefaultUnlessItIsToBeKept)
{
    stored = {XasMessageBuilder{XMSG_DNS}.set("dns1=10.0.0.1 dns2=10.0.0.2")};
    EXPECT_EQ(xasValueIn(plan("dns: {dns1: 10.0.0.9}").at(0).record, "dns2"), "none");
    apply.keep = true;
    const XasMessage kept = plan("dns: {dns1: 10.0.0.9}").at(0).record;
    EXPECT_EQ(xasValueIn(kept, "dns1"), "10.0.0.9");
    EXPECT_EQ(xasValueIn(kept, "dns2"), "10.0.0.2");
}

TEST_F(XmsPlanTest, AFileOfWhatIsStoredChangesNothing)
{
    for (std::uint32_t msgtype = 1; msgtype <= 68; ++msgtype) {
        if (msgFieldsOf(msgtype) != nullptr && xmsIsKept(msgtype) && msgtype != XMSG_ACKNAK)
            stored.push_back(xmsDefaultRecord(msgtype));
    }
    stored.push_back(XasMessageBuilder{XMSG_IPFILTER_SET}.set("id=2 name=office"));
    for (const std::string &text : {xmsSettingsYaml(stored), xmsJsonLine(xmsSettingsJson(stored))}) {
        const auto planned = plan(text);
        EXPECT_THAT(complaints, IsEmpty());
        EXPECT_EQ(planned.size(), stored.size());
        for (const XmsPlanned &each : planned)
            EXPECT_TRUE(each.isStored) << each.name;
    }
}

TEST_F(XmsPlanTest, UsersAreNotStoredSoTheyAreAlwaysSent)
{
    stored = {XasMessageBuilder{XMSG_LOCALUSERS}.set("enabled=yes users_included=yes num_users=3")};
    EXPECT_THAT(namesOf("localusers: {enabled: yes}"), ElementsAre("localusers as stored"));
    const auto planned = plan("localusers: {user1: {login: alice, uid: 501}}");
    ASSERT_THAT(complaints, IsEmpty());
    EXPECT_FALSE(planned.at(0).isStored);
    EXPECT_EQ(xasValueIn(planned.at(0).record, "num_users"), "1");
    EXPECT_EQ(xmsUsersText(planned.at(0).users), "1 user: alice");
}
