// The dispatch table, row by row against the list of types that are acted upon. The model rule of "xpb" reads
// a file at a fixed path: tests/root/xas_application_message_test.cpp.
#include "config/xas_dns.h"
#include "config/xas_hostname.h"
#include "dispatch/xas_dispatch_table.h"
#include "support/xas_test_log.h"
#include "support/xas_test_message.h"

#include <array>
#include <gmock/gmock.h>
#include <set>

using testing::ElementsAre;

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
    bool hasHandler;
    StartRule startWanted;
};

constexpr std::array EXPECTED = {
    ExpectedRow{1, "eth", true, ALWAYS},
    ExpectedRow{2, "hostname", true, ALWAYS},
    ExpectedRow{3, "dns", true, ALWAYS},
    ExpectedRow{5, "firewall", true, ALWAYS},
    ExpectedRow{6, "firewall", true, ALWAYS},
    ExpectedRow{7, "firewall", true, ALWAYS},
    ExpectedRow{8, "router", true, WORD_0_OR_1},
    ExpectedRow{9, "ipsec", true, WORD_0},
    ExpectedRow{10, "timezone", true, ALWAYS},
    ExpectedRow{11, "ntp", true, WORD_0},
    ExpectedRow{12, "syslog", true, ALWAYS},
    ExpectedRow{16, "snmp", true, WORD_0},
    ExpectedRow{19, "nfs", true, ALWAYS},
    ExpectedRow{20, "samba", true, WORD_0},
    ExpectedRow{21, "authentication", true, ALWAYS},
    ExpectedRow{22, "localuser", true, WORD_0},
    ExpectedRow{24, "ypbind", true, WORD_0},
    ExpectedRow{25, "ldap", true, WORD_0},
    ExpectedRow{26, "radius", true, WORD_0},
    ExpectedRow{28, "kerberos", true, WORD_0},
    ExpectedRow{29, "tacacs", true, WORD_0},
    ExpectedRow{55, "xdd", false, WORD_1}, // word 0 is the index of the application, 0 here
    ExpectedRow{57, "user", true, ALWAYS},
    ExpectedRow{58, "userlist", true, ALWAYS},
    ExpectedRow{63, "nat", false, ALWAYS},
    ExpectedRow{64, "netlink", true, ALWAYS},
};

XasMessage messageWithWords(std::uint32_t msgtype, std::uint32_t word0, std::uint32_t word1)
{
    return XasMessageBuilder{msgtype}.word(120, word0).word(124, word1).build();
}

/** The row of a type, which must have one. */
const XasDispatchRow &rowOf(std::uint32_t msgtype)
{
    const XasDispatchRow *row = xasFindDispatchRow(msgtype);
    if (row == nullptr)
        throw std::out_of_range{"no row for type " + std::to_string(msgtype)};
    return *row;
}

} // namespace

TEST(DispatchTable, RefusesEveryOtherTypeUpTo64)
{
    std::set<std::uint32_t> acted;
    for (const ExpectedRow &expected : EXPECTED)
        acted.insert(expected.msgtype);
    for (std::uint32_t msgtype = 0; msgtype <= 64; ++msgtype) {
        if (!acted.contains(msgtype)) {
            EXPECT_EQ(xasFindDispatchRow(msgtype), nullptr) << msgtype;
        }
    }
}

TEST(DispatchTable, RefusesValuesOutside1To64)
{
    for (const std::uint32_t msgtype :
         {0U, 65U, 66U, 67U, 68U, 69U, 255U, 257U, 65537U, 0x7FFFFFFFU, 0x80000001U, 0xFFFFFFFFU})
        EXPECT_EQ(xasFindDispatchRow(msgtype), nullptr) << msgtype;
}

TEST(DispatchTable, HasExactlyTheRowsOfTheTypesThatAreActedUpon)
{
    ASSERT_EQ(xasDispatchRows().size(), EXPECTED.size());
    for (std::size_t i = 0; i < EXPECTED.size(); ++i) {
        const XasDispatchRow &row = xasDispatchRows()[i];
        EXPECT_EQ(row.msgtype, EXPECTED[i].msgtype);
        EXPECT_EQ(row.handler != nullptr, EXPECTED[i].hasHandler) << row.msgtype;
        EXPECT_EQ(xasFindDispatchRow(row.msgtype), &row);
    }
}

TEST(DispatchTable, NamesTheApplicationOfEveryType)
{
    for (const ExpectedRow &expected : EXPECTED) {
        const XasMessage msg = messageWithWords(expected.msgtype, 0, 0);
        EXPECT_EQ(xasApplicationName(rowOf(expected.msgtype), msg), expected.application) << expected.msgtype;
    }
}

TEST(DispatchTable, StartsEveryTypesApplicationByItsRule)
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

TEST(DispatchTable, UsesTheHandlersOfHostNameAndDns)
{
    EXPECT_EQ(rowOf(2).handler, &xasUpdateHostnameCfg);
    EXPECT_EQ(rowOf(3).handler, &xasUpdateDnsCfg);
}

TEST(DispatchTable, SharesOneHandlerAmongTheFilterTypes)
{
    EXPECT_EQ(rowOf(6).handler, rowOf(5).handler);
    EXPECT_EQ(rowOf(7).handler, rowOf(5).handler);
}

TEST(DispatchTable, NamesTheApplicationOfAnApplicationMessageByItsIndex)
{
    constexpr std::array NAMES = {"xdd", "xld", "snmptrapd", "portmap", "xpb"};
    for (std::uint32_t index = 0; index < NAMES.size(); ++index)
        EXPECT_EQ(xasApplicationName(rowOf(55), messageWithWords(55, index, 1)), NAMES[index]);
    for (const std::uint32_t index : {5U, 7U, 256U, 0xFFFFFFFFU})
        EXPECT_EQ(xasApplicationName(rowOf(55), messageWithWords(55, index, 1)), "INVALID_APP") << index;
}

TEST(DispatchTable, LooksAtNoModelForApplicationsOtherThanXpb)
{
    for (const std::uint32_t index : {0U, 1U, 2U, 3U, 5U}) {
        EXPECT_TRUE(xasIsStartWanted(rowOf(55), messageWithWords(55, index, 1))) << index;
        EXPECT_FALSE(xasIsStartWanted(rowOf(55), messageWithWords(55, index, 0))) << index;
    }
}

TEST(DispatchTable, FailsAMessageWhoseHandlerIsNotBuilt)
{
    XasLogCapture log;
    XasMessage msg = messageWithWords(XMSG_TACACS, 1, 0);
    const XasCfgFileList files;
    XasReplyStatus reply;
    EXPECT_EQ(rowOf(XMSG_TACACS).handler(&msg, &files, &reply), 1);
    EXPECT_EQ(reply.rcode, 0U);
    EXPECT_EQ(reply.rstr, "");
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("No update handler for XMSG_TACACS in this version\n")));
}
