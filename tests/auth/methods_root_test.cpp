// The handlers of NIS, LDAP, RADIUS, Kerberos and TACACS+: what is their own beside what all settings share.
#include "auth/kerberos.h"
#include "auth/ldap.h"
#include "auth/nis.h"
#include "auth/radius.h"
#include "auth/tacacs.h"
#include "support/hosts.h"
#include "support/login_files.h"
#include "support/reply.h"
#include "support/stub.h"

#include <unistd.h>

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

XasMessageBuilder nisMessage()
{
    return XasMessageBuilder{XMSG_NIS}.set("enabled=1 domain=eng master=nis0");
}

class UpdateNis : public XasLoginFilesTest {
  protected:
    UpdateNis()
    {
        dir.write("yp", "old\n");
        dir.write("network", "A=1\n");
        stubs.put("/bin/domainname");
    }

    int update(const XasMessage &msg) { return handle(xasUpdateNisCfg, msg, TYPES); }

    const std::vector<std::string> TYPES = {"yp", "network", "system-auth", "nsswitch"};
    XasStubs stubs;
};

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

class UpdateRadius : public XasLoginFilesTest {
  protected:
    UpdateRadius() { dir.write("radius", "# c\nold 1 2\n"); }

    const std::vector<std::string> TYPES = {"radius", "nsswitch", "system-auth"};
};

class UpdateKerberos : public XasLoginFilesTest {
  protected:
    UpdateKerberos()
    {
        dir.write("krb5tmpl", "realm $(REALM)\n");
        dir.write("krb5", "old\n");
        dir.write("hosts", "127.0.0.1 localhost\n");
    }

    int update(const XasMessage &msg) { return handle(xasUpdateKerberosCfg, msg, TYPES); }

    static XasMessageBuilder message()
    {
        return XasMessageBuilder{XMSG_KERBEROS}.set("enabled=1 realm=R kdc=kdc.x kdc_ip=10.0.0.44");
    }

    const std::vector<std::string> TYPES = {"krb5tmpl", "krb5", "nsswitch", "system-auth", "hosts"};
};

class UpdateTacacs : public XasLoginFilesTest {
  protected:
    UpdateTacacs()
    {
        dir.write("tacplustmpl", "server1 = $(SERVER_1)\n");
        dir.write("tacplus", "old\n");
    }

    int update(const XasMessage &msg) { return handle(xasUpdateTacacsCfg, msg, TYPES); }

    const std::vector<std::string> TYPES = {"tacplustmpl", "tacplus", "nsswitch", "system-auth"};
};

} // namespace

TEST_F(UpdateNis, WritesItsFilesAndStartsTheDomainProgramWithItsOwnName)
{
    EXPECT_EQ(update(nisMessage()), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(dir.read("yp"), "# /etc/yp.conf - ypbind configuration file\ndomain eng server nis0 \n"
                              "ypserver 0.0.0.0 \nypserver 0.0.0.0 \nypserver 0.0.0.0 \nypserver 0.0.0.0 \n"
                              "ypserver 0.0.0.0 \n");
    EXPECT_EQ(dir.read("network"), "A=1\nNISDOMAIN=eng");
    expectDerivedFiles();
    ASSERT_TRUE(stubs.await(1));
    EXPECT_EQ(stubs.calls().front().back(), "eng");
    EXPECT_EQ(stubs.calls().front().size(), 2U);
}

TEST_F(UpdateNis, StartsTheDomainProgramUnderItsBareName)
{
    std::filesystem::remove("/bin/domainname");
    std::filesystem::copy_file("/bin/sh", "/bin/domainname");
    xasWriteFile("/tmp/eng",
                 "tr '\\0' ' ' </proc/$$/cmdline >/tmp/eng.called && mv /tmp/eng.called /tmp/eng.words\n");
    EXPECT_EQ(update(XasMessageBuilder{XMSG_NIS}.set("domain", "/tmp/eng")), 0);
    ASSERT_TRUE(xasEventually([] { return xasExists("/tmp/eng.words"); }));
    EXPECT_EQ(xasReadFile("/tmp/eng.words"), "domainname /tmp/eng ");
}

TEST_F(UpdateNis, StartsNoDomainProgramForAnEmptyDomain)
{
    EXPECT_EQ(update(XasMessageBuilder{XMSG_NIS}), 0);
    EXPECT_EQ(dir.read("network"), "A=1\n");
    EXPECT_THAT(stubs.calls(), IsEmpty());
}

TEST_F(UpdateNis, GivesADomainWithShellCharactersToTheProgramAsOneWord)
{
    EXPECT_EQ(update(XasMessageBuilder{XMSG_NIS}.set("domain", "a b; touch /tmp/owned")), 0);
    ASSERT_TRUE(stubs.await(1));
    EXPECT_EQ(stubs.calls().front().back(), "a b; touch /tmp/owned");
    EXPECT_FALSE(xasExists("/tmp/owned"));
}

TEST_F(UpdateLdap, RemovesTheClientFileWhenDisabled)
{
    EXPECT_EQ(update(XasMessageBuilder{XMSG_LDAP}), 0);
    EXPECT_FALSE(dir.has("ldap"));
    EXPECT_EQ(dir.read("openldap"), "");
    expectDerivedFiles();
}

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
    stubs.put("/usr/bin/openssl", 0, "test ! -e /etc/openldap/ca.der && touch $7; shift 6; touch $1");
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
    EXPECT_EQ(xasModeOf("/etc/openldap/key.der"), 0600U);
    EXPECT_EQ(xasModeOf("/etc/openldap/ca.der"), 0644U);
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

TEST_F(UpdateRadius, WritesItsServers)
{
    const XasMessage msg = XasMessageBuilder{XMSG_RADIUS}.set(
        "enabled=1 server1=rad1 secret1=one port1=1812 server2=10.0.0.2 secret2=two port2=1645 timeout=7");
    EXPECT_EQ(handle(xasUpdateRadiusCfg, msg, TYPES), 0);
    EXPECT_EQ(dir.read("radius"), "# c\nrad1:1812   one    7\n10.0.0.2:1645    two    7\n");
    EXPECT_EQ(xasModeOf(dir.path("radius")), 0600U);
    EXPECT_THAT(log.lines(), IsEmpty());
    expectDerivedFiles();
}

TEST_F(UpdateKerberos, WritesItsFileAndTheHostsLine)
{
    EXPECT_EQ(update(message()), 0);
    EXPECT_EQ(dir.read("krb5"), "realm R\n");
    EXPECT_EQ(dir.read("hosts"), "127.0.0.1 localhost\n10.0.0.44    kdc.x  kdc.x\n");
    EXPECT_THAT(log.lines(), IsEmpty());
    expectDerivedFiles();
}

TEST_F(UpdateKerberos, NeedsNameAndAddressForAHostsLine)
{
    EXPECT_EQ(update(XasMessageBuilder{XMSG_KERBEROS}.set("enabled", 1).set("kdc", "kdc.x")), 0);
    EXPECT_EQ(update(XasMessageBuilder{XMSG_KERBEROS}.set("enabled", 1).set("kdc_ip", "77.0.0.0")), 0);
    EXPECT_EQ(dir.read("hosts"), "127.0.0.1 localhost\n");
    EXPECT_FALSE(dir.has("hosts.old"));
}

TEST_F(UpdateKerberos, RemovesItsFileWhenDisabledButStillWritesTheHostsLine)
{
    EXPECT_EQ(update(message().set("enabled", 0)), 0);
    EXPECT_FALSE(dir.has("krb5"));
    EXPECT_EQ(dir.read("hosts"), "127.0.0.1 localhost\n10.0.0.44    kdc.x  kdc.x\n");
}

TEST_F(UpdateTacacs, WritesItsFile)
{
    const XasMessage msg = XasMessageBuilder{XMSG_TACACS}.set("server1", "fd00::1");
    EXPECT_EQ(update(msg), 0);
    EXPECT_EQ(dir.read("tacplus"), "server1 = [fd00::1]\n");
    EXPECT_EQ(xasModeOf(dir.path("tacplus")), 0600U);
    EXPECT_THAT(log.lines(), IsEmpty());
    expectDerivedFiles();
}
