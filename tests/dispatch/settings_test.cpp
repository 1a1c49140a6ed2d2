// The settings, row by row against the list of types that are acted upon. The model rule of "xpb" reads a
// file at a fixed path: settings_root_test.cpp.
#include "dispatch/settings_list.h"
#include "support/message.h"
#include "support/test.h"

#include <set>

namespace {

/** When a row's application is started, as a function of payload words 0 and 1. */
using StartRule = bool (*)(bool word0, bool word1);

constexpr StartRule ALWAYS = [](bool, bool) {
    return true;
};
constexpr StartRule WORD_0 = [](bool word0, bool) {
    return word0;
};
constexpr StartRule WORD_0_OR_1 = [](bool word0, bool word1) {
    return word0 || word1;
};
constexpr StartRule WORD_1 = [](bool, bool word1) {
    return word1;
};

struct ExpectedRow {
    std::uint32_t msgtype;
    const char *application;
    XasUpdate update;
    StartRule startWanted;
};

constexpr std::array EXPECTED = {
    ExpectedRow{1, "eth", xasUpdateEthCfg, ALWAYS},
    ExpectedRow{2, "hostname", xasUpdateHostnameCfg, ALWAYS},
    ExpectedRow{3, "dns", xasUpdateDnsCfg, ALWAYS},
    ExpectedRow{5, "firewall", xasUpdateFirewall, ALWAYS},
    ExpectedRow{6, "firewall", xasUpdateFirewall, ALWAYS},
    ExpectedRow{7, "firewall", xasUpdateFirewall, ALWAYS},
    ExpectedRow{8, "router", xasUpdateRoutingCfg, WORD_0_OR_1},
    ExpectedRow{9, "ipsec", xasUpdateVPNCfg, WORD_0},
    ExpectedRow{10, "timezone", xasUpdateTimezoneCfg, ALWAYS},
    ExpectedRow{11, "ntp", xasUpdateNtpCfg, WORD_0},
    ExpectedRow{12, "syslog", xasUpdateSyslogCfg, ALWAYS},
    ExpectedRow{16, "snmp", xasUpdateSNMPCfg, WORD_0},
    ExpectedRow{19, "nfs", xasUpdateNFSCfg, ALWAYS},
    ExpectedRow{20, "samba", xasUpdateSambaCfg, WORD_0},
    ExpectedRow{21, "authentication", xasUpdateAuthenOrderCfg, ALWAYS},
    ExpectedRow{22, "localuser", xasUpdateLocalUsersCfg, WORD_0},
    ExpectedRow{24, "ypbind", xasUpdateNisCfg, WORD_0},
    ExpectedRow{25, "ldap", xasUpdateLdapCfg, WORD_0},
    ExpectedRow{26, "radius", xasUpdateRadiusCfg, WORD_0},
    ExpectedRow{28, "kerberos", xasUpdateKerberosCfg, WORD_0},
    ExpectedRow{29, "tacacs", xasUpdateTacacsCfg, WORD_0},
    ExpectedRow{55, "xdd", {}, WORD_1}, // word 0 is the index of the application, 0 here
    ExpectedRow{57, "user", xasUpdateSingleLocalUsersCfg, ALWAYS},
    ExpectedRow{58, "userlist", xasUpdateUserListCfg, ALWAYS},
    ExpectedRow{63, "nat", {}, ALWAYS},
    ExpectedRow{64, "netlink", xasUpdateEthIfStatusCfg, ALWAYS},
};

XasMessage messageWithWords(std::uint32_t msgtype, std::uint32_t word0, std::uint32_t word1)
{
    return XasMessageBuilder{msgtype}.payload(std::array{word0, word1});
}

/** The row of a type, which must have one. */
const XasSetting &rowOf(std::uint32_t msgtype)
{
    const XasSetting *row = xasFindSetting(msgtype);
    if (row == nullptr)
        throw std::out_of_range{"no row for type " + std::to_string(msgtype)};
    return *row;
}

} // namespace

TEST(Settings, RefusesEveryOtherTypeUpTo64)
{
    std::set<std::uint32_t> acted;
    for (const ExpectedRow &expected : EXPECTED)
        acted.insert(expected.msgtype);
    for (std::uint32_t msgtype = 0; msgtype <= 64; ++msgtype) {
        if (!acted.contains(msgtype)) {
            EXPECT_EQ(xasFindSetting(msgtype), nullptr) << msgtype;
        }
    }
}

TEST(Settings, RefusesValuesOutside1To64)
{
    for (const std::uint32_t msgtype :
         {0U, 65U, 66U, 67U, 68U, 69U, 255U, 257U, 65537U, 0x7FFFFFFFU, 0x80000001U, 0xFFFFFFFFU})
        EXPECT_EQ(xasFindSetting(msgtype), nullptr) << msgtype;
}

TEST(Settings, HasExactlyTheRowsOfTheTypesThatAreActedUpon)
{
    ASSERT_EQ(xasSettings().size(), EXPECTED.size());
    for (std::size_t i = 0; i < EXPECTED.size(); ++i) {
        const XasSetting &row = xasSettings()[i];
        EXPECT_EQ(row.msgtype, EXPECTED[i].msgtype);
        const XasUpdate &expected = EXPECTED[i].update;
        EXPECT_EQ(row.update.function, expected.function) << row.msgtype;
        if (expected.function == nullptr) {
            EXPECT_EQ(row.update.files, expected.files) << row.msgtype;
        }
        EXPECT_EQ(xasFindSetting(row.msgtype), &row);
    }
}

TEST(Settings, NamesTheApplicationOfEveryType)
{
    for (const ExpectedRow &expected : EXPECTED) {
        const XasMessage msg = messageWithWords(expected.msgtype, 0, 0);
        EXPECT_EQ(xasApplicationName(rowOf(expected.msgtype), msg), expected.application) << expected.msgtype;
    }
}

TEST(Settings, StartsEveryTypesApplicationByItsRule)
{
    for (const ExpectedRow &expected : EXPECTED) {
        for (const auto &[word0, word1] :
             {std::pair{0U, 0U}, {1U, 0U}, {0U, 1U}, {0x80000000U, 0U}, {0U, 0xFFFFFF00U}, {1U, 1U}}) {
            EXPECT_EQ(
                xasIsStartWanted(rowOf(expected.msgtype), messageWithWords(expected.msgtype, word0, word1)),
                expected.startWanted(word0 != 0, word1 != 0))
                << "type " << expected.msgtype << ", words " << word0 << " and " << word1;
        }
    }
}

TEST(Settings, NamesTheApplicationOfAnApplicationMessageByItsIndex)
{
    constexpr std::array NAMES = {"xdd", "xld", "snmptrapd", "portmap", "xpb"};
    for (std::uint32_t index = 0; index < NAMES.size(); ++index)
        EXPECT_EQ(xasApplicationName(rowOf(55), messageWithWords(55, index, 1)), NAMES[index]);
    for (const std::uint32_t index : {5U, 7U, 256U, 0xFFFFFFFFU})
        EXPECT_EQ(xasApplicationName(rowOf(55), messageWithWords(55, index, 1)), "INVALID_APP") << index;
}

TEST(Settings, LooksAtNoModelForApplicationsOtherThanXpb)
{
    for (const std::uint32_t index : {0U, 1U, 2U, 3U, 5U}) {
        EXPECT_TRUE(xasIsStartWanted(rowOf(55), messageWithWords(55, index, 1))) << index;
        EXPECT_FALSE(xasIsStartWanted(rowOf(55), messageWithWords(55, index, 0))) << index;
    }
}
