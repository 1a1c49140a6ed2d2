#include "support/line_editors.h"

#include "auth/cifs.h"
#include "auth/kerberos.h"
#include "auth/ldap.h"
#include "auth/nfs.h"
#include "auth/nis.h"
#include "auth/nsswitch.h"
#include "auth/radius.h"
#include "auth/snmp.h"
#include "config/firewall_services.h"
#include "config/gateway.h"
#include "config/hostname.h"
#include "config/interface_file.h"
#include "config/kernel.h"
#include "config/logrotate.h"
#include "config/network_file.h"
#include "config/ntp.h"
#include "config/routing.h"
#include "config/syslog.h"
#include "dispatch/vpn.h"

namespace {

XasReplyStatus unread;

constexpr XasSnmpPayload COMMUNITIES_KEPT = [] {
    XasSnmpPayload snmp{};
    snmp.community_mode = 2;
    return snmp;
}();

} // namespace

std::vector<XasLineEditor> xasEditorsThatKeepLines()
{
    return {
        {"smb", [](auto text) { return xasSmbText(text, {}); }, "   log file = /var/log/samba\n"},
        {"smbpasswd", [](auto text) { return xasSmbPassText(text, {}, &unread).text; },
         "somebody:1001:0:0:[U          ]:LCT-0:Somebody\n"},
        {"kerberos hosts",
         [](auto text) { return xasHostsTextWithLine(text, "10.0.0.1", "kdc.example.org", "kdc"); },
         "10.0.0.2    host.example.org  host\n"},
        {"openldap", [](auto text) { return xasOpenLdapText(text, {}); },
         "TLS_CACERT /etc/ssl/ca.pem # ours\n"},
        {"fstab", [](auto text) { return xasFstabText(text, {}, &unread); },
         "/dev/sda1 /mnt/somewhere ext2 ro 0 0\n"},
        {"nis network", [](auto text) { return xasNisNetworkText(text, "example"); },
         "GATEWAY=192.168.100.100\n"},
        {"nsswitch", [](auto text) { return xasNsswitchText(text, {}); }, "hosts:      files dns mdns4\n"},
        {"radius", [](auto text) { return xasRadiusText(text, {}); },
         "# server[:port] shared_secret timeout\n"},
        {"snmp", [](auto text) { return xasSnmpText(text, {}); }, "proc sendmail 10 1 # at least one\n"},
        {"snmp community", [](auto text) { return xasSnmpText(text, COMMUNITIES_KEPT); },
         "rocommunity public-to-everybody\n"},
        {"firewall", [](auto text) { return xasFirewallText(text, {}, &unread).text; },
         "PUBLIC_INTERFACE=\"eth0\"\n"},
        {"gateway", [](auto text) { return xasAltGWText(text, {}); }, "SOMETHING_ELSE=192.168.100.100\n"},
        {"hosts", [](auto text) { return xasHostsText(text, {}); }, "192.168.10.1\tgateway.example.org\n"},
        {"interface", [](auto text) { return xasEthEnableText(text, true); },
         "IPADDR=192.168.100.100 # ours\n"},
        {"kernel", [](auto text) { return xasKernelCfgText(text, {}); },
         "kernel.sysrq = 0 # not for anybody\n"},
        {"logrotate", [](auto text) { return xasLogrotateText(text, {}); },
         "    postrotate /bin/something\n"},
        {"network", [](auto text) { return xasNetCfgText(text, {}); }, "HOSTNAME=console.example.org\n"},
        {"ntp", [](auto text) { return xasNtpCfgText(text, {}); }, "driftfile /var/lib/ntp/ntp.drift\n"},
        {"zebra", [](auto text) { return xasZebraText(text, {}); }, "access-list 1 permit 10.0.0.0\n"},
        {"ripd", [](auto text) { return xasRipdText(text, {}); }, "access-list 1 permit 10.0.0.0\n"},
        {"syslog", [](auto text) { return xasSyslogLocalText(text, {}); }, "mail.*    /var/log/somewhere\n"},
        {"ipsec", [](auto text) { return xasIPsecGlobalText(text); }, "    interfaces=%defaultroute\n"},
    };
}

std::vector<XasLineEditor> xasLineEditors()
{
    std::vector<XasLineEditor> edits = xasEditorsThatKeepLines();
    edits.push_back({"smb", [](auto text) { return xasSmbText(text, {}); }, "   workgroup = WORKGROUP\n"});
    edits.push_back({"nfs", [](auto text) { return xasFstabText(text, {}, &unread); },
                     "server:/somewhere /mnt/somewhere nfs ro 0 0\n"});
    edits.push_back({"user", [](auto text) { return xasSnmpText(text, {}); }, "rouser somebody auth\n"});
    edits.push_back({"services", [](auto text) { return xasFirewallText(text, {}, &unread).text; },
                     "TCP_PUBLIC_SERVICES=\"www\"\n"});
    edits.push_back({"size", [](auto text) { return xasLogrotateText(text, {}); },
                     "            tail -c 51200 $1 > /www/$1.log\n"});
    edits.push_back(
        {"server", [](auto text) { return xasNtpCfgText(text, {}); }, "server ntp.example.org iburst\n"});
    edits.push_back({"section", [](auto text) { return xasRipdText(text, {}); }, "router rip\n"});
    edits.push_back({"local0", [](auto text) { return xasSyslogLocalText(text, {}); },
                     "local0.*    /var/log/somewhere\n"});
    return edits;
}
