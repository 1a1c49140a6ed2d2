// Records of random bytes and wrong sizes through the dispatcher, inside the test program: real queues, real
// files, time that passes only in waits.
#include "support/dispatcher_fixture.h"
#include "support/random_records.h"

#include <malloc.h>
#include <tuple>

#if defined(__SANITIZE_ADDRESS__)
#define XAS_LEAK_CHECK 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define XAS_LEAK_CHECK 1
#endif
#endif
#ifdef XAS_LEAK_CHECK
#include <sanitizer/lsan_interface.h>
#endif

namespace {

constexpr std::size_t RECORDS = 10000;

class RandomRecords : public XasDispatcherTest {
  protected:
    RandomRecords()
    {
        files.write("nameservers", "192.0.2.1\n");
        files.write("hosts", "127.0.0.1\tlocalhost.localdomain\tlocalhost\n::1\tlocalhost\n");
        files.write("hostname", "appliance\n");
        files.write("network", "NETWORKING=yes\nHOSTNAME=appliance\n");
        files.write("domain", "");
        apps = xasTestAppList(
            {{.name = "dns",
              .startScript = {},
              .stopScript = {},
              .exes = {},
              .cfgFiles = {{"resolv", files.path("nameservers")}, {"dnsprec", files.path("precedence")}}},
             {.name = "hostname",
              .startScript = {},
              .stopScript = {},
              .exes = {},
              .cfgFiles = {{"hosts", files.path("hosts")},
                           {"hostname", files.path("hostname")},
                           {"network", files.path("network")},
                           {"domain", files.path("domain")}}}});
        for (const char *program : {"/usr/bin/xas_iptables.sh", "/bin/iptables", "/usr/sbin/ipsec",
                                    "/bin/domainname", "/bin/adduser", "/bin/deluser"})
            stubs.put(program);
        // No script and no file: whatever else a handler finds to do, it does not take long.
        for (const char *name : {"eth",       "firewall", "router",   "ipsec",     "timezone",
                                 "ntp",       "snmp",     "nfs",      "samba",     "authentication",
                                 "localuser", "ypbind",   "ldap",     "radius",    "kerberos",
                                 "tacacs",    "xdd",      "xld",      "snmptrapd", "portmap",
                                 "xpb",       "user",     "userlist", "nat",       "netlink"})
            apps.emplace_back().name = name;
    }

    /**
     * Lets the dispatcher take records until it has taken `count` more. Some records ask for another one (a
     * list of local users, a question to the configuration server): there are always three on the queue.
     */
    void meet(XasRandomRecords &random, std::size_t count)
    {
        for (const std::size_t end = taken() + count; taken() < end;) {
            for (; queues.waiting() < 3; ++sent) {
                const XasRandomRecord record = random.next();
                queues.send(record.mtype, record.bytes);
            }
            processOne();
        }
    }

    /** Lets it take what is left, behind which harmless records are put for it to ask for. */
    void drain()
    {
        for (int i = 0; i < 2; ++i)
            queues.send(XasMessageBuilder{XMSG_SSH});
        while (queues.waiting() > 2)
            processOne();
        while (queues.waiting() > 0)
            processOne();
    }

    void processOne()
    {
        std::ignore = xasProcessMsg(apps, [](XasMessage &) { return XasIdleResult::failed; });
        while (queues.receive(std::chrono::milliseconds{0}))
            ++answers;
    }

    /** The memory allocated, but for the clock's own notes. */
    [[nodiscard]] std::size_t inUse() const
    {
        const auto info = ::mallinfo2();
        return info.uordblks + info.hblkhd - clock.waits().capacity() * sizeof(clock.waits().front());
    }

    [[nodiscard]] std::size_t taken() const { return sent - queues.waiting(); }

    XasTestDir files;
    std::size_t sent = 0;
    std::size_t answers = 0;
};

} // namespace

TEST_F(RandomRecords, LeaveTheDispatcherAtWorkWithNothingLeaked)
{
    constexpr unsigned SEED = 20040611;
    std::cout << "seed " << SEED << "\n";
    XasRandomRecords random{SEED};
    meet(random, RECORDS / 10);
    [[maybe_unused]] const std::size_t before = inUse();
    meet(random, RECORDS - RECORDS / 10);
#ifdef XAS_LEAK_CHECK
    EXPECT_EQ(__lsan_do_recoverable_leak_check(), 0);
#else
    EXPECT_LT(inUse(), before + 65536) << "the buffers that stay have had their size before";
#endif
    EXPECT_GT(answers, RECORDS / 4) << "most records of the right size are answered";
    drain();
    EXPECT_EQ(
        outcome(
            XasMessageBuilder{XMSG_HOSTNAME}.id(1).set("hostname", "console1").set("domain", "example.org")),
        "1 0 ");
    EXPECT_EQ(files.read("hostname"), "console1.example.org\n");
    EXPECT_EQ(files.read("domain"), "STATIC_DOMAIN=example.org\n");
}
