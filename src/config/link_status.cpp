#include "config/link_status.h"

#include "config/interface_file.h"
#include "core/log.h"
#include "wire/notify_message.h"

#include <algorithm>

namespace {

int editOnBoot(const XasEditCall &call)
{
    const bool enabled = xasReadPayload<XasNotifyPayload>(call.msg).code == XAS_LINK_UP;
    return xasEditEthEnableCfgFile(call.path, &enabled, call.reply);
}

constexpr XasFileRow row(std::string_view type)
{
    return {.type = type,
            .edit = {editOnBoot, &xasEditEthEnableCfgFile.texts},
            .missingLog = "Error determining Ethernet enable config file\n",
            .missingReason = "Error determining Ethernet enable config file",
            .editLog = "Error editing Ethernet enable configuration file\n"};
}

/** The interface files of the ports with the display names "Eth1" and "Eth2"; a message is about one. */
constexpr XasFileRow FILES[] = {row("eth0"), row("eth1")};
constexpr std::string_view DISPLAY_NAMES[] = {"Eth1", "Eth2"};

} // namespace

constexpr XasFilesUpdate xasEthIfStatusFiles{.msgtype = XMSG_NOTIFY, .files = FILES};

int xasUpdateEthIfStatusCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertUpdate(msg, XMSG_NOTIFY, cfgFiles);
    const auto notice = xasReadPayload<XasNotifyPayload>(*msg);
    if (notice.code != XAS_LINK_UP && notice.code != XAS_LINK_DOWN)
        return xasLogFailure("Invalid notify message of type %d received\n", static_cast<int>(notice.code));
    const std::string_view text = xasFieldText(notice.text);
    const auto *const name = std::ranges::find_if(
        DISPLAY_NAMES, [&](std::string_view displayName) { return text.starts_with(displayName); });
    if (name == std::end(DISPLAY_NAMES))
        return xasLogFailure("Invalid link change interface type: %s\n", std::string{text}.c_str());
    const auto port = static_cast<std::size_t>(name - std::begin(DISPLAY_NAMES));
    return XasFilesUpdate{.msgtype = XMSG_NOTIFY, .files = {&FILES[port], 1}}(msg, cfgFiles, reply);
}
