/** XMSG_USERLIST: carries nothing; the daemon restarts the application "userlist". */
#include "msg/fields_subjects.h"

const XasMsgFields XAS_USERLIST_FIELDS = {
    .msgtype = XMSG_USERLIST, .meaning = "the list of users changed", .stored = false};
