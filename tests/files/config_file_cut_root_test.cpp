// A replacement that is cut short at any system call leaves the live path with the whole old or the whole new
// content. A first run under strace counts the calls; then each one in turn fails, or is where SIGKILL
// strikes.
#include "support/small_disk.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>
#include <sys/mount.h>

namespace {

const std::string OLDER = "older 1\nolder 2\n";
const std::string OLD = "old 1\nold 2\nold 3\n";
const std::string NEW = "new 1\nnew 2\nnew 3\nnew 4\nnew 5\n";
const std::string EDITED = NEW + OLD;
const std::string NONE = "(no file)";

/** One system call of a run: the how many-th of its name. */
struct Call {
    std::string name;
    int number;
};

/** What stands at the paths when the work begins. */
struct Before {
    std::string live;
    std::string backup;
};

int run(const std::string &command)
{
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

class CutReplacement : public XasFilesTest {
  protected:
    CutReplacement()
    {
        // The leak check cannot work in a traced process.
        ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
    }

    void put(const Before &before)
    {
        for (const char *name : {"live.tmp", "live.old.tmp"})
            std::remove(dir.path(name).c_str());
        putOne("live", before.live);
        putOne("live.old", before.backup);
    }

    void putOne(const std::string &name, const std::string &text)
    {
        if (text == NONE)
            std::remove(dir.path(name).c_str());
        else
            dir.write(name, text);
    }

    std::string content(const std::string &name) { return dir.has(name) ? dir.read(name) : NONE; }

    int plainRun(const std::string &work)
    {
        return run(XAS_REPLACE_PATH " " + work + " " + dir.path("live"));
    }

    int tracedRun(const std::string &work, const std::string &options)
    {
        return run("exec strace -f -qq " + options + " -o " + dir.path("trace") + " " XAS_REPLACE_PATH " " +
                   work + " " + dir.path("live") + " 2>" + dir.path("errors"));
    }

    /** The calls that the work makes, in order. */
    std::vector<Call> callsOf(const std::string &work, const Before &before)
    {
        put(before);
        tracedRun(work, "");
        std::istringstream trace{dir.read("trace")};
        std::map<std::string, int> counts;
        std::vector<Call> calls;
        bool hasBegun = false;
        for (std::string pid, rest; trace >> pid && std::getline(trace >> std::ws, rest);) {
            const std::size_t parenthesis = rest.find('(');
            if (parenthesis == std::string::npos)
                continue;
            const std::string name = rest.substr(0, parenthesis);
            const int number = ++counts[name];
            if (hasBegun)
                calls.push_back({name, number});
            hasBegun = hasBegun || name == "getppid";
        }
        return calls;
    }

    /**
     * Cuts the work at each of its calls, by two errors and by SIGKILL. The live path must have one of the
     * contents `live`, and the new one if the work said that it succeeded; the backup one of `backups`. What
     * was left must not be in the way of the next replacement.
     */
    void cutEverywhere(const std::string &work, const Before &before, const std::set<std::string> &live,
                       const std::string &liveAfterSuccess, const std::set<std::string> &backups)
    {
        const std::vector<Call> calls = callsOf(work, before);
        ASSERT_GE(calls.size(), 3U) << dir.read("errors");
        for (const Call &call : calls) {
            for (const std::string how : {"error=EIO", "error=EPERM", "signal=KILL"}) {
                put(before);
                const std::string cut = call.name + ":" + how + ":when=" + std::to_string(call.number);
                const int status = tracedRun(work, "-e inject=" + cut);
                EXPECT_THAT(dir.read("trace"), AnyOf(HasSubstr("(INJECTED)"), HasSubstr("killed by SIGKILL")))
                    << cut;
                EXPECT_THAT(live, Contains(content("live"))) << cut;
                EXPECT_THAT(backups, Contains(content("live.old"))) << cut;
                if (status == 0) {
                    EXPECT_EQ(content("live"), liveAfterSuccess) << cut;
                }
                EXPECT_EQ(plainRun("make"), 0) << "after " << cut;
                EXPECT_EQ(content("live"), NEW) << "after " << cut;
            }
        }
    }
};

} // namespace

TEST_F(CutReplacement, LeavesTheOldOrTheNewContent)
{
    cutEverywhere("edit", {.live = OLD, .backup = NONE}, {OLD, EDITED}, EDITED, {NONE, OLD});
}

TEST_F(CutReplacement, LeavesTheEarlierOrTheNewBackup)
{
    cutEverywhere("edit", {.live = OLD, .backup = OLDER}, {OLD, EDITED}, EDITED, {OLDER, OLD});
}

TEST_F(CutReplacement, OfAFileThatIsWrittenAnewLeavesTheOldOrTheNewContent)
{
    cutEverywhere("make", {.live = OLD, .backup = OLDER}, {OLD, NEW}, NEW, {OLDER, OLD});
}

TEST_F(CutReplacement, OfAFileThatIsNotThereLeavesNoneOrAWholeOne)
{
    cutEverywhere("make", {.live = NONE, .backup = NONE}, {NONE, NEW}, NEW, {NONE});
}

TEST_F(CutReplacement, ThatIsAbandonedLeavesTheOldContent)
{
    cutEverywhere("abandon", {.live = OLD, .backup = OLDER}, {OLD}, OLD, {OLDER});
}

TEST_F(CutReplacement, OfARestoreLeavesTheOldOrTheNewContent)
{
    cutEverywhere("restore", {.live = NEW, .backup = OLD}, {OLD, NEW}, OLD, {NONE, OLD});
}

TEST_F(CutReplacement, TakesFewCallsWithOneWriteAndTwoSyncs)
{
    std::vector<Call> calls = callsOf("edit", {.live = OLD, .backup = OLDER});
#ifdef __SANITIZE_ADDRESS__ // it maps memory of its own for a block of a new size, and a stack that it gives
                            // back
    std::erase_if(calls, [](const Call &call) { return call.name == "mmap" || call.name == "sigaltstack"; });
#endif
    std::string names;
    for (const Call &call : calls)
        names += call.name + " ";
    EXPECT_LE(calls.size(), 22U) << names; // the last one is the exit
    const auto count = [&](const char *name) {
        return std::ranges::count(calls, name, &Call::name);
    };
    EXPECT_EQ(count("write"), 1);
    EXPECT_EQ(count("fsync"), 2) << "the file, and its directory when all is done";
}

TEST_F(CutReplacement, WithoutHardLinksStillReplaces)
{
    put({.live = OLD, .backup = OLDER});
    EXPECT_EQ(tracedRun("edit", "-e inject=link:error=EPERM"), 0);
    EXPECT_EQ(content("live"), EDITED);
    EXPECT_EQ(content("live.old"), OLD);
}

TEST_F(CutReplacement, WithoutHardLinksPutsTheOldContentBackWhenTheNewCannotBePut)
{
    put({.live = OLD, .backup = OLDER});
    EXPECT_EQ(tracedRun("edit", "-e inject=link:error=EPERM -e inject=rename:error=EIO:when=2"), 1);
    EXPECT_EQ(content("live"), OLD);
}

TEST_F(CutReplacement, ByAReadOnlyMediumChangesNothing)
{
    ASSERT_EQ(::mount("tmpfs", dir.path().c_str(), "tmpfs", 0, nullptr), 0);
    put({.live = OLD, .backup = OLDER});
    ASSERT_EQ(::mount(nullptr, dir.path().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    for (const char *work : {"edit", "make", "abandon", "restore"})
        EXPECT_EQ(plainRun(work), 1) << work;
    EXPECT_EQ(content("live"), OLD);
    EXPECT_EQ(content("live.old"), OLDER);
    EXPECT_THAT(dir.names(), ElementsAre("live", "live.old"));
    ::umount2(dir.path().c_str(), MNT_DETACH);
}

TEST_F(CutReplacement, ByAFullMediumLeavesTheOldContent)
{
    const XasSmallDisk disk;
    const std::string path = disk.write("live", OLD);
    EXPECT_EQ(run(XAS_REPLACE_PATH " edit " + path + " 1000"), 1) << "more than the 4096 bytes that fit";
    EXPECT_EQ(disk.read("live"), OLD);
    EXPECT_FALSE(disk.has("live.old"));
    EXPECT_EQ(run(XAS_REPLACE_PATH " edit " + path), 0);
    EXPECT_EQ(disk.read("live"), EDITED);
}
