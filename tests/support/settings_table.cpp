#include "support/settings_table.h"

#include "dispatch/settings.h"
#include "support/message.h"

#include <algorithm>

namespace {

using enum XasFileWay;

XasExpectedStep find(const char *type)
{
    return {.isEdit = false, .type = type};
}

XasExpectedStep edit(const char *type)
{
    return {.isEdit = true, .type = type};
}

constexpr std::string_view IPV4_192_168_1_10{"\xc0\xa8\x01\x0a", 4};
constexpr std::string_view IPV4_192_168_1_1{"\xc0\xa8\x01\x01", 4};
constexpr std::string_view IPV4_192_168_1_2{"\xc0\xa8\x01\x02", 4};
constexpr std::string_view IPV4_192_0_2_9{"\xc0\x00\x02\x09", 4};
constexpr std::string_view IPV4_10_0_0_44{"\x0a\x00\x00\x2c", 4};
constexpr std::string_view MASK_24{"\xff\xff\xff\x00", 4};

/** A host record with a name, an empty one for none. */
std::string host(std::string_view name)
{
    std::string record(76, '\0');
    record[0] = 1;
    return record.replace(8, name.size(), name);
}

XasExpectedSetting eth()
{
    const std::string bondOptions =
        "mode=active-backup primary=eth0 miimon=250 use_carrier=1 downdelay=2500 updelay=2500";
    const std::string slave = "TYPE=Ethernet\nMASTER=bond0\nSLAVE=yes\nBOOTPROTO=none\nONBOOT=yes\n";
    return {
        .name = "Eth",
        .msgtype = 1,
        .msgtypeName = "XMSG_ETH",
        .application = "eth",
        .hasFixedPaths = false,
        .files =
            {
                {.type = "gatewayprec",
                 .oldText = "# comment\nDHCP_GW_PRECEDENCE=0\n",
                 .newText = "DHCP_GW_PRECEDENCE=2\n",
                 .missingLog = "Error determining gateway precedence config file\n",
                 .missingReason = "Error determining gateway precedence config file",
                 .openReason = "Error opening dhcp gateway precedenc config file",
                 .saveReason = "Error saving new hostname config file",
                 .writeLog = "Error printing line to dhcp gateway precedence config file\n",
                 .editLog = "Error editing dhcp gateway precedence config file\n"},
                {.type = "kernel",
                 .oldText = "net.ipv4.ip_forward=0\n",
                 .newText = "net.ipv4.ip_forward = 1\n",
                 .missingLog = "Error determining config file for kernel parameters\n",
                 .missingReason = "Error determining config file for kernel parameters",
                 .openReason = "Error opening kernel config file",
                 .saveReason = "Error saving new kernel config file",
                 .writeLog = "Error printing line to Ethernet config file\n",
                 .editLog = "Error editing kernel config file\n",
                 .restoredIfMissing = {"gatewayprec"},
                 .restoredIfEditFails = {"gatewayprec"}},
                {.type = "modprobe",
                 .way = regenerated,
                 .oldText = "old modules\n",
                 .newText = "alias netdev-bond0 bonding\noptions bond0 " + bondOptions + "\n",
                 .missingLog = "Error determining config file for modprobe parameters\n",
                 .missingReason = "Error determining config file for modprobe parameters",
                 .openReason = "Error opening modprobe config file",
                 .saveReason = "Error saving new modprobe config file",
                 .writeLog = "Error printing line to modprobe config file\n",
                 .editLog = "Error editing modprobe config file\n",
                 .restoredIfMissing = {"gatewayprec", "kernel"},
                 .restoredIfEditFails = {"gatewayprec", "kernel"}},
                {.type = "bond0",
                 .way = regenerated,
                 .oldText = "old bond0\n",
                 .newText = "DEVICE=bond0\nTYPE=Bonding\nBOOTPROTO=static\nIPADDR=192.168.1.10\n"
                            "NETMASK=255.255.255.0\nNETWORK=192.168.1.0\nBROADCAST=192.168.1.255\n"
                            "IPV6INIT=yes\nIPV6ADDR=\nDHCP_HOSTNAME=\nONBOOT=yes\nMTU=1500\n"
                            "BONDING_OPTS=\"" +
                            bondOptions + "\"\n",
                 .missingLog = "Error determining config file for bonding interface\n",
                 .missingReason = "Error determining config file for bonding interface",
                 .openReason = "Error opening ethernet config file",
                 .saveReason = "Error saving new ethernet config file",
                 .writeLog = "Error printing line to Ethernet config file\n",
                 .editLog = "Error editing config file for bond0\n",
                 .restoredIfMissing = {"gatewayprec", "kernel", "modprobe"},
                 .restoredIfEditFails = {"gatewayprec", "kernel", "modprobe"}},
                {.type = "eth0",
                 .way = regenerated,
                 .oldText = "old eth0\n",
                 .newText = "DEVICE=eth0\n" + slave,
                 .missingLog = "Error determining config file for Ethernet 0\n",
                 .missingReason = "Error determining Eth0 config file",
                 .openReason = "Error opening ethernet config file",
                 .saveReason = "Error saving new ethernet config file",
                 .writeLog = "Error printing line to Ethernet config file\n",
                 .editLog = "Error editing config file for Ethernet 0\n",
                 .restoredIfMissing = {"gatewayprec", "kernel", "modprobe", "bond0"},
                 .restoredIfEditFails = {"gatewayprec", "kernel", "modprobe", "bond0"}},
                {.type = "eth1",
                 .way = regenerated,
                 .oldText = "old eth1\n",
                 .newText = "DEVICE=eth1\n" + slave,
                 .missingLog = "Error determining config file for Ethernet 1\n",
                 .missingReason = "Error determining Eth1 config file",
                 .openReason = "Error opening ethernet config file",
                 .saveReason = "Error saving new ethernet config file",
                 .writeLog = "Error printing line to Ethernet config file\n",
                 .editLog = "Error editing config file for Ethernet 1\n",
                 .restoredIfMissing = {"gatewayprec", "kernel", "modprobe", "eth0", "bond0"},
                 .restoredIfEditFails = {"gatewayprec", "kernel", "modprobe", "eth0", "bond0"}},
                {.type = "network",
                 .oldText = "NETWORKING_IPV6=no\n",
                 .newText = "NETWORKING_IPV6=yes\nGATEWAY=192.168.1.1\n",
                 .openReason = "Error opening network config file",
                 .saveReason = "Error saving new network config file",
                 .writeLog = "Error printing line to network config file\n",
                 .editLog = "Error editing network config file\n",
                 .goesOn = true,
                 .restoredIfEditFails = {"gatewayprec", "kernel", "modprobe", "bond0", "eth0", "eth1"}},
                {.type = "altgateway",
                 .oldText = "DGD_GATEWAY=10.0.0.1\n",
                 .newText = "DGD_GATEWAY=192.168.1.2\n",
                 .openReason = "Error opening alternate gateway config file",
                 .saveReason = "Error saving new altenate gateway config file",
                 .writeLog = "Error printing line to Alternate Gateway config file\n",
                 .editLog = "Error editing network config file\n",
                 .restoredIfEditFails = {"altgateway"}},
            },
        .course = {find("gatewayprec"), edit("gatewayprec"), find("kernel"), edit("kernel"), find("modprobe"),
                   edit("modprobe"), find("bond0"), edit("bond0"), find("eth0"), edit("eth0"), find("eth1"),
                   edit("eth1"), find("network"), edit("network"), find("altgateway"), edit("altgateway")},
        .message = XasMessageBuilder{1}
                       .word(120, 1) // both port records are filled
                       .word(124, 1)
                       .word(128, 2)
                       .bytes(132, IPV4_192_168_1_10)
                       .bytes(136, MASK_24)
                       .word(164, 1500)
                       .word(168, 1)
                       .word(216, 1)
                       .bytes(220, IPV4_192_168_1_1)
                       .word(252, 1)
                       .word(256, 2)
                       .bytes(260, IPV4_192_168_1_2)
                       .word(280, 1)
                       .build(),
    };
}

XasExpectedSetting hostname()
{
    return {
        .name = "Hostname",
        .msgtype = 2,
        .msgtypeName = "XMSG_HOSTNAME",
        .application = "hostname",
        .hasFixedPaths = false,
        .files =
            {
                {.type = "hosts",
                 .oldText = "127.0.0.1\told\tlocalhost.localdomain\tlocalhost\n::1 localhost\n",
                 .newText =
                     "127.0.0.1\tconsole1.example.org\tlocalhost.localdomain\tlocalhost\n::1 localhost\n",
                 .missingLog = "Error determining hosts config file\n",
                 .missingReason = "Error determining hosts file",
                 .openReason = "Error opening hosts config file",
                 .saveReason = "Error saving new hosts file",
                 .writeLog = "Error printing line to hosts file\n",
                 .editLog = "Error editing hosts file\n",
                 .restoredIfEditFails = {"hosts"}},
                {.type = "hostname",
                 .oldText = "old\n",
                 .newText = "console1.example.org\n",
                 .missingLog = "Error determining config file for hostname\n",
                 .missingReason = "Error determining hostname config file",
                 .openReason = "Error opening hostname config file",
                 .saveReason = "Error saving new hostname config file",
                 .writeLog = "Error printing line to hostname config file\n",
                 .editLog = "Error editing hostname file\n",
                 .restoredIfMissing = {"hosts"},
                 .restoredIfEditFails = {"hosts"}},
                {.type = "network",
                 .oldText = "HOSTNAME=old\nGATEWAY=10.0.0.1\n",
                 .newText = "HOSTNAME=console1.example.org\nGATEWAY=10.0.0.1\n",
                 .missingLog = "Error determining network config file\n",
                 .missingReason = "Error determining network config file",
                 .openReason = "Error opening network config file",
                 .saveReason = "Error saving new network config file",
                 .writeLog = "Error printing line to network config file\n",
                 .editLog = "Error editing network config file\n",
                 .restoredIfMissing = {"hosts", "hostname"},
                 .restoredIfEditFails = {"hosts", "hostname"}},
                {.type = "domain",
                 .oldText = "STATIC_DOMAIN=old\n",
                 .newText = "STATIC_DOMAIN=example.org\n",
                 .missingLog = "Error determining static domain configuration file\n",
                 .missingReason = "Error determining static domain configuration file",
                 .openReason = "Error opening static domain configuration file",
                 .saveReason = "Error saving new static domain config file",
                 .writeLog = "Error printing line to dns static domain config file\n",
                 .editLog = "Error editing static domain configuration file\n",
                 .restoredIfMissing = {"hosts", "hostname", "network"},
                 .restoredIfEditFails = {"hosts", "hostname", "network"}},
            },
        .course = {find("hosts"), edit("hosts"), find("hostname"), edit("hostname"), find("network"),
                   edit("network"), find("domain"), edit("domain")},
        .message = XasMessageBuilder{2}.bytes(120, "console1").bytes(185, "example.org").build(),
    };
}

XasExpectedSetting dns()
{
    return {
        .name = "Dns",
        .msgtype = 3,
        .msgtypeName = "XMSG_DNS",
        .application = "dns",
        .hasFixedPaths = false,
        .files =
            {
                {.type = "resolv",
                 .oldText = "192.0.2.1\n",
                 .newText = "192.0.2.9\n",
                 .missingLog = "Error determining config file for dns\n",
                 .missingReason = "Error determining dns config file",
                 .openReason = "Error opening DNS config file",
                 .saveReason = "Error saving new DNS config file",
                 .writeLog = "Error printing line to DNS config file\n",
                 .editLog = "Error editing DNS config file\n"},
                {.type = "dnsprec",
                 .way = regenerated,
                 .oldText = "IPV4_PRECEDENCE=no",
                 .newText = "IPV4_PRECEDENCE=yes",
                 .missingLog = "Error determining precedence config file for dns\n",
                 .missingReason = "Error determining dns precedence config file",
                 .openReason = "Error opening DNS precedence config file",
                 .saveReason = "Error saving new DNS precedence config file",
                 .writeLog = "Error printing line to DNS precedence config file\n",
                 .editLog = "Error editing DNS precedence config file\n",
                 .restoredIfMissing = {"resolv"},
                 .restoredIfEditFails = {"resolv"}},
            },
        .course = {find("resolv"), edit("resolv"), find("dnsprec"), edit("dnsprec")},
        .message = XasMessageBuilder{3}.bytes(124, IPV4_192_0_2_9).word(180, 1).build(),
    };
}

XasExpectedSetting routing()
{
    return {
        .name = "Routing",
        .msgtype = 8,
        .msgtypeName = "XMSG_ROUTING",
        .application = "router",
        .hasFixedPaths = false,
        .files =
            {
                {.type = "zebra",
                 .oldText = "hostname zebra\nip route 10.0.0.0 255.0.0.0 192.168.1.1\n",
                 .newText = "hostname zebra\n",
                 .missingLog = "Error determining router config file\n",
                 .openReason = "Error opening zebra config file",
                 .saveReason = "Error saving new firewall config file",
                 .editLog = "Error editing Zebra config file\n",
                 .goesOn = true},
                {.type = "ripd",
                 .oldText = "hostname ripd\nrouter rip\n!\nline vty\n",
                 .newText = "hostname ripd\nline vty\n",
                 .missingLog = "Error determining router config file\n",
                 .openReason = "Error opening routing config file",
                 .saveReason = "Error saving new firewall config file",
                 .editLog = "Error editing Ripd config file\n"},
            },
        .course = {find("zebra"), find("ripd"), edit("zebra"), edit("ripd")},
        .message = XasMessageBuilder{8}.build(),
    };
}

XasExpectedSetting vpn()
{
    return {
        .name = "Vpn",
        .msgtype = 9,
        .msgtypeName = "XMSG_VPN",
        .application = "ipsec",
        .hasFixedPaths = true,
        .files = {{.type = "ipsec",
                   .oldText = "config setup\nconn old\n",
                   .newText = "config setup\n",
                   .missingLog = "Error determining vpn config file\n",
                   .openReason = "Error opening VPN config file",
                   .saveReason = "Error saving new VPN config file",
                   .editLog = "Error editing VPN config file\n"}},
        .course = {find("ipsec"), edit("ipsec")},
        .message = XasMessageBuilder{9}.build(),
    };
}

XasExpectedSetting timeZone()
{
    return {
        .name = "Timezone",
        .msgtype = 10,
        .msgtypeName = "XMSG_TIMEZONE",
        .application = "timezone",
        .hasFixedPaths = false,
        .files =
            {
                {.type = "tzpathbase",
                 .way = directory,
                 .oldText = "",
                 .newText = "",
                 .missingLog = "Error determining timezone base path\n"},
                {.type = "cfglink",
                 .way = link,
                 .oldText = "/old",
                 .newText = "%s/tzpathbase/inside",
                 .missingLog = "Error determining timezone config file link\n"},
            },
        .course = {find("tzpathbase"), find("cfglink"), edit("cfglink")},
        .message = XasMessageBuilder{10}.bytes(120, "inside").build(),
    };
}

XasExpectedSetting ntp()
{
    return {
        .name = "Ntp",
        .msgtype = 11,
        .msgtypeName = "XMSG_NTP",
        .application = "ntp",
        .hasFixedPaths = false,
        .files =
            {
                {.type = "stepTickers",
                 .oldText = "old\n",
                 .newText = "ntp1\n0.0.0.0\n0.0.0.0\n",
                 .missingLog = "Error determining step file for NTP\n",
                 .missingReason = "Error determining NTP step file",
                 .openReason = "Error opening NTP step file",
                 .saveReason = "Error saving new NTP step file",
                 .writeLog = "Error printing line to NTP step file\n",
                 .writeReason = "Error writing to NTP step file"},
                {.type = "ntp",
                 .oldText = "server old\n",
                 .newText = "server ntp1\n",
                 .missingLog = "Error determining ntp config file\n",
                 .missingReason = "Error determining NTP step file",
                 .openReason = "Error opening NTP config file",
                 .saveReason = "Error saving new NTP config file",
                 .writeLog = "Error printing line to NTP config file\n",
                 .editLog = "Error editing NTP config file\n",
                 .restoredIfMissing = {"stepTickers"},
                 .restoredIfEditFails = {"stepTickers"}},
            },
        .course = {find("stepTickers"), edit("stepTickers"), find("ntp"), edit("ntp")},
        .message = XasMessageBuilder{11}.word(124, 1).word(128, 1).bytes(360, host("ntp1")).build(),
    };
}

XasExpectedSetting syslog()
{
    return {
        .name = "Syslog",
        .msgtype = 12,
        .msgtypeName = "XMSG_SYSLOG",
        .application = "syslog",
        .hasFixedPaths = false,
        .files =
            {
                {.type = "syslog",
                 .oldText = "local0.err /var/log/network\n",
                 .newText = "local0.none    /var/log/network\n",
                 .missingLog = "Error determining config file for syslog\n",
                 .openReason = "Error opening syslog config file",
                 .saveReason = "Error saving new syslog config file",
                 .writeLog = "Error printing line to syslog config file\n",
                 .editLog = "Error editing syslog config file\n",
                 .goesOn = true},
                {.type = "logrotate",
                 .oldText = "size 5k\n",
                 .newText = "size 20k\n",
                 .missingLog = "Error determining config file for logrotate\n",
                 .openReason = "Error opening logrotate config file",
                 .saveReason = "Error saving new logrotate config file",
                 .writeLog = "Error printing line to logrotate config file\n",
                 .editLog = "Error editing logrotate config file\n"},
            },
        .course = {find("syslog"), edit("syslog"), find("logrotate"), edit("logrotate")},
        .message = XasMessageBuilder{12}.bytes(144, host("")).bytes(220, host("")).half(298, 20).build(),
    };
}

XasExpectedSetting snmp()
{
    return {
        .name = "Snmp",
        .msgtype = 16,
        .msgtypeName = "XMSG_SNMP",
        .application = "snmp",
        .hasFixedPaths = false,
        .files = {{.type = "snmp",
                   .oldText = "syslocation old\n",
                   .newText = "syslocation  here\n",
                   .secret = true,
                   .missingLog = "Error determining config file for snmp\n",
                   .missingReason = "Error determining snmp config file",
                   .openReason = "Error opening SNMP config file",
                   .saveReason = "Error saving new SNMP config file",
                   .writeLog = "Error printing line to SNMP config file\n",
                   .editLog = "Error editing SNMP config file\n"}},
        .course = {find("snmp"), edit("snmp")},
        .message = XasMessageBuilder{16}
                       .bytes(128, host(""))
                       .bytes(204, host(""))
                       .bytes(280, "here")
                       .word(532, 2)
                       .build(),
    };
}

XasExpectedSetting nfs()
{
    return {
        .name = "Nfs",
        .msgtype = 19,
        .msgtypeName = "XMSG_NFS",
        .application = "nfs",
        .hasFixedPaths = false,
        .files =
            {
                {.type = "nfsServers",
                 .oldText = "NFS_SERVERS=\"10.0.0.1\"\n",
                 .newText = "NFS_SERVERS=\"\"\n",
                 .missingLog = "Error determining NFS servers file\n",
                 .openReason = "Error opening NFS servers file",
                 .saveReason = "Error saving new NFS servers file",
                 .writeLog = "Error printing line to NFS servers file\n",
                 .writeReason = "Error writing to NFS servers file",
                 .editLog = "Error editing NFS servers file\n"},
                {.type = "fstab",
                 .oldText = "proc /proc proc defaults 0 0\ns:/d /m nfs ro 0 0\n",
                 .newText = "proc /proc proc defaults 0 0\n",
                 .missingLog = "Error determining NFS fstab config file\n",
                 .openReason = "Error opening NFS config file",
                 .saveReason = "Error saving new NFS config file",
                 .writeLog = "Error printing line to NFS config file\n",
                 .editLog = "Error editing NFS fstab config file\n"},
            },
        .course = {find("nfsServers"), find("fstab"), edit("nfsServers"), edit("fstab")},
        .message = XasMessageBuilder{19}.build(),
    };
}

XasExpectedSetting cifs()
{
    return {
        .name = "Cifs",
        .msgtype = 20,
        .msgtypeName = "XMSG_CIFS",
        .application = "samba",
        .hasFixedPaths = false,
        .files =
            {
                {.type = "smb",
                 .oldText = "workgroup = OLD\n",
                 .newText = "   workgroup = GROUP\n",
                 .missingLog = "Error determining SMB fstab config file\n",
                 .openReason = "Error opening Ethernet config file",
                 .saveReason = "Error saving new SMB/CIFS config file",
                 .writeLog = "Error printing line to SMB config file\n",
                 .editLog = "Error editing SMB config file\n"},
                {.type = "smbpasswd",
                 .oldText = "cifsuser:old\n",
                 .newText = "cifsuser:100:L:N:[U          ]:T:Cifs User\n",
                 .secret = true,
                 .missingLog = "Error determining smbpasswd config file\n",
                 .openReason = "Error opening samba/smbpasswd config file",
                 .saveReason = "Error saving new smbpasswd config file",
                 .editLog = "Error editing smbpasswd file\n",
                 .restoredIfEditFails = {"smb"}},
            },
        .course = {find("smb"), find("smbpasswd"), edit("smb"), edit("smbpasswd")},
        .message = XasMessageBuilder{20}
                       .word(120, 1)
                       .bytes(132, "L")
                       .bytes(165, "N")
                       .bytes(198, "T")
                       .bytes(215, "GROUP")
                       .build(),
    };
}

/** The two files that follow from the order of the login methods. No method is in use here. */
XasExpectedFile pam(const char *missingLog)
{
    return {.type = "system-auth",
            .way = generated,
            .oldText = "old\n",
            .newText = "#%PAM-1.0 system-auth file\n"
                       "auth      required\t/lib/security/pam_env.so readenv=0\n"
                       "auth      sufficient\t/lib/security/pam_sp_user.so\n"
                       "auth      required      /lib/security/pam_deny.so\n"
                       "account   optional      /lib/security/pam_unix.so\n"
                       "password  sufficient\t/lib/security/pam_unix.so retry=3 nullok md5 shadow nis\n"
                       "session   required      /lib/security/pam_limits.so\n"
                       "session   sufficient\t/lib/security/pam_unix.so\n",
            .missingLog = missingLog,
            .goesOn = true,
            .harmless = true,
            .orderReads = 2};
}

/** Where its failure is logged, that says the path. */
XasExpectedFile nsswitch()
{
    return {.type = "nsswitch",
            .oldText = "passwd: old\n",
            .newText = "passwd:     files\n",
            .missingLog = "Error determining nsswitch.conf config file\n",
            .openReason = "Error opening pam.d/system-auth config file",
            .saveReason = "Error saving new firewall config file",
            .goesOn = true,
            .harmless = true,
            .orderReads = 1};
}

XasExpectedSetting auth()
{
    return {
        .name = "Auth",
        .msgtype = 21,
        .msgtypeName = "XMSG_AUTH",
        .application = "authentication",
        .hasFixedPaths = true,
        .files =
            {
                {.type = "authentication",
                 .oldText = "LOCAL=0\n",
                 .newText = "FIRSTRSP=0\nLOCAL=0\nNIS=0\nLDAP=0\nRADIUS=0\nSECURID=0\nKERBEROS=0\nTACACS=0\n",
                 .missingLog = "Error determining r58 authentication config file\n",
                 .openReason = "Error opening sysconfig/r58authconfig config file",
                 .saveReason = "Error saving new r58authconfig config file",
                 .editLog = "Error editing network config file\n",
                 .goesOn = true,
                 .path = XAS_ORDER_FILE},
                pam("Error determining Auth Order 1 system-auth config file\n"),
                nsswitch(),
            },
        .course = {find("authentication"), find("system-auth"), find("nsswitch"), edit("authentication"),
                   edit("system-auth"), edit("nsswitch")},
        .message = XasMessageBuilder{21}.build(),
    };
}

XasExpectedSetting nis()
{
    XasMessageBuilder message{24};
    message.bytes(232, host("nis0"));
    for (const std::size_t slave : {308, 384, 460, 536, 612})
        message.bytes(slave, host(""));
    return {
        .name = "Nis",
        .msgtype = 24,
        .msgtypeName = "XMSG_NIS",
        .application = "ypbind",
        .hasFixedPaths = true,
        .files =
            {
                {.type = "yp",
                 .oldText = "# comment\nypserver old\n",
                 .newText = "# /etc/yp.conf - ypbind configuration file\ndomain  server nis0 \n",
                 .missingLog = "Error determining yp.conf config file\n",
                 .openReason = "Error opening yp.conf config file",
                 .saveReason = "Error saving new yp.conf config file",
                 .editLog = "Error editing yp.conf config file\n",
                 .goesOn = true},
                {.type = "network",
                 .oldText = "A=1\nNISDOMAIN=old\n",
                 .newText = "A=1\n",
                 .missingLog = "Error determining network config file\n",
                 .openReason = "Error opening sysconfig/network config file",
                 .saveReason = "Error saving new firewall config file",
                 .editLog = "Error editing network config file\n",
                 .goesOn = true},
                pam("Error determining system-auth config file\n"),
                nsswitch(),
            },
        .course = {find("yp"), find("network"), find("system-auth"), find("nsswitch"), edit("yp"),
                   edit("network"), edit("system-auth"), edit("nsswitch")},
        .message = message.build(),
    };
}

XasExpectedSetting ldap()
{
    return {
        .name = "Ldap",
        .msgtype = 25,
        .msgtypeName = "XMSG_LDAP",
        .application = "ldap",
        .hasFixedPaths = true,
        .files =
            {
                {.type = "openldap",
                 .oldText = "HOST old\nURI x\n",
                 .newText = "URI x\nHOST l1 \nBASE dc=x \n",
                 .missingLog = "Error determining openldap config file\n",
                 .openReason = "Error opening openldap/ldap.conf config file",
                 .saveReason = "Error saving new openldap config file",
                 .editLog = "Error editing openldap config file\n",
                 .goesOn = true},
                {.type = "ldap",
                 .way = generated,
                 .oldText = "old\n",
                 .newText = "host l1 l2\n",
                 .secret = true,
                 .missingLog = "Error determining ldap config file\n",
                 .openReason = "Error opening ldap.conf file for write",
                 .saveReason = "Error writing to ldap.conf file",
                 .editLog = "Error editing ldap config file\n",
                 .goesOn = true,
                 .model = "ldaptmpl"},
                {.type = "ldaptmpl",
                 .way = model,
                 .oldText = "host $(HOST)\n",
                 .newText = "host $(HOST)\n",
                 .missingLog = "Error determining ldap config template file\n",
                 .openReason = "Error opening ldap.conf.tempalte file for read"},
                nsswitch(),
                pam("Error determining ldap SysAuth config file\n"),
            },
        .course = {find("openldap"), find("ldap"), find("ldaptmpl"), find("nsswitch"), find("system-auth"),
                   edit("openldap"), edit("ldap"), edit("system-auth"), edit("nsswitch")},
        .message = XasMessageBuilder{25}
                       .word(120, 1)
                       .bytes(128, host("l1"))
                       .bytes(204, host("l2"))
                       .bytes(280, "dc=x")
                       .build(),
    };
}

XasExpectedSetting radius()
{
    return {
        .name = "Radius",
        .msgtype = 26,
        .msgtypeName = "XMSG_RADIUS",
        .application = "radius",
        .hasFixedPaths = true,
        .files =
            {
                {.type = "radius",
                 .oldText = "# servers\nold secret 3\n",
                 .newText = "# servers\n",
                 .secret = true,
                 .missingLog = "Error determining openldap config file\n",
                 .openReason = "Error opening /etc/raddb/server file",
                 .saveReason = "Error saving new /etc/raddb/server file",
                 .editLog = "Error editing ldap config file\n",
                 .goesOn = true},
                nsswitch(),
                pam("Error determining system-auth config file\n"),
            },
        .course = {find("radius"), find("nsswitch"), find("system-auth"), edit("radius"), edit("nsswitch"),
                   edit("system-auth")},
        .message = XasMessageBuilder{26}.build(),
    };
}

XasExpectedSetting kerberos()
{
    return {
        .name = "Kerberos",
        .msgtype = 28,
        .msgtypeName = "XMSG_KERBEROS",
        .application = "kerberos",
        .hasFixedPaths = true,
        .files =
            {
                {.type = "krb5tmpl",
                 .way = model,
                 .oldText = "realm $(REALM)\n",
                 .newText = "realm $(REALM)\n",
                 .missingLog = "Error determining kerberos config template file\n",
                 .openReason = "Error opening krb5.conf.tempalte file for read"},
                {.type = "krb5",
                 .way = generated,
                 .oldText = "old\n",
                 .newText = "realm R\n",
                 .missingLog = "Error determining kerberos config file\n",
                 .openReason = "Error opening krb5.conf file for write",
                 .saveReason = "Error writing to krb5.conf file",
                 .editLog = "Error editing %s\n",
                 .goesOn = true,
                 .model = "krb5tmpl"},
                nsswitch(),
                pam("Error determining system-auth config file\n"),
                {.type = "hosts",
                 .oldText = "127.0.0.1 localhost\n10.0.0.1 kdc.x\n",
                 .newText = "127.0.0.1 localhost\n10.0.0.44    kdc.x  kdc.x\n",
                 .missingLog = "Error determining system hosts file\n",
                 .openReason = "Error opening /etc/hosts file",
                 .saveReason = "Error saving new /etc/hosts file",
                 .editLog = "Error editing %s\n",
                 .goesOn = true},
            },
        .course = {find("krb5tmpl"), find("krb5"), find("nsswitch"), find("system-auth"), find("hosts"),
                   edit("krb5"), edit("nsswitch"), edit("hosts"), edit("system-auth")},
        .message = XasMessageBuilder{28}
                       .word(120, 1)
                       .bytes(125, "R")
                       .bytes(382, "kdc.x")
                       .bytes(644, IPV4_10_0_0_44)
                       .build(),
    };
}

XasExpectedSetting tacacs()
{
    return {
        .name = "Tacacs",
        .msgtype = 29,
        .msgtypeName = "XMSG_TACACS",
        .application = "tacacs",
        .hasFixedPaths = true,
        .files =
            {
                {.type = "tacplustmpl",
                 .way = model,
                 .oldText = "server1 = $(SERVER_1)\n",
                 .newText = "server1 = $(SERVER_1)\n",
                 .missingLog = "Error determining tacplus config template file\n",
                 .openReason = "Error opening tacplus.conf.tempalte file for read"},
                {.type = "tacplus",
                 .way = generated,
                 .oldText = "old\n",
                 .newText = "server1 = t1\n",
                 .secret = true,
                 .missingLog = "Error determining tacplus config file\n",
                 .openReason = "Error opening tacplus.conf file for write",
                 .saveReason = "Error writing to tacplus.conf file",
                 .editLog = "Error editing %s\n",
                 .goesOn = true,
                 .model = "tacplustmpl"},
                nsswitch(),
                pam("Error determining system-auth config file\n"),
            },
        .course = {find("tacplustmpl"), find("tacplus"), edit("tacplus"), find("nsswitch"),
                   find("system-auth"), edit("nsswitch"), edit("system-auth")},
        .message = XasMessageBuilder{29}.bytes(128, host("t1")).build(),
    };
}

/** A link of a port came up; `port` is what the message calls it. */
XasExpectedSetting notify(const char *name, const char *port, const char *type)
{
    return {
        .name = name,
        .msgtype = 64,
        .msgtypeName = "XMSG_NOTIFY",
        .application = "netlink",
        .hasFixedPaths = false,
        .files = {{.type = type,
                   .oldText = "DEVICE=it\nONBOOT=no\n",
                   .newText = "DEVICE=it\nONBOOT=yes\n",
                   .missingLog = "Error determining Ethernet enable config file\n",
                   .missingReason = "Error determining Ethernet enable config file",
                   .openReason = "Error opening ethernet enable config file",
                   .saveReason = "Error saving new ethernet config file",
                   .writeLog = "Error printing line to Ethernet config file\n",
                   .editLog = "Error editing Ethernet enable configuration file\n"}},
        .course = {find(type), edit(type)},
        .message = XasMessageBuilder{64}.word(120, 2).bytes(136, port).build(),
    };
}

/** A message whose work is done at fixed paths alone. */
XasExpectedSetting withoutFiles(const char *name, std::uint32_t msgtype, const char *application)
{
    return {.name = name,
            .msgtype = msgtype,
            .msgtypeName = std::string{"XMSG_"} + name,
            .application = application,
            .hasFixedPaths = false,
            .files = {},
            .course = {},
            .message = XasMessageBuilder{msgtype}.build()};
}

} // namespace

const XasExpectedFile &XasExpectedSetting::file(std::string_view type) const
{
    return *std::ranges::find(files, type, &XasExpectedFile::type);
}

const std::vector<XasExpectedSetting> &xasExpectedSettings()
{
    static const std::vector<XasExpectedSetting> SETTINGS = {
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
        auth(),
        nis(),
        ldap(),
        radius(),
        kerberos(),
        tacacs(),
        notify("LinkOfEth1", "Eth1", "eth0"),
        notify("LinkOfEth2", "Eth2", "eth1"),
        withoutFiles("LOCALUSERS", 22, "localuser"),
        withoutFiles("USER", 57, "user"),
        withoutFiles("USERLIST", 58, "userlist"),
    };
    return SETTINGS;
}

int xasCallHandler(std::uint32_t msgtype, XasMessage *msg, const XasCfgFileList *cfgFiles,
                   XasReplyStatus *reply)
{
    return xasFindSetting(msgtype)->update(msg, cfgFiles, reply);
}
