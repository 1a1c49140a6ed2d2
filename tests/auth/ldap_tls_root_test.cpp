// The TLS material of the directory client, at its fixed paths, through the handler of LDAP.
#include "auth/ldap.h"

#include "support/login_files.h"
#include "support/stub.h"

namespace {

class UpdateLdap : public XasLoginFilesTest {
  protected:
    UpdateLdap()
    {
        dir.write("openldap", "HOST old\n");
        dir.write("ldap", "old\n");
        dir.write("ldaptmpl", "host $(HOST)\n");
        std::filesystem::remove_all("/www/xml");
        std::filesystem::remove_all("/tmp/.save");
        std::filesystem::create_directories("/etc/openldap");
    }

    int update(const XasMessage &msg) { return handle(xasUpdateLdapCfg, msg, TYPES); }

    static void link(const char *name, const std::string &target)
    {
        std::filesystem::create_directories("/www/xml");
        ASSERT_EQ(::symlink(target.c_str(), (std::string{"/www/xml/"} + name).c_str()), 0);
    }

    static XasMessage message() { return XasMessageBuilder{XMSG_LDAP}.set("enabled", 1).set("server", "l1"); }

    const std::vector<std::string> TYPES = {"openldap", "ldap", "ldaptmpl", "nsswitch", "system-auth"};
    XasStubs stubs;
};

} // namespace

TEST_F(UpdateLdap, PointsToTheTlsMaterialOfTheWebFrontEndAndRunsNoConversion)
{
    stubs.put("/usr/bin/openssl");
    link("ldap_ca.lnk", "ca.pem");
    link("ldap_key.lnk", std::string(128, 'k'));
    EXPECT_EQ(update(message()), 0);
    EXPECT_EQ(dir.read("ldap"), "host l1 0.0.0.0\ntls_cacert /www/xml/ca.pem\ntls_key /www/xml/" +
                                    std::string(128, 'k') + "\n");
    EXPECT_EQ(xasModeOf(dir.path("ldap")), 0600U);
    EXPECT_THAT(stubs.calls(), IsEmpty());
}

TEST_F(UpdateLdap, HasTheTlsMaterialBetweenTheBindingAndTheMappings)
{
    link("ldap_cert.lnk", "c.pem");
    const XasMessage msg = XasMessageBuilder{XMSG_LDAP}.set(
        "enabled=1 server=l1 bind_with_login=1 port=636 encrypt=1 map_uid=cn map_posix_group=group "
        "map_member=member map_member_type=1");
    EXPECT_EQ(update(msg), 0);
    EXPECT_EQ(dir.read("ldap"), "host l1 0.0.0.0\n"
                                "\n# Non-standard option: insert current login into bind name\n"
                                "bind_with_login yes\n"
                                "\nssl on\n"
                                "tls_cert /www/xml/c.pem\n"
                                "\nnss_map_attribute uid cn\n"
                                "\nnss_map_objectclass posixGroup group\n"
                                "\nnss_map_attribute memberUID member\n");
}

TEST_F(UpdateLdap, SkipsWhatIsNoLinkAndCutsALongTarget)
{
    xasWriteFile("/www/xml/ldap_ca.lnk", "a file");
    link("ldap_cert.lnk", std::string(130, 'c'));
    EXPECT_EQ(update(message()), 0);
    EXPECT_EQ(dir.read("ldap"), "host l1 0.0.0.0\ntls_cert /www/xml/" + std::string(128, 'c') + "\n");
}

TEST_F(UpdateLdap, ConvertsTheTlsMaterialInFipsMode)
{
    xasWriteFile("/tmp/.save/fips_mode", "");
    xasWriteFile("/etc/openldap/ca.der", "old");
    stubs.put("/usr/bin/openssl", 0, "stat -c %a:%s $7 >>/tmp/while-converting; echo converted >$7");
    std::filesystem::remove("/tmp/while-converting");
    link("ldap_ca.lnk", "ca.pem");
    link("ldap_cert.lnk", "c;touch /tmp/owned");
    link("ldap_key.lnk", "key.pem");
    EXPECT_EQ(update(message()), 0);
    EXPECT_EQ(dir.read("ldap"),
              "host l1 0.0.0.0\n"
              "tls_cipher_suite AES256-SHA:AES256-SHA256:AES128-SHA:AES128-SHA256:AES256-GCM-SHA384:"
              "AES128-GCM-SHA256:DES-CBC3-SHA\n"
              "tls_cacert /etc/openldap/ca.der\n"
              "tls_cert /etc/openldap/cert.der\n"
              "tls_key /etc/openldap/key.der\n");
    EXPECT_THAT(stubs.calls(),
                ElementsAre(ElementsAre("/usr/bin/openssl", "x509", "-in", "/www/xml/ca.pem", "-outform",
                                        "der", "-out", "/etc/openldap/ca.der"),
                            ElementsAre("/usr/bin/openssl", "x509", "-in", "/www/xml/c;touch /tmp/owned",
                                        "-outform", "der", "-out", "/etc/openldap/cert.der"),
                            ElementsAre("/usr/bin/openssl", "rsa", "-in", "/www/xml/key.pem", "-outform",
                                        "der", "-out", "/etc/openldap/key.der")));
    EXPECT_FALSE(xasExists("/tmp/owned"));
    EXPECT_EQ(xasReadFile("/tmp/while-converting"), "600:0\n600:0\n600:0\n") << "never open to others";
    for (const char *file : {"ca", "cert", "key"}) {
        const std::string path = "/etc/openldap/" + std::string{file} + ".der";
        EXPECT_EQ(xasModeOf(path), 0600U) << file;
        EXPECT_EQ(xasReadFile(path), "converted\n") << file;
    }
}

TEST_F(UpdateLdap, LeavesOutWhatCannotBeConverted)
{
    xasWriteFile("/tmp/.save/fips_mode", "");
    for (const char *file : {"ca", "cert", "key"})
        xasWriteFile("/etc/openldap/" + std::string{file} + ".der", "old");
    stubs.put("/usr/bin/openssl", 1);
    for (const char *name : {"ldap_ca.lnk", "ldap_cert.lnk", "ldap_key.lnk"})
        link(name, "x.pem");
    EXPECT_EQ(update(message()), 0);
    EXPECT_EQ(dir.read("ldap"),
              "host l1 0.0.0.0\n"
              "tls_cipher_suite AES256-SHA:AES256-SHA256:AES128-SHA:AES128-SHA256:AES256-GCM-SHA384:"
              "AES128-GCM-SHA256:DES-CBC3-SHA\n");
    EXPECT_THAT(
        log.lines(),
        ElementsAre(xasErrorLine("Error converting LDAP TLS Certificate Authority file to DER format"),
                    xasErrorLine("Error converting LDAP TLS Certificate file to DER format"),
                    xasErrorLine("Error converting LDAP TLS Key file to DER format")));
    EXPECT_FALSE(xasExists("/etc/openldap/key.der"));
}
