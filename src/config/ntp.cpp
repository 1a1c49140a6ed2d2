#include "config/ntp.h"

#include "core/assert.h"
#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"
#include "files/config_file.h"
#include "files/editor.h"
#include "files/update.h"

#include <algorithm>
#include <array>

namespace {

constexpr XasEditTexts STEP_TEXTS{
    .openReason = "Error opening NTP step file",
    .writeLog = "Error printing line to NTP step file\n",
    .saveReason = "Error saving new NTP step file",
    .writeReason = "Error writing to NTP step file",
};

constexpr XasEditTexts NTP_TEXTS{
    .openReason = "Error opening NTP config file",
    .writeLog = "Error printing line to NTP config file\n",
    .saveReason = "Error saving new NTP config file",
};

constexpr std::string_view LOCAL_CLOCK = "127.127.1.0";

std::string serverLine(const XasHostAddr &server)
{
    return xasFormatLine("server %s\n", xasHostToStr(server).c_str());
}

/** The lines that take the place of the first server line. */
std::string serverLines(const XasNtpInfo &ntpInfo)
{
    std::string lines = serverLine(ntpInfo.servers[0]);
    if (ntpInfo.poll == XAS_NTP_THREE_SERVERS) {
        for (const XasHostAddr *server : {&ntpInfo.servers[1], &ntpInfo.servers[2]}) {
            if (xasIsHostGiven(*server))
                lines += serverLine(*server);
        }
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

/** The servers to poll. An unknown polling type is logged and put into the reply. */
bool chooseServers(const XasNtpPayload &payload, XasNtpInfo &ntpInfo, XasReplyStatus *reply)
{
    switch (payload.poll) {
    case XAS_NTP_THREE_SERVERS:
        std::ranges::copy(payload.servers, ntpInfo.servers);
        return true;
    case XAS_NTP_ONE_SERVER:
        ntpInfo.servers[0] = payload.single;
        return true;
    default:
        xasLogError("Invalid NTP polling type\n");
        xasSetReply(*reply, XAS_RCODE_MISSING, "Invalid NTP polling type");
        return false;
    }
}

/** Lists the servers that are polled, none when none is, and puts them into `ntpInfo`. */
int writeStepFile(const char *cfgFileName, const XasNtpPayload &payload, XasNtpInfo &ntpInfo,
                  XasReplyStatus *reply)
{
    if (payload.sync != XAS_NTP_POLL)
        return xasEmptyCfgFile(cfgFileName);
    if (!chooseServers(payload, ntpInfo, reply))
        return 1;
    const auto &servers = ntpInfo.servers;
    return xasEditNTPStepFile(cfgFileName, &servers[0], &servers[1], &servers[2], reply);
}

} // namespace

std::string xasNtpStepText(const XasHostAddr &server1, const XasHostAddr *server2, const XasHostAddr *server3)
{
    std::string text;
    for (const XasHostAddr *server : {&server1, server2, server3}) {
        if (server != nullptr)
            text += xasFormatLine("%s\n", xasHostToStr(*server).c_str());
    }
    return text;
}

std::string xasNtpCfgText(std::string_view oldText, const XasNtpInfo &ntpInfo)
{
    std::string newText;
    bool hasServers = false;
    xasForEachLine(oldText, [&](std::string_view line) {
        const Directive directive{line};
        if (directive.isServer() && ntpInfo.sync == XAS_NTP_POLL) {
            if (!hasServers)
                newText += serverLines(ntpInfo);
            hasServers = true;
        } else if (directive.name == "broadcastclient" && ntpInfo.sync == XAS_NTP_BROADCAST) {
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

int xasEditNTPStepFile(const char *cfgFileName, const XasHostAddr *server1, const XasHostAddr *server2,
                       const XasHostAddr *server3, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(server1, "ntpServer");
    return xasEditFile(cfgFileName, STEP_TEXTS, reply, [&](std::string_view /*oldText*/) {
        return xasNtpStepText(*server1, server2, server3);
    });
}

int xasEditNTPCfgFile(const char *cfgFileName, const XasNtpInfo *ntpInfo, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(ntpInfo, "ntpInfo");
    return xasEditFile(cfgFileName, NTP_TEXTS, reply,
                       [&](std::string_view oldText) { return xasNtpCfgText(oldText, *ntpInfo); });
}

int xasUpdateNtpCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_NTP == msg->xH.msgtype, "XMSG_NTP == msg->xH.msgtype");
    xasAssertGiven(cfgFiles, "cfgFiles");
    const auto payload = xasReadPayload<XasNtpPayload>(*msg);
    XasNtpInfo ntpInfo{.sync = payload.sync, .poll = payload.poll, .servers = {}};

    const char *stepFile = xasGetCfgFilePath("stepTickers", *cfgFiles);
    if (stepFile == nullptr) {
        xasLogError("Error determining step file for NTP\n");
        xasSetReply(*reply, XAS_RCODE_MISSING, "Error determining NTP step file");
        return 1;
    }
    if (writeStepFile(stepFile, payload, ntpInfo, reply) != 0)
        return 1;
    const std::array<XasFileStep, 1> steps = {{
        {.type = "ntp",
         .missingLog = "Error determining ntp config file\n",
         .missingReason = "Error determining NTP step file",
         .editLog = "Error editing NTP config file\n",
         .edit = [&](const char *path) { return xasEditNTPCfgFile(path, &ntpInfo, reply); },
         .restoreIfMissing = {"stepTickers"},
         .restoreIfEditFails = {"stepTickers"}},
    }};
    return xasRunFileSteps(*cfgFiles, reply, steps);
}
