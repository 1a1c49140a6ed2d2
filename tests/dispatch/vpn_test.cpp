// The texts of the tunnel's two files.
#include "dispatch/vpn.h"

#include "support/faults.h"
#include "support/log.h"
#include "support/vpn.h"

namespace {

/** The lines that every section ends in, behind those of the two sides. */
const std::string ENDING = "    pfs=no\n"
                           "    dpddelay=30\n"
                           "    dpdtimeout=120\n"
                           "    dpdaction=restart\n"
                           "    auto=add\n"
                           "    type=tunnel\n";

std::string connOf(const XasVpnPayload &vpn)
{
    return xasIPsecConnText(vpn, "192.0.2.9");
}

std::string secretsOf(const XasVpnPayload &vpn)
{
    return xasIPsecSecretsText(vpn, "192.0.2.9");
}

} // namespace

TEST(IPsecGlobal, EndsBeforeTheFirstConnection)
{
    EXPECT_EQ(xasIPsecGlobalText("version 2.0\n\nconfig setup\n\tprotostack=netkey\nconn a\n    left=x\n"
                                 "config setup\n    again\n"),
              "version 2.0\n\nconfig setup\n\tprotostack=netkey\n");
    EXPECT_EQ(xasIPsecGlobalText("conn a\n"), "");
    EXPECT_EQ(xasIPsecGlobalText(""), "");
}

TEST(IPsecGlobal, IsTheWholeFileWithoutAConnection)
{
    const std::string text = "#conn a\n conn b\nconnection c\nconn\tc\nconn\n# conn d\nlast";
    EXPECT_EQ(xasIPsecGlobalText(text), text);
}

TEST(IPsecGlobal, HasNoNatTraversalLeft)
{
    EXPECT_EQ(xasIPsecGlobalText("    nat_traversal=yes\n#nat_traversal=yes\n    nat_traversal=no\n"
                                 "x nat_traversal=yes y\nnat_traversal = yes\n"),
              "#    nat_traversal=yes\n#nat_traversal=yes\n    nat_traversal=no\n"
              "#x nat_traversal=yes y\nnat_traversal = yes\n");
}

TEST(IPsecGlobal, IsReadInPiecesOf511Characters)
{
    const std::string filler(511, 'x');
    EXPECT_EQ(xasIPsecGlobalText(filler + "conn a\nb\n"), filler);
    EXPECT_EQ(xasIPsecGlobalText(filler + "nat_traversal=yes\n"), filler + "#nat_traversal=yes\n");
    EXPECT_EQ(xasIPsecGlobalText(filler.substr(1) + "conn a\nb\n"), filler.substr(1) + "conn a\nb\n");
}

TEST(IPsecConn, IsShortForATunnelWithNothingButItsEnds)
{
    EXPECT_EQ(connOf(xasTestVpn()), "conn branch\n"
                                    "    authby=secret\n"
                                    "    left=192.0.2.9\n"
                                    "    right=198.51.100.7\n" +
                                        ENDING);
}

TEST(IPsecConn, HasEveryOptionInItsPlace)
{
    EXPECT_EQ(connOf(xasTestFullVpn()), "conn branch\n"
                                        "    ike=aes-sha1;modp1536\n"
                                        "    phase2alg=3des-md5;modp1024\n"
                                        "    aggrmode=yes\n"
                                        "    authby=secret\n"
                                        "    left=192.0.2.9\n"
                                        "    leftsubnet=10.10.0.0/16\n"
                                        "    leftnexthop=192.0.2.1\n"
                                        "    leftid=@office.example\n"
                                        "    leftxauthclient=yes\n"
                                        "    leftxauthusername=joe\n"
                                        "    leftmodecfgclient=yes\n"
                                        "    right=198.51.100.7\n"
                                        "    rightxauthserver=yes\n"
                                        "    rightmodecfgserver=yes\n"
                                        "    rightsubnets={10.20.0.0/16 10.21.0.0/16}\n"
                                        "    rightid=@branch.example\n"
                                        "    rightnexthop=198.51.100.1\n"
                                        "    pfs=yes\n"
                                        "    dpddelay=30\n"
                                        "    dpdtimeout=120\n"
                                        "    dpdaction=restart\n"
                                        "    auto=add\n"
                                        "    type=tunnel\n");
}

TEST(IPsecConn, EndsWithTheRemoteKeyOfAnRsaTunnel)
{
    XasVpnPayload vpn = xasTestVpn();
    vpn.auth = XAS_VPN_RSA;
    std::memset(vpn.auth_key, 'k', sizeof vpn.auth_key);
    EXPECT_EQ(connOf(vpn), "conn branch\n"
                           "    authby=rsasig\n"
                           "    left=192.0.2.9\n"
                           "    right=198.51.100.7\n" +
                               ENDING + "    rightrsasigkey=" + std::string(516, 'k') + "\n");
}

TEST(IPsecConn, HasNoKeyWhenNeitherMethodIsMeant)
{
    XasVpnPayload vpn = xasTestVpn();
    for (const std::uint32_t auth : {2U, 0xFFFFFFFFU}) {
        vpn.auth = auth;
        EXPECT_THAT(connOf(vpn), HasSubstr("\n    authby=rsasig\n"));
        EXPECT_THAT(connOf(vpn), Not(HasSubstr("rightrsasigkey")));
    }
}

TEST(IPsecConn, NamesThePortWhereItsAddressIsUnknown)
{
    XasVpnPayload vpn = xasTestVpn();
    EXPECT_THAT(xasIPsecConnText(vpn, std::nullopt), HasSubstr("\n    left=%eth0\n"));
    for (const std::uint32_t ifac : {0U, 2U, 0xFFFFFFFFU}) {
        vpn.ifac = ifac;
        EXPECT_THAT(xasIPsecConnText(vpn, std::nullopt), HasSubstr("\n    left=%eth1\n"));
    }
}

TEST(IPsecConn, TakesAnyPeerForAnEmptyNameAndForAny)
{
    XasVpnPayload vpn = xasTestVpn();
    for (const char *name : {"", "any"}) {
        xasSetTestRemoteName(vpn, name);
        EXPECT_THAT(connOf(vpn), HasSubstr("\n    right=%any\n"));
    }
    for (const char *name : {"ANY", "any1", "vpn.example.org", "%any"}) {
        xasSetTestRemoteName(vpn, name);
        EXPECT_THAT(connOf(vpn), HasSubstr("\n    right=" + std::string{name} + "\n"));
    }
}

TEST(IPsecConn, TakesAnyPeerForAnAddressThatCannotBeFormatted)
{
    XasLogCapture log;
    const XasFault fault{"inet_ntop", ENOSPC};
    EXPECT_THAT(connOf(xasTestVpn()), HasSubstr("\n    right=%any\n"));
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid VPN remote host IP address\n")));
}

TEST(IPsecConn, PutsAnAtSignBeforeEveryIdentityButAnAddress)
{
    XasVpnPayload vpn = xasTestVpn();
    xasSetFieldText(vpn.local_id, "192.0.2.1");
    xasSetFieldText(vpn.remote_id, "198.51.100.256");
    EXPECT_THAT(connOf(vpn), HasSubstr("\n    leftid=192.0.2.1\n"));
    EXPECT_THAT(connOf(vpn), HasSubstr("\n    rightid=@198.51.100.256\n"));
    xasSetFieldText(vpn.local_id, "10.1");
    xasSetFieldText(vpn.remote_id, "0.0.0.0");
    EXPECT_THAT(connOf(vpn), HasSubstr("\n    leftid=@10.1\n"));
    EXPECT_THAT(connOf(vpn), HasSubstr("\n    rightid=0.0.0.0\n"));
}

TEST(IPsecConn, ReadsFieldsThatHaveNoTerminator)
{
    XasVpnPayload vpn = xasTestVpn();
    std::memset(vpn.name, 'n', sizeof vpn.name);
    std::memset(vpn.local_id, 'i', sizeof vpn.local_id);
    std::memset(vpn.remote_subnet, 's', sizeof vpn.remote_subnet);
    EXPECT_EQ(connOf(vpn),
              "conn " + std::string(20, 'n') + "\n    authby=secret\n    left=192.0.2.9\n    leftid=@" +
                  std::string(20, 'i') + "\n    right=198.51.100.7\n    rightsubnet=" + std::string(80, 's') +
                  "\n" + ENDING);
}

TEST(IPsecConn, MakesBlanksOfTheCommasOfASubnetList)
{
    XasVpnPayload vpn = xasTestVpn();
    xasSetFieldText(vpn.local_subnet, "10.0.0.0/8,192.168.0.0/16,172.16.0.0/12");
    xasSetFieldText(vpn.remote_subnet, ",");
    EXPECT_THAT(connOf(vpn), HasSubstr("\n    leftsubnets={10.0.0.0/8 192.168.0.0/16 172.16.0.0/12}\n"));
    EXPECT_THAT(connOf(vpn), HasSubstr("\n    rightsubnets={ }\n"));
}

TEST(IPsecConn, HasANextHopOfZero)
{
    XasVpnPayload vpn = xasTestVpn();
    vpn.local_hop = {};
    vpn.remote_hop = xasTestIPv4("255.255.255.254");
    EXPECT_THAT(connOf(vpn), HasSubstr("\n    leftnexthop=0.0.0.0\n"));
    EXPECT_THAT(connOf(vpn), HasSubstr("\n    rightnexthop=255.255.255.254\n"));
}

namespace {

struct NamedProposal {
    XasVpnAlgorithms algorithms;
    const char *text;
};

/** Every combination, and values behind the last name. */
constexpr NamedProposal PROPOSALS[] = {
    {{0, 0, 1}, "modp1024"},           {{0, 0, 2}, "modp1536"},           {{0, 1, 0}, "sha1;"},
    {{0, 1, 1}, "sha1;modp1024"},      {{0, 1, 2}, "sha1;modp1536"},      {{0, 2, 0}, "md5;"},
    {{0, 2, 1}, "md5;modp1024"},       {{0, 2, 2}, "md5;modp1536"},       {{1, 0, 0}, "3des;"},
    {{1, 0, 1}, "3des;modp1024"},      {{1, 0, 2}, "3des;modp1536"},      {{1, 1, 0}, "3des-sha1;"},
    {{1, 1, 1}, "3des-sha1;modp1024"}, {{1, 1, 2}, "3des-sha1;modp1536"}, {{1, 2, 0}, "3des-md5;"},
    {{1, 2, 1}, "3des-md5;modp1024"},  {{1, 2, 2}, "3des-md5;modp1536"},  {{2, 0, 0}, "aes;"},
    {{2, 0, 1}, "aes;modp1024"},       {{2, 0, 2}, "aes;modp1536"},       {{2, 1, 0}, "aes-sha1;"},
    {{2, 1, 1}, "aes-sha1;modp1024"},  {{2, 1, 2}, "aes-sha1;modp1536"},  {{2, 2, 0}, "aes-md5;"},
    {{2, 2, 1}, "aes-md5;modp1024"},   {{2, 2, 2}, "aes-md5;modp1536"},   {{3, 9, 7}, "aes-md5;modp1536"},
    {{0xFFFFFFFF, 0, 0}, "aes;"},
};

} // namespace

TEST(IPsecConn, NamesTheProposalsOfBothPhases)
{
    for (const NamedProposal &proposal : PROPOSALS) {
        XasVpnPayload vpn = xasTestVpn();
        vpn.ike = proposal.algorithms;
        vpn.esp = proposal.algorithms;
        std::string expected = "conn branch\n    ike=" + std::string{proposal.text} + "\n";
        if (proposal.algorithms.enc != 0 || proposal.algorithms.hash != 0) // a group alone is no ESP proposal
            expected += "    phase2alg=" + std::string{proposal.text} + "\n";
        EXPECT_EQ(connOf(vpn), expected +
                                   "    authby=secret\n"
                                   "    left=192.0.2.9\n"
                                   "    right=198.51.100.7\n" +
                                   ENDING);
    }
}

namespace {

/** Every bit is one option of the tunnel. */
enum Option : unsigned {
    RSA = 1, // else a pre-shared key
    AGGRESSIVE = 2,
    PFS = 4,
    MODECFG = 8,
    XAUTH = 16,
    LEFT_SUBNET = 32,
    LEFT_HOP = 64,
    LEFT_ID = 128,
    RIGHT_SUBNET = 256,
    RIGHT_HOP = 512,
    RIGHT_ID = 1024,
    ALL_OPTIONS = 2048
};

XasVpnPayload vpnWith(unsigned options)
{
    XasVpnPayload vpn = xasTestVpn();
    const auto has = [options](Option option) {
        return (options & option) != 0;
    };
    vpn.auth = has(RSA) ? XAS_VPN_RSA : XAS_VPN_PSK;
    vpn.aggressive = has(AGGRESSIVE) ? 1 : 0;
    vpn.pfs = has(PFS) ? 1 : 0;
    vpn.modecfg = has(MODECFG) ? 1 : 0;
    vpn.xauth = has(XAUTH) ? 1 : 0;
    xasSetFieldText(vpn.xauth_login, "joe");
    xasSetFieldText(vpn.xauth_passwd, "pw");
    xasSetFieldText(vpn.local_subnet, has(LEFT_SUBNET) ? "10.1.0.0/16" : "");
    vpn.local_hop = has(LEFT_HOP) ? xasTestIPv4("192.0.2.1") : XAS_NO_IPV4;
    xasSetFieldText(vpn.local_id, has(LEFT_ID) ? "me" : "");
    xasSetFieldText(vpn.remote_subnet, has(RIGHT_SUBNET) ? "10.2.0.0/16" : "");
    vpn.remote_hop = has(RIGHT_HOP) ? xasTestIPv4("198.51.100.1") : XAS_NO_IPV4;
    xasSetFieldText(vpn.remote_id, has(RIGHT_ID) ? "you" : "");
    return vpn;
}

/** A line of the section, and when it is there. */
struct ModelLine {
    unsigned needs;
    unsigned excludes;
    const char *line;
};

constexpr ModelLine MODEL[] = {
    {0, 0, "conn branch"},
    {AGGRESSIVE, 0, "    aggrmode=yes"},
    {0, RSA, "    authby=secret"},
    {RSA, 0, "    authby=rsasig"},
    {0, 0, "    left=192.0.2.9"},
    {LEFT_SUBNET, 0, "    leftsubnet=10.1.0.0/16"},
    {LEFT_HOP, 0, "    leftnexthop=192.0.2.1"},
    {LEFT_ID, 0, "    leftid=@me"},
    {XAUTH, 0, "    leftxauthclient=yes"},
    {XAUTH, 0, "    leftxauthusername=joe"},
    {MODECFG, 0, "    leftmodecfgclient=yes"},
    {0, 0, "    right=198.51.100.7"},
    {XAUTH, 0, "    rightxauthserver=yes"},
    {MODECFG, 0, "    rightmodecfgserver=yes"},
    {RIGHT_SUBNET, 0, "    rightsubnet=10.2.0.0/16"},
    {RIGHT_ID, 0, "    rightid=@you"},
    {RIGHT_HOP, 0, "    rightnexthop=198.51.100.1"},
    {PFS, 0, "    pfs=yes"},
    {0, PFS, "    pfs=no"},
    {0, 0, "    dpddelay=30"},
    {0, 0, "    dpdtimeout=120"},
    {0, 0, "    dpdaction=restart"},
    {0, 0, "    auto=add"},
    {0, 0, "    type=tunnel"},
    {RSA, 0, "    rightrsasigkey=s3cret"},
};

} // namespace

TEST(IPsecConn, HasExactlyTheLinesOfEachCombinationOfOptions)
{
    for (unsigned options = 0; options < ALL_OPTIONS; ++options) {
        std::string expected;
        for (const ModelLine &line : MODEL) {
            if ((options & line.needs) == line.needs && (options & line.excludes) == 0)
                expected += std::string{line.line} + "\n";
        }
        ASSERT_EQ(connOf(vpnWith(options)), expected) << options;
    }
}

TEST(IPsecSecrets, AreNothingWithoutAPreSharedKeyAndWithoutALogin)
{
    XasVpnPayload vpn = xasTestVpn();
    vpn.auth = 2;
    EXPECT_EQ(secretsOf(vpn), "");
}

TEST(IPsecSecrets, NameTheTwoEndsByAddress)
{
    EXPECT_EQ(secretsOf(xasTestVpn()), "198.51.100.7 192.0.2.9: PSK \"s3cret\"\n");
    EXPECT_EQ(xasIPsecSecretsText(xasTestVpn(), std::nullopt), "198.51.100.7 %any: PSK \"s3cret\"\n");
}

TEST(IPsecSecrets, NameTheRemoteEndByItsTextAsItStands)
{
    XasVpnPayload vpn = xasTestVpn();
    for (const std::string name : {"vpn.example.org", "any", ""}) {
        xasSetTestRemoteName(vpn, name);
        EXPECT_EQ(secretsOf(vpn), name + " 192.0.2.9: PSK \"s3cret\"\n");
    }
}

TEST(IPsecSecrets, NameAnEndByItsIdentityWithAnAtSignEvenAnAddress)
{
    XasVpnPayload vpn = xasTestVpn();
    xasSetFieldText(vpn.remote_id, "branch.example");
    EXPECT_EQ(secretsOf(vpn), "@branch.example 192.0.2.9: PSK \"s3cret\"\n");
    xasSetFieldText(vpn.local_id, "192.0.2.1");
    EXPECT_EQ(xasIPsecSecretsText(vpn, std::nullopt), "@branch.example @192.0.2.1: PSK \"s3cret\"\n");
    vpn.remote_id[0] = '\0';
    EXPECT_EQ(secretsOf(vpn), "198.51.100.7 @192.0.2.1: PSK \"s3cret\"\n");
}

TEST(IPsecSecrets, EndWithTheLogin)
{
    EXPECT_EQ(secretsOf(xasTestFullVpn()), "@branch.example @office.example: PSK \"s3cret\"\n"
                                           "@joe: XAUTH \"pass\"\n");
    XasVpnPayload vpn = xasTestFullVpn();
    vpn.auth = 2;
    EXPECT_EQ(secretsOf(vpn), "@joe: XAUTH \"pass\"\n");
}
