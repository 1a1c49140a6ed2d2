#include "msg/fields.h"

#include "support/fields.h"
#include "support/test.h"
#include "wire/message_names.h"

#include <set>

namespace {

std::vector<const XasMsgFields *> allFields()
{
    std::vector<const XasMsgFields *> all;
    for (std::uint32_t msgtype = 0; msgtype <= 100; ++msgtype) {
        if (const XasMsgFields *fields = msgFieldsOf(msgtype))
            all.push_back(fields);
    }
    return all;
}

/** Expects the names of a choice to stand for `first` and the numbers that follow it. */
void expectCodes(std::uint32_t msgtype, std::string_view name, const std::vector<std::string> &names,
                 std::size_t first = 0)
{
    EXPECT_EQ(xasTestField(msgtype, name).field->names.size(), names.size()) << name;
    for (std::size_t i = 0; i < names.size(); ++i)
        EXPECT_EQ(xasTestNumberOf(msgtype, name, names[i]), std::to_string(first + i)) << name;
}

/** A record in which one element of a group has been set to its defaults, given one of its fields. */
XasMessage withNewElement(std::uint32_t msgtype, std::string_view name)
{
    XasMessage record = XasMessageBuilder{msgtype};
    const XasMsgFieldAt where = xasTestField(msgtype, name);
    msgSetElementDefaults(xasBytesOf(record), *msgFieldsOf(msgtype), *where.field->group, where.element);
    return record;
}

} // namespace

TEST(MsgFields, ATypeThatIsNotDescribedHasNone)
{
    EXPECT_EQ(msgFieldsOf(0), nullptr);
    EXPECT_EQ(msgFieldsOf(XMSG_SSH), nullptr);
    EXPECT_EQ(msgFieldsOf(66), nullptr);
    EXPECT_EQ(msgFieldsOf(4000000000U), nullptr);
}

TEST(MsgFields, OnlySettingsAreStoredAndOnlyEventsAndAnswersAreNeverAnswered)
{
    const std::set<std::uint32_t> NOT_STORED = {XMSG_APPLICATION, XMSG_USER,   XMSG_USERLIST,
                                                XMSG_NAT_NOTIFY,  XMSG_NOTIFY, XMSG_ACKNAK};
    const std::set<std::uint32_t> NOT_ANSWERED = {XMSG_NAT_NOTIFY, XMSG_NOTIFY, XMSG_ACKNAK};
    for (const XasMsgFields *fields : allFields()) {
        EXPECT_NE(fields->stored, NOT_STORED.contains(fields->msgtype)) << fields->msgtype;
        EXPECT_NE(fields->answered, NOT_ANSWERED.contains(fields->msgtype)) << fields->msgtype;
    }
}

TEST(MsgFields, EveryDescribedTypeHasANameAMeaningAndFieldsOfDifferentNames)
{
    for (const XasMsgFields *fields : allFields()) {
        EXPECT_FALSE(xasMsgTypeName(fields->msgtype).empty()) << fields->msgtype;
        EXPECT_FALSE(fields->meaning.empty()) << fields->msgtype;
        std::set<std::string> names;
        for (const XasMsgFieldAt &where : xasListFields(*fields))
            EXPECT_TRUE(names.insert(where.name).second) << where.name;
    }
}

TEST(MsgFields, EveryDefaultIsAValueThatItsFieldTakes)
{
    for (const XasMsgFields *fields : allFields()) {
        XasMessage record{};
        for (const XasMsgFieldAt &where : xasListFields(*fields)) {
            if (where.field->initial.empty())
                continue;
            EXPECT_EQ(msgSetValue(xasBytesOf(record), where, where.field->initial), "") << where.name;
            EXPECT_EQ(msgValueText(xasBytesOf(record), where), where.field->initial) << where.name;
        }
    }
}

TEST(MsgFields, AGroupOfSingleValuesIsNamedByItsNumbersAlone)
{
    static constexpr XasMsgGroup SLAVES = {.name = "slave", .place = {120, 12}, .stride = 4};
    static constexpr XasMsgField FIELDS[] = {
        {.place = {120, 4}, .kind = XasFieldKind::ipv4, .meaning = "a slave", .group = &SLAVES}};
    const auto list = xasListFields({.fields = FIELDS});
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[2].name, "slave3");
    EXPECT_EQ(list[2].place.offset, 128U);
}

TEST(MsgFields, NameEveryCode)
{
    expectCodes(XMSG_IPFILTER_SET, "rule2.protocol",
                {"none", "all", "tcp", "tcp-syn", "tcp-not-syn", "udp", "icmp", "icmp-echo", "esp"});
    expectCodes(XMSG_IPFILTER_SET, "rule1.target", {"accept", "reject", "drop"});
    expectCodes(XMSG_IPFILTER_SET, "action", {"create", "replace", "remove"});
    expectCodes(XMSG_IPFILTER_ASSIGN, "iface_type", {"eth", "ppp"}, 1);
    expectCodes(XMSG_VPN, "ifac", {"eth1", "eth2"}, 1);
    expectCodes(XMSG_VPN, "auth", {"rsa", "psk", "none"});
    for (const std::string phase : {"ike", "esp"}) {
        expectCodes(XMSG_VPN, phase + "_enc", {"none", "3des", "aes"});
        expectCodes(XMSG_VPN, phase + "_hash", {"none", "sha1", "md5"});
        expectCodes(XMSG_VPN, phase + "_dhgroup", {"none", "modp1024", "modp1536"});
    }
    expectCodes(XMSG_SNMP, "v3security", {"noauth", "auth", "priv"});
    expectCodes(XMSG_SNMP, "v3auth", {"md5", "sha"});
    expectCodes(XMSG_SNMP, "v3encrypt", {"des", "aes"});
    expectCodes(XMSG_SNMP, "community_mode", {"write", "remove", "keep"});
}

TEST(MsgFields, ByDefaultASettingIsUsedWithoutServersAndSecrets)
{
    EXPECT_EQ(xasTestDefaults(XMSG_NTP), "enabled=yes sync=poll poll=three-servers server1=none "
                                         "server2=none server3=none single=none");
    EXPECT_EQ(xasTestDefaults(XMSG_CIFS),
              "enabled=yes eth1=yes eth2=no lanman_pwd= nt_pwd= lct_field= workgroup=WORKGROUP");
    EXPECT_EQ(xasTestDefaults(XMSG_SNMP),
              "enabled=yes alarm_delay=0 trap1=none trap2=none syslocation= syscontact= v3user= v3pass= "
              "v3phrase= v3rwuser= v3rwpass= v3rwphrase= v3security=priv v3auth=sha v3encrypt=aes "
              "ro_community= rw_community= trap_community= community_mode=write");
    EXPECT_EQ(xasTestDefaults(XMSG_NFS),
              "mount1.rem_dir= mount1.local_dir= mount1.read_write=no mount1.mount=no "
              "mount2.rem_dir= mount2.local_dir= mount2.read_write=no mount2.mount=no "
              "mount3.rem_dir= mount3.local_dir= mount3.read_write=no mount3.mount=no");
}

TEST(MsgFields, AMountThatIsNamedIsMountedReadOnly)
{
    const XasMessage nfs = withNewElement(XMSG_NFS, "mount2.mount");
    EXPECT_EQ(xasValueIn(nfs, "mount2.mount"), "yes");
    EXPECT_EQ(xasValueIn(nfs, "mount2.read_write"), "no");
    EXPECT_EQ(xasValueIn(nfs, "mount1.mount"), "no");
    EXPECT_EQ(xasValueIn(nfs, "mount3.mount"), "no");
}

TEST(MsgFields, ANewRuleMeansOneAddressAndAllPackets)
{
    const XasMessage set = withNewElement(XMSG_IPFILTER_SET, "rule3.ip");
    EXPECT_EQ(xasValueIn(set, "rule3.range_end"), "none");
    EXPECT_EQ(xasValueIn(set, "rule3.masklength"), "32");
    EXPECT_EQ(xasValueIn(set, "rule3.protocol"), "all");
    EXPECT_EQ(xasValueIn(set, "rule3.target"), "accept");
}
