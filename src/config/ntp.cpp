#include "config/ntp.h"

#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"

namespace {

constexpr std::string_view LOCAL_CLOCK = "127.127.1.0";

std::string serverLine(const XasHostAddr &server)
{
    return xasFormatLine("server %s\n", xasHostToStr(server).c_str());
}

/** The lines that take the place of the first server line. */
std::string serverLines(const XasNtpPayload &ntp)
{
    if (ntp.poll != XAS_NTP_THREE_SERVERS)
        return serverLine(ntp.single);
    std::string lines = serverLine(ntp.servers[0]);
    for (const XasHostAddr *server : {&ntp.servers[1], &ntp.servers[2]}) {
        if (xasIsHostGiven(*server))
            lines += serverLine(*server);
    }
    return lines;
}

std::string commentedOut(std::string_view line)
{
    return (line.starts_with('#') ? "" : "#") + std::string{line};
}

/** A line's first two tokens; a comment mark is not part of them. */
struct Directive {
    std::string_view name;
    std::string_view argument;

    explicit Directive(std::string_view line)
    {
        std::string_view rest = xasWithoutLineEnd(line.substr(line.starts_with('#') ? 1 : 0));
        name = xasNextToken(rest, " \t");
        argument = xasNextToken(rest, " \t");
    }

    [[nodiscard]] bool isServer() const
    {
        return name == "server" && !argument.empty() && argument != LOCAL_CLOCK;
    }
};

} // namespace

std::string xasNtpStepText(const XasNtpPayload &ntp)
{
    constexpr XasHostAddr UNSET{};
    const bool isSingle = ntp.poll == XAS_NTP_ONE_SERVER;
    std::string text;
    for (const XasHostAddr &server : {isSingle ? ntp.single : ntp.servers[0],
                                      isSingle ? UNSET : ntp.servers[1], isSingle ? UNSET : ntp.servers[2]})
        text += xasFormatLine("%s\n", xasHostToStr(server).c_str());
    return text;
}

std::string xasNtpCfgText(std::string_view oldText, const XasNtpPayload &ntp)
{
    std::string newText = xasBeginNewText(oldText);
    bool hasServers = false;
    xasForEachLine(oldText, [&](std::string_view line) {
        const Directive directive{line};
        if (directive.isServer() && ntp.sync == XAS_NTP_POLL) {
            if (!hasServers)
                newText += serverLines(ntp);
            hasServers = true;
        } else if (directive.name == "broadcastclient" && ntp.sync == XAS_NTP_BROADCAST) {
            newText += "broadcastclient\n";
        } else if (directive.isServer() || directive.name == "broadcastclient") {
            newText += commentedOut(line);
        } else if (directive.name == "authenticate") {
            newText += "disable auth\n";
        } else {
            newText += line;
        }
    });
    return newText;
}

constexpr XasEditor<XasNtpPayload> xasEditNTPStepFile{
    .argument = "ntpServer",
    .texts = {.openReason = "Error opening NTP step file",
              .writeLog = "Error printing line to NTP step file\n",
              .saveReason = "Error saving new NTP step file",
              .writeReason = "Error writing to NTP step file"},
    .text = xasMadeBy<xasNtpStepText>};

constexpr XasEditor<XasNtpPayload> xasEditNTPCfgFile{
    .argument = "ntpInfo",
    .texts = {.openReason = "Error opening NTP config file",
              .writeLog = "Error printing line to NTP config file\n",
              .saveReason = "Error saving new NTP config file"},
    .text = xasMadeBy<xasNtpCfgText>};

namespace {

constexpr XasReason REASONS[] = {{XAS_RCODE_MISSING, "Invalid NTP polling type"}};

/** Lists the servers that are polled; empties the file when none is. */
int writeStepFile(const XasEditCall &call)
{
    const auto ntp = xasReadPayload<XasNtpPayload>(call.msg);
    if (ntp.sync != XAS_NTP_POLL)
        return xasEmptyCfgFile(call.path);
    if (ntp.poll != XAS_NTP_THREE_SERVERS && ntp.poll != XAS_NTP_ONE_SERVER) {
        xasLogError("Invalid NTP polling type\n");
        xasSetReply(*call.reply, REASONS[0]);
        return 1;
    }
    return xasEditNTPStepFile(call.path, &ntp, call.reply);
}

constexpr XasFileRow FILES[] = {
    {.type = "stepTickers",
     .edit = {writeStepFile, &xasEditNTPStepFile.texts},
     .missingLog = "Error determining step file for NTP\n",
     .missingReason = "Error determining NTP step file"},
    {.type = "ntp",
     .edit = xasEditedBy<xasEditNTPCfgFile>,
     .missingLog = "Error determining ntp config file\n",
     .missingReason = "Error determining NTP step file",
     .editLog = "Error editing NTP config file\n"},
};

} // namespace

constexpr XasFilesUpdate xasUpdateNtpCfg{.msgtype = XMSG_NTP, .files = FILES, .reasons = REASONS};
