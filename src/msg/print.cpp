#include "msg/print.h"

#include "core/text.h"
#include "core/utils.h"
#include "msg/dumps.h"
#include "wire/message_names.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

/** The text of both address functions. */
std::array<char, 24> &addressText()
{
    static std::array<char, 24> text;
    return text;
}

std::string nameOf(std::string_view name)
{
    return std::string{name};
}

/** One type's lines. */
struct Dump {
    XasMsgType msgtype;
    std::string (*text)(const XasMessage &msg);
};

constexpr std::array DUMPS = {
    Dump{XMSG_HOSTNAME, msgDumpHostname}, Dump{XMSG_DNS, msgDumpDns},
    Dump{XMSG_NTP, msgDumpNtp},           Dump{XMSG_TIMEZONE, msgDumpTimezone},
    Dump{XMSG_ROUTING, msgDumpRouting},   Dump{XMSG_AUTH, msgDumpAuth},
    Dump{XMSG_USER, msgDumpUser},         Dump{XMSG_NIS, msgDumpNis},
    Dump{XMSG_LDAP, msgDumpLdap},         Dump{XMSG_RADIUS, msgDumpRadius},
    Dump{XMSG_KERBEROS, msgDumpKerberos}, Dump{XMSG_SNMP, msgDumpSnmp},
    Dump{XMSG_NFS, msgDumpNfs},           Dump{XMSG_CIFS, msgDumpCifs},
    Dump{XMSG_ACKNAK, msgDumpReply},
};

} // namespace

const char *msgIPv4Text(std::uint32_t address)
{
    std::snprintf(addressText().data(), addressText().size(), "%s", xasIPv4ToStr(address));
    return addressText().data();
}

const char *msgIPv4PortText(std::uint32_t address, std::uint16_t port)
{
    std::snprintf(addressText().data(), addressText().size(), "%s:%d", xasIPv4ToStr(address), port);
    return addressText().data();
}

std::string msgThreeText(const std::string &first, const std::string &second, const std::string &third)
{
    const auto valueOf = [](const std::string &value) {
        return value.empty() ? "none" : value.c_str();
    };
    return xasFormat("%s,%s,%s", valueOf(first), valueOf(second), valueOf(third));
}

std::string msgBasicText(const XasMessage *msg)
{
    if (msg == nullptr)
        return "msgPrintBasic: p is NULL";
    return xasFormat("msgPrintBasic: type=%s, action=%s, sender=%s\n"
                     "               id=%u, orig_id=%u\n",
                     nameOf(xasMsgTypeName(msg->xH.msgtype)).c_str(),
                     nameOf(xasActionName(msg->xH.action)).c_str(),
                     nameOf(xasSenderName(msg->xH.sender)).c_str(), msg->xH.id, msg->xH.orig_id);
}

std::string msgAllText(const XasMessage &msg, std::span<const std::byte> users)
{
    if (msg.xH.msgtype == XMSG_LOCALUSERS)
        return msgDumpLocalUsers(msg, users);
    const auto *const dump =
        std::ranges::find_if(DUMPS, [&](const Dump &d) { return d.msgtype == msg.xH.msgtype; });
    return dump != DUMPS.end() ? dump->text(msg) : msgDumpFields(msg);
}

void msgPrintBasic(const XasMessage *msg)
{
    std::fputs(msgBasicText(msg).c_str(), stdout);
}

void msgPrintAll(const XasMessage &msg, std::span<const std::byte> users)
{
    std::fputs(msgAllText(msg, users).c_str(), stdout);
}
