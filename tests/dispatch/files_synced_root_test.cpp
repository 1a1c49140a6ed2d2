// What was acknowledged survives a power cut: every file is synced before its rename, and every directory
// once before the acknowledgement is sent.
#include "files/sync.h"
#include "support/dispatcher_fixture.h"
#include "support/faults.h"

#include <filesystem>
#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class Acknowledgement : public XasDispatcherTest {
  protected:
    Acknowledgement() { xasSyncTouched(); }

    /** The calls while the message is processed. */
    std::vector<std::string> callsFor(const XasMessage &msg)
    {
        const XasCallOrder order;
        EXPECT_EQ(process(msg), 0);
        return {order.calls().begin() + 1, order.calls().end()}; // the first one is the test's own message
    }

    XasTestDir files;
};

} // namespace

TEST_F(Acknowledgement, ComesBehindTheSyncOfItsFilesAndOfTheirDirectoryOnce)
{
    const std::string resolv = files.write("resolv", "old\n");
    const std::string precedence = files.path("precedence");
    apps = xasTestAppList({{.name = "dns", .cfgFiles = {{"resolv", resolv}, {"dnsprec", precedence}}}});
    EXPECT_THAT(callsFor(xasPlainMessage(XMSG_DNS)),
                ElementsAre("fsync " + resolv + ".tmp", "rename " + resolv + ".old.tmp -> " + resolv + ".old",
                            "rename " + resolv + ".tmp -> " + resolv, "fsync " + precedence + ".tmp",
                            "rename " + precedence + ".tmp -> " + precedence, "fsync " + files.path(),
                            "msgsnd"));
    EXPECT_EQ(xasOutcomeIn(answer()), XAS_APPLIED);
}

TEST_F(Acknowledgement, OfAFailureComesBehindTheSyncOfWhatWasRolledBack)
{
    const std::string resolv = files.write("one/resolv", "old\n");
    files.write("two/precedence.tmp/inside", "");
    const std::string precedence = files.path("two/precedence");
    apps = xasTestAppList({{.name = "dns", .cfgFiles = {{"resolv", resolv}, {"dnsprec", precedence}}}});
    EXPECT_THAT(callsFor(xasPlainMessage(XMSG_DNS)),
                ElementsAre("fsync " + resolv + ".tmp", "rename " + resolv + ".old.tmp -> " + resolv + ".old",
                            "rename " + resolv + ".tmp -> " + resolv,
                            "rename " + resolv + ".old -> " + resolv, "fsync " + files.path("one"),
                            "msgsnd"));
    EXPECT_EQ(files.read("one/resolv"), "old\n");
    answer();
}

TEST_F(Acknowledgement, ComesBehindTheSyncOfTheDirectoryOfALink)
{
    files.write("zones/UTC", "TZif2");
    const std::string link = files.path("localtime");
    std::filesystem::create_symlink("old", link);
    apps = xasTestAppList(
        {{.name = "timezone", .cfgFiles = {{"tzpathbase", files.path("zones")}, {"cfglink", link}}}});
    EXPECT_THAT(callsFor(XasMessageBuilder{XMSG_TIMEZONE}.set("zone", "UTC")),
                ElementsAre("rename " + link + ".tmp -> " + link, "fsync " + files.path(), "msgsnd"));
    answer();
}
