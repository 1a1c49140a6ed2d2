// The login methods. No method is in use in the order on disk, before and after.
#include "support/eth.h"
#include "support/settings_rows.h"

namespace {

using namespace xasRows;

/** A setting whose update goes on whatever fails. */
XasExpectedSetting method(const char *name, std::uint32_t msgtype, const char *application)
{
    XasExpectedSetting setting{name, msgtype, application};
    setting.goesOn = true;
    setting.hasFixedPaths = true;
    return setting;
}

/** One of the two files that follow from the order. */
XasExpectedFile derived(unsigned orderReads, XasExpectedFile file)
{
    file.harmless = true;
    file.orderReads = orderReads;
    return file;
}

XasExpectedFile pam(const char *missing)
{
    return derived(2,
                   generated("system-auth", "old\n",
                             "#%PAM-1.0 system-auth file\n"
                             "auth      required\t/lib/security/pam_env.so readenv=0\n"
                             "auth      sufficient\t/lib/security/pam_sp_user.so\n"
                             "auth      required      /lib/security/pam_deny.so\n"
                             "account   optional      /lib/security/pam_unix.so\n"
                             "password  sufficient\t/lib/security/pam_unix.so retry=3 nullok md5 shadow nis\n"
                             "session   required      /lib/security/pam_limits.so\n"
                             "session   sufficient\t/lib/security/pam_unix.so\n",
                             {missing}));
}

XasExpectedFile nsswitch()
{
    return derived(
        1, edited("nsswitch", "passwd: old\n", "passwd:     files\n",
                  {"Error determining nsswitch.conf config file", "",
                   "Error opening pam.d/system-auth config file", "Error saving new firewall config file"}));
}

XasExpectedSetting auth()
{
    XasExpectedSetting setting = method("AUTH", 21, "authentication");
    setting.files = {
        at(XAS_ORDER_FILE,
           edited("authentication", "LOCAL=0\n",
                  "FIRSTRSP=0\nLOCAL=0\nNIS=0\nLDAP=0\nRADIUS=0\nSECURID=0\nKERBEROS=0\nTACACS=0\n",
                  {"Error determining r58 authentication config file", "",
                   "Error opening sysconfig/r58authconfig config file",
                   "Error saving new r58authconfig config file", "", "Error editing network config file"})),
        pam("Error determining Auth Order 1 system-auth config file"), nsswitch()};
    setting.course = {
        {{"authentication", "system-auth", "nsswitch"}, {"authentication", "system-auth", "nsswitch"}}};
    setting.message = XasMessageBuilder{21}.build();
    return setting;
}

XasExpectedSetting nis()
{
    XasMessageBuilder message{24};
    message.bytes(232, host("nis0"));
    for (const std::size_t slave : {308U, 384U, 460U, 536U, 612U})
        message.bytes(slave, host(""));
    XasExpectedSetting setting = method("NIS", 24, "ypbind");
    setting.files = {
        edited("yp", "# comment\nypserver old\n",
               "# /etc/yp.conf - ypbind configuration file\ndomain  server nis0 \n",
               {"Error determining yp.conf config file", "", "Error opening yp.conf config file",
                "Error saving new yp.conf config file", "", "Error editing yp.conf config file"}),
        edited("network", "A=1\nNISDOMAIN=old\n", "A=1\n",
               {"Error determining network config file", "", "Error opening sysconfig/network config file",
                "Error saving new firewall config file", "", "Error editing network config file"}),
        pam("Error determining system-auth config file"), nsswitch()};
    setting.course = {
        {{"yp", "network", "system-auth", "nsswitch"}, {"yp", "network", "system-auth", "nsswitch"}}};
    setting.message = message.build();
    return setting;
}

XasExpectedSetting ldap()
{
    XasExpectedSetting setting = method("LDAP", 25, "ldap");
    setting.files = {
        edited("openldap", "HOST old\nURI x\n", "URI x\nHOST l1 \nBASE dc=x \n",
               {"Error determining openldap config file", "", "Error opening openldap/ldap.conf config file",
                "Error saving new openldap config file", "", "Error editing openldap config file"}),
        secret(madeFrom(
            "ldaptmpl",
            generated("ldap", "old\n", "host l1 l2\n",
                      {"Error determining ldap config file", "", "Error opening ldap.conf file for write",
                       "Error writing to ldap.conf file", "", "Error editing ldap config file"}))),
        templateFile("ldaptmpl", "host $(HOST)\n",
                     {"Error determining ldap config template file", "",
                      "Error opening ldap.conf.tempalte file for read"}),
        nsswitch(), pam("Error determining ldap SysAuth config file")};
    setting.course = {{{"openldap", "ldap", "ldaptmpl", "nsswitch", "system-auth"},
                       {"openldap", "ldap", "system-auth", "nsswitch"}}};
    setting.message = XasMessageBuilder{25}
                          .word(120, 1)
                          .bytes(128, host("l1"))
                          .bytes(204, host("l2"))
                          .bytes(280, "dc=x")
                          .build();
    return setting;
}

XasExpectedSetting radius()
{
    XasExpectedSetting setting = method("RADIUS", 26, "radius");
    setting.files = {
        secret(edited("radius", "# servers\nold secret 3\n", "# servers\n",
                      {"Error determining openldap config file", "", "Error opening /etc/raddb/server file",
                       "Error saving new /etc/raddb/server file", "", "Error editing ldap config file"})),
        nsswitch(), pam("Error determining system-auth config file")};
    setting.course = {{{"radius", "nsswitch", "system-auth"}, {"radius", "nsswitch", "system-auth"}}};
    setting.message = XasMessageBuilder{26}.build();
    return setting;
}

XasExpectedSetting kerberos()
{
    XasExpectedSetting setting = method("KERBEROS", 28, "kerberos");
    setting.files = {
        templateFile("krb5tmpl", "realm $(REALM)\n",
                     {"Error determining kerberos config template file", "",
                      "Error opening krb5.conf.tempalte file for read"}),
        madeFrom("krb5tmpl", generated("krb5", "old\n", "realm R\n",
                                       {"Error determining kerberos config file", "",
                                        "Error opening krb5.conf file for write",
                                        "Error writing to krb5.conf file", "", "Error editing %s"})),
        nsswitch(), pam("Error determining system-auth config file"),
        edited("hosts", "127.0.0.1 localhost\n10.0.0.1 kdc.x\n",
               "127.0.0.1 localhost\n10.0.0.44    kdc.x  kdc.x\n",
               {"Error determining system hosts file", "", "Error opening /etc/hosts file",
                "Error saving new /etc/hosts file", "", "Error editing %s"})};
    setting.course = {{{"krb5tmpl", "krb5", "nsswitch", "system-auth", "hosts"},
                       {"krb5", "nsswitch", "hosts", "system-auth"}}};
    setting.message = XasMessageBuilder{28}
                          .word(120, 1)
                          .bytes(125, "R")
                          .bytes(382, "kdc.x")
                          .word(644, xasTestIPv4("10.0.0.44").bits)
                          .build();
    return setting;
}

XasExpectedSetting tacacs()
{
    XasExpectedSetting setting = method("TACACS", 29, "tacacs");
    setting.files = {templateFile("tacplustmpl", "server1 = $(SERVER_1)\n",
                                  {"Error determining tacplus config template file", "",
                                   "Error opening tacplus.conf.tempalte file for read"}),
                     secret(madeFrom("tacplustmpl", generated("tacplus", "old\n", "server1 = t1\n",
                                                              {"Error determining tacplus config file", "",
                                                               "Error opening tacplus.conf file for write",
                                                               "Error writing to tacplus.conf file", "",
                                                               "Error editing %s"}))),
                     nsswitch(), pam("Error determining system-auth config file")};
    setting.course = {{{"tacplustmpl", "tacplus"}, {"tacplus"}},
                      {{"nsswitch", "system-auth"}, {"nsswitch", "system-auth"}}};
    setting.message = XasMessageBuilder{29}.bytes(128, host("t1")).build();
    return setting;
}

} // namespace

std::vector<XasExpectedSetting> xasExpectedLoginSettings()
{
    return {auth(), nis(), ldap(), radius(), kerberos(), tacacs()};
}
