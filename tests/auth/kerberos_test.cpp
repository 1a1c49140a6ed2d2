// Kerberos: the client's file from its template, and the line in the hosts file.
#include "auth/kerberos.h"

#include "support/files.h"

namespace {

XasKerberosPayload settings()
{
    XasKerberosPayload cfgKerberos{};
    cfgKerberos.enabled = 1;
    xasSetFieldText(cfgKerberos.realm, "EXAMPLE.NET");
    xasSetFieldText(cfgKerberos.kdc, "kdc.example.net");
    cfgKerberos.kdc_port = 65535;
    cfgKerberos.use_ldap = 1;
    return cfgKerberos;
}

class KerberosFiles : public XasFilesTest {
  protected:
    XasKerberosPayload cfgKerberos = settings();
    XasReplyStatus reply;
};

} // namespace

TEST_F(KerberosFiles, HostsFileHasOneLineForTheNameHoweverOftenItIsSaved)
{
    const std::string path = dir.write("hosts", "127.0.0.1 localhost\n10.0.0.1 kdc.example.net old\n");
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(
            xasAddLinetoHostsFile(path.c_str(), "10.0.0.44", "kdc.example.net", "kdc.example.net", &reply),
            0);
        EXPECT_EQ(dir.read("hosts"), "127.0.0.1 localhost\n10.0.0.44    kdc.example.net  kdc.example.net\n");
    }
}

TEST(HostsTextWithLine, DropsEveryLineThatHoldsTheNameAnywhereButComments)
{
    EXPECT_EQ(xasHostsTextWithLine("# kdc comment\n1.1.1.1 kdc\n2.2.2.2 mykdc2\n3.3.3.3 a b kdc.x\n # kdc\n"
                                   "4.4.4.4 KDC\n\n",
                                   "fd00::1", "kdc", "alias"),
              "# kdc comment\n4.4.4.4 KDC\n\nfd00::1    kdc  alias\n");
}

TEST(HostsTextWithLine, WritesALongLineWhole)
{
    const std::string kdc(255, 'k');
    EXPECT_EQ(xasHostsTextWithLine("", "2001:db8:1111:2222:3333:4444:5555:6666", kdc.c_str(), kdc.c_str()),
              "2001:db8:1111:2222:3333:4444:5555:6666    " + kdc + "  " + kdc + "\n")
        << "more than 511 characters";
}

TEST(HostsTextWithLine, JoinsTheLineToALastOneWithoutLineFeed)
{
    EXPECT_EQ(xasHostsTextWithLine("1.1.1.1 a", "2.2.2.2", "b", "c"), "1.1.1.1 a2.2.2.2    b  c\n");
}

TEST(KerberosText, HasEveryPlaceholderReplaced)
{
    EXPECT_EQ(xasKerberosText("[$(REALM)] $(REALM)\nkdc = $(KDC_FQDN):$(KDC_PORT)\nuse_ldap = $(USE_LDAP)\n"
                              "$(OTHER)\n",
                              settings()),
              "[EXAMPLE.NET] EXAMPLE.NET\nkdc = kdc.example.net:65535\nuse_ldap = 1\n$(OTHER)\n");
}

TEST(KerberosText, ReadsFieldsWithoutEndUpToTheirWidth)
{
    XasKerberosPayload cfgKerberos = settings();
    std::string(257, 'R').copy(cfgKerberos.realm, 257);
    std::string(258, 'k').copy(cfgKerberos.kdc, 258);
    cfgKerberos.use_ldap = 0xFFFFFFFFU;
    EXPECT_EQ(xasKerberosText("$(REALM) $(KDC_FQDN) $(USE_LDAP)", cfgKerberos),
              std::string(257, 'R') + " " + std::string(258, 'k') + " -1");
}
