// The steps of the start that work on fixed places of the appliance.
#include "core/startup.h"

#include "core/utils.h"
#include "support/stub.h"

namespace {

class WorkDirs : public testing::Test {
  protected:
    WorkDirs()
    {
        std::filesystem::remove_all("/etc/zel");
        std::filesystem::remove_all("/usr/etc");
    }
};

} // namespace

TEST(PacketFilter, IsResetByItsScriptWhateverThatSays)
{
    XasStubs stubs;
    stubs.put("/usr/bin/xas_iptables.sh", 7);
    xasResetPacketFilter();
    EXPECT_THAT(stubs.lines(), ElementsAre("/usr/bin/xas_iptables.sh resetAll"));
}

TEST_F(WorkDirs, AreMadeSubjectToTheUmask)
{
    ::umask(022);
    xasMakeWorkDirs();
    EXPECT_EQ(xasIsDirectory("/etc/zel"), 1);
    EXPECT_EQ(xasModeOf("/etc/zel"), 0755U);
    std::filesystem::remove("/usr/etc");
    ::umask(0);
    xasMakeWorkDirs();
    EXPECT_EQ(xasModeOf("/usr/etc"), 0777U);
}

TEST_F(WorkDirs, ReplaceWhatStandsInTheirWay)
{
    xasWriteFile("/etc/zel", "a file\n");
    std::filesystem::create_symlink("/missing", "/usr/etc");
    xasMakeWorkDirs();
    EXPECT_EQ(xasIsDirectory("/etc/zel"), 1);
    EXPECT_EQ(xasIsDirectory("/usr/etc"), 1);
    EXPECT_FALSE(std::filesystem::is_symlink("/usr/etc"));
}

TEST_F(WorkDirs, ThatAreThereStayWithWhatTheyHold)
{
    xasWriteFile("/etc/zel/1.conf", "kept\n");
    std::filesystem::create_directory_symlink("/tmp", "/usr/etc");
    xasMakeWorkDirs();
    EXPECT_EQ(xasReadFile("/etc/zel/1.conf"), "kept\n");
    EXPECT_TRUE(std::filesystem::is_symlink("/usr/etc"));
}
