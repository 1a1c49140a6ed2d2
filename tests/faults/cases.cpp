#include "faults/cases.h"

#include "msg/fields.h"
#include "wire/message_names.h"
#include "xms/record.h"
#include "xms/users.h"

#include <sstream>

namespace {

constexpr const char *WATCHED = "application application=xdd";

const std::string NTP = "ntp server1=192.168.10.1 server2=ntp.example.org server3=2001:db8::7b";
const std::string ROUTER = "routing start=yes rip_enabled=yes static_enabled=yes route1.destination=10.1.0.0 "
                           "route1.mask=255.255.0.0 route1.gateway=192.168.10.1";
const std::string STATIC = "eth eth1.source=static eth1.ip=192.168.10.6 eth1.mask=255.255.255.0 "
                           "eth1.ipv6=2001:db8::6 eth1.maskv6=64 eth2.source=static eth2.ip=192.168.11.6 "
                           "eth2.mask=255.255.255.0 gateway=192.168.10.1 ipv6_enabled=yes ip_forwarding=yes "
                           "gw_precedence=eth2 alt_gateway=192.168.10.2";
const std::string BOND = STATIC + " bonding=active-backup";
const std::string SET = "ipfilter_set id=1 name=modem-users rule1.ip=10.9.0.7 rule1.protocol=tcp "
                        "rule1.portrange=22,8000:8080 rule1.target=accept rule2.ip=10.9.0.0 "
                        "rule2.range_end=10.9.0.255 rule2.target=drop";
const std::string USERS = "localusers user1.login=sysadmin user1.uid=500 user1.password=$1$demo$sysadmin "
                          "user1.listen=0xffffffffffffffff user2.login=alice user2.uid=501 user2.listen=0xff "
                          "user2.escseq=^Ec? user3.login=bob user3.uid=502";
const std::string LDAP = "ldap server=ldap1.example.org server2=192.168.10.41 base=dc=example,dc=org "
                         "bind_name=cn=reader,dc=example,dc=org bind_passwd=reading port=636 encrypt=yes "
                         "map_uid=sAMAccountName";
const std::string SHARE =
    "cifs eth2=yes workgroup=ENGINEERING lct_field=LCT-4F3A2B1C "
    "lanman_pwd=E52CAC67419A9A224A3B108F3FA6CB6D nt_pwd=8846F7EAEE8FB117AD06BDD830B7586C";
const std::string VPN = "vpn name=office remote_host=192.0.2.9 remote_id=@office remote_subnet=10.2.0.0/16 "
                        "local_id=@console local_subnet=192.168.10.0/24 ike_enc=aes ike_hash=sha1 "
                        "ike_dhgroup=modp1536 esp_enc=aes esp_hash=sha1";
const std::string TUNNEL = VPN + " auth_key=between-us xauth=yes xauth_login=joe xauth_passwd=pass";
const std::string ORDER = "auth tacacs=1 radius=2 local=3 nis=4 first_responding=yes";

std::vector<XasFaultsCase> network()
{
    return {
        {"eth", "eth", {ROUTER}, STATIC},
        {"eth to bonding", "eth", {}, BOND},
        {"eth bonded again", "eth", {BOND}, BOND + " bonding=802.3ad"},
        {"eth from bonding", "eth", {BOND}, STATIC + " eth2.source=dhcp"},
        {"hostname", "hostname", {}, "hostname hostname=console1 domain=example.org"},
        {"hostname refused", "hostname", {}, "hostname hostname=console\n1 domain=example.org"},
        {"dns", "dns", {NTP}, "dns dns1=192.168.10.1 dns2=2001:db8::53 prefer_ipv4=yes"},
        {"firewall off", "firewall", {}, "firewall enabled=no"},
        {"firewall tested", "firewall", {"firewall enabled=no"}, "firewall enabled=yes test_time=1"},
        {"ipfilter_set", "ipfilter_set", {}, SET},
        {"ipfilter_set removed", "ipfilter_set", {SET}, "ipfilter_set id=1 name=modem-users action=remove"},
        {"ipfilter_assign",
         "ipfilter_assign",
         {},
         "ipfilter_assign iface_type=eth iface_id=1 filterName=modem-users"},
        {"routing", "routing", {}, ROUTER},
        {"routing off", "routing", {ROUTER}, "routing start=no"},
        {"vpn shared key", "vpn", {}, TUNNEL},
        {"vpn public key", "vpn", {TUNNEL}, VPN + " auth=rsa auth_key=0sAQOfar"},
        {"vpn off", "vpn", {TUNNEL}, "vpn tunnel=no"},
        {"nat_notify", "nat_notify", {}, "nat_notify address=10.1.2.3"},
        {"notify", "notify", {}, "notify code=link-up text=Eth2"},
    };
}

std::vector<XasFaultsCase> services()
{
    return {
        {"timezone", "timezone", {}, "timezone zone=Europe/Berlin"},
        {"ntp polled", "ntp", {}, NTP},
        {"ntp broadcast", "ntp", {NTP}, "ntp sync=broadcast"},
        {"syslog", "syslog", {}, "syslog local3=warn local5=debug remote1=192.168.10.5 log_size=64"},
        {"syslog again",
         "syslog",
         {"syslog local3=warn"},
         "syslog local5=debug remote2=192.168.10.6 nut_size=30"},
        {"snmp",
         "snmp",
         {"snmp syslocation=here"},
         "snmp syslocation=rack syscontact=operator v3user=monitor v3pass=readonlypass v3phrase=readphrase "
         "v3rwuser=manager v3rwpass=readwritepass v3rwphrase=readwritephrase trap_community=alarms "
         "trap1=192.168.10.30 trap2=2001:db8::30"},
        {"nfs",
         "nfs",
         {},
         "nfs mount1.rem_dir=192.168.10.20:/export/logs mount1.local_dir=/logs mount1.read_write=yes "
         "mount2.rem_dir=rack-pdu.example.net:/firmware mount2.local_dir=/firmware"},
        {"cifs", "cifs", {}, SHARE},
        {"cifs again", "cifs", {SHARE}, SHARE + " workgroup=OTHERS"},
        {"cifs without password", "cifs", {}, "cifs workgroup=ENGINEERING"},
        {"application started", "application", {}, "application application=xld"},
        {"application stopped",
         "application",
         {"application application=xld"},
         "application application=xld start=no"},
    };
}

std::vector<XasFaultsCase> logins()
{
    return {
        {"auth", "auth", {}, ORDER},
        {"auth with NIS", "auth", {}, ORDER + " start_nis=yes"},
        {"localusers", "localusers", {USERS}, USERS + " user3.login=carol user4.login=dave user4.uid=504"},
        {"localusers without users", "localusers", {USERS}, "localusers"},
        {"user added", "user", {USERS}, "user action=add login=carol uid=503 listen=0x1 brkseq=~b"},
        {"user changed",
         "user",
         {USERS},
         "user action=edit login=bob uid=502 listen=0x7 password=$1$demo$new"},
        {"user deleted", "user", {USERS}, "user action=delete login=alice"},
        {"user with a password",
         "user",
         {USERS},
         "user action=password login=bob uid=502 password=$1$demo$other"},
        {"userlist", "userlist", {}, "userlist"},
        {"nis",
         "nis",
         {ORDER},
         "nis domain=engineering master=192.168.10.40 slave1=nis1.example.org broadcast=yes"},
        {"ldap", "ldap", {ORDER}, LDAP},
        {"radius",
         "radius",
         {ORDER},
         "radius server1=192.168.10.42 secret1=testing-radius server2=2001:db8::42 secret2=other"},
        {"kerberos",
         "kerberos",
         {ORDER},
         "kerberos realm=EXAMPLE.ORG kdc=kdc.example.org kdc_ip=192.168.10.44"},
        {"tacacs",
         "tacacs",
         {ORDER},
         "tacacs server1=192.168.10.43 server1_secret=testing-tacacs service=login"},
        {"ssh, which nobody handles", "ssh", {}, "ssh"},
    };
}

std::vector<XasFaultsCase> allCases()
{
    std::vector<XasFaultsCase> cases;
    for (const auto &part : {network(), services(), logins()})
        cases.insert(cases.end(), part.begin(), part.end());
    return cases;
}

/** The words of a setting; a line feed in it stays within its word. */
std::vector<std::string> wordsOf(const std::string &setting)
{
    std::vector<std::string> words;
    std::istringstream stream{setting};
    for (std::string word; std::getline(stream, word, ' ');)
        words.push_back(word);
    return words;
}

XasSent sentOf(const std::string &setting, std::uint32_t id)
{
    const std::vector<std::string> words = wordsOf(setting);
    const std::uint32_t type = xmsTypeFromText(words.front());
    auto assignments = xmsParseAssignments({words.begin() + 1, words.end()});
    const XmsUserEntry users = xmsTakeUsers(assignments, XasValueCheck::anyThatFits);
    XasSent sent{.message = xmsDefaultRecord(type),
                 .users = {reinterpret_cast<const char *>(users.data()), users.size()}};
    sent.message.xH.id = id;
    xmsAssign(sent.message, assignments, XasValueCheck::anyThatFits);
    xmsAnnounceUsers(sent.message, users);
    const XasMsgFields *fields = msgFieldsOf(type);
    sent.answered = fields == nullptr || fields->answered;
    return sent;
}

} // namespace

const std::vector<XasFaultsCase> &xasFaultsCases()
{
    static const std::vector<XasFaultsCase> CASES = allCases();
    return CASES;
}

XasSession xasSessionOf(const XasFaultsCase &faultsCase)
{
    XasSession session{sentOf(WATCHED, 100)};
    for (const std::string &setting : faultsCase.before)
        session.push_back(sentOf(setting, 101));
    session.push_back(sentOf(faultsCase.setting, 77));
    return session;
}

XasSession xasSecondSessionOf(const XasFaultsCase &faultsCase)
{
    return {sentOf(faultsCase.setting, 77)};
}

XasFileStates xasFilesOf(const XasFaultsCase &faultsCase)
{
    XasFileStates files = xasShippedFiles();
    XasMessage stored = sentOf(STATIC, 0).message;
    xasAddFile(files, "/r58/store/XMSG_ETH", {reinterpret_cast<const char *>(&stored), sizeof stored});
    xasAddFile(files, "/etc/.lusers", "");
    files.insert(faultsCase.more.begin(), faultsCase.more.end());
    return files;
}
