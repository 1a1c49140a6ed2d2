// The fields of XMSG_SNMP.
#include "support/fields.h"

TEST(SnmpFields, ValuesWithoutNameAndTextsThatFillTheirFieldAreRefused)
{
    EXPECT_EQ(xasTestNumberOf(XMSG_SNMP, "v3security", "3"), "refused");
    EXPECT_EQ(xasTestNumberOf(XMSG_SNMP, "community_mode", "3"), "refused");
    EXPECT_EQ(xasTestNumberOf(XMSG_SNMP, "v3pass", std::string(21, 'x')), "refused");
    EXPECT_NE(xasTestNumberOf(XMSG_SNMP, "v3pass", std::string(20, 'x')), "refused");
}

TEST(SnmpFields, StandWhereTheHandlerReadsThem)
{
    xasExpectFields(XMSG_SNMP, {{"enabled", 120, 4},
                                {"alarm_delay", 124, 4},
                                {"trap1", 128, 76},
                                {"trap2", 204, 76},
                                {"syslocation", 280, 21},
                                {"syscontact", 301, 21},
                                {"v3user", 322, 21},
                                {"v3pass", 343, 21},
                                {"v3phrase", 364, 21},
                                {"v3rwuser", 385, 21},
                                {"v3rwpass", 406, 21},
                                {"v3rwphrase", 427, 21},
                                {"v3security", 448, 4},
                                {"v3auth", 452, 4},
                                {"v3encrypt", 456, 4},
                                {"ro_community", 460, 21},
                                {"rw_community", 481, 21},
                                {"trap_community", 502, 21},
                                {"community_mode", 532, 4}});
}

TEST(SnmpFields, NameEveryCode)
{
    EXPECT_EQ(xasTestNumberOf(XMSG_SNMP, "v3security", "noauth"), "0");
    EXPECT_EQ(xasTestNumberOf(XMSG_SNMP, "v3security", "auth"), "1");
    EXPECT_EQ(xasTestNumberOf(XMSG_SNMP, "v3security", "priv"), "2");
    EXPECT_EQ(xasTestNumberOf(XMSG_SNMP, "v3auth", "md5"), "0");
    EXPECT_EQ(xasTestNumberOf(XMSG_SNMP, "v3auth", "sha"), "1");
    EXPECT_EQ(xasTestNumberOf(XMSG_SNMP, "v3encrypt", "des"), "0");
    EXPECT_EQ(xasTestNumberOf(XMSG_SNMP, "v3encrypt", "aes"), "1");
    EXPECT_EQ(xasTestNumberOf(XMSG_SNMP, "community_mode", "write"), "0");
    EXPECT_EQ(xasTestNumberOf(XMSG_SNMP, "community_mode", "remove"), "1");
    EXPECT_EQ(xasTestNumberOf(XMSG_SNMP, "community_mode", "keep"), "2");
}

TEST(SnmpFields, ByDefaultTheAgentRunsWithPrivacyAndSendsNoTraps)
{
    xasExpectDefaults(XMSG_SNMP, {{"enabled", "yes"},
                                  {"alarm_delay", "0"},
                                  {"trap1", "none"},
                                  {"trap2", "none"},
                                  {"syslocation", ""},
                                  {"syscontact", ""},
                                  {"v3user", ""},
                                  {"v3pass", ""},
                                  {"v3phrase", ""},
                                  {"v3rwuser", ""},
                                  {"v3rwpass", ""},
                                  {"v3rwphrase", ""},
                                  {"v3security", "priv"},
                                  {"v3auth", "sha"},
                                  {"v3encrypt", "aes"},
                                  {"ro_community", ""},
                                  {"rw_community", ""},
                                  {"trap_community", ""},
                                  {"community_mode", "write"}});
}
