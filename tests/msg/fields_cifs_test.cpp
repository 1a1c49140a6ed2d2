// The fields of XMSG_CIFS.
#include "support/fields.h"

TEST(CifsFields, HashesAreRefusedThatAreTooLong)
{
    EXPECT_EQ(xasTestNumberOf(XMSG_CIFS, "lanman_pwd", std::string(33, 'A')), "refused");
    EXPECT_EQ(xasTestNumberOf(XMSG_CIFS, "nt_pwd", std::string(33, 'A')), "refused");
    EXPECT_EQ(xasTestNumberOf(XMSG_CIFS, "lct_field", std::string(17, 'A')), "refused");
    EXPECT_NE(xasTestNumberOf(XMSG_CIFS, "nt_pwd", std::string(32, 'A')), "refused");
}

TEST(CifsFields, StandWhereTheHandlerReadsThem)
{
    xasExpectFields(XMSG_CIFS, {{"enabled", 120, 4},
                                {"eth1", 124, 4},
                                {"eth2", 128, 4},
                                {"lanman_pwd", 132, 33},
                                {"nt_pwd", 165, 33},
                                {"lct_field", 198, 17},
                                {"workgroup", 215, 2488 - 215}});
}

TEST(CifsFields, ByDefaultTheShareIsOfferedOnTheFirstPort)
{
    xasExpectDefaults(XMSG_CIFS, {{"enabled", "yes"},
                                  {"eth1", "yes"},
                                  {"eth2", "no"},
                                  {"lanman_pwd", ""},
                                  {"nt_pwd", ""},
                                  {"lct_field", ""},
                                  {"workgroup", "WORKGROUP"}});
}
