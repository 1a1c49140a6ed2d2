#include "core/shell.h"

#include "support/faults.h"
#include "support/files.h"

namespace {

/** What the shell makes of one word appended by `append`. */
template <class Append>
std::string readBack(const XasTestDir &dir, Append append)
{
    // The file's path is plain; the command writes it as an argument of the shell itself would be.
    XasShellCommand command{"printf '[%s]' "};
    append(command);
    command.text(" > ").word(dir.path("out"));
    EXPECT_TRUE(xasSystem(command).exitedWell());
    return dir.read("out");
}

} // namespace

TEST(ShellCommand, LetsNoTextOfAMessageBeReadAsShellSyntax)
{
    const XasTestDir dir;
    for (const std::string text : {"; touch /tmp/pwned",
                                   "$(id)",
                                   "`id`",
                                   "a'b",
                                   "'",
                                   "\\",
                                   "a\nb",
                                   "a b",
                                   "*",
                                   "~",
                                   "&&",
                                   "|",
                                   "<",
                                   ">",
                                   "\"",
                                   "#",
                                   "!",
                                   "$HOME",
                                   "-n",
                                   "",
                                   "'; id; '",
                                   "\t"}) {
        EXPECT_EQ(readBack(dir, [&](auto &command) { command.word(text); }), "[" + text + "]");
        EXPECT_EQ(readBack(dir, [&](auto &command) { command.quoted(text); }), "[" + text + "]");
    }
}

TEST(ShellCommand, LeavesPlainWordsAsTheyStand)
{
    EXPECT_EQ(XasShellCommand{"run "}.word("azAZ09_-.,:/@%+=").str(), "run azAZ09_-.,:/@%+=");
    EXPECT_EQ(XasShellCommand{"run "}.word("a-b").str(), "run a-b");
}

TEST(ShellCommand, QuotesAnyOtherWord)
{
    EXPECT_EQ(XasShellCommand{"run "}.word("a b").str(), "run 'a b'");
    EXPECT_EQ(XasShellCommand{"run "}.word("").str(), "run ''");
    EXPECT_EQ(XasShellCommand{"run "}.word("-f").str(), "run '-f'");
    EXPECT_EQ(XasShellCommand{"run "}.word("it's").str(), "run 'it'\\''s'");
    EXPECT_EQ(XasShellCommand{"run "}.word("\xc3\xa9").str(), "run '\xc3\xa9'");
}

TEST(ShellCommand, QuotesOnRequestAlsoWhatIsPlain)
{
    EXPECT_EQ(XasShellCommand{"run "}.quoted("plain").str(), "run 'plain'");
    EXPECT_EQ(XasShellCommand{"run "}.quoted("it's").str(), "run 'it'\\''s'");
}

TEST(ShellCommand, IsBuiltInOrder)
{
    EXPECT_EQ(XasShellCommand{"/bin/x -p "}.number(-80).text(" -n ").word("name").str(),
              "/bin/x -p -80 -n name");
}

TEST(ShellCommand, IsCutToItsBufferWhenItIsPlain)
{
    XasShellCommand command{"0123456789"};
    EXPECT_TRUE(command.fit(11));
    EXPECT_EQ(command.str(), "0123456789");
    EXPECT_TRUE(command.fit(10));
    EXPECT_EQ(command.str(), "012345678");
}

TEST(ShellCommand, IsNeverCutWhenAWordNeededQuoting)
{
    XasShellCommand command{"run "};
    command.word("a b");
    EXPECT_TRUE(command.fit(10));
    EXPECT_FALSE(command.fit(9));
    EXPECT_EQ(command.str(), "run 'a b'");
}

TEST(ShellCommand, IsNotCutWhenAQuoteInsideWasEscaped)
{
    XasShellCommand command{"run "};
    command.quoted("a'b");
    EXPECT_FALSE(command.fit(5));
    EXPECT_EQ(command.str(), "run 'a'\\''b'");
}

TEST(System, GivesMinusOneWhenNoChildCanBeMade)
{
    const XasFault fault{"fork", EAGAIN};
    EXPECT_EQ(xasSystem(XasShellCommand{"true"}).waitStatus(), -1);
}

TEST(System, GivesMinusOneWhenTheChildCannotBeWaitedFor)
{
    const XasFault fault{"waitpid", ECHILD};
    EXPECT_EQ(xasSystem(XasShellCommand{"true"}).waitStatus(), -1);
}

TEST(System, GivesTheWaitStatusOfTheCommand)
{
    EXPECT_EQ(xasSystem(XasShellCommand{"exit 0"}).waitStatus(), 0);
    const int exited = xasSystem(XasShellCommand{"exit 3"}).waitStatus();
    EXPECT_TRUE(WIFEXITED(exited));
    EXPECT_EQ(WEXITSTATUS(exited), 3);
    const int killed = xasSystem(XasShellCommand{"kill -9 $$"}).waitStatus();
    EXPECT_TRUE(WIFSIGNALED(killed));
    EXPECT_EQ(WTERMSIG(killed), SIGKILL);
}

TEST(System, GivesTheShellsOwn127ForACommandThatItDoesNotFind)
{
    const XasExitStatus status = xasSystem(XasShellCommand{"/missing/program 2>/dev/null"});
    EXPECT_EQ(WEXITSTATUS(status.waitStatus()), 127);
    EXPECT_FALSE(status.shellNotRun());
}

TEST(System, TellsWhenTheShellWasNotRun)
{
    EXPECT_TRUE(XasExitStatus{-1}.shellNotRun());
    EXPECT_FALSE(XasExitStatus{0}.shellNotRun());
    EXPECT_FALSE(XasExitStatus{1 << 8}.shellNotRun());
    EXPECT_TRUE(XasExitStatus{0}.exitedWell());
    EXPECT_FALSE(XasExitStatus{1 << 8}.exitedWell());
    EXPECT_FALSE(XasExitStatus{SIGKILL}.exitedWell());
}

TEST(System, GivesTheCommandDefaultSignalsAndAnEmptyMask)
{
    const XasTestDir dir;
    ::signal(SIGPIPE, SIG_IGN);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, nullptr);
    XasShellCommand command{"grep -E '^Sig(Blk|Ign):' /proc/self/status > "};
    EXPECT_TRUE(xasSystem(command.word(dir.path("out"))).exitedWell());
    sigprocmask(SIG_UNBLOCK, &blocked, nullptr);
    EXPECT_EQ(dir.read("out"), "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n");
}
