// The dumps of login methods, against lines worked out by hand.
#include "msg/print.h"
#include "support/hosts.h"
#include "support/message.h"
#include "support/test.h"

namespace {

/** A text that fills its field, without a NUL. */
std::string full(std::size_t width, char character = 'x')
{
    std::string text(width, character);
    return text;
}

} // namespace

TEST(MsgDumpAuth, AnEmptyOrderIsAllZero)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_AUTH}),
              "local: 0 nis: 0 ldap: 0 radius: 0 securid: 0 kerberos: 0 tacacs: 0\n");
}

TEST(MsgDumpAuth, EachMethodShowsItsPosition)
{
    EXPECT_EQ(
        msgAllText(XasMessageBuilder{XMSG_AUTH}.set(
            "local=1 nis=2 ldap=3 radius=4 securid=5 kerberos=6 tacacs=255 first_responding=1 start_nis=1")),
        "local: 1 nis: 2 ldap: 3 radius: 4 securid: 5 kerberos: 6 tacacs: 255\n");
}

TEST(MsgDumpNis, AnAllZeroMasterReadsAsAnAddress)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NIS}), "enabled: n order: 0 domain:  master: 0.0.0.0\n");
}

TEST(MsgDumpNis, TextsEndWithTheirFields)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NIS}
                             .set("enabled", 1)
                             .set("order", 200)
                             .set("domain", full(103, 'd'))
                             .set("broadcast", 0x6E6E6E6E)
                             .raw("master", xasHostBytes(xasNamedHost(full(68, 'm'))))
                             .set("slave1", "next")),
              "enabled: y order: 200 domain: " + full(103, 'd') + " master: " + full(68, 'm') + "\n");
}

TEST(MsgDumpLdap, AnEmptyRecordHasEmptyTexts)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_LDAP}), "enabled: n order: 0 server: 0.0.0.0 base: \n"
                                                        "bind_name:  bind_passwd:  port: 0 ad_support: n\n");
}

TEST(MsgDumpLdap, TheServerTheBindingAndThePortAreShown)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_LDAP}
                             .set("enabled=1 order=3 server=2001:db8::29 base=dc=example,dc=org "
                                  "bind_name=cn=reader")
                             .set("bind_passwd", "secret word")
                             .set("port", 636)
                             .set("ad_support", 7)),
              "enabled: y order: 3 server: 2001:db8::29 base: dc=example,dc=org\n"
              "bind_name: cn=reader bind_passwd: secret word port: 636 ad_support: y\n");
}

TEST(MsgDumpLdap, TextsEndWithTheirFields)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_LDAP}
                             .set("base", full(257, 'b'))
                             .set("bind_name", full(257, 'n'))
                             .set("bind_passwd", full(130, 'p'))
                             .set("bind_with_login", 0x6E6E6E6E)
                             .set("port", 0xFFFFFFFF)),
              "enabled: n order: 0 server: 0.0.0.0 base: " + full(257, 'b') + "\nbind_name: " +
                  full(257, 'n') + " bind_passwd: " + full(130, 'p') + " port: -1 ad_support: n\n");
}

TEST(MsgDumpRadius, BothServersAreShownEvenWhenThereAreNone)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_RADIUS}), "enabled: n order: 0 timeout: 0 perm: 0x0 menu: \n"
                                                          "  #1- server: 0.0.0.0 secret:  port: 0\n"
                                                          "  #2- server: 0.0.0.0 secret:  port: 0\n");
}

TEST(MsgDumpRadius, EachServerHasItsSecretAndItsPort)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_RADIUS}
                             .set("enabled=2 order=2 server1=radius1.example.org")
                             .set("secret1", full(130, 's'))
                             .set("port1=1812 server2=192.168.10.42 secret2=other port2=65535 timeout=255")),
              "enabled: y order: 2 timeout: 255 perm: 0x0 menu: \n"
              "  #1- server: radius1.example.org secret: " +
                  full(130, 's') +
                  " port: 1812\n"
                  "  #2- server: 192.168.10.42 secret: other port: 65535\n");
}

TEST(MsgDumpKerberos, AnUnsetCentreHasNoAddress)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_KERBEROS}), "enabled: n order: 0 realm: \n"
                                                            "kdc:  kdc_ip:  kdc_port: 0 use_ldap: n\n");
}

TEST(MsgDumpKerberos, TheRealmAndTheCentreAreShown)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_KERBEROS}.set(
                  "enabled=1 order=6 realm=EXAMPLE.ORG kdc=kdc.example.org kdc_ip=192.168.10.44 "
                  "kdc_port=88 use_ldap=1")),
              "enabled: y order: 6 realm: EXAMPLE.ORG\n"
              "kdc: kdc.example.org kdc_ip: 192.168.10.44 kdc_port: 88 use_ldap: y\n");
}

TEST(MsgDumpKerberos, TextsEndWithTheirFields)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_KERBEROS}
                             .set("realm", full(257, 'r'))
                             .set("kdc", full(258, 'k'))
                             .set("kdc_ip", "2001:db8::2c")),
              "enabled: n order: 0 realm: " + full(257, 'r') + "\nkdc: " + full(258, 'k') +
                  " kdc_ip: 2001:db8::2c kdc_port: 0 use_ldap: n\n");
}
