#include "auth/snmp.h"

#include "core/text.h"
#include "platform/config_library.h"

#include <algorithm>
#include <array>

namespace {

std::string keyLine(const char *key, const std::string &value)
{
    return xasFormatLine("%s  %s\n", key, value.c_str());
}

const char *securityLevel(const XasSnmpPayload &snmp)
{
    if (snmp.v3security == XAS_SNMP_NOAUTH)
        return "noauth";
    return snmp.v3security == XAS_SNMP_PRIV ? "priv" : "auth";
}

const char *quoteFor(const std::string &phrase)
{
    return phrase.find(' ') != std::string::npos ? "\"" : "";
}

/** The access line of an SNMPv3 user and the line that creates him. */
std::string userLines(const char *key, const XasSnmpPayload &snmp, const std::string &user,
                      const std::string &pass, const std::string &phrase)
{
    const char *passQuote = quoteFor(pass);
    const char *phraseQuote = quoteFor(phrase);
    return xasFormatLine("%s  %s %s\n", key, user.c_str(), securityLevel(snmp)) +
           xasFormatLine("%s %s %s %s%s%s %s %s%s%s\n", "createUser", user.c_str(),
                         snmp.v3auth == 1 ? "SHA" : "MD5", passQuote, pass.c_str(), passQuote,
                         snmp.v3encrypt == 1 ? "AES" : "DES", phraseQuote, phrase.c_str(), phraseQuote);
}

/** What has been written of the communities. */
struct Communities {
    bool readOnly = false;
    bool readWrite = false;
};

/** One of the community keywords: what it is written as, and which community it carries. */
struct CommunityKey {
    std::string_view key;
    const char *writtenAs;
    bool isReadOnly;
};

/** An IPv6 read-write line becomes an IPv4 one. */
constexpr std::array COMMUNITY_KEYS = {
    CommunityKey{"rocommunity", "rocommunity", true},
    CommunityKey{"rocommunity6", "rocommunity6", true},
    CommunityKey{"rwcommunity", "rwcommunity", false},
    CommunityKey{"rwcommunity6", "rwcommunity", false},
};

const CommunityKey *findCommunityKey(std::string_view word)
{
    const auto *const found = std::ranges::find(COMMUNITY_KEYS, word, &CommunityKey::key);
    return found != COMMUNITY_KEYS.end() ? found : nullptr;
}

void appendCommunity(std::string &text, std::string_view line, const CommunityKey &key,
                     const XasSnmpPayload &snmp, Communities &written)
{
    if (snmp.community_mode == XAS_SNMP_NO_COMMUNITIES)
        return;
    if (snmp.community_mode != XAS_SNMP_WRITE_COMMUNITIES) {
        text += line;
        return;
    }
    (key.isReadOnly ? written.readOnly : written.readWrite) = true;
    text += keyLine(key.writtenAs,
                    key.isReadOnly ? xasFieldString(snmp.ro_community) : xasFieldString(snmp.rw_community));
}

void appendEdited(std::string &text, std::string_view line, const XasSnmpPayload &snmp, Communities &written)
{
    const std::string_view word = xasFirstToken(line, " \t");
    if (word == "syscontact")
        text += keyLine("syscontact", xasFieldString(snmp.syscontact));
    else if (word == "syslocation")
        text += keyLine("syslocation", xasFieldString(snmp.syslocation));
    else if (word == "rouser")
        text += userLines("rouser", snmp, xasFieldString(snmp.v3user), xasFieldString(snmp.v3pass),
                          xasFieldString(snmp.v3phrase));
    else if (word == "rwuser")
        text += userLines("rwuser", snmp, xasFieldString(snmp.v3rwuser), xasFieldString(snmp.v3rwpass),
                          xasFieldString(snmp.v3rwphrase));
    else if (word == "trapcommunity")
        text += keyLine("trapcommunity", xasFieldString(snmp.trap_community));
    else if (const CommunityKey *key = findCommunityKey(word))
        appendCommunity(text, line, *key, snmp, written);
    else if (word != "trapsink" && word != "trap2sink" && word != "createUser")
        text += line;
}

/** The communities that no line of the file had. */
std::string missingCommunities(const XasSnmpPayload &snmp, const Communities &written)
{
    std::string text;
    if (snmp.community_mode != XAS_SNMP_WRITE_COMMUNITIES)
        return text;
    if (!written.readOnly)
        text += keyLine("rocommunity", xasFieldString(snmp.ro_community));
    if (!written.readWrite)
        text += keyLine("rwcommunity", xasFieldString(snmp.rw_community));
    return text;
}

std::string trapLines(const XasHostAddr &host)
{
    const std::string address = xmlNameOrIpToStr(&host);
    if (address.empty())
        return {};
    return xasFormatLine("%s %s\n", "trapsink", address.c_str()) +
           xasFormatLine("%s %s\n", "trap2sink", address.c_str());
}

} // namespace

std::string xasSnmpText(std::string_view oldText, const XasSnmpPayload &snmp)
{
    std::string newText = xasBeginNewText(oldText);
    Communities written;
    xasForEachLine(oldText, [&](std::string_view line) { appendEdited(newText, line, snmp, written); });
    newText += missingCommunities(snmp, written);
    for (const XasHostAddr &host : snmp.trap_hosts)
        newText += trapLines(host);
    return newText;
}

constexpr XasEditTexts TEXTS{.openReason = "Error opening SNMP config file",
                             .writeLog = "Error printing line to SNMP config file\n",
                             .saveReason = "Error saving new SNMP config file",
                             .secrecy = XasSecrecy::secret};

int xasEditSNMPCfgFile(const char *cfgFileName, const XasSnmpPayload *snmp, XasReplyStatus *replyReason)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(snmp, "snmpCfg");
    xasAssertGiven(replyReason, "replyReason");
    return xasEditFile(cfgFileName, TEXTS, replyReason,
                       [&](std::string_view oldText) { return XasNewText{xasSnmpText(oldText, *snmp)}; });
}

constexpr XasFileRow FILES[] = {
    {.type = "snmp",
     .edit = {[](const XasEditCall &call) {
                  const auto snmp = xasReadPayload<XasSnmpPayload>(call.msg);
                  return xasEditSNMPCfgFile(call.path, &snmp, call.reply);
              },
              &TEXTS},
     .missingLog = "Error determining config file for snmp\n",
     .missingReason = "Error determining snmp config file",
     .editLog = "Error editing SNMP config file\n"},
};

constexpr XasFilesUpdate xasUpdateSNMPCfg{.msgtype = XMSG_SNMP, .files = FILES};
