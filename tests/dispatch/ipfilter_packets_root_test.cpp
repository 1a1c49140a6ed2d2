// Filter sets with the system's iptables: the chains that result, and what becomes of packets. The script is
// the one that the appliance ships; everything happens in the private root's own network.
#include "dispatch/ipfilter_assign.h"
#include "dispatch/ipfilter_enable.h"
#include "dispatch/ipfilter_set.h"

#include "support/far_host.h"
#include "support/ipfilter.h"
#include "support/programs.h"

using enum XasPacketFate;

namespace {

const std::string EMPTY = "-P INPUT ACCEPT\n-P FORWARD ACCEPT\n-P OUTPUT ACCEPT\n";

class FilterPacketsTest : public XasFilesTest {
  protected:
    FilterPacketsTest()
    {
        ::setenv("XMS_STORE", dir.path().c_str(), 1);
        xasWriteFile("/usr/bin/xas_iptables.sh", xasReadFile(XAS_SHIPPED_FILTER_SCRIPT), 0755);
        std::remove("/bin/iptables");
        std::filesystem::create_symlink("/usr/sbin/iptables", "/bin/iptables");
        std::filesystem::create_directories("/libexec");
        std::filesystem::create_directories("/run");
        std::error_code isThere;
        std::filesystem::create_symlink(extensions(), "/libexec/xtables", isThere);
        reset("resetAll");
        xasIPFilterNoteReset();
    }
    ~FilterPacketsTest() override
    {
        reset("resetAll");
        ::unsetenv("XMS_STORE");
    }

    static std::string extensions()
    {
        for (const auto &entry : std::filesystem::directory_iterator{"/usr/lib"}) {
            if (std::filesystem::exists(entry.path() / "xtables"))
                return entry.path() / "xtables";
        }
        throw std::runtime_error{"iptables has no extensions on this machine"};
    }

    static void reset(const std::string &how)
    {
        EXPECT_EQ(std::system(("/usr/bin/xas_iptables.sh " + how).c_str()), 0);
    }

    /** All chains and rules as commands that would make them. */
    static std::string rules() { return xasRunShell("/bin/iptables -S").output; }

    void set(std::string_view name, const std::vector<XasTestRule> &list,
             std::uint32_t action = XAS_FILTER_CREATE)
    {
        const XasMessage msg = xasTestFilterSetMessage(xasTestFilterSet(name, list, action));
        EXPECT_EQ(xasIPFilterSet(&msg, &reply), 0) << reply.rstr;
    }

    void assign(std::uint32_t type, std::uint8_t id, std::string_view name)
    {
        const XasMessage msg = xasTestAssignMessage(type, id, name);
        EXPECT_EQ(xasIPFilterAssign(&msg, &reply), 0) << name;
    }

    XasReplyStatus reply;
};

} // namespace

TEST_F(FilterPacketsTest, TheShippedScriptKnowsThreeResetsAndNoOther)
{
    const std::string make = "iptables -N a; iptables -A a -j DROP; iptables -A INPUT -i eth9 -j a";
    ASSERT_EQ(std::system(make.c_str()), 0);
    const std::string made = EMPTY + "-N a\n-A INPUT -i eth9 -j a\n-A a -j DROP\n";
    EXPECT_NE(std::system("/usr/bin/xas_iptables.sh resetSome 2>/dev/null"), 0);
    EXPECT_NE(std::system("/usr/bin/xas_iptables.sh 2>/dev/null"), 0);
    EXPECT_EQ(rules(), made);
    reset("resetNone");
    EXPECT_EQ(rules(), made);
    reset("resetInput");
    EXPECT_EQ(rules(), EMPTY + "-N a\n-A a -j DROP\n");
    reset("resetAll");
    EXPECT_EQ(rules(), EMPTY);
}

TEST_F(FilterPacketsTest, ASetBecomesAChainWithOneRuleForEachPort)
{
    set("office", {{.ip = "10.0.0.0", .masklength = 8, .protocol = 2, .portrange = "22,8000:8080"},
                   {.protocol = 3, .target = 1},
                   {.protocol = 4, .target = 2},
                   {.ip = "10.0.0.1", .rangeEnd = "10.0.0.9", .protocol = 5, .portrange = "161"},
                   {.protocol = 6},
                   {.protocol = 7, .target = 2},
                   {.protocol = 8},
                   {.ip = "0.0.0.0", .masklength = 0, .protocol = 1, .target = 2}});
    EXPECT_EQ(rules(),
              EMPTY + "-N office\n"
                      "-A office -s 10.0.0.0/8 -p tcp -m tcp --dport 22 -j ACCEPT\n"
                      "-A office -s 10.0.0.0/8 -p tcp -m tcp --dport 8000:8080 -j ACCEPT\n"
                      "-A office -s 192.0.2.1/32 -p tcp -m tcp --tcp-flags FIN,SYN,RST,ACK SYN "
                      "-j REJECT --reject-with icmp-port-unreachable\n"
                      "-A office -s 192.0.2.1/32 -p tcp -m tcp ! --tcp-flags FIN,SYN,RST,ACK SYN -j DROP\n"
                      "-A office -p udp -m iprange --src-range 10.0.0.1-10.0.0.9 -m udp --dport 161 "
                      "-j ACCEPT\n"
                      "-A office -s 192.0.2.1/32 -p icmp -j ACCEPT\n"
                      "-A office -s 192.0.2.1/32 -p icmp -m icmp --icmp-type 8 -j DROP\n"
                      "-A office -s 192.0.2.1/32 -p esp -j ACCEPT\n"
                      "-A office -j DROP\n");
}

TEST_F(FilterPacketsTest, AReplacedSetHasItsNewRulesOnlyAndARemovedOneNoChain)
{
    set("office", {{.protocol = 6}});
    set("lab", {});
    assign(1, 1, "office");
    assign(2, 3, "lab");
    set("office", {{.protocol = 5}}, XAS_FILTER_REPLACE);
    EXPECT_EQ(rules(), EMPTY + "-N lab\n-N office\n-A INPUT -i eth0 -j office\n-A INPUT -i ppp3 -j lab\n"
                               "-A office -s 192.0.2.1/32 -p udp -j ACCEPT\n");
    const XasMessage stored = xasTestAssignMessage(2, 3, "lab");
    dir.write("XMSG_IPFILTER_ASSIGN-2-3", xasMessageBytes(stored));
    set("office", {}, XAS_FILTER_REMOVE);
    EXPECT_EQ(rules(), EMPTY + "-N lab\n-A INPUT -i ppp3 -j lab\n");
}

TEST_F(FilterPacketsTest, AnInterfaceJumpsToItsSetAlone)
{
    set("office", {});
    set("lab", {});
    assign(2, 1, "office");
    assign(2, 10, "office");
    assign(1, 2, "lab");
    assign(2, 1, "lab");
    EXPECT_EQ(rules(), EMPTY + "-N lab\n-N office\n-A INPUT -i ppp10 -j office\n-A INPUT -i eth1 -j lab\n"
                               "-A INPUT -i ppp1 -j lab\n");
    assign(1, 2, "");
    EXPECT_EQ(rules(), EMPTY + "-N lab\n-N office\n-A INPUT -i ppp10 -j office\n-A INPUT -i ppp1 -j lab\n");
    const XasMessage unknown = xasTestAssignMessage(2, 10, "unknown");
    EXPECT_EQ(xasIPFilterAssign(&unknown, &reply), 1);
    EXPECT_EQ(rules(), EMPTY + "-N lab\n-N office\n-A INPUT -i ppp1 -j lab\n") << "the old one is gone";
}

TEST_F(FilterPacketsTest, TheAcceptAllRuleStandsBeforeAllJumps)
{
    set("office", {});
    assign(1, 1, "office");
    EXPECT_EQ(xasIPFilterEnable(false, &reply), 0);
    EXPECT_EQ(rules(), EMPTY + "-N office\n-A INPUT -j ACCEPT\n-A INPUT -i eth0 -j office\n");
    EXPECT_EQ(xasIPFilterEnable(true, &reply), 0);
    EXPECT_EQ(rules(), EMPTY + "-N office\n-A INPUT -i eth0 -j office\n");
}

TEST_F(FilterPacketsTest, ANameOfShellSyntaxIsOneChain)
{
    set("a;$(id)'b", {{.protocol = 1, .target = 2}});
    assign(1, 1, "a;$(id)'b");
    EXPECT_THAT(rules(), HasSubstr("a;$(id)"));
    EXPECT_THAT(xasRunShell("/bin/iptables -L INPUT -v -n").output, HasSubstr("a;$(id)'b"));
    assign(1, 1, "");
    EXPECT_THAT(xasRunShell("/bin/iptables -S INPUT").output, "-P INPUT ACCEPT\n");
}

TEST_F(FilterPacketsTest, PacketsPassWhereNothingIsAssigned)
{
    const XasFarHost far{{22}};
    set("office", {{.ip = "0.0.0.0", .masklength = 0, .protocol = 1, .target = 2}});
    EXPECT_EQ(far.connect("10.9.0.2", 22), passed);
    EXPECT_EQ(far.connect("10.9.0.2", 23), rejected) << "nobody listens";
    EXPECT_EQ(far.send("10.9.0.2", 22), passed);
    EXPECT_EQ(far.ping("10.9.0.2"), passed);
}

TEST_F(FilterPacketsTest, AddressesPrefixesAndRangesDecide)
{
    const XasFarHost far{{22}};
    set("office", {{.ip = "10.9.0.2", .protocol = 1},
                   {.ip = "10.9.0.4", .rangeEnd = "10.9.0.6", .protocol = 1, .target = 1},
                   {.ip = "10.9.0.8", .masklength = 31, .protocol = 1, .target = 2}});
    assign(1, 1, "office");
    EXPECT_EQ(far.connect("10.9.0.2", 22), passed);
    EXPECT_EQ(far.connect("10.9.0.3", 22), passed) << "before the range";
    EXPECT_EQ(far.connect("10.9.0.4", 22), rejected);
    EXPECT_EQ(far.ping("10.9.0.6"), rejected);
    EXPECT_EQ(far.connect("10.9.0.7", 22), passed) << "behind the range";
    EXPECT_EQ(far.connect("10.9.0.8", 22), dropped);
    EXPECT_EQ(far.ping("10.9.0.9"), dropped);
}

TEST_F(FilterPacketsTest, PortsAndProtocolsDecide)
{
    const XasFarHost far{{22, 80, 8001, 161}};
    const char *const all = "0.0.0.0";
    set("ports", {{.ip = all, .masklength = 0, .protocol = 2, .portrange = "22,8000:8080"},
                  {.ip = all, .masklength = 0, .protocol = 3, .target = 1},
                  {.ip = all, .masklength = 0, .protocol = 5, .portrange = "161", .target = 2},
                  {.ip = all, .masklength = 0, .protocol = 7, .target = 2}});
    assign(1, 1, "ports");
    EXPECT_EQ(far.connect("10.9.0.2", 22), passed);
    EXPECT_EQ(far.connect("10.9.0.2", 8001), passed);
    EXPECT_EQ(far.connect("10.9.0.2", 80), rejected);
    EXPECT_EQ(far.send("10.9.0.2", 161), dropped);
    EXPECT_EQ(far.send("10.9.0.2", 80), passed);
    EXPECT_EQ(far.ping("10.9.0.2"), dropped);
}

TEST_F(FilterPacketsTest, ADisabledFilterLetsEverythingThrough)
{
    const XasFarHost far{{22}};
    set("office", {{.ip = "0.0.0.0", .masklength = 0, .protocol = 1, .target = 2}});
    assign(1, 1, "office");
    EXPECT_EQ(far.connect("10.9.0.2", 22), dropped);
    ASSERT_EQ(xasIPFilterEnable(false, &reply), 0);
    EXPECT_EQ(far.connect("10.9.0.2", 22), passed);
    ASSERT_EQ(xasIPFilterEnable(true, &reply), 0);
    EXPECT_EQ(far.connect("10.9.0.2", 22), dropped);
}
