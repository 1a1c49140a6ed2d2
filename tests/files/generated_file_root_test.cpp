// What is left and logged when a file that is generated directly cannot be written: /dev/full stands in its
// place.
#include "auth/auth_order.h"
#include "auth/local_users.h"
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
    std::filesystem::create_directories("/etc/sysconfig");
    std::filesystem::create_symlink("/dev/full", "/etc/sysconfig/r58authconfig");
    EXPECT_EQ(xasWriteAuthenOrder({}), 1);
    EXPECT_THAT(log.lines(), ElementsAre(NOT_PRINTED));
    std::filesystem::remove("/etc/sysconfig/r58authconfig");
}

TEST_F(GeneratedFullDisk, FailsAUsersPortFile)
{
    std::filesystem::create_directories("/etc/zel");
    XasUserRecord user{};
    xasSetFieldText(user.login, "alice");
    XasReplyStatus reply;
    {
        const XasFault fault{"fwrite", ENOSPC};
        EXPECT_EQ(xasLocalUserPortFiles(&user, &reply), 1);
    }
    EXPECT_THAT(log.lines(), ElementsAre(NOT_PRINTED));
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    std::filesystem::remove("/etc/zel/alice.conf");
}

TEST_F(GeneratedFullDisk, LeavesTheListOfUsersWhenTheNewOneCannotBeWritten)
{
    stubs.put("/bin/deluser");
    xasWriteFile("/etc/passwd", "alice:x:501:100::/:/bin/sh\nbob:x:502:100::/:/bin/sh\n");
    xasWriteFile("/etc/.lusers", "alice\nbob\n");
    std::filesystem::create_symlink("/dev/full", "/etc/.lusers_tmp");
    EXPECT_EQ(xasDeleteLocalUsers("alice"), 1);
    EXPECT_THAT(stubs.lines(), ElementsAre("/bin/deluser alice"));
    EXPECT_EQ(xasReadFile("/etc/.lusers"), "alice\nbob\n");
    EXPECT_THAT(log.lines(), IsEmpty());
    std::filesystem::remove("/etc/.lusers_tmp");
    std::filesystem::remove("/etc/.lusers");
}
