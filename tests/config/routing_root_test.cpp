// Routing daemons check the configuration that we write. Of the daemons here, zebra no longer takes static
// routes, which are staticd's: both read the one file.
#include "config/routing.h"

#include "support/programs.h"

#include <arpa/inet.h>

namespace {

constexpr const char *REFUSED = "No such command on config line ";

class RoutingPrograms : public XasFilesTest {
  protected:
    XasRoutingPayload routerCfg{};

    RoutingPrograms()
    {
        xasWriteFile("/etc/group", "root:x:0:\nfrrvty:x:999:root\n");
        xasRunShell("mkdir -p /var/run/frr /var/tmp/frr");
    }

    /** What a daemon says of the file when it only checks it. */
    [[nodiscard]] static std::string check(const std::string &daemon, const std::string &path)
    {
        const XasProgramResult result =
            xasRunShell(xasUnpackedProgram("usr/lib/frr/" + daemon) + " -C -u root -g root -f " + path);
        EXPECT_EQ(result.exitStatus, 0) << result.output;
        return result.output;
    }

    [[nodiscard]] std::string zebraFile() const
    {
        std::string path = dir.write("zebra.conf", "! static routes\nhostname console\npassword zebra\n!\n"
                                                   "ip route 10.99.0.0 255.255.0.0 192.168.10.99\n"
                                                   "line vty\n exec-timeout 10 0\n!\n");
        XasReplyStatus reply;
        EXPECT_EQ(xasEditZebraCfgFile(path.c_str(), &routerCfg, &reply), 0);
        return path;
    }

    [[nodiscard]] std::string ripdFile() const
    {
        std::string path = dir.write("ripd.conf", "! routing information protocol\nhostname console\n"
                                                  "password zebra\n!\nrouter rip\n  network eth0\n!\n"
                                                  "access-list private permit 10.0.0.0/8\n!\n"
                                                  "line vty\n exec-timeout 10 0\n!\n");
        XasReplyStatus reply;
        EXPECT_EQ(xasEditRipdCfgFile(path.c_str(), &routerCfg, &reply), 0);
        return path;
    }
};

std::size_t count(const std::string &text, std::string_view part)
{
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

} // namespace

TEST_F(RoutingPrograms, SayWhenTheyCannotReadALine)
{
    EXPECT_THAT(check("staticd", dir.write("a.conf", "hostname a\nip rote 10.0.0.0 255.0.0.0 10.0.0.1\n")),
                HasSubstr(std::string{REFUSED} + "2"));
    EXPECT_THAT(check("ripd", dir.write("b.conf", "router rip\n  netwrk eth0\n")),
                HasSubstr(std::string{REFUSED} + "2"));
}

TEST_F(RoutingPrograms, TakeEveryLineOfTheStaticRoutes)
{
    routerCfg.static_enabled = 1;
    routerCfg.routes[0] = {
        {::inet_addr("10.1.0.0")}, {::inet_addr("255.255.0.0")}, {::inet_addr("192.168.10.1")}};
    routerCfg.routes[63] = {{::inet_addr("10.3.4.5")}, {0xFFFFFFFF}, {::inet_addr("192.168.10.3")}};
    const std::string path = zebraFile();
    const std::string report = check("staticd", path);
    EXPECT_THAT(report, Not(HasSubstr(REFUSED)));
    EXPECT_THAT(report, HasSubstr("10.1.0.0/16"));
    EXPECT_THAT(report, HasSubstr("10.3.4.5/32"));
    EXPECT_THAT(report, Not(HasSubstr("10.99.0.0/16")));

    const std::string zebra = check("zebra", path);
    EXPECT_EQ(count(zebra, REFUSED), 64U) << zebra;
    EXPECT_EQ(count(zebra, ": ip route "), 64U) << zebra;
}

TEST_F(RoutingPrograms, TakeEveryLineWithoutStaticRoutes)
{
    const std::string path = zebraFile();
    EXPECT_THAT(check("staticd", path), Not(HasSubstr(REFUSED)));
    EXPECT_THAT(check("zebra", path), Not(HasSubstr(REFUSED)));
}

TEST_F(RoutingPrograms, TakeEveryLineOfRipInEveryVersionAndWithoutRip)
{
    for (const std::uint32_t version : {0U, 1U, 7U}) {
        routerCfg.rip_enabled = 1;
        routerCfg.rip_version = version;
        EXPECT_THAT(check("ripd", ripdFile()), Not(HasSubstr(REFUSED))) << version;
    }
    routerCfg.rip_enabled = 0;
    EXPECT_THAT(check("ripd", ripdFile()), Not(HasSubstr(REFUSED)));
}
