#include "auth/cifs.h"

#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"

namespace {

constexpr std::uint32_t INVALID_PASSWORD = 1;

std::string_view keyOf(std::string_view line)
{
    return xasTrimString(xasFirstToken(line, " ="));
}

std::string smbLine(const char *key, const std::string &value)
{
    return xasFormatLine("   %s = %s\n", key, value.c_str());
}

std::string interfaces(const XasCifsPayload &cifs)
{
    return std::string{"127.0.0.1 "} + (cifs.eth1 != 0 ? "eth0 " : "") + (cifs.eth2 != 0 ? "eth1" : "");
}

bool isComplete(const XasCifsPayload &cifs)
{
    return !xasFieldText(cifs.lanman_pwd).empty() && !xasFieldText(cifs.nt_pwd).empty() &&
           !xasFieldText(cifs.lct_field).empty();
}

} // namespace

std::string xasSmbText(std::string_view oldText, const XasCifsPayload &cifs)
{
    std::string newText = xasBeginNewText(oldText);
    xasForEachLine(oldText, [&](std::string_view line) {
        const bool isComment = line.starts_with('#') || line.starts_with(';');
        const std::string_view key = isComment ? std::string_view{} : keyOf(line);
        if (key == "workgroup")
            newText += smbLine("workgroup", xasFieldString(cifs.workgroup));
        else if (key == "interfaces")
            newText += smbLine("interfaces", interfaces(cifs));
        else
            newText += line;
    });
    return newText;
}

XasNewText xasSmbPassText(std::string_view oldText, const XasCifsPayload &cifs, XasReplyStatus *reply)
{
    std::string newText = xasBeginNewText(oldText);
    xasForEachLine(oldText, [&](std::string_view line) {
        if (line.starts_with('#') || cifs.enabled == 0 || !line.starts_with("cifs"))
            newText += line;
    });
    if (cifs.enabled == 0)
        return newText;
    const std::string lanman{xasFieldText(cifs.lanman_pwd)};
    const std::string nt{xasFieldText(cifs.nt_pwd)};
    const std::string changed{xasFieldText(cifs.lct_field)};
    if (!isComplete(cifs)) {
        xasLogError("Invalid samba password, lanman_pwd = %s, nt_pwd = %s, lct_field = %s\n", lanman.c_str(),
                    nt.c_str(), changed.c_str());
        xasSetReply(*reply, INVALID_PASSWORD, "Invalid samba password");
        return {std::move(newText), false};
    }
    newText += xasFormatLine("cifsuser:100:%s:%s:[U          ]:%s:Cifs User\n", lanman.c_str(), nt.c_str(),
                             changed.c_str());
    return newText;
}

/** The open failure names another file; the message is the system's own. */
constexpr XasEditor<XasCifsPayload> xasEditSMBCfgFile{
    .argument = "cifs",
    .texts = {.openReason = "Error opening Ethernet config file",
              .writeLog = "Error printing line to SMB config file\n",
              .saveReason = "Error saving new SMB/CIFS config file"},
    .text = xasMadeBy<xasSmbText>};

constexpr XasEditor<XasCifsPayload> xasEditSMBPassCfgFile{
    .argument = "cfgSmbPassCfg",
    .texts = {.openReason = "Error opening samba/smbpasswd config file",
              .saveReason = "Error saving new smbpasswd config file",
              .secrecy = XasSecrecy::secret},
    .text = xasMadeBy<xasSmbPassText>};

constexpr XasFileRow FILES[] = {
    {.type = "smb",
     .edit = xasEditedBy<xasEditSMBCfgFile>,
     .missingLog = "Error determining SMB fstab config file\n",
     .editLog = "Error editing SMB config file\n"},
    {.type = "smbpasswd",
     .edit = xasEditedBy<xasEditSMBPassCfgFile>,
     .missingLog = "Error determining smbpasswd config file\n",
     .editLog = "Error editing smbpasswd file\n"},
};

constexpr XasFilesUpdate xasUpdateSambaCfg{.msgtype = XMSG_CIFS,
                                           .files = FILES,
                                           .lookUp = XasLookUp::together,
                                           .settled = [](const XasMessage &msg) -> std::optional<int> {
                                               if (xasReadPayload<XasCifsPayload>(msg).enabled != 0)
                                                   return std::nullopt;
                                               return 0;
                                           }};
