// The fields of XMSG_SYSLOG.
#include "support/fields.h"

TEST(SyslogFields, StandWhereTheHandlerReadsThem)
{
    xasExpectFields(XMSG_SYSLOG, {{"local0", 120, 4},
                                  {"local1", 124, 4},
                                  {"authpriv", 128, 4},
                                  {"local3", 132, 4},
                                  {"local4", 136, 4},
                                  {"local5", 140, 4},
                                  {"remote1", 144, 76},
                                  {"remote2", 220, 76},
                                  {"nut_size", 296, 2},
                                  {"log_size", 298, 2}});
}
