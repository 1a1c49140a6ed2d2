#include "auth/update_auth.h"

#include "auth/auth_order.h"
#include "auth/nsswitch.h"
#include "auth/sys_auth.h"

namespace {

/** The positions as written go back into the message, which says which application is started. */
int editOrder(const XasEditCall &call)
{
    auto auth = xasReadPayload<XasAuthPayload>(call.msg);
    const int result = xasEditAuthenOrderCfgFile(call.path, &auth, call.reply);
    xasWritePayload(call.msg, auth);
    return result;
}

constexpr XasFileRow FILES[] = {
    {.type = "authentication",
     .edit = {editOrder, &XAS_AUTH_ORDER_TEXTS},
     .missingLog = "Error determining r58 authentication config file\n",
     .editLog = "Error editing network config file\n"},
    {.type = "system-auth",
     .edit = {[](const XasEditCall &call) {
         return xasEditSysAuthCfgFile(call.path, call.reply);
     }},
     .missingLog = "Error determining Auth Order 1 system-auth config file\n",
     .editLog = "Error editing Auth Order 2 system-auth config file\n"},
    {.type = "nsswitch",
     .edit = XAS_NSSWITCH_EDIT,
     .missingLog = "Error determining nsswitch.conf config file\n",
     .editLog = "Error editing nsswitch.conf config file\n"},
};

} // namespace

constexpr XasFilesUpdate xasUpdateAuthenOrderCfg{
    .msgtype = XMSG_AUTH, .files = FILES, .onFailure = XasOnFailure::goOn, .lookUp = XasLookUp::together};
