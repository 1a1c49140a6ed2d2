// LDAP: the directory tools' file and the client file from its template.
#include "auth/ldap.h"

#include "support/files.h"
#include "support/hosts.h"
#include "support/reply.h"

namespace {

XasLdapPayload settings()
{
    XasLdapPayload cfgLDAP{};
    cfgLDAP.enabled = 1;
    cfgLDAP.server = xasHostWithAddress("10.0.0.41");
    cfgLDAP.server2 = xasNamedHost("");
    xasSetFieldText(cfgLDAP.base, "dc=example,dc=net");
    return cfgLDAP;
}

constexpr const char *TEMPLATE = "host $(HOST)\n"
                                 "base $(BASE) $(BASE)\n"
                                 "$(NO_BINDDN)binddn $(BINDDN)\n"
                                 "$(NO_BINDPW)bindpw $(BINDPW)\n"
                                 "$(NO_LDAP_PORT)port $(LDAP_PORT)\n"
                                 "$(ISMS)nss_map_attribute uid sAMAccountName\n"
                                 "$(ENCRYPT)ssl start_tls\n";

class LdapFiles : public XasFilesTest {
  protected:
    XasLdapPayload cfgLDAP = settings();
    XasReplyStatus reply;
};

} // namespace

TEST_F(LdapFiles, ToolsFileHasItsHostAndBaseAtTheEnd)
{
    const std::string path = dir.write("openldap.conf", "# HOST comment\nHOST old\nHOSTS x\n BASE kept\n"
                                                        "BASE old\nBASEMENT y\nTLS_REQCERT demand\n");
    EXPECT_EQ(xasEditOpenLdapCfgFile(path.c_str(), &cfgLDAP, &reply), 0);
    EXPECT_EQ(dir.read("openldap.conf"), "# HOST comment\n BASE kept\nTLS_REQCERT demand\n"
                                         "HOST 10.0.0.41 \nBASE dc=example,dc=net \n");
}

TEST_F(LdapFiles, ClientFileIsRemovedWhenDisabledAndNeedsNoTemplate)
{
    cfgLDAP.enabled = 0;
    const std::string path = dir.write("ldap.conf", "bindpw secret\n");
    EXPECT_EQ(xasEditLdapCfgFileBC("/missing", path.c_str(), &cfgLDAP, &reply), 0);
    EXPECT_THAT(dir.names(), IsEmpty());
    EXPECT_EQ(xasEditLdapCfgFileBC("/missing", path.c_str(), &cfgLDAP, &reply), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
}

TEST(OpenLdapText, OnlyLosesItsLinesWhenDisabled)
{
    XasLdapPayload cfgLDAP = settings();
    cfgLDAP.enabled = 0;
    EXPECT_EQ(xasOpenLdapText("HOST a\nURI ldap://x\nBASE b\n", cfgLDAP), "URI ldap://x\n");
}

TEST(OpenLdapText, IsSwitchedOnByAnyNumberButZero)
{
    XasLdapPayload cfgLDAP = settings();
    cfgLDAP.enabled = 0x80000000U;
    cfgLDAP.server = xasNamedHost("ldap1");
    EXPECT_EQ(xasOpenLdapText("", cfgLDAP), "HOST ldap1 \nBASE dc=example,dc=net \n");
}

TEST(LdapTemplate, HasLinesWithoutSettingCommentedOut)
{
    EXPECT_EQ(xasLdapTemplateText(TEMPLATE, settings()), "host 10.0.0.41 \n"
                                                         "base dc=example,dc=net dc=example,dc=net\n"
                                                         "#binddn $(BINDDN)\n"
                                                         "#bindpw $(BINDPW)\n"
                                                         "#port $(LDAP_PORT)\n"
                                                         "#nss_map_attribute uid sAMAccountName\n"
                                                         "#ssl start_tls\n");
}

TEST(LdapTemplate, HasAllSettingsFilledIn)
{
    XasLdapPayload cfgLDAP = settings();
    cfgLDAP.server = xasNamedHost("ldap1.example.net");
    cfgLDAP.server2 = xasHostWithAddress("fd00::41");
    xasSetFieldText(cfgLDAP.bind_name, "cn=reader,dc=example");
    xasSetFieldText(cfgLDAP.bind_passwd, "p#ss$(BASE)");
    cfgLDAP.port = 636;
    cfgLDAP.ad_support = 2;
    cfgLDAP.encrypt = 1;
    EXPECT_EQ(xasLdapTemplateText(TEMPLATE, cfgLDAP), "host ldap1.example.net fd00::41\n"
                                                      "base dc=example,dc=net dc=example,dc=net\n"
                                                      "binddn cn=reader,dc=example\n"
                                                      "bindpw p#ss$(BASE)\n"
                                                      "port 636\n"
                                                      "nss_map_attribute uid sAMAccountName\n"
                                                      "#ssl start_tls\n");
}

TEST(LdapTemplate, ShowsASecondServerOfAllZerosAsItsAddress)
{
    XasLdapPayload cfgLDAP = settings();
    cfgLDAP.server2 = {};
    EXPECT_EQ(xasLdapTemplateText("$(HOST)", cfgLDAP), "10.0.0.41 0.0.0.0");
}

TEST(LdapBindText, SwitchesTlsByThePort)
{
    XasLdapPayload cfgLDAP = settings();
    EXPECT_EQ(xasLdapBindText(cfgLDAP), "");
    cfgLDAP.encrypt = 1;
    EXPECT_EQ(xasLdapBindText(cfgLDAP), "\nssl start_tls\n");
    cfgLDAP.port = 389;
    EXPECT_EQ(xasLdapBindText(cfgLDAP), "\nssl start_tls\n");
    cfgLDAP.port = 636;
    EXPECT_EQ(xasLdapBindText(cfgLDAP), "\nssl on\n");
    cfgLDAP.port = 637;
    EXPECT_EQ(xasLdapBindText(cfgLDAP), "\nssl start_tls\n");
    cfgLDAP.encrypt = 2;
    EXPECT_EQ(xasLdapBindText(cfgLDAP), "");
}

TEST(LdapBindText, AsksForTheLoginForAnyNumberButZero)
{
    XasLdapPayload cfgLDAP = settings();
    cfgLDAP.bind_with_login = 0x80000000U;
    EXPECT_EQ(xasLdapBindText(cfgLDAP), "\n# Non-standard option: insert current login into bind name\n"
                                        "bind_with_login yes\n");
}

TEST(LdapMapText, HasALineForEachMappingThatIsGiven)
{
    XasLdapPayload cfgLDAP = settings();
    EXPECT_EQ(xasLdapMapText(cfgLDAP), "");
    xasSetFieldText(cfgLDAP.map_posix_group, "group");
    xasSetFieldText(cfgLDAP.map_member, "member");
    EXPECT_EQ(xasLdapMapText(cfgLDAP), "\nnss_map_objectclass posixGroup group\n"
                                       "\nnss_map_attribute uniqueMember member\n");
    xasSetFieldText(cfgLDAP.map_uid, "cn");
    cfgLDAP.map_member_type = 1;
    EXPECT_EQ(xasLdapMapText(cfgLDAP), "\nnss_map_attribute uid cn\n"
                                       "\nnss_map_objectclass posixGroup group\n"
                                       "\nnss_map_attribute memberUID member\n");
    cfgLDAP.map_member_type = 2;
    EXPECT_EQ(xasLdapMapText(cfgLDAP), "\nnss_map_attribute uid cn\n"
                                       "\nnss_map_objectclass posixGroup group\n"
                                       "\nnss_map_attribute uniqueMember member\n");
}
