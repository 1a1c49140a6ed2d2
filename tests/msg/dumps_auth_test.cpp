// The dumps of login methods, against lines worked out by hand; offsets are those of the record.
#include "msg/print.h"
#include "support/hosts.h"
#include "support/message.h"

#include <gtest/gtest.h>

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
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_AUTH}.build()),
              "local: 0 nis: 0 ldap: 0 radius: 0 securid: 0 kerberos: 0 tacacs: 0\n");
}

TEST(MsgDumpAuth, EachMethodShowsItsPosition)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_AUTH}
                             .bytes(120, "\x01\x02\x03\x04\x05\x06\xff")
                             .word(128, 1)
                             .word(132, 1)
                             .build()),
              "local: 1 nis: 2 ldap: 3 radius: 4 securid: 5 kerberos: 6 tacacs: 255\n");
}

TEST(MsgDumpNis, AnAllZeroMasterReadsAsAnAddress)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NIS}.build()),
              "enabled: n order: 0 domain:  master: 0.0.0.0\n");
}

TEST(MsgDumpNis, TextsEndWithTheirFields)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NIS}
                             .word(120, 1)
                             .byte(124, 200)
                             .bytes(125, full(103, 'd'))
                             .word(228, 0x6E6E6E6E)
                             .bytes(232, xasHostBytes(xasNamedHost(full(68, 'm'))))
                             .word(308, 0x6E6E6E6E)
                             .build()),
              "enabled: y order: 200 domain: " + full(103, 'd') + " master: " + full(68, 'm') + "\n");
}

TEST(MsgDumpLdap, AnEmptyRecordHasEmptyTexts)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_LDAP}.build()),
              "enabled: n order: 0 server: 0.0.0.0 base: \n"
              "bind_name:  bind_passwd:  port: 0 ad_support: n\n");
}

TEST(MsgDumpLdap, TheServerTheBindingAndThePortAreShown)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_LDAP}
                             .word(120, 1)
                             .byte(124, 3)
                             .bytes(128, xasHostBytes(xasHostWithAddress("2001:db8::29")))
                             .bytes(280, "dc=example,dc=org")
                             .bytes(537, "cn=reader")
                             .bytes(794, "secret word")
                             .word(932, 636)
                             .word(936, 7)
                             .build()),
              "enabled: y order: 3 server: 2001:db8::29 base: dc=example,dc=org\n"
              "bind_name: cn=reader bind_passwd: secret word port: 636 ad_support: y\n");
}

TEST(MsgDumpLdap, TextsEndWithTheirFields)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_LDAP}
                             .bytes(280, full(257, 'b'))
                             .bytes(537, full(257, 'n'))
                             .bytes(794, full(130, 'p'))
                             .word(924, 0x6E6E6E6E)
                             .word(932, 0xFFFFFFFF)
                             .build()),
              "enabled: n order: 0 server: 0.0.0.0 base: " + full(257, 'b') + "\nbind_name: " +
                  full(257, 'n') + " bind_passwd: " + full(130, 'p') + " port: -1 ad_support: n\n");
}

TEST(MsgDumpRadius, BothServersAreShownEvenWhenThereAreNone)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_RADIUS}.build()),
              "enabled: n order: 0 timeout: 0 perm: 0x0 menu: \n"
              "  #1- server: 0.0.0.0 secret:  port: 0\n"
              "  #2- server: 0.0.0.0 secret:  port: 0\n");
}

TEST(MsgDumpRadius, EachServerHasItsSecretAndItsPort)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_RADIUS}
                             .word(120, 2)
                             .byte(124, 2)
                             .bytes(128, xasHostBytes(xasNamedHost("radius1.example.org")))
                             .bytes(204, full(130, 's'))
                             .half(334, 1812)
                             .bytes(336, xasHostBytes(xasHostWithAddress("192.168.10.42")))
                             .bytes(412, "other")
                             .half(542, 65535)
                             .byte(544, 255)
                             .build()),
              "enabled: y order: 2 timeout: 255 perm: 0x0 menu: \n"
              "  #1- server: radius1.example.org secret: " +
                  full(130, 's') +
                  " port: 1812\n"
                  "  #2- server: 192.168.10.42 secret: other port: 65535\n");
}

TEST(MsgDumpKerberos, AnUnsetCentreHasNoAddress)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_KERBEROS}.build()),
              "enabled: n order: 0 realm: \n"
              "kdc:  kdc_ip:  kdc_port: 0 use_ldap: n\n");
}

TEST(MsgDumpKerberos, TheRealmAndTheCentreAreShown)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_KERBEROS}
                             .word(120, 1)
                             .byte(124, 6)
                             .bytes(125, "EXAMPLE.ORG")
                             .bytes(382, "kdc.example.org")
                             .bytes(644, "\xC0\xA8\x0A\x2C")
                             .half(660, 88)
                             .word(664, 1)
                             .build()),
              "enabled: y order: 6 realm: EXAMPLE.ORG\n"
              "kdc: kdc.example.org kdc_ip: 192.168.10.44 kdc_port: 88 use_ldap: y\n");
}

TEST(MsgDumpKerberos, TextsEndWithTheirFields)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_KERBEROS}
                             .bytes(125, full(257, 'r'))
                             .bytes(382, full(258, 'k'))
                             .word(640, 1)
                             .bytes(644, {"\x20\x01\x0d\xb8\0\0\0\0\0\0\0\0\0\0\0\x2c", 16})
                             .build()),
              "enabled: n order: 0 realm: " + full(257, 'r') + "\nkdc: " + full(258, 'k') +
                  " kdc_ip: 2001:db8::2c kdc_port: 0 use_ldap: n\n");
}
