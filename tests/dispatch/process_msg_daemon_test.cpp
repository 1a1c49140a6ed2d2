// Records of random bytes and wrong sizes sent to the built daemon. It looks at its queue every 100 ms, so
// that these are a few hundred; tests/root/xas_random_records_test.cpp sends the ten thousand.
#include "support/daemon.h"
#include "support/random_records.h"
#include "support/settled_log.h"

#include <fstream>

namespace {

constexpr std::size_t RECORDS = 200;

/** The daemon's resident memory in kB. */
long residentKb(pid_t pid)
{
    std::ifstream file{"/proc/" + std::to_string(pid) + "/status"};
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("VmRSS:"))
            return std::stol(line.substr(6));
    }
    return -1;
}

/** Keeps records on the daemon's queue until it has taken `count`; throws away what it answers. */
void feed(const XasTestQueues &queues, XasRandomRecords &random, std::size_t count)
{
    for (std::size_t sent = 0; sent - queues.waiting() < count || sent < count;) {
        if (queues.waiting() < 3) {
            const XasRandomRecord record = random.next();
            queues.send(record.mtype, record.bytes);
            ++sent;
        }
        while (queues.receive(1ms)) {
        }
    }
}

/** Ends a wait for a second record, if there is one, and lets the daemon answer what is left. */
void drain(const XasTestQueues &queues)
{
    for (int i = 0; i < 2; ++i)
        queues.send(XasMessageBuilder{XMSG_SSH});
    ASSERT_TRUE(xasEventually([&] { return queues.waiting() == 0; }));
    while (queues.receive(300ms)) {
    }
}

} // namespace

TEST(DaemonRandomBytes, LeaveItAtWorkAndItsMemoryLevel)
{
    constexpr unsigned SEED = 20040612;
    std::cout << "seed " << SEED << "\n";
    XasRandomRecords random{SEED};
    XasTestDir files;
    XasTestDaemon daemon;
    // None of these applications has a script, and no setting here asks the configuration server anything.
    daemon.start({{.name = "dns",
                   .startScript = {},
                   .stopScript = {},
                   .exes = {},
                   .cfgFiles = {{"resolv", files.write("servers", "192.0.2.1\n")},
                                {"dnsprec", files.path("precedence")}}},
                  {.name = "eth"},
                  {.name = "ldap"},
                  {.name = "netlink"},
                  {.name = "nat"},
                  {.name = "xdd"},
                  {.name = "userlist"}});
    feed(*daemon.queues, random, RECORDS / 4);
    const long before = residentKb(daemon.pid());
    feed(*daemon.queues, random, RECORDS - RECORDS / 4);
    drain(*daemon.queues);
    EXPECT_TRUE(daemon.isAlive());
    EXPECT_LT(residentKb(daemon.pid()), before + 4096);
    EXPECT_EQ(daemon.errors(), "") << "nothing from a sanitizer";
    EXPECT_THAT(
        xasSettledLines(daemon.log),
        Contains(xasErrorLine("Expected 2488 bytes from queue, got 8000 bytes\n")).Times(testing::Gt(5U)));

    EXPECT_EQ(daemon.outcome(XasMessageBuilder{XMSG_DNS}.set("prefer_ipv4", 1)), XAS_APPLIED);
    EXPECT_EQ(files.read("precedence"), "IPV4_PRECEDENCE=yes");
}
