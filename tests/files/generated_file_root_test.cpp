// What is left and logged when a file that is generated directly cannot be written, or not be read before.
#include "auth/auth_order.h"
#include "auth/local_users.h"
#include "auth/nsswitch.h"
#include "auth/pam.h"
#include "auth/user_ports.h"
#include "support/faults.h"
#include "support/log.h"
#include "support/reply.h"
#include "support/stub.h"

namespace {

const XasLogLine NOT_PRINTED = xasErrorLine("Error printing line to file\n");

class GeneratedFullDisk : public testing::Test {
  protected:
    XasLogCapture log;
    XasStubs stubs;
};

} // namespace

TEST_F(GeneratedFullDisk, FailsTheOrderFile)
{
    xasWriteFile("/etc/sysconfig/r58authconfig", "LOCAL=1\n");
    {
        const XasFault fault{"fsync", EIO};
        EXPECT_EQ(xasWriteAuthenOrder({}), 1);
    }
    EXPECT_THAT(log.lines(), ElementsAre(NOT_PRINTED));
    EXPECT_EQ(xasReadFile("/etc/sysconfig/r58authconfig"), "LOCAL=1\n");
}

TEST_F(GeneratedFullDisk, FailsAUsersPortFile)
{
    xasWriteFile("/etc/zel/alice.conf", "old");
    XasUserRecord user{};
    xasSetFieldText(user.login, "alice");
    XasReplyStatus reply;
    {
        const XasFault fault{"fsync", EIO};
        EXPECT_EQ(xasLocalUserPortFiles(&user, &reply), 1);
    }
    EXPECT_THAT(log.lines(), ElementsAre(NOT_PRINTED));
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_EQ(xasReadFile("/etc/zel/alice.conf"), "old");
    std::filesystem::remove("/etc/zel/alice.conf");
}

TEST_F(GeneratedFullDisk, LeavesTheListOfUsersWhenTheNewOneCannotBeWritten)
{
    stubs.put("/bin/deluser");
    xasWriteFile("/etc/passwd", "alice:x:501:100::/:/bin/sh\nbob:x:502:100::/:/bin/sh\n");
    xasWriteFile("/etc/.lusers", "alice\nbob\n");
    {
        const XasFault fault{"fsync", EIO};
        EXPECT_EQ(xasDeleteLocalUsers("alice"), 1);
    }
    EXPECT_THAT(stubs.lines(), ElementsAre("/bin/deluser alice"));
    EXPECT_EQ(xasReadFile("/etc/.lusers"), "alice\nbob\n");
    EXPECT_THAT(log.lines(), IsEmpty());
    std::filesystem::remove("/etc/.lusers_tmp");
    std::filesystem::remove("/etc/.lusers");
}

TEST_F(GeneratedFullDisk, LeavesTheListOfUsersWhenALoginCannotBeAdded)
{
    xasWriteFile("/etc/.lusers", "alice\n");
    {
        const XasFault fault{"fsync", EIO};
        EXPECT_EQ(xasAddLocalUserToList("bob"), -1);
    }
    EXPECT_EQ(xasReadFile("/etc/.lusers"), "alice\n");
    EXPECT_THAT(log.lines(), IsEmpty());
    std::filesystem::remove("/etc/.lusers");
}

namespace {

/** It opens, but its first page cannot be read. */
constexpr const char *UNREADABLE = "/proc/self/mem";

const std::string ORDER = "/etc/sysconfig/r58authconfig";

class UnreadableFile : public GeneratedFullDisk {
  protected:
    UnreadableFile()
    {
        for (const std::string &path : {std::string{"/etc/.lusers"}, ORDER}) {
            std::filesystem::create_directories(std::filesystem::path{path}.parent_path());
            std::filesystem::remove(path);
            std::filesystem::create_symlink(UNREADABLE, path);
        }
    }
    ~UnreadableFile() override
    {
        std::filesystem::remove("/etc/.lusers");
        std::filesystem::remove(ORDER);
    }

    static XasLogLine notRead(const std::string &path)
    {
        return xasErrorLine("Error reading config file \"" + path + "\"\n");
    }

    XasTestDir dir;
};

} // namespace

TEST_F(UnreadableFile, OfUsersIsLeftAsItIsWithTheirAccounts)
{
    stubs.put("/bin/deluser");
    EXPECT_EQ(xasDeleteLocalUsers({}), -1);
    EXPECT_EQ(xasAddLocalUserToList("bob"), -1);
    EXPECT_THAT(log.lines(), ElementsAre(notRead("/etc/.lusers"), notRead("/etc/.lusers")));
    EXPECT_THAT(stubs.lines(), IsEmpty());
    EXPECT_EQ(std::filesystem::read_symlink("/etc/.lusers"), UNREADABLE);
    EXPECT_FALSE(xasExists("/etc/.lusers_tmp"));
}

TEST_F(UnreadableFile, OfTheOrderLeavesWhatIsDerivedFromIt)
{
    const std::string pam = dir.write("system-auth", "old pam\n");
    const std::string nsswitch = dir.write("nsswitch", "passwd: old\n");
    const XasPamModuleData moduleData;
    XasReplyStatus reply;
    EXPECT_EQ(xasBuildPamSystemAuth(pam.c_str(), &moduleData), 0);
    EXPECT_EQ(xasEditNsswitchCfgFile(nsswitch.c_str(), &reply), 0);
    EXPECT_THAT(log.lines(), ElementsAre(notRead(ORDER), notRead(ORDER)));
    EXPECT_EQ(dir.read("system-auth"), "old pam\n");
    EXPECT_EQ(dir.read("nsswitch"), "passwd: old\n");
    EXPECT_THAT(dir.names(), ElementsAre("nsswitch", "system-auth"));
}
