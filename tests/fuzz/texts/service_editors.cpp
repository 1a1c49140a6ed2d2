#include "auth/cifs.h"
#include "auth/nfs.h"
#include "auth/snmp.h"
#include "config/firewall_message.h"
#include "config/firewall_services.h"
#include "config/logrotate.h"
#include "config/ntp.h"
#include "config/routing.h"
#include "config/syslog.h"
#include "core/utils.h"
#include "texts/editors.h"

#include <algorithm>

namespace {

template <class Payload, auto make>
XasNewText textOf(const XasTextInput &in)
{
    XasReplyStatus reply;
    return xasMadeBy<make>(in.old, xasReadPayload<Payload>(in.msg), &reply);
}

XasNewText syslogText(const XasTextInput &in)
{
    const auto syslog = xasReadPayload<XasSyslogPayload>(in.msg);
    return xasSyslogLocalText(in.old, syslog) + xasSyslogRemoteText(syslog);
}

XasNewText firewallText(const XasTextInput &in)
{
    const auto payload = xasReadPayload<XasFirewallPayload>(in.msg);
    XasReplyStatus reply;
    return xasFirewallText(in.old,
                           {.reject_method = payload.reject_method,
                            .invisible = payload.invisible,
                            .ssh = payload.ssh,
                            .ssh_port = in.variant,
                            .telnet = payload.telnet,
                            .www = payload.www,
                            .https = payload.https,
                            .smb = payload.smb},
                           &reply);
}

XasNewText nfsServersText(const XasTextInput &in)
{
    XasNfsServers servers{};
    std::memcpy(servers.data(), in.msg.payload.data(), sizeof servers);
    return xasNfsServersText(servers);
}

XasNewText fstabText(const XasTextInput &in)
{
    const auto payload = xasReadPayload<XasNfsPayload>(in.msg);
    XasNfsShares shares;
    std::ranges::transform(payload.mounts, shares.begin(), [](const XasNfsMount &mount) {
        return XasNfsShare{.remote = xasFieldString(mount.rem_dir),
                           .local = "/var/nfsmounts" + xasFieldString(mount.local_dir),
                           .readWrite = mount.read_write != 0,
                           .used = mount.mount != 0};
    });
    XasReplyStatus reply;
    return xasFstabText(in.old, shares, &reply);
}

bool areLevelsValid(const XasMessage &msg)
{
    return xasAreSyslogLevelsValid(xasReadPayload<XasSyslogPayload>(msg));
}

/** The step file of another message is emptied, or the message is refused. */
bool isStepMade(const XasMessage &msg)
{
    const auto ntp = xasReadPayload<XasNtpPayload>(msg);
    return ntp.sync == XAS_NTP_POLL && ntp.poll <= XAS_NTP_ONE_SERVER;
}

bool isNtpMade(const XasMessage &msg)
{
    return xasReadPayload<XasNtpPayload>(msg).sync != XAS_NTP_POLL || isStepMade(msg);
}

/** A server line without a server, or with the local clock, is not known again as one of ours. */
bool areServersKnownAgain(const XasMessage &msg)
{
    const auto ntp = xasReadPayload<XasNtpPayload>(msg);
    const auto isKnown = [](const XasHostAddr &server) {
        return !xasHostToStr(server).empty() && xasHostToStr(server) != "127.127.1.0";
    };
    return isKnown(ntp.single) && std::ranges::all_of(ntp.servers, isKnown);
}

constexpr XasTextEditor EDITORS[] = {
    {"ntp step", XMSG_NTP, textOf<XasNtpPayload, xasNtpStepText>, xasModelNtpStep, 1, false, isStepMade},
    {"ntp", XMSG_NTP, textOf<XasNtpPayload, xasNtpCfgText>, xasModelNtp, 1, true, isNtpMade,
     areServersKnownAgain},
    {"syslog", XMSG_SYSLOG, syslogText, xasModelSyslog, 1, true, areLevelsValid},
    {"logrotate", XMSG_SYSLOG, textOf<XasSyslogPayload, xasLogrotateText>, xasModelLogrotate, 1, true,
     areLevelsValid},
    {"firewall", XMSG_FIREWALL, firewallText, xasModelFirewall, 65536, true},
    {"zebra", XMSG_ROUTING, textOf<XasRoutingPayload, xasZebraText>, xasModelZebra, 1, true},
    {"ripd", XMSG_ROUTING, textOf<XasRoutingPayload, xasRipdText>, xasModelRipd, 1, true},
    {"snmp", XMSG_SNMP, textOf<XasSnmpPayload, xasSnmpText>, xasModelSnmp, 1, true},
    {"nfs servers", XMSG_AUDITLOG, nfsServersText, xasModelNfsServers},
    {"fstab", XMSG_NFS, fstabText, xasModelFstab, 1, true},
    {"smb", XMSG_CIFS, textOf<XasCifsPayload, xasSmbText>, xasModelSmb, 1, true,
     [](const XasMessage &msg) {
         return xasReadPayload<XasCifsPayload>(msg).enabled != 0;
     }},
    {"smbpasswd", XMSG_CIFS, textOf<XasCifsPayload, xasSmbPassText>, xasModelSmbPass, 1, true},
};

} // namespace

std::span<const XasTextEditor> xasServiceEditors()
{
    return EDITORS;
}
