// A real IPsec implementation reads what is written: its configuration checker the whole file, and its parser
// of proposals the ciphers, hashes and groups.
#include "dispatch/vpn.h"

#include "support/programs.h"
#include "support/vpn.h"

namespace {

/** What the appliance ships; the checker is not to ask a name server. */
const std::string GLOBAL = "version 2.0\n"
                           "\n"
                           "config setup\n"
                           "    protostack=netkey\n"
                           "    plutodebug=none\n"
                           "    dnssec-enable=no\n"
                           "\n";

class VpnCheckerTest : public XasFilesTest {
  protected:
    VpnCheckerTest() { xasWriteFile("/etc/resolv.conf", ""); }

    /** What the checker has to say about a file; empty when it accepts it. */
    [[nodiscard]] std::string complaintOf(const std::string &text) const
    {
        const std::string path = dir.write("ipsec.conf", text);
        const auto result = xasRunShell(checker + " --config " + path + " --checkconfig");
        return result.exitStatus == 0 && result.output.empty()
                   ? ""
                   : "exit " + std::to_string(result.exitStatus) + ": " + result.output;
    }

    [[nodiscard]] std::string complaintOf(const XasVpnPayload &vpn) const
    {
        return complaintOf(GLOBAL + xasIPsecConnText(vpn, "192.0.2.9"));
    }

    std::string checker = xasUnpackedProgram("usr/libexec/ipsec/addconn");
    std::string parser = xasUnpackedProgram("usr/libexec/ipsec/algparse");
};

} // namespace

TEST_F(VpnCheckerTest, FindsMistakes)
{
    EXPECT_THAT(complaintOf(GLOBAL + "conn a\n    no_such_option=1\n"), HasSubstr("syntax error"));
    EXPECT_THAT(complaintOf(GLOBAL + "conn a\n    left=1.2.3.4\n    leftsubnet=10.0.0.0/40\n"),
                HasSubstr("bad subnet"));
}

TEST_F(VpnCheckerTest, RefusesNatTraversalWhichTheGlobalPartThereforeLoses)
{
    const std::string old = GLOBAL + "    nat_traversal=yes\n\n";
    EXPECT_THAT(complaintOf(old), HasSubstr("nat_traversal"));
    EXPECT_EQ(complaintOf(xasIPsecGlobalText(old) + xasIPsecConnText(xasTestVpn(), "192.0.2.9")), "");
}

TEST_F(VpnCheckerTest, AcceptsATunnelWithEveryOption)
{
    EXPECT_EQ(complaintOf(xasTestFullVpn()), "");
    XasVpnPayload vpn = xasTestFullVpn();
    vpn.auth = XAS_VPN_RSA;
    // A 2048-bit key: exponent 3, and a modulus of nothing but ones.
    xasSetFieldText(vpn.auth_key, "0sAQP" + std::string(340, '/'));
    EXPECT_EQ(complaintOf(vpn), "");
}

TEST_F(VpnCheckerTest, AcceptsEveryCombinationOfSwitches)
{
    for (unsigned options = 0; options < 64; ++options) {
        XasVpnPayload vpn = xasTestFullVpn();
        vpn.aggressive = options & 1;
        vpn.pfs = options & 2;
        vpn.modecfg = options & 4;
        vpn.xauth = options & 8;
        if ((options & 16) != 0)
            vpn.local_hop = XAS_NO_IPV4;
        if ((options & 32) != 0)
            vpn.remote_subnet[0] = '\0';
        EXPECT_EQ(complaintOf(vpn), "") << options;
    }
}

TEST_F(VpnCheckerTest, AcceptsEveryWayToNameTheEnds)
{
    XasVpnPayload vpn = xasTestVpn();
    EXPECT_EQ(complaintOf(GLOBAL + xasIPsecConnText(vpn, std::nullopt)), "") << "left=%eth0";
    for (const char *name : {"", "any", "vpn.example.org"}) {
        xasSetTestRemoteName(vpn, name);
        EXPECT_EQ(complaintOf(vpn), "") << name;
    }
    xasSetFieldText(vpn.local_id, "192.0.2.1");
    xasSetFieldText(vpn.local_subnet, "10.1.0.0/16,10.2.0.0/16,10.3.0.0/16");
    EXPECT_EQ(complaintOf(vpn), "");
}

TEST_F(VpnCheckerTest, KnowsEveryProposalWithCipherAndGroupButTheDroppedGroup)
{
    // Dropped since these texts were laid down: the group modp1024, which is too weak; proposals without a
    // cipher; and an empty group behind the semicolon.
    for (std::uint32_t enc = 0; enc <= 2; ++enc) {
        for (std::uint32_t hash = 0; hash <= 2; ++hash) {
            for (std::uint32_t group = 0; group <= 2; ++group) {
                XasVpnPayload vpn = xasTestVpn();
                vpn.ike = {.enc = enc, .hash = hash, .dhgroup = group};
                const std::string text = xasIPsecConnText(vpn, "192.0.2.9");
                const std::size_t begin = text.find("    ike=");
                if (begin == std::string::npos)
                    continue;
                const std::string ike = text.substr(begin + 4, text.find('\n', begin) - begin - 4);
                const auto result = xasRunShell(parser + " -v1 '" + ike + "'");
                const bool isKnown = result.output.find("ERROR") == std::string::npos;
                EXPECT_EQ(isKnown, enc != 0 && group == 2) << ike << ": " << result.output;
                EXPECT_EQ(complaintOf(vpn), "") << "the checker leaves proposals to the parser";
            }
        }
    }
}
