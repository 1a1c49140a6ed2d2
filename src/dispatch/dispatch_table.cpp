#include "dispatch/dispatch_table.h"

#include "auth/cifs.h"
#include "auth/kerberos.h"
#include "auth/ldap.h"
#include "auth/nfs.h"
#include "auth/nis.h"
#include "auth/radius.h"
#include "auth/snmp.h"
#include "auth/tacacs.h"
#include "auth/update_auth.h"
#include "auth/users.h"
#include "config/dns.h"
#include "config/ethernet.h"
#include "config/hostname.h"
#include "config/link_status.h"
#include "config/ntp.h"
#include "config/routing.h"
#include "config/timezone.h"
#include "config/update_syslog.h"
#include "core/file.h"
#include "dispatch/update_firewall.h"
#include "dispatch/vpn.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace {

using enum XasStartRule;

constexpr std::array ROWS = {
    XasDispatchRow{XMSG_ETH, "eth", xasUpdateEthCfg, always},
    XasDispatchRow{XMSG_HOSTNAME, "hostname", xasUpdateHostnameCfg, always},
    XasDispatchRow{XMSG_DNS, "dns", xasUpdateDnsCfg, always},
    XasDispatchRow{XMSG_FIREWALL, "firewall", xasUpdateFirewall, always},
    XasDispatchRow{XMSG_IPFILTER_SET, "firewall", xasUpdateFirewall, always},
    XasDispatchRow{XMSG_IPFILTER_ASSIGN, "firewall", xasUpdateFirewall, always},
    XasDispatchRow{XMSG_ROUTING, "router", xasUpdateRoutingCfg, word0or1},
    XasDispatchRow{XMSG_VPN, "ipsec", xasUpdateVPNCfg, word0},
    XasDispatchRow{XMSG_TIMEZONE, "timezone", xasUpdateTimezoneCfg, always},
    XasDispatchRow{XMSG_NTP, "ntp", xasUpdateNtpCfg, word0},
    XasDispatchRow{XMSG_SYSLOG, "syslog", xasUpdateSyslogCfg, always},
    XasDispatchRow{XMSG_SNMP, "snmp", xasUpdateSNMPCfg, word0},
    XasDispatchRow{XMSG_NFS, "nfs", xasUpdateNFSCfg, always},
    XasDispatchRow{XMSG_CIFS, "samba", xasUpdateSambaCfg, word0},
    XasDispatchRow{XMSG_AUTH, "authentication", xasUpdateAuthenOrderCfg, always},
    XasDispatchRow{XMSG_LOCALUSERS, "localuser", xasUpdateLocalUsersCfg, word0},
    XasDispatchRow{XMSG_NIS, "ypbind", xasUpdateNisCfg, word0},
    XasDispatchRow{XMSG_LDAP, "ldap", xasUpdateLdapCfg, word0},
    XasDispatchRow{XMSG_RADIUS, "radius", xasUpdateRadiusCfg, word0},
    XasDispatchRow{XMSG_KERBEROS, "kerberos", xasUpdateKerberosCfg, word0},
    XasDispatchRow{XMSG_TACACS, "tacacs", xasUpdateTacacsCfg, word0},
    XasDispatchRow{XMSG_APPLICATION, "", nullptr, word1AndModel},
    XasDispatchRow{XMSG_USER, "user", xasUpdateSingleLocalUsersCfg, always},
    XasDispatchRow{XMSG_USERLIST, "userlist", xasUpdateUserListCfg, always},
    XasDispatchRow{XMSG_NAT_NOTIFY, "nat", nullptr, always},
    XasDispatchRow{XMSG_NOTIFY, "netlink", xasUpdateEthIfStatusCfg, always},
};

/** The applications that XMSG_APPLICATION names by index. */
constexpr std::array<std::string_view, 5> APPLICATIONS = {"xdd", "xld", "snmptrapd", "portmap", "xpb"};
constexpr std::uint32_t XPB_INDEX = 4;

/** Inclusive ranges of the models that have the device of "xpb". */
struct ModelRange {
    std::uint8_t first;
    std::uint8_t last;
};
constexpr std::array XPB_MODELS = {ModelRange{13, 16}, ModelRange{29, 32}, ModelRange{45, 48},
                                   ModelRange{61, 64}, ModelRange{77, 80}, ModelRange{93, 97}};

/** The appliance's model, from the first line of its description that has one; false when none has. */
bool readModel(std::uint8_t &model)
{
    constexpr std::string_view MODEL_KEY = "model=";
    const XasFile info = xasOpenFile("/etc/qvtx/info", "r");
    std::array<char, 100> line{};
    while (info && std::fgets(line.data(), line.size(), info.get()) != nullptr) {
        const std::string_view text = line.data();
        const std::size_t key = text.find(MODEL_KEY);
        if (key != std::string_view::npos) {
            model = static_cast<std::uint8_t>(std::atoi(line.data() + key + MODEL_KEY.size()));
            return true;
        }
    }
    return false;
}

bool modelHasXpb()
{
    std::uint8_t model = 0;
    return readModel(model) && std::ranges::any_of(XPB_MODELS, [&](const ModelRange &range) {
               return model >= range.first && model <= range.last;
           });
}

} // namespace

std::span<const XasDispatchRow> xasDispatchRows()
{
    return ROWS;
}

const XasDispatchRow *xasFindDispatchRow(std::uint32_t msgtype)
{
    const auto *const found =
        std::ranges::find_if(ROWS, [&](const XasDispatchRow &row) { return row.msgtype == msgtype; });
    return found != ROWS.end() ? found : nullptr;
}

std::string_view xasApplicationName(const XasDispatchRow &row, const XasMessage &msg)
{
    if (row.msgtype != XMSG_APPLICATION)
        return row.application;
    const std::uint32_t index = xasPayloadWord<0>(msg);
    return index < APPLICATIONS.size() ? APPLICATIONS[index] : "INVALID_APP";
}

bool xasIsStartWanted(const XasDispatchRow &row, const XasMessage &msg)
{
    const bool word0Set = xasPayloadWord<0>(msg) != 0;
    const bool word1Set = xasPayloadWord<1>(msg) != 0;
    switch (row.startRule) {
    case word0:
        return word0Set;
    case word0or1:
        return word0Set || word1Set;
    case word1AndModel:
        return word1Set && (xasPayloadWord<0>(msg) != XPB_INDEX || modelHasXpb());
    case always:
        break;
    }
    return true;
}
