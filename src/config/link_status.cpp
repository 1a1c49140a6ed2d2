#include "config/link_status.h"
#include "wire/notify_message.h"

#include "config/interface_file.h"
#include "core/assert.h"
#include "core/log.h"
#include "files/update.h"

#include <array>

namespace {

/** The TYPE of the interface file that belongs to a port's display name; empty for another name. */
std::string_view typeOfPort(std::string_view displayName)
{
    if (displayName.starts_with("Eth1"))
        return "eth0";
    return displayName.starts_with("Eth2") ? "eth1" : "";
}

} // namespace

int xasUpdateEthIfStatusCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_NOTIFY == msg->xH.msgtype, "XMSG_NOTIFY == msg->xH.msgtype");
    xasAssertGiven(cfgFiles, "cfgFiles");
    const auto notice = xasReadPayload<XasNotifyPayload>(*msg);
    if (notice.code != XAS_LINK_UP && notice.code != XAS_LINK_DOWN) {
        xasLogError("Invalid notify message of type %d received\n", static_cast<int>(notice.code));
        return 1;
    }
    const std::string_view displayName = xasFieldText(notice.text);
    const std::string_view type = typeOfPort(displayName);
    if (type.empty()) {
        xasLogError("Invalid link change interface type: %s\n", std::string{displayName}.c_str());
        return 1;
    }
    const bool enabled = notice.code == XAS_LINK_UP;
    const std::array<XasFileStep, 1> steps = {{
        {.type = type,
         .missingLog = "Error determining Ethernet enable config file\n",
         .missingReason = "Error determining Ethernet enable config file",
         .editLog = "Error editing Ethernet enable configuration file\n",
         .edit = [&](const char *path) { return xasEditEthEnableCfgFile(path, enabled, reply); },
         .restoreIfMissing = {},
         .restoreIfEditFails = {}},
    }};
    return xasRunFileSteps(*cfgFiles, reply, steps);
}
