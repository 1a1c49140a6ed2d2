// What texts may hold, byte by byte, and which text of a message is named.
#include "wire/text_rule.h"

#include "dispatch/settings.h"
#include "support/message.h"

#include <gmock/gmock.h>

namespace {

/** Every byte from 1 to 255 that the rule refuses in the middle of a text. */
std::string refusedBytes(XasTextRule rule)
{
    std::string refused;
    for (int byte = 1; byte <= 255; ++byte) {
        const std::string text = std::string{"a"} + static_cast<char>(byte) + "b";
        if (!xasFitsRule(rule, text))
            refused += static_cast<char>(byte);
    }
    return refused;
}

/** The bytes from 1 to 31, and 127 where it belongs by its value. */
std::string controls(std::string_view printable = {})
{
    std::string bytes;
    for (char byte = 1; byte < 32; ++byte)
        bytes += byte;
    return bytes.append(printable) + '\x7F';
}

/** All bytes but NUL and the plain characters. */
std::string everythingButPlain()
{
    std::string bytes = controls(" !\"#$&'()*;<>?[\\]^`{|}~");
    for (int byte = 128; byte <= 255; ++byte)
        bytes += static_cast<char>(byte);
    return bytes;
}

/** The text that a message is refused for. */
std::string unfitText(const XasMessage &msg)
{
    return xasFindUnfitText(xasFindSetting(msg.xH.msgtype)->texts, msg);
}

} // namespace

TEST(TextRule, RefusesControlCharactersAndWhatTheRuleNames)
{
    EXPECT_EQ(refusedBytes(XasTextRule::line), controls());
    EXPECT_EQ(refusedBytes(XasTextRule::option), controls());
    EXPECT_EQ(refusedBytes(XasTextRule::path), controls());
    EXPECT_EQ(refusedBytes(XasTextRule::secret), controls(" #"));
    EXPECT_EQ(refusedBytes(XasTextRule::pamValue), controls(" #[]"));
    EXPECT_EQ(refusedBytes(XasTextRule::quoted), controls("\""));
    EXPECT_EQ(refusedBytes(XasTextRule::column), controls(":"));
    EXPECT_EQ(refusedBytes(XasTextRule::word), everythingButPlain());
    EXPECT_EQ(refusedBytes(XasTextRule::host), everythingButPlain());
    EXPECT_EQ(refusedBytes(XasTextRule::sequence), "\n\r");
}

TEST(TextRule, TakesAnEmptyTextEverywhere)
{
    using enum XasTextRule;
    for (const XasTextRule rule :
         {line, word, host, option, secret, pamValue, quoted, column, path, sequence})
        EXPECT_TRUE(xasFitsRule(rule, ""));
}

TEST(TextRule, RefusesADashOnlyInFront)
{
    for (const XasTextRule rule : {XasTextRule::word, XasTextRule::host, XasTextRule::option}) {
        EXPECT_FALSE(xasFitsRule(rule, "-a"));
        EXPECT_TRUE(xasFitsRule(rule, "a-"));
    }
    EXPECT_TRUE(xasFitsRule(XasTextRule::line, "-a"));
}

TEST(TextRule, WantsALetterOrADigitInAHostsName)
{
    EXPECT_FALSE(xasFitsRule(XasTextRule::host, "."));
    EXPECT_FALSE(xasFitsRule(XasTextRule::host, "_.,:/@%+="));
    EXPECT_TRUE(xasFitsRule(XasTextRule::host, ".7"));
    EXPECT_TRUE(xasFitsRule(XasTextRule::word, "."));
}

TEST(TextRule, RefusesAParentComponentWhereverItStands)
{
    for (const char *path : {"..", "../a", "/..", "a/../b", "/a/..", "//../"})
        EXPECT_FALSE(xasFitsRule(XasTextRule::path, path)) << path;
    for (const char *path : {".", "...", "/..a", "a../b", "/a/b..", "/"})
        EXPECT_TRUE(xasFitsRule(XasTextRule::path, path)) << path;
}

TEST(UnfitText, IsNamedAsTheMessageToolShowsIt)
{
    EXPECT_EQ(unfitText(XasMessageBuilder{XMSG_SNMP}.raw("v3user", "a\n")), "v3user");
    EXPECT_EQ(unfitText(XasMessageBuilder{XMSG_NFS}.set("mount2.mount=yes").raw("mount2.rem_dir", "\x1F")),
              "mount2.rem_dir");
    EXPECT_EQ(unfitText(XasMessageBuilder{XMSG_NIS}.raw("slave5", std::string("\1\0\0\0\0\0\0\0a b", 11))),
              "slave5");
    EXPECT_EQ(unfitText(XasMessageBuilder{XMSG_SNMP}.raw("v3user", "b\x80\xFF").build()), "");
}

TEST(UnfitText, IsTheFirstOfSeveral)
{
    EXPECT_EQ(unfitText(XasMessageBuilder{XMSG_HOSTNAME}.raw("domain", "b;").raw("hostname", "a;")),
              "hostname");
}

TEST(UnfitText, EndsAtTheFirstNulAndAtTheEndOfTheField)
{
    EXPECT_EQ(unfitText(XasMessageBuilder{XMSG_HOSTNAME}.raw("hostname", std::string("a\0\n", 3))), "");
    const std::size_t width = xasTestField(XMSG_NFS, "mount1.rem_dir").place.width;
    XasMessageBuilder full = XasMessageBuilder{XMSG_NFS}.set("mount1.mount=yes");
    full.raw("mount1.rem_dir", std::string(width, 'a')).raw("mount1.local_dir", "/x\n");
    EXPECT_EQ(unfitText(full), "mount1.local_dir");
    full.raw("mount1.rem_dir", std::string(width - 1, 'a') + "\n");
    EXPECT_EQ(unfitText(full), "mount1.rem_dir");
}

TEST(UnfitText, IsNotSoughtInAddresses)
{
    const std::string address("\0\0\0\0\0\0\0\0\x0A\x0A\x0A\x0A", 12);
    EXPECT_EQ(unfitText(XasMessageBuilder{XMSG_SYSLOG}.raw("remote1", address)), "");
    EXPECT_EQ(unfitText(XasMessageBuilder{XMSG_SYSLOG}.raw("remote1", "\1" + address.substr(1))), "remote1");
}

namespace {

struct UnreadText {
    std::uint32_t msgtype;
    const char *field;
    const char *readWith;
    const char *unreadWith;
};

class TextThatIsNotAlwaysRead : public testing::TestWithParam<UnreadText> {};

} // namespace

TEST_P(TextThatIsNotAlwaysRead, CountsOnlyWhenItIs)
{
    const auto [msgtype, field, readWith, unreadWith] = GetParam();
    const bool isHost = xasTestField(msgtype, field).field->kind == XasFieldKind::hostAddr;
    const std::string bad = isHost ? std::string("\1\0\0\0\0\0\0\0\n", 9) : "\n";
    EXPECT_EQ(unfitText(XasMessageBuilder{msgtype}.set(readWith).raw(field, bad)), field);
    EXPECT_EQ(unfitText(XasMessageBuilder{msgtype}.set(unreadWith).raw(field, bad)), "");
}

INSTANTIATE_TEST_SUITE_P(
    Of, TextThatIsNotAlwaysRead,
    testing::Values(
        UnreadText{XMSG_CIFS, "lanman_pwd", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_CIFS, "nt_pwd", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_CIFS, "lct_field", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_CIFS, "workgroup", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_LDAP, "server", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_LDAP, "server2", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_LDAP, "base", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_LDAP, "bind_name", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_LDAP, "bind_passwd", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_LDAP, "map_uid", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_LDAP, "map_posix_group", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_LDAP, "map_member", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_KERBEROS, "realm", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_RADIUS, "server1", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_RADIUS, "secret1", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_RADIUS, "server2", "enabled=yes", "enabled=no"},
        UnreadText{XMSG_RADIUS, "secret2", "enabled=yes server2=b", "server2=b enabled=no"},
        UnreadText{XMSG_RADIUS, "secret2", "enabled=yes server2=10.0.0.1", "enabled=yes server2=none"},
        UnreadText{XMSG_SNMP, "ro_community", "community_mode=write", "community_mode=keep"},
        UnreadText{XMSG_SNMP, "rw_community", "community_mode=write", "community_mode=remove"},
        UnreadText{XMSG_NTP, "server3", "sync=poll poll=three-servers", "sync=poll poll=one-server"},
        UnreadText{XMSG_NTP, "server1", "sync=poll poll=three-servers", "sync=broadcast poll=three-servers"},
        UnreadText{XMSG_NTP, "single", "sync=poll poll=one-server", "sync=poll poll=three-servers"},
        UnreadText{XMSG_NFS, "mount3.local_dir", "mount3.mount=yes", "mount2.mount=yes"},
        UnreadText{XMSG_IPFILTER_SET, "rule2.portrange", "num_rules=2", "num_rules=1"},
        UnreadText{XMSG_IPFILTER_SET, "rule1.portrange", "num_rules=1 action=replace",
                   "num_rules=1 action=remove"},
        UnreadText{XMSG_VPN, "name", "tunnel=yes", "tunnel=no"},
        UnreadText{XMSG_VPN, "remote_host", "tunnel=yes", "tunnel=no"},
        UnreadText{XMSG_VPN, "remote_id", "tunnel=yes", "tunnel=no"},
        UnreadText{XMSG_VPN, "remote_subnet", "tunnel=yes", "tunnel=no"},
        UnreadText{XMSG_VPN, "local_id", "tunnel=yes", "tunnel=no"},
        UnreadText{XMSG_VPN, "local_subnet", "tunnel=yes", "tunnel=no"},
        UnreadText{XMSG_VPN, "auth_key", "tunnel=yes auth=rsa", "tunnel=yes auth=none"},
        UnreadText{XMSG_VPN, "auth_key", "tunnel=yes auth=psk", "tunnel=no auth=psk"},
        UnreadText{XMSG_VPN, "xauth_login", "tunnel=yes xauth=yes", "tunnel=yes xauth=no"},
        UnreadText{XMSG_VPN, "xauth_passwd", "tunnel=yes xauth=yes auth=psk",
                   "tunnel=yes xauth=yes auth=rsa"},
        UnreadText{XMSG_USER, "password", "action=password", "action=delete"},
        UnreadText{XMSG_USER, "escseq", "action=edit", "action=password"},
        UnreadText{XMSG_USER, "brkseq", "action=add", "action=delete"}));

TEST(UnfitText, IsNotSoughtInWhatNobodyReads)
{
    for (const char *field : {"menu", "dialback_num"})
        EXPECT_EQ(unfitText(XasMessageBuilder{XMSG_USER}.set("login=a").raw(field, "\n")), "") << field;
}
