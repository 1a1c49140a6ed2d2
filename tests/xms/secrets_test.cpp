#include "xms/secrets.h"

#include "support/message.h"
#include "support/test.h"
#include "xms/users.h"

#include <map>

namespace {

XmsTraffic toDaemon(std::string_view bytes)
{
    const auto all = std::as_bytes(std::span{bytes});
    return {1, true, {all.begin(), all.end()}};
}

XmsTraffic toDaemon(const XasMessage &record)
{
    return toDaemon(xasMessageBytes(record));
}

std::string bytesOf(const XmsTraffic &traffic)
{
    return {reinterpret_cast<const char *>(traffic.bytes.data()), traffic.bytes.size()};
}

/** 120 bytes, then 224 for each user: the login at 0, the password at 33. */
std::string usersWith(const std::string &first, const std::string &second)
{
    std::string list(120 + 2 * 224, '\0');
    list.replace(120, 5, "alice").replace(120 + 33, first.size(), first);
    list.replace(344, 3, "bob").replace(344 + 33, second.size(), second);
    return list;
}

} // namespace

TEST(XmsSecrets, OfWhatIsNotDescribedNothingIsShown)
{
    const XasMessage other = XasMessageBuilder{XMSG_DP_PPP}.id(7).bytes(200, "pass");
    EXPECT_THAT(xmsSecretFields(toDaemon(other)), ElementsAre("payload"));
    EXPECT_EQ(xasMessageBytes(xmsMaskedRecord(other)), xasMessageBytes(XasMessageBuilder{XMSG_DP_PPP}.id(7)));
    EXPECT_THAT(xmsSecretFields(toDaemon(std::string_view{"odd"})), ElementsAre("bytes"));
    EXPECT_EQ(bytesOf(xmsMasked(toDaemon(std::string_view{"odd"}))), std::string(3, '\0'));
}

TEST(XmsSecrets, EveryPasswordKeyAndCommunityIsOne)
{
    const std::map<std::uint32_t, std::vector<std::string>> expected = {
        {XMSG_VPN, {"auth_key", "xauth_passwd"}},
        {XMSG_SNMP,
         {"ro_community", "rw_community", "trap_community", "v3pass", "v3phrase", "v3rwpass", "v3rwphrase"}},
        {XMSG_CIFS, {"lanman_pwd", "nt_pwd"}},
        {XMSG_LDAP, {"bind_passwd"}},
        {XMSG_RADIUS, {"secret1", "secret2"}},
        {XMSG_TACACS, {"server1_secret"}},
        {XMSG_USER, {"password"}}};
    for (std::uint32_t msgtype = 1; msgtype <= 68; ++msgtype) {
        const XasMsgFields *fields = msgFieldsOf(msgtype);
        if (fields == nullptr)
            continue;
        XasMessageBuilder record{msgtype};
        for (const XasMsgFieldAt &where : xasListFields(*fields)) {
            if (where.field->kind == XasFieldKind::text)
                record.raw(where.name, "held");
        }
        std::vector<std::string> names = xmsSecretFields(toDaemon(record));
        std::ranges::sort(names);
        EXPECT_EQ(names, expected.contains(msgtype) ? expected.at(msgtype) : std::vector<std::string>{})
            << msgtype;
    }
}

TEST(XmsSecrets, AMaskedFieldIsReplacedToItsEndAndNothingElseIs)
{
    const XasMessageBuilder plain = XasMessageBuilder{XMSG_RADIUS}.id(3).set("server1", "192.168.10.42");
    XasMessageBuilder secret = plain;
    secret.raw("secret1", std::string("testing\0behind", 14));
    XasMessageBuilder masked = plain;
    masked.raw("secret1", "********");
    EXPECT_THAT(xmsSecretFields(toDaemon(secret)), ElementsAre("secret1")) << "an empty one is none";
    EXPECT_EQ(xasMessageBytes(xmsMaskedRecord(secret)), xasMessageBytes(masked));
    EXPECT_EQ(bytesOf(xmsMasked(toDaemon(secret))), xasMessageBytes(masked));
}

TEST(XmsSecrets, ThoseOfAListOfUsersAreMaskedUserByUser)
{
    const XmsTraffic list = toDaemon(usersWith("", "$1$b"));
    EXPECT_THAT(xmsSecretFields(list), ElementsAre("user2.password"));
    EXPECT_EQ(bytesOf(xmsMasked(list)), usersWith("", "********"));
}

TEST(XmsSecrets, ThoseThatAreKnownAreHiddenWhereverTheyStand)
{
    XmsKnownSecrets secrets;
    EXPECT_EQ(secrets.hide("bind testing-radius"), "bind testing-radius");
    secrets.learn(XasMessageBuilder{XMSG_RADIUS}.set("secret1", "testing").set("secret2", "testing-radius"));
    secrets.learn(toDaemon(usersWith("$1$a", "$1$b")));
    EXPECT_EQ(secrets.hide("192.168.10.42 testing-radius 3"), "192.168.10.42 ******** 3") << "the longest";
    EXPECT_EQ(secrets.hide("xtestingx alice:$1$a: $1$b"), "x********x alice:********: ********");
    EXPECT_EQ(secrets.hide(""), "");
}

TEST(XmsSecrets, AShortOneIsHiddenOnlyAsAWord)
{
    XmsKnownSecrets secrets;
    secrets.learn(XasMessageBuilder{XMSG_RADIUS}.set("secret1", "abc"));
    EXPECT_EQ(secrets.hide("abc abcd dabc _abc (abc) abc"), "******** abcd dabc _abc (********) ********");
}
