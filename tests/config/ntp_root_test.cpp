// An NTP daemon reads the configuration that we write.
#include "config/ntp.h"

#include "support/hosts.h"
#include "support/programs.h"

namespace {

constexpr const char *OLD_TEXT = "# configuration for ntpd; see ntp.conf(5) for help\n"
                                 "driftfile /tmp/ntp.drift\n"
                                 "restrict default nomodify nopeer noquery\n"
                                 "restrict 127.0.0.1\n"
                                 "server 127.127.1.0\n"
                                 "fudge 127.127.1.0 stratum 10\n"
                                 "server 192.168.10.1 iburst\n"
                                 "server 192.168.10.2\n"
                                 "#server ntp.example.net\n"
                                 "#broadcastclient\n";

class NtpProgram : public XasFilesTest {
  protected:
    XasNtpPayload ntpInfo{.enabled = 1,
                          .sync = 1,
                          .poll = 0,
                          .servers = {xasHostWithAddress("10.0.0.1"), xasNamedHost("ntp.example.org"),
                                      xasHostWithAddress("2001:db8::7b")},
                          .single = xasHostWithAddress("10.0.0.1")};

    /** What the daemon says of a file while it starts. */
    [[nodiscard]] std::string report(const std::string &path) const
    {
        XasBackgroundProgram ntpd{{xasUnpackedProgram("usr/sbin/ntpd"), "-n", "-d", "-c", path}};
        EXPECT_TRUE(ntpd.await("Built with")) << ntpd.output();
        return ntpd.end();
    }

    [[nodiscard]] std::string reportOfEdited() const
    {
        const std::string path = dir.write("ntp.conf", OLD_TEXT);
        XasReplyStatus reply;
        EXPECT_EQ(xasEditNTPCfgFile(path.c_str(), &ntpInfo, &reply), 0);
        return report(path);
    }

    /** Where the daemon could not read on: "line 2, column 0". */
    static std::vector<std::string> complaints(const std::string &report)
    {
        std::vector<std::string> found;
        std::istringstream lines{report};
        for (std::string line; std::getline(lines, line);) {
            const std::size_t where = line.find(" line ", line.find("syntax error in"));
            if (line.find("syntax error in") != std::string::npos)
                found.push_back(line.substr(where + 1));
        }
        return found;
    }

    /** The servers that the daemon sets up, in the order of the file. */
    static std::vector<std::string> servers(const std::string &report)
    {
        constexpr std::string_view MOBILIZED = "mobilize assoc";
        std::vector<std::string> found;
        std::istringstream lines{report};
        for (std::string line; std::getline(lines, line);) {
            std::istringstream words{line};
            std::string event, at, time, name;
            words >> event >> at >> time >> name;
            if (event == "event" && line.find(" demobilize") == std::string::npos &&
                line.find(MOBILIZED) != std::string::npos)
                found.push_back(name);
        }
        return found;
    }
};

} // namespace

TEST_F(NtpProgram, SaysWhenItCannotReadALine)
{
    EXPECT_THAT(complaints(report(dir.write("ntp.conf", "server 10.0.0.1\nsever 10.0.0.2\n"))),
                ElementsAre("line 2, column 0"));
}

TEST_F(NtpProgram, PollsTheThreeServersInTheirOrder)
{
    const std::string report = reportOfEdited();
    EXPECT_THAT(complaints(report), IsEmpty());
    EXPECT_THAT(servers(report), ElementsAre("127.127.1.0", "10.0.0.1", "ntp.example.org", "2001:db8::7b"));
}

TEST_F(NtpProgram, PollsTheSingleServer)
{
    ntpInfo.poll = 1;
    const std::string report = reportOfEdited();
    EXPECT_THAT(complaints(report), IsEmpty());
    EXPECT_THAT(servers(report), ElementsAre("127.127.1.0", "10.0.0.1"));
}

/** The daemon here no longer knows broadcasts: the line, the tenth, is all that it complains of. */
TEST_F(NtpProgram, PollsNothingAsABroadcastClient)
{
    ntpInfo.sync = 0;
    const std::string report = reportOfEdited();
    EXPECT_THAT(complaints(report), ElementsAre("line 10, column 0"));
    EXPECT_THAT(servers(report), ElementsAre("127.127.1.0"));
}

TEST_F(NtpProgram, PollsNothingWithoutASync)
{
    ntpInfo.sync = 2;
    const std::string report = reportOfEdited();
    EXPECT_THAT(complaints(report), IsEmpty());
    EXPECT_THAT(servers(report), ElementsAre("127.127.1.0"));
}
