#include "config/firewall_services.h"

#include "core/log.h"
#include "core/text.h"
#include "platform/config_library.h"

#include <array>
#include <string>

namespace {

constexpr std::uint32_t SSH_PORT = 22;
constexpr std::size_t STORED_SSH_PORT = 142; /**< where a stored XMSG_SSH has its 16-bit port */

constexpr std::array REJECT_METHODS = {"REJECT", "DROP"};
static_assert(XAS_METHOD_REJECT == 0 && XAS_METHOD_DROP == 1);

std::string setting(std::string_view key, const std::string &value)
{
    return xasFormatLine("%s=\"%s\"\n", std::string{key}.c_str(), value.c_str());
}

std::string sshService(const XasFirewallCfg &fWallCfg)
{
    if (fWallCfg.ssh == 0)
        return {};
    return fWallCfg.ssh_port == SSH_PORT ? "ssh " : xasFormat("%d ", static_cast<int>(fWallCfg.ssh_port));
}

/** Every service but the last has a blank behind it, also where it comes last. */
std::string tcpServices(const XasFirewallCfg &fWallCfg)
{
    std::string services;
    services += fWallCfg.www != 0 ? "www " : "";
    services += fWallCfg.https != 0 ? "https " : "";
    services += sshService(fWallCfg);
    services += fWallCfg.telnet != 0 ? "telnet " : "";
    services += fWallCfg.smb != 0 ? "135 netbios-ssn microsoft-ds" : "";
    return services;
}

std::string udpServices(const XasFirewallCfg &fWallCfg)
{
    return std::string{"ntp router 161 162 30718:30721 "} +
           (fWallCfg.smb != 0 ? "135 netbios-ns netbios-dgm" : "");
}

/** Appends what becomes of a line. An unknown reject method is for the caller to find. */
void appendEdited(std::string &text, std::string_view line, const XasFirewallCfg &fWallCfg)
{
    const std::string_view key = xasFirstToken(line, "=");
    if (key == "TCP_PUBLIC_SERVICES")
        text += setting(key, tcpServices(fWallCfg));
    else if (key == "UDP_PUBLIC_SERVICES")
        text += setting(key, udpServices(fWallCfg));
    else if (key == "REJECT_METHOD")
        text += setting(key, REJECT_METHODS.at(fWallCfg.reject_method));
    else if (key == "INVISIBLE_TO_PING")
        text += setting(key, fWallCfg.invisible != 0 ? "yes" : "no");
    else
        text += line;
}

std::uint32_t storedSshPort()
{
    XasMessage stored{};
    if (xmlGetMsg(stdout, XMSG_SSH, &stored) != 0)
        return SSH_PORT;
    return xasPayloadValue<std::uint16_t, STORED_SSH_PORT>(stored);
}

} // namespace

XasNewText xasFirewallText(std::string_view oldText, const XasFirewallCfg &fWallCfg, XasReplyStatus *reply)
{
    XasNewText newText{xasBeginNewText(oldText)};
    const bool isMethodKnown = fWallCfg.reject_method < REJECT_METHODS.size();
    xasForEachLine(oldText, [&](std::string_view line) {
        if (!isMethodKnown && xasFirstToken(line, "=") == "REJECT_METHOD")
            newText.complete = false;
        if (newText.complete)
            appendEdited(newText.text, line, fWallCfg);
    });
    if (!newText.complete)
        xasSetReply(*reply, XAS_RCODE_MISSING, "Invalid reject method");
    return newText;
}

/** A comment's failed write has another file's text. */
constexpr XasEditor<XasFirewallCfg> xasEditFirewallCfgFile{
    .argument = "fWallCfg",
    .texts = {.openReason = "Error opening firewall config file",
              .writeLog = "Error printing line to firewall config file\n",
              .saveReason = "Error saving new firewall config file",
              .writeLogOf =
                  [](std::string_view line, bool /*isFirst*/) {
                      return line.starts_with('#') ? "Error printing line to DNS config file\n"
                                                   : "Error printing line to firewall config file\n";
                  }},
    .text = xasMadeBy<xasFirewallText>};

namespace {

int editServices(const XasEditCall &call)
{
    const auto payload = xasReadPayload<XasFirewallPayload>(call.msg);
    const XasFirewallCfg fWallCfg{.reject_method = payload.reject_method,
                                  .invisible = payload.invisible,
                                  .ssh = payload.ssh,
                                  .ssh_port = storedSshPort(),
                                  .telnet = payload.telnet,
                                  .www = payload.www,
                                  .https = payload.https,
                                  .smb = payload.smb};
    return xasEditFirewallCfgFile(call.path, &fWallCfg, call.reply);
}

constexpr XasFileRow FILES[] = {
    {.type = "firewall",
     .edit = {editServices, &xasEditFirewallCfgFile.texts},
     .missingLog = "Error determining firewall config file\n",
     .editLog = "Error editing firewall config file\n"},
};

} // namespace

constexpr XasFilesUpdate xasUpdateFirewallCfg{.msgtype = XMSG_FIREWALL, .files = FILES};
