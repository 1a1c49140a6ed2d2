// Network and services, SNMP and shares; and the whole list.
#include "dispatch/settings.h"
#include "support/eth.h"
#include "support/settings_rows.h"

#include <algorithm>

namespace {

using namespace xasRows;

XasExpectedSetting eth()
{
    const std::string bondOptions =
        "mode=active-backup primary=eth0 miimon=250 use_carrier=1 downdelay=2500 updelay=2500";
    const std::string slave = "TYPE=Ethernet\nMASTER=bond0\nSLAVE=yes\nBOOTPROTO=none\nONBOOT=yes\n";
    XasExpectedSetting setting{"ETH", 1, "eth"};
    setting.files = {
        edited("gatewayprec", "# comment\nDHCP_GW_PRECEDENCE=0\n", "DHCP_GW_PRECEDENCE=2\n",
               {"Error determining gateway precedence config file", SAME,
                "Error opening dhcp gateway precedenc config file", "Error saving new hostname config file",
                "Error printing line to dhcp gateway precedence config file",
                "Error editing dhcp gateway precedence config file"}),
        edited("kernel", "net.ipv4.ip_forward=0\n", "net.ipv4.ip_forward = 1\n",
               {"Error determining config file for kernel parameters", SAME,
                "Error opening kernel config file", "Error saving new kernel config file",
                "Error printing line to Ethernet config file", "Error editing kernel config file"},
               {"gatewayprec"}),
        regenerated("modprobe", "old modules\n",
                    "alias netdev-bond0 bonding\noptions bond0 " + bondOptions + "\n",
                    {"Error determining config file for modprobe parameters", SAME,
                     "Error opening modprobe config file", "Error saving new modprobe config file",
                     "Error printing line to modprobe config file", "Error editing modprobe config file"},
                    {"gatewayprec", "kernel"}),
        regenerated("bond0", "old bond0\n",
                    "DEVICE=bond0\nTYPE=Bonding\nBOOTPROTO=static\nIPADDR=192.168.1.10\n"
                    "NETMASK=255.255.255.0\nNETWORK=192.168.1.0\nBROADCAST=192.168.1.255\n"
                    "IPV6INIT=yes\nIPV6ADDR=\nDHCP_HOSTNAME=\nONBOOT=yes\nMTU=1500\n"
                    "BONDING_OPTS=\"" +
                        bondOptions + "\"\n",
                    {"Error determining config file for bonding interface", SAME,
                     "Error opening ethernet config file", "Error saving new ethernet config file",
                     "Error printing line to Ethernet config file", "Error editing config file for bond0"},
                    {"gatewayprec", "kernel", "modprobe"}),
        regenerated("eth0", "old eth0\n", "DEVICE=eth0\n" + slave,
                    {"Error determining config file for Ethernet 0", "Error determining Eth0 config file",
                     "Error opening ethernet config file", "Error saving new ethernet config file",
                     "Error printing line to Ethernet config file",
                     "Error editing config file for Ethernet 0"},
                    {"gatewayprec", "kernel", "modprobe", "bond0"}),
        regenerated("eth1", "old eth1\n", "DEVICE=eth1\n" + slave,
                    {"Error determining config file for Ethernet 1", "Error determining Eth1 config file",
                     "Error opening ethernet config file", "Error saving new ethernet config file",
                     "Error printing line to Ethernet config file",
                     "Error editing config file for Ethernet 1"},
                    {"gatewayprec", "kernel", "modprobe", "eth0", "bond0"}),
        goingOn(rollingBack(
            {"gatewayprec", "kernel", "modprobe", "bond0", "eth0", "eth1"},
            edited("network", "NETWORKING_IPV6=no\n", "NETWORKING_IPV6=yes\nGATEWAY=192.168.1.1\n",
                   {"", "", "Error opening network config file", "Error saving new network config file",
                    "Error printing line to network config file", "Error editing network config file"}))),
        rollingBack({"altgateway"},
                    edited("altgateway", "DGD_GATEWAY=10.0.0.1\n", "DGD_GATEWAY=192.168.1.2\n",
                           {"", "", "Error opening alternate gateway config file",
                            "Error saving new altenate gateway config file",
                            "Error printing line to Alternate Gateway config file",
                            "Error editing network config file"}))};
    setting.message = XasMessageBuilder{1}
                          .word(120, 1) // both port records are filled
                          .word(124, 1)
                          .word(128, 2)
                          .word(132, xasTestIPv4("192.168.1.10").bits)
                          .word(136, xasTestIPv4("255.255.255.0").bits)
                          .word(164, 1500)
                          .word(168, 1)
                          .word(216, 1)
                          .word(220, xasTestIPv4("192.168.1.1").bits)
                          .word(252, 1)
                          .word(256, 2)
                          .word(260, xasTestIPv4("192.168.1.2").bits)
                          .word(280, 1)
                          .build();
    return setting;
}

XasExpectedSetting hostname()
{
    XasExpectedSetting setting{"HOSTNAME", 2, "hostname"};
    setting.files = {
        rollingBack(
            {"hosts"},
            edited("hosts", "127.0.0.1\told\tlocalhost.localdomain\tlocalhost\n::1 localhost\n",
                   "127.0.0.1\tconsole1.example.org\tlocalhost.localdomain\tlocalhost\n::1 localhost\n",
                   {"Error determining hosts config file", "Error determining hosts file",
                    "Error opening hosts config file", "Error saving new hosts file",
                    "Error printing line to hosts file", "Error editing hosts file"})),
        edited("hostname", "old\n", "console1.example.org\n",
               {"Error determining config file for hostname", "Error determining hostname config file",
                "Error opening hostname config file", "Error saving new hostname config file",
                "Error printing line to hostname config file", "Error editing hostname file"},
               {"hosts"}),
        edited("network", "HOSTNAME=old\nGATEWAY=10.0.0.1\n",
               "HOSTNAME=console1.example.org\nGATEWAY=10.0.0.1\n",
               {"Error determining network config file", SAME, "Error opening network config file",
                "Error saving new network config file", "Error printing line to network config file",
                "Error editing network config file"},
               {"hosts", "hostname"}),
        edited("domain", "STATIC_DOMAIN=old\n", "STATIC_DOMAIN=example.org\n",
               {"Error determining static domain configuration file", SAME,
                "Error opening static domain configuration file",
                "Error saving new static domain config file",
                "Error printing line to dns static domain config file",
                "Error editing static domain configuration file"},
               {"hosts", "hostname", "network"})};
    setting.message = XasMessageBuilder{2}.bytes(120, "console1").bytes(185, "example.org").build();
    return setting;
}

XasExpectedSetting dns()
{
    XasExpectedSetting setting{"DNS", 3, "dns"};
    setting.files = {edited("resolv", "192.0.2.1\n", "192.0.2.9\n",
                            {"Error determining config file for dns", "Error determining dns config file",
                             "Error opening DNS config file", "Error saving new DNS config file",
                             "Error printing line to DNS config file", "Error editing DNS config file"}),
                     regenerated("dnsprec", "IPV4_PRECEDENCE=no", "IPV4_PRECEDENCE=yes",
                                 {"Error determining precedence config file for dns",
                                  "Error determining dns precedence config file",
                                  "Error opening DNS precedence config file",
                                  "Error saving new DNS precedence config file",
                                  "Error printing line to DNS precedence config file",
                                  "Error editing DNS precedence config file"},
                                 {"resolv"})};
    setting.message = XasMessageBuilder{3}.word(124, xasTestIPv4("192.0.2.9").bits).word(180, 1).build();
    return setting;
}

XasExpectedSetting routing()
{
    XasExpectedSetting setting{"ROUTING", 8, "router"};
    setting.files = {edited("zebra", "hostname zebra\nip route 10.0.0.0 255.0.0.0 192.168.1.1\n",
                            "hostname zebra\n",
                            {"Error determining router config file", "", "Error opening zebra config file",
                             "Error saving new firewall config file", "", "Error editing Zebra config file"}),
                     edited("ripd", "hostname ripd\nrouter rip\n!\nline vty\n", "hostname ripd\nline vty\n",
                            {"Error determining router config file", "", "Error opening routing config file",
                             "Error saving new firewall config file", "", "Error editing Ripd config file"})};
    setting.course = {{{"zebra", "ripd"}, {"zebra", "ripd"}}};
    setting.goesOn = true;
    setting.message = XasMessageBuilder{8}.build();
    return setting;
}

XasExpectedSetting vpn()
{
    XasExpectedSetting setting{"VPN", 9, "ipsec"};
    setting.files = {edited("ipsec", "config setup\nconn old\n", "config setup\n",
                            {"Error determining vpn config file", "", "Error opening VPN config file",
                             "Error saving new VPN config file", "", "Error editing VPN config file"})};
    setting.hasFixedPaths = true;
    setting.message = XasMessageBuilder{9}.build();
    return setting;
}

XasExpectedSetting timeZone()
{
    XasExpectedSetting setting{"TIMEZONE", 10, "timezone"};
    setting.files = {
        row(XasFileWay::directory, "tzpathbase", "", "", {"Error determining timezone base path"}),
        row(XasFileWay::link, "cfglink", "/old", "%s/tzpathbase/inside",
            {"Error determining timezone config file link"})};
    setting.course = {{{"tzpathbase", "cfglink"}, {"cfglink"}}};
    setting.message = XasMessageBuilder{10}.bytes(120, "inside").build();
    return setting;
}

XasExpectedSetting ntp()
{
    XasExpectedSetting setting{"NTP", 11, "ntp"};
    setting.files = {
        withWriteReason("Error writing to NTP step file",
                        edited("stepTickers", "old\n", "ntp1\n0.0.0.0\n0.0.0.0\n",
                               {"Error determining step file for NTP", "Error determining NTP step file",
                                "Error opening NTP step file", "Error saving new NTP step file",
                                "Error printing line to NTP step file"})),
        edited("ntp", "server old\n", "server ntp1\n",
               {"Error determining ntp config file", "Error determining NTP step file",
                "Error opening NTP config file", "Error saving new NTP config file",
                "Error printing line to NTP config file", "Error editing NTP config file"},
               {"stepTickers"})};
    setting.message = XasMessageBuilder{11}.word(124, 1).word(128, 1).bytes(360, host("ntp1")).build();
    return setting;
}

XasExpectedSetting syslog()
{
    XasExpectedSetting setting{"SYSLOG", 12, "syslog"};
    setting.files = {
        edited("syslog", "local0.err /var/log/network\n", "local0.none    /var/log/network\n",
               {"Error determining config file for syslog", "", "Error opening syslog config file",
                "Error saving new syslog config file", "Error printing line to syslog config file",
                "Error editing syslog config file"}),
        edited("logrotate", "size 5k\n", "size 20k\n",
               {"Error determining config file for logrotate", "", "Error opening logrotate config file",
                "Error saving new logrotate config file", "Error printing line to logrotate config file",
                "Error editing logrotate config file"})};
    setting.goesOn = true;
    setting.message = XasMessageBuilder{12}.bytes(144, host("")).bytes(220, host("")).half(298, 20).build();
    return setting;
}

XasExpectedSetting snmp()
{
    XasExpectedSetting setting{"SNMP", 16, "snmp"};
    setting.files = {
        secret(edited("snmp", "syslocation old\n", "syslocation  here\n",
                      {"Error determining config file for snmp", "Error determining snmp config file",
                       "Error opening SNMP config file", "Error saving new SNMP config file",
                       "Error printing line to SNMP config file", "Error editing SNMP config file"}))};
    setting.message = XasMessageBuilder{16}
                          .bytes(128, host(""))
                          .bytes(204, host(""))
                          .bytes(280, "here")
                          .word(532, 2)
                          .build();
    return setting;
}

XasExpectedSetting nfs()
{
    XasExpectedSetting setting{"NFS", 19, "nfs"};
    setting.files = {
        withWriteReason(
            "Error writing to NFS servers file",
            edited("nfsServers", "NFS_SERVERS=\"10.0.0.1\"\n", "NFS_SERVERS=\"\"\n",
                   {"Error determining NFS servers file", "", "Error opening NFS servers file",
                    "Error saving new NFS servers file", "Error printing line to NFS servers file",
                    "Error editing NFS servers file"})),
        edited("fstab", "proc /proc proc defaults 0 0\ns:/d /m nfs ro 0 0\n",
               "proc /proc proc defaults 0 0\n",
               {"Error determining NFS fstab config file", "", "Error opening NFS config file",
                "Error saving new NFS config file", "Error printing line to NFS config file",
                "Error editing NFS fstab config file"})};
    setting.course = {{{"nfsServers", "fstab"}, {"nfsServers", "fstab"}}};
    setting.message = XasMessageBuilder{19}.build();
    return setting;
}

XasExpectedSetting cifs()
{
    XasExpectedSetting setting{"CIFS", 20, "samba"};
    setting.files = {edited("smb", "workgroup = OLD\n", "   workgroup = GROUP\n",
                            {"Error determining SMB fstab config file", "",
                             "Error opening Ethernet config file", "Error saving new SMB/CIFS config file",
                             "Error printing line to SMB config file", "Error editing SMB config file"}),
                     secret(rollingBack({"smb"}, edited("smbpasswd", "cifsuser:old\n",
                                                        "cifsuser:100:L:N:[U          ]:T:Cifs User\n",
                                                        {"Error determining smbpasswd config file", "",
                                                         "Error opening samba/smbpasswd config file",
                                                         "Error saving new smbpasswd config file", "",
                                                         "Error editing smbpasswd file"})))};
    setting.course = {{{"smb", "smbpasswd"}, {"smb", "smbpasswd"}}};
    setting.message = XasMessageBuilder{20}
                          .word(120, 1)
                          .bytes(132, "L")
                          .bytes(165, "N")
                          .bytes(198, "T")
                          .bytes(215, "GROUP")
                          .build();
    return setting;
}

/** A link of a port came up; `port` is what the message calls it. */
XasExpectedSetting notify(const std::string &port, const char *type)
{
    XasExpectedSetting setting{"NOTIFY_" + port, 64, "netlink"};
    setting.files = {edited(
        type, "DEVICE=it\nONBOOT=no\n", "DEVICE=it\nONBOOT=yes\n",
        {"Error determining Ethernet enable config file", SAME, "Error opening ethernet enable config file",
         "Error saving new ethernet config file", "Error printing line to Ethernet config file",
         "Error editing Ethernet enable configuration file"})};
    setting.message = XasMessageBuilder{64}.word(120, 2).bytes(136, port).build();
    return setting;
}

/** A message whose work is done at fixed paths alone. */
XasExpectedSetting withoutFiles(const char *name, std::uint32_t msgtype, const char *application)
{
    XasExpectedSetting setting{name, msgtype, application};
    setting.message = XasMessageBuilder{msgtype}.build();
    return setting;
}

std::vector<XasExpectedSetting> makeSettings()
{
    std::vector<XasExpectedSetting> settings = {
        eth(),
        hostname(),
        dns(),
        routing(),
        vpn(),
        timeZone(),
        ntp(),
        syslog(),
        snmp(),
        nfs(),
        cifs(),
        notify("Eth1", "eth0"),
        notify("Eth2", "eth1"),
        withoutFiles("LOCALUSERS", 22, "localuser"),
        withoutFiles("USER", 57, "user"),
        withoutFiles("USERLIST", 58, "userlist"),
    };
    std::ranges::move(xasExpectedLoginSettings(), std::back_inserter(settings));
    return settings;
}

} // namespace

const XasExpectedFile &XasExpectedSetting::file(std::string_view type) const
{
    return *std::ranges::find(files, type, &XasExpectedFile::type);
}

const std::vector<XasExpectedSetting> &xasExpectedSettings()
{
    static const std::vector<XasExpectedSetting> SETTINGS = makeSettings();
    return SETTINGS;
}

int xasCallHandler(std::uint32_t msgtype, XasMessage *msg, const XasCfgFileList *cfgFiles,
                   XasReplyStatus *reply)
{
    return xasFindSetting(msgtype)->update(msg, cfgFiles, reply);
}
