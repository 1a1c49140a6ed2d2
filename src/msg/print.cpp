#include "msg/print.h"

#include "core/text.h"
#include "core/utils.h"
#include "msg/dumps.h"
#include "wire/message_names.h"

#include <cstdio>

namespace {

/** One type's lines. */
struct Dump {
    XasMsgType msgtype;
    std::string (*text)(const XasMessage &msg);
};

constexpr Dump DUMPS[] = {
    {XMSG_HOSTNAME, msgDumpHostname}, {XMSG_DNS, msgDumpDns},           {XMSG_NTP, msgDumpNtp},
    {XMSG_TIMEZONE, msgDumpTimezone}, {XMSG_ROUTING, msgDumpRouting},   {XMSG_AUTH, msgDumpAuth},
    {XMSG_USER, msgDumpUser},         {XMSG_NIS, msgDumpNis},           {XMSG_LDAP, msgDumpLdap},
    {XMSG_RADIUS, msgDumpRadius},     {XMSG_KERBEROS, msgDumpKerberos}, {XMSG_SNMP, msgDumpSnmp},
    {XMSG_NFS, msgDumpNfs},           {XMSG_CIFS, msgDumpCifs},         {XMSG_ACKNAK, msgDumpReply},
};

} // namespace

std::string msgIPv4Text(XasIPv4 address)
{
    return xasIPv4ToStr(address);
}

std::string msgIPv4PortText(XasIPv4 address, std::uint16_t port)
{
    return msgIPv4Text(address) + ":" + std::to_string(port);
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
                     std::string{xasMsgTypeName(msg->xH.msgtype)}.c_str(),
                     std::string{xasActionName(msg->xH.action)}.c_str(),
                     std::string{xasSenderName(msg->xH.sender)}.c_str(), msg->xH.id, msg->xH.orig_id);
}

std::string msgAllText(const XasMessage &msg, std::span<const std::byte> users)
{
    if (msg.xH.msgtype == XMSG_LOCALUSERS)
        return msgDumpLocalUsers(msg, users);
    for (const Dump &dump : DUMPS) {
        if (dump.msgtype == msg.xH.msgtype)
            return dump.text(msg);
    }
    return msgDumpFields(msg);
}

void msgPrintBasic(const XasMessage *msg)
{
    std::fputs(msgBasicText(msg).c_str(), stdout);
}

void msgPrintAll(const XasMessage &msg, std::span<const std::byte> users)
{
    std::fputs(msgAllText(msg, users).c_str(), stdout);
}
