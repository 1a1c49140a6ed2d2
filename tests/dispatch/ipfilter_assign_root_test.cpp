// The assignment of filter sets: every command, with an iptables of the test that lists what it is told to.
#include "dispatch/ipfilter_assign.h"

#include "support/ipfilter.h"
#include "support/log.h"
#include "support/reply.h"
#include "support/shell.h"
#include "support/stub.h"

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
namespace {

const std::string IPTABLES = "XTABLES_LIBDIR=/libexec/xtables; export XTABLES_LIBDIR; /bin/iptables ";

std::string listCommand(const std::string &interface)
{
    return IPTABLES + "-L INPUT -v -n |grep " + interface + " > /tmp/xas_ipfilter.txt";
}

/** The lines of an INPUT chain, as iptables lists them. */
const std::string HEAD = "Chain INPUT (policy ACCEPT 0 packets, 0 bytes)\n"
                         " pkts bytes target     prot opt in     out     source               destination\n";

std::string jump(const std::string &target, const std::string &interface)
{
    return "    0     0 " + target + "  all  --  " + interface +
           "   *       0.0.0.0/0            0.0.0.0/0           \n";
}

class FilterAssignTest : public XasFilesTest {
  protected:
    FilterAssignTest() { list(""); }

    /** iptables lists these lines; other calls exit with `changes`. */
    void list(const std::string &lines, int changes = 0)
    {
        const std::string listing = dir.write("listing", HEAD + lines);
        stubs.put("/bin/iptables", changes, "[ \"$1\" != -L ] || { cat " + listing + "; exit 0; }");
    }

    int assign(std::uint32_t ifaceType, std::uint8_t ifaceId, std::string_view filterName)
    {
        reply = {};
        const XasMessage msg = xasTestAssignMessage(ifaceType, ifaceId, filterName);
        return xasIPFilterAssign(&msg, &reply);
    }

    XasStubs stubs;
    XasShellLines shell;
    XasLogCapture log;
    XasReplyStatus reply;
};

} // namespace

TEST_F(FilterAssignTest, IsRefusedWhenTheListingCannotBeRead)
{
    stubs.put("/bin/grep", 0, "rm /tmp/xas_ipfilter.txt");
    EXPECT_EQ(assign(1, 1, "office"), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error openning IP Filter temp file");
    EXPECT_THAT(shell.take(), ElementsAre(listCommand("eth0")));
    EXPECT_THAT(log.lines(), IsEmpty()) << "the handler logs the reason";
    std::remove("/bin/grep");
    ::symlink("/.host/usr/bin/grep", "/bin/grep");
}

TEST_F(FilterAssignTest, FailsWithoutAReasonWhenTheRuleCannotBeAdded)
{
    list("", 1);
    EXPECT_EQ(assign(1, 1, "office"), 1);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine(
                                 "Cannot add IP Filter office for interface eth0 from INPUT chain.\n")));
}

TEST_F(FilterAssignTest, FailsWhenALongNameThatNeedsQuotesDoesNotFit)
{
    const std::string name(200, ' ');
    EXPECT_EQ(assign(1, 1, name), 1);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Cannot add IP Filter " + name +
                                                      " for interface eth0 from INPUT chain.\n")));
    EXPECT_THAT(shell.take(), ElementsAre(listCommand("eth0")));
}

TEST_F(FilterAssignTest, GoesOnWhenARuleCannotBeRemoved)
{
    list(jump("one", "eth1") + jump("two", "eth1"), 1);
    EXPECT_EQ(assign(1, 2, ""), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(
        log.lines(),
        ElementsAre(xasErrorLine("Cannot remove IP Filter one for interface eth1 from INPUT chain.\n"),
                    xasErrorLine("Cannot remove IP Filter two for interface eth1 from INPUT chain.\n")));
}

TEST_F(FilterAssignTest, AddsOneJumpRuleToAnInterfaceWithoutAny)
{
    EXPECT_EQ(assign(1, 1, "office"), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(shell.take(), ElementsAre(listCommand("eth0"), IPTABLES + "-A INPUT -i eth0 -j office"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(FilterAssignTest, OnlyDetachesWithoutAName)
{
    list(jump("first", "eth0") + jump("lab", "eth1") + jump("old", "eth1") + jump("p", "ppp1"));
    EXPECT_EQ(assign(1, 2, ""), 0);
    EXPECT_THAT(shell.take(), ElementsAre(listCommand("eth1"), IPTABLES + "-D INPUT -i eth1 -j lab",
                                          IPTABLES + "-D INPUT -i eth1 -j old"));
}

TEST_F(FilterAssignTest, ReplacesTheRulesOfExactlyItsInterface)
{
    list(jump("ten", "ppp10") + jump("one", "ppp1") + jump("nineteen", "ppp19") + jump("again", "ppp1"));
    EXPECT_EQ(assign(2, 1, "new"), 0);
    EXPECT_THAT(shell.take(),
                ElementsAre(listCommand("ppp1"), IPTABLES + "-D INPUT -i ppp1 -j one",
                            IPTABLES + "-D INPUT -i ppp1 -j again", IPTABLES + "-A INPUT -i ppp1 -j new"));
}

TEST_F(FilterAssignTest, NamesTheInterfaceByTypeAndNumber)
{
    EXPECT_EQ(assign(1, 2, "s"), 0);
    EXPECT_EQ(assign(1, 0, "s"), 0);
    EXPECT_EQ(assign(1, 255, "s"), 0);
    EXPECT_EQ(assign(0, 7, "s"), 0);
    EXPECT_EQ(assign(2, 51, "s"), 0);
    EXPECT_EQ(assign(0xFFFFFFFF, 0, "s"), 0);
    EXPECT_THAT(shell.take(), ElementsAre(listCommand("eth1"), IPTABLES + "-A INPUT -i eth1 -j s",
                                          listCommand("eth-1"), IPTABLES + "-A INPUT -i eth-1 -j s",
                                          listCommand("eth254"), IPTABLES + "-A INPUT -i eth254 -j s",
                                          listCommand("ppp7"), IPTABLES + "-A INPUT -i ppp7 -j s",
                                          listCommand("ppp51"), IPTABLES + "-A INPUT -i ppp51 -j s",
                                          listCommand("ppp0"), IPTABLES + "-A INPUT -i ppp0 -j s"));
}

TEST_F(FilterAssignTest, LooksPastLinesWithFewerColumns)
{
    list("eth0\n a b c d e\n1 2 three 4 5 eth0\n\n");
    EXPECT_EQ(assign(1, 1, ""), 0);
    EXPECT_THAT(shell.take(), ElementsAre(listCommand("eth0"), IPTABLES + "-D INPUT -i eth0 -j three"));
}

TEST_F(FilterAssignTest, ReadsTheListing255CharactersAtATime)
{
    // The first piece ends within its fourth column; the second begins with "xx" and has a rule of its own.
    const std::string first = "1 2 three " + std::string(245, 'x');
    list(first + "xx 2 four 4 5 eth0 eth0\n");
    EXPECT_EQ(assign(1, 1, ""), 0);
    EXPECT_THAT(shell.take(), ElementsAre(listCommand("eth0"), IPTABLES + "-D INPUT -i eth0 -j four"));
}

TEST_F(FilterAssignTest, NeverReadsAnEarlierListing)
{
    xasWriteFile("/tmp/xas_ipfilter.txt", jump("stale", "eth0"));
    EXPECT_EQ(assign(1, 1, ""), 0);
    EXPECT_THAT(shell.take(), ElementsAre(listCommand("eth0")));
    EXPECT_EQ(xasReadFile("/tmp/xas_ipfilter.txt"), "");
}

TEST_F(FilterAssignTest, MakesItsListingAnewWhateverStandsThere)
{
    const std::string other = dir.write("other", "kept");
    std::remove("/tmp/xas_ipfilter.txt");
    ASSERT_EQ(::symlink(other.c_str(), "/tmp/xas_ipfilter.txt"), 0);
    list(jump("lab", "eth1"));
    EXPECT_EQ(assign(1, 2, ""), 0);
    EXPECT_EQ(xasReadFile(other), "kept");
    EXPECT_EQ(xasReadFile("/tmp/xas_ipfilter.txt"), jump("lab", "eth1"));
}

TEST_F(FilterAssignTest, IsRefusedWithoutACommandWhereItsListingCannotBeMade)
{
    std::remove("/tmp/xas_ipfilter.txt");
    xasWriteFile("/tmp/xas_ipfilter.txt/inside", "kept");
    EXPECT_EQ(assign(1, 1, "office"), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error openning IP Filter temp file");
    EXPECT_THAT(shell.take(), IsEmpty());
    EXPECT_EQ(xasReadFile("/tmp/xas_ipfilter.txt/inside"), "kept");
    std::filesystem::remove_all("/tmp/xas_ipfilter.txt");
}

TEST_F(FilterAssignTest, KeepsItsListingFromBeingWrittenByOthersWhateverTheUmaskIs)
{
    const mode_t before = ::umask(0);
    std::remove("/tmp/xas_ipfilter.txt");
    EXPECT_EQ(assign(1, 1, ""), 0);
    EXPECT_EQ(xasModeOf("/tmp/xas_ipfilter.txt"), 0644U);
    ::umask(before);
}

TEST_F(FilterAssignTest, CutsALongPlainCommandAtItsBuffer)
{
    EXPECT_EQ(assign(1, 1, std::string(1000, 'x')), 0);
    const std::string begin = IPTABLES + "-A INPUT -i eth0 -j ";
    EXPECT_THAT(shell.take(), ElementsAre(listCommand("eth0"), begin + std::string(255 - begin.size(), 'x')));
}

TEST_F(FilterAssignTest, LetsNoNameReachTheShell)
{
    using Words = std::vector<std::string>;
    const Words listing{"/bin/iptables", "-L", "INPUT", "-v", "-n"};
    for (const std::string text : {";touch /tmp/own", "$(touch /tmp/own)", "`id`>/tmp/own", "a'b\"c", "'",
                                   "\\", "a b\tc", "a\nid\n", "-j", "*", "&& id", "#x", "!"}) {
        stubs.forget();
        ASSERT_EQ(assign(1, 1, text), 0) << text;
        EXPECT_THAT(stubs.calls(),
                    ElementsAre(listing, Words{"/bin/iptables", "-A", "INPUT", "-i", "eth0", "-j", text}));
    }
    list(jump(";id", "eth0") + jump("$(id)", "eth0") + jump("-F", "eth0"));
    stubs.forget();
    ASSERT_EQ(assign(1, 1, ""), 0);
    EXPECT_THAT(stubs.calls(),
                ElementsAre(listing, Words{"/bin/iptables", "-D", "INPUT", "-i", "eth0", "-j", ";id"},
                            Words{"/bin/iptables", "-D", "INPUT", "-i", "eth0", "-j", "$(id)"},
                            Words{"/bin/iptables", "-D", "INPUT", "-i", "eth0", "-j", "-F"}));
    EXPECT_FALSE(xasExists("/tmp/own"));
}
