// The handler of NIS: what is its own beside what all settings share.
#include "auth/nis.h"

#include "support/login_files.h"
#include "support/stub.h"

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

TEST_F(UpdateNis, GivesADomainWithShellCharactersToTheProgramAsOneWord)
{
    EXPECT_EQ(update(XasMessageBuilder{XMSG_NIS}.set("domain", "a b; touch /tmp/owned")), 0);
    ASSERT_TRUE(stubs.await(1));
    EXPECT_EQ(stubs.calls().front().back(), "a b; touch /tmp/owned");
    EXPECT_FALSE(xasExists("/tmp/owned"));
}
