// The fields of XMSG_FIREWALL.
#include "support/fields.h"

TEST(FirewallFields, StandWhereTheHandlersReadThem)
{
    xasExpectFields(XMSG_FIREWALL, {{"enabled", 120, 4},
                                    {"test_time", 124, 4},
                                    {"reject_method", 128, 4},
                                    {"invisible", 132, 4},
                                    {"ssh", 136, 4},
                                    {"telnet", 140, 4},
                                    {"www", 144, 4},
                                    {"https", 148, 4},
                                    {"smb", 152, 4}});
}
