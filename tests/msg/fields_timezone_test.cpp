// The fields of XMSG_TIMEZONE.
#include "support/fields.h"

TEST(TimezoneFields, StandWhereTheHandlerReadsThem)
{
    xasExpectFields(XMSG_TIMEZONE, {{"zone", 120, 2368}});
}
