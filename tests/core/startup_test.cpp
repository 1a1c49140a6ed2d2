#include "core/startup.h"

#include "support/clock.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"

#include <getopt.h>

namespace {

constexpr const char *USAGE = "xasd [-f] [-h] [-v] -[c file]\n"
                              "\t\t -c file    : the xml conf file to use if not default\n"
                              "              \t\t -f    : do not run as daemon\n"
                              "              \t\t -v, -h  : print version and show this help respectively.\n";

/** The options of a command line, and what reading them printed. */
struct Parsed {
    XasOptions options;
    std::string output;
};

Parsed parse(std::vector<std::string> words)
{
    words.insert(words.begin(), "xasd");
    std::vector<char *> arguments;
    for (std::string &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    ::optind = 0; // begins anew
    ::opterr = 0;
    testing::internal::CaptureStdout();
    const XasOptions options = xasParseOptions(static_cast<int>(words.size()), arguments.data());
    return {options, testing::internal::GetCapturedStdout()};
}

} // namespace

TEST(Options, AreTheDefaultsWithoutArguments)
{
    const Parsed parsed = parse({});
    EXPECT_EQ(parsed.options.listPath, "/r58/sysapp.xml");
    EXPECT_TRUE(parsed.options.asDaemon);
    EXPECT_FALSE(parsed.options.exitAtOnce);
    EXPECT_EQ(parsed.output, "");
}

TEST(Options, ThatAreUnknownAreSaidToBeAndReadingGoesOn)
{
    const Parsed parsed = parse({"-x", "--nothing", "-f"});
    EXPECT_EQ(parsed.output, "unknown option\nunknown option\n");
    EXPECT_FALSE(parsed.options.asDaemon);
    EXPECT_FALSE(parsed.options.exitAtOnce);
}

TEST(Options, LackingTheirFileAreUnknown)
{
    const Parsed parsed = parse({"-f", "-c"});
    EXPECT_EQ(parsed.output, "unknown option\n");
    EXPECT_EQ(parsed.options.listPath, "/r58/sysapp.xml");
}

TEST(Options, NameAnotherList)
{
    EXPECT_EQ(parse({"-c", "/a"}).options.listPath, "/a");
    EXPECT_EQ(parse({"-c/b"}).options.listPath, "/b");
    EXPECT_EQ(parse({"--conf", "/c"}).options.listPath, "/c");
    EXPECT_EQ(parse({"--conf=/d"}).options.listPath, "/d");
}

TEST(Options, KeepTheProgramInTheForegroundByTheLongOptionDaemonToo)
{
    EXPECT_FALSE(parse({"-f"}).options.asDaemon);
    EXPECT_FALSE(parse({"--daemon"}).options.asDaemon);
}

TEST(Options, PrintTheUsageAndEnd)
{
    for (const char *option : {"-h", "--help"}) {
        const Parsed parsed = parse({option});
        EXPECT_EQ(parsed.output, USAGE);
        EXPECT_TRUE(parsed.options.exitAtOnce);
    }
}

TEST(Options, PrintNothingForTheVersionAndEndAtOnce)
{
    for (const char *option : {"-v", "--version"}) {
        const Parsed parsed = parse({option, "-h", "-x"});
        EXPECT_EQ(parsed.output, "");
        EXPECT_TRUE(parsed.options.exitAtOnce);
    }
}

TEST(OpenAppList, NamesTheErrorOfAListThatCannotBeRead)
{
    XasAppList apps;
    testing::internal::CaptureStderr();
    EXPECT_NE(xasOpenAppList("/missing/list", apps), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "/missing/list access error(2)\n");
}

TEST(OpenAppList, SaysThatAListIsNoList)
{
    const XasLogCapture log;
    const XasTestDir dir;
    XasAppList apps;
    testing::internal::CaptureStderr();
    EXPECT_NE(xasOpenAppList(dir.write("list", "no list\n"), apps), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Error allocating application list\n");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("XML Parse error at line 1: syntax error\n")));
}

TEST(OpenAppList, LoadsTheList)
{
    const XasTestDir dir;
    XasAppList apps;
    EXPECT_EQ(xasOpenAppList(dir.write("list", "<S><APP><NAME>a</NAME></APP></S>"), apps), 0);
    EXPECT_EQ(apps.size(), 1U);
}

TEST(Detach, FailsWithStatus1WhenThereCanBeNoChild)
{
    const XasFault fault{"fork", EAGAIN};
    testing::internal::CaptureStderr();
    EXPECT_EQ(xasDetach(), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "fork error: Resource temporarily unavailable\n");
}

TEST(Detach, EndsTheParentWithStatus0AndGoesOnInASessionOfItsOwn)
{
    const XasTestDir dir;
    const std::string seen = dir.path("seen");
    const pid_t pid = ::fork();
    if (pid == 0) {
        const auto status = xasDetach();
        if (status)
            ::_exit(*status);
        const mode_t mask = ::umask(0);
        const bool ownSession = ::getsid(0) == ::getpid();
        char directory[16] = {};
        const bool inRoot = ::getcwd(directory, sizeof directory) != nullptr && directory == std::string{"/"};
        xasWriteFile(seen + ".new", ownSession && inRoot && mask == 0 ? "as it should be" : "otherwise");
        ::rename((seen + ".new").c_str(), seen.c_str());
        ::_exit(0);
    }
    int status = -1;
    ::waitpid(pid, &status, 0);
    EXPECT_EQ(status, 0);
    for (int tries = 0; tries < 5000 && !xasExists(seen); ++tries)
        ::usleep(1000);
    EXPECT_EQ(xasReadFile(seen), "as it should be");
}

TEST(AwaitQueues, TriesEverySecond)
{
    XasTestClock clock;
    const XasLogCapture log;
    // Three tries without the first queue, then both are there.
    const XasFault missing{"msgget", ENOENT, 0, XAS_ALWAYS};
    clock.at(std::chrono::milliseconds{2500}, [] { throw std::runtime_error{"enough"}; });
    EXPECT_THROW(xasAwaitMsgQueues(), std::runtime_error);
    const XasLogLine line{LOG_ERR, "auth/err-Error getting MSGQ_APP_TO_XMS message queue\n"};
    EXPECT_THAT(log.lines(), ElementsAre(line, line, line));
}

TEST(TerminateDeathTest, ReleasesTheApplicationsAndKillsTheProcessGroup)
{
    const XasLogCapture log;
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::setsid();
        XasAppList apps(3);
        xasTerminate(apps);
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(pid, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGKILL);
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("sig Terminated - kill all processes\n")));
}
