// The timer file stands where others may make files.
#include "dispatch/ipfilter_timer.h"

#include "support/clock.h"
#include "support/files.h"
#include "support/ipfilter.h"
#include "support/stub.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sys/stat.h>

namespace {

constexpr const char *TIMER_FILE = "/tmp/.save/ipfilter-timer.txt";

/** The clock's wall time begins at 1000 s. */
class FilterTimerFile : public testing::Test {
  protected:
    FilterTimerFile()
    {
        stubs.put("/bin/iptables");
        std::filesystem::create_directories("/tmp/.save");
        std::filesystem::remove(TIMER_FILE);
    }
    ~FilterTimerFile() override { set(1, 0); }

    static void set(std::uint32_t enabled, std::int32_t minutes)
    {
        XasReplyStatus reply;
        const XasMessage msg = xasTestFirewallMessage(enabled, minutes);
        EXPECT_EQ(xasIPFilterTestTimer(&msg, &reply), 0);
    }

    XasTestClock clock;
    XasStubs stubs;
};

} // namespace

TEST_F(FilterTimerFile, IsMadeAnewAndFollowsNoLink)
{
    xasWriteFile("/tmp/.save/victim", "precious");
    std::filesystem::create_symlink("victim", TIMER_FILE);
    set(1, 2);
    EXPECT_EQ(xasReadFile("/tmp/.save/victim"), "precious");
    EXPECT_FALSE(std::filesystem::is_symlink(TIMER_FILE));
    EXPECT_EQ(xasReadFile(TIMER_FILE), "2 1000\n");
}

TEST_F(FilterTimerFile, IsReadableByAllAndWritableByItsOwnerAloneWhateverTheUmaskIs)
{
    for (const mode_t mask : {0U, 077U}) {
        const mode_t before = ::umask(mask);
        xasWriteFile(TIMER_FILE, "stale", 0666);
        set(1, 2);
        ::umask(before);
        EXPECT_EQ(xasModeOf(TIMER_FILE), 0644U);
    }
}
