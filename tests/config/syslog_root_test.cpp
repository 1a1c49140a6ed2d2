// A system logger reads the configuration that we write and files its lines by it.
#include "config/syslog.h"

#include "support/hosts.h"
#include "support/programs.h"
#include "support/stub.h"

#include <netinet/in.h>
#include <sys/socket.h>

namespace {

constexpr const char *OLD_TEXT = "# facility.level\tfile, or @host\n"
                                 "local0.info\t/var/log/network\n"
                                 "local3.debug\t/var/log/devports\n"
                                 "local5.info\t/var/log/general\n"
                                 "local0.*\t@192.0.2.1\n"
                                 "*.info;local0.none;local3.none;local5.none\t/var/log/messages\n";

/**
 * Sees what is sent to this machine over UDP. It listens beside the port, because the logger sends from the
 * same port that its lines go to.
 */
class UdpTap {
  public:
    UdpTap() : fd{::socket(AF_INET, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, IPPROTO_UDP)}
    {
        if (fd < 0)
            throw std::runtime_error{"cannot listen"};
    }
    ~UdpTap() { ::close(fd); }
    UdpTap(const UdpTap &) = delete;
    UdpTap &operator=(const UdpTap &) = delete;

    /** Everything received so far. */
    const std::string &received()
    {
        char datagram[2048];
        for (ssize_t got = 0; (got = ::recv(fd, datagram, sizeof datagram, 0)) > 0;)
            all.append(datagram, static_cast<std::size_t>(got)).append("\n");
        return all;
    }

  private:
    int fd;
    std::string all;
};

/** A logger with levels none (local0), warning (local3) and debug (local5), forwarding to 127.0.0.1. */
class SyslogProgram : public XasFilesTest {
  protected:
    UdpTap network;
    XasSyslogPayload sysLogInfo{};

    SyslogProgram()
    {
        const std::uint32_t levels[] = {0, 1, 1, 2, 1, 4};
        std::ranges::copy(levels, sysLogInfo.levels);
        sysLogInfo.remotes[0] = xasHostWithAddress("127.0.0.1");
        sysLogInfo.remotes[1] = xasNamedHost("");
        xasWriteFile("/etc/services", "syslog 514/udp\n");
    }

    void edit(const std::string &path)
    {
        XasReplyStatus reply;
        ASSERT_EQ(xasEditSyslogCfgFile(path.c_str(), &sysLogInfo, &reply), 0);
    }

    static void log(const std::string &priority, const std::string &text)
    {
        EXPECT_EQ(xasRunShell("logger -p " + priority + " " + text).exitStatus, 0);
    }

    static std::string fileWith(const std::string &path, std::string_view part)
    {
        EXPECT_TRUE(xasEventually([&] {
            return xasExists(path) && xasReadFile(path).find(part) != std::string::npos;
        })) << path;
        return xasReadFile(path);
    }
};

} // namespace

TEST_F(SyslogProgram, FilesAndForwardsLinesOfTheChosenLevelAndDropsTheRest)
{
    const std::string path = dir.write("syslog.conf", OLD_TEXT);
    edit(path);
    const XasBackgroundProgram syslogd{
        {xasUnpackedProgram("usr/sbin/syslogd"), "-n", "--no-klog", "-f", path}};
    ASSERT_TRUE(xasEventually([] { return xasExists("/dev/log"); })) << syslogd.output();

    log("local0.emerg", "network-emergency");
    log("local3.info", "device-info");
    log("local3.notice", "device-notice");
    log("local3.warning", "device-warning");
    log("local5.debug", "general-debug");

    EXPECT_THAT(fileWith("/var/log/general", "general-debug"), Not(HasSubstr("device")));
    const std::string devices = fileWith("/var/log/devports", "device-warning");
    EXPECT_THAT(devices, Not(HasSubstr("device-info")));
    EXPECT_THAT(devices, Not(HasSubstr("device-notice")));
    EXPECT_EQ(xasReadFile("/var/log/network"), "");

    ASSERT_TRUE(xasEventually([&] { return network.received().find("general-debug") != std::string::npos; }));
    EXPECT_THAT(network.received(), HasSubstr("device-warning"));
    EXPECT_THAT(network.received(), Not(HasSubstr("device-info")));
    EXPECT_THAT(network.received(), Not(HasSubstr("network-emergency")));
}
