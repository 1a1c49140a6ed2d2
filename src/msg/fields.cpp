#include "msg/fields.h"

#include "dispatch/settings_list.h"
#include "wire/reply_message.h"

const XasMsgFields *msgFieldsOf(std::uint32_t msgtype)
{
    if (msgtype == XMSG_ACKNAK)
        return &XAS_ACKNAK_MESSAGE;
    for (const XasListedSetting &listed : XAS_SETTINGS_LIST) {
        if (listed.message->msgtype == msgtype)
            return listed.message;
    }
    return nullptr;
}
