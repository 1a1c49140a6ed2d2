// The built daemon's command line and exit statuses.
#include "support/daemon.h"

namespace {

std::string usage()
{
    return xasDaemonPath() +
           std::string{" [-f] [-h] [-v] -[c file]\n"
                       "\t\t -c file    : the xml conf file to use if not default\n"
                       "              \t\t -f    : do not run as daemon\n"
                       "              \t\t -v, -h  : print version and show this help respectively.\n"};
}

void expectEnd(const std::vector<std::string> &arguments, int exitStatus, const std::string &output,
               const std::string &errorsEnd)
{
    const XasRunResult result = xasRunDaemonProgram(arguments);
    EXPECT_EQ(result.exitStatus, exitStatus);
    EXPECT_EQ(result.output, output);
    EXPECT_THAT(result.errors, EndsWith(errorsEnd));
    if (errorsEnd.empty()) {
        EXPECT_EQ(result.errors, "");
    }
}

} // namespace

TEST(DaemonCommandLine, FailsWhenTheDefaultListIsNotThere)
{
    expectEnd({}, 255, "", "/r58/sysapp.xml access error(2)\n");
    expectEnd({"-f"}, 255, "", "/r58/sysapp.xml access error(2)\n");
}

TEST(DaemonCommandLine, NamesTheErrorNumberOfAnUnreadableList)
{
    expectEnd({"-c", "/etc/passwd/list"}, 255, "", "/etc/passwd/list access error(20)\n");
}

TEST(DaemonCommandLine, SaysUnknownOptionAndGoesOn)
{
    const std::string unknown = "unknown option\n";
    expectEnd({"-x", "-c", "/missing"}, 255, unknown, "/missing access error(2)\n");
    expectEnd({"--wrong", "-x", "-c", "/missing"}, 255, unknown + unknown, "/missing access error(2)\n");
    expectEnd({"-c"}, 255, unknown, "/r58/sysapp.xml access error(2)\n");
}

TEST(DaemonCommandLine, PrintsTheUsage)
{
    expectEnd({"-h"}, 0, usage(), "");
    expectEnd({"--help"}, 0, usage(), "");
    expectEnd({"-f", "-c", "/missing", "-h", "-x"}, 0, usage(), "");
}

TEST(DaemonCommandLine, PrintsNothingForTheVersion)
{
    expectEnd({"-v"}, 0, "", "");
    expectEnd({"--version"}, 0, "", "");
    expectEnd({"-v", "-h"}, 0, "", "");
}

TEST(DaemonCommandLine, TakesTheLastListNamed)
{
    expectEnd({"-c", "/first", "--conf", "/second"}, 255, "", "/second access error(2)\n");
    expectEnd({"--conf=/third", "--daemon"}, 255, "", "/third access error(2)\n");
}
