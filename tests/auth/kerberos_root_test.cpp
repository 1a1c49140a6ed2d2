// The handler of Kerberos: what is its own beside what all settings share.
#include "auth/kerberos.h"

#include "support/login_files.h"

namespace {

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

} // namespace

TEST_F(UpdateKerberos, FailsForAHostsFileThatCannotBeEditedAndChangesTheOthers)
{
    std::filesystem::remove(dir.path("hosts"));
    EXPECT_EQ(update(message()), 1);
    expectReply(2, "Error opening /etc/hosts file");
    EXPECT_EQ(dir.read("krb5"), "realm R\n");
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
    std::filesystem::remove(dir.path("krb5tmpl"));
    EXPECT_EQ(update(message().set("enabled", 0)), 0);
    EXPECT_FALSE(dir.has("krb5"));
    EXPECT_EQ(dir.read("hosts"), "127.0.0.1 localhost\n10.0.0.44    kdc.x  kdc.x\n");
}
