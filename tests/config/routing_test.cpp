// The static-route daemon's and the RIP daemon's files.
#include "config/routing.h"

#include "support/apps.h"
#include "support/eth.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"
#include "support/reply.h"

#include <arpa/inet.h>

namespace {

/** Files as the daemons themselves save them, with sections before and after ours. */
constexpr const char *LIFELIKE_ZEBRA = "!\n"
                                       "! Zebra configuration saved from vty\n"
                                       "#   hand-made: ip route 10.9.0.0/16 192.168.10.9\n"
                                       "hostname console\n"
                                       "password zebra\n"
                                       "!\n"
                                       "interface eth0\n"
                                       " no link-detect\n"
                                       "!\n"
                                       "ip route 10.20.0.0 255.255.0.0 192.168.10.254\n"
                                       "ip route 10.30.0.0 255.255.0.0 192.168.10.253\n"
                                       "ip forwarding\n"
                                       " ip route 10.40.0.0 255.255.0.0 192.168.10.252\n"
                                       "!\n"
                                       "line vty\n"
                                       " exec-timeout 10 0\n"
                                       "!\n";

constexpr const char *LIFELIKE_RIPD = "!\n"
                                      "! routing information protocol\n"
                                      "# saved by hand\n"
                                      "hostname console\n"
                                      "password zebra\n"
                                      "!\n"
                                      "interface lo\n"
                                      "!\n"
                                      "interface eth0\n"
                                      "  ip rip send version 2\n"
                                      "# inside a section\n"
                                      "  ip rip receive version 2\n"
                                      "!\n"
                                      "interface eth1\n"
                                      "  ip rip send version 2\n"
                                      "! the rest of it\n"
                                      "interface eth2\n"
                                      "  ip rip send version 2\n"
                                      "!\n"
                                      "router rip\n"
                                      "  network eth0\n"
                                      "  network 10.0.0.0/8\n"
                                      "!\n"
                                      "access-list 1 permit 10.0.0.0 0.255.255.255\n"
                                      "!\n"
                                      "line vty\n"
                                      " exec-timeout 10 0\n"
                                      "!\n";

/** What RIP adds in front of "line vty". */
std::string sections(const std::string &versions)
{
    return "interface eth0\n  ip rip send version " + versions + "\n  ip rip receive version " + versions +
           "\n!\ninterface eth1\n  ip rip send version " + versions + "\n  ip rip receive version " +
           versions + "\n!\nrouter rip\n  network eth0\n  network eth1\n!\n";
}

XasRoutingPayload staticRoutes(bool enabled)
{
    XasRoutingPayload routerCfg{};
    routerCfg.static_enabled = enabled ? 1 : 0;
    routerCfg.num_routes = 3;
    routerCfg.routes[0] = {xasTestIPv4("10.1.0.0"), xasTestIPv4("255.255.0.0"), xasTestIPv4("192.168.10.1")};
    routerCfg.routes[1] = {xasTestIPv4("10.2.0.0"), xasTestIPv4("255.255.255.0"),
                           xasTestIPv4("192.168.10.2")};
    routerCfg.routes[2] = {xasTestIPv4("10.3.4.5"), xasTestIPv4("255.255.255.255"),
                           xasTestIPv4("192.168.10.3")};
    return routerCfg;
}

XasRoutingPayload rip(bool enabled, std::uint32_t version = 0)
{
    XasRoutingPayload routerCfg{};
    routerCfg.rip_enabled = enabled ? 1 : 0;
    routerCfg.rip_version = version;
    return routerCfg;
}

/** The lines that staticRoutes() gives, unused routes included. */
std::string routeLines()
{
    std::string text = "ip route 10.1.0.0 255.255.0.0 192.168.10.1\n"
                       "ip route 10.2.0.0 255.255.255.0 192.168.10.2\n"
                       "ip route 10.3.4.5 255.255.255.255 192.168.10.3\n";
    for (int unused = 0; unused < 61; ++unused)
        text += "ip route 0.0.0.0 0.0.0.0 0.0.0.0\n";
    return text;
}

class RoutingUpdate : public XasFilesTest {
  protected:
    XasMessageBuilder message{XMSG_ROUTING};
    std::string zebra = dir.write("zebra.conf", "hostname a\n");
    std::string ripd = dir.write("ripd.conf", "line vty\n");
    XasCfgFileList files = xasTestCfgFiles({{"zebra", zebra}, {"ripd", ripd}});
    XasLogCapture log;
    XasReplyStatus reply;

    RoutingUpdate()
    {
        message.set("static_enabled=1 rip_enabled=1 rip_version=1 num_routes=3 route1.destination=10.1.0.0 "
                    "route1.mask=255.255.0.0 route1.gateway=192.168.10.1 route2.destination=10.2.0.0 "
                    "route2.mask=255.255.255.0 route2.gateway=192.168.10.2 route3.destination=10.3.4.5 "
                    "route3.mask=255.255.255.255 route3.gateway=192.168.10.3");
    }

    int update()
    {
        XasMessage msg = message;
        return xasUpdateRoutingCfg(&msg, &files, &reply);
    }
};

} // namespace

// The static-route daemon.

TEST(ZebraText, OfAnEmptyFileIsItsRoutes)
{
    EXPECT_EQ(xasZebraText("", staticRoutes(false)), "");
    EXPECT_EQ(xasZebraText("", staticRoutes(true)), routeLines());
}

TEST(ZebraText, HasItsRoutesForAnyNumberButZero)
{
    XasRoutingPayload routerCfg = staticRoutes(true);
    routerCfg.static_enabled = 0x80000000U;
    EXPECT_EQ(xasZebraText("", routerCfg), routeLines());
}

TEST(ZebraText, ReplacesTheRoutesOfAWholeFile)
{
    EXPECT_EQ(xasZebraText(LIFELIKE_ZEBRA, staticRoutes(true)),
              "!\n"
              "! Zebra configuration saved from vty\n"
              "#   hand-made: ip route 10.9.0.0/16 192.168.10.9\n"
              "hostname console\n"
              "password zebra\n"
              "!\n"
              "interface eth0\n"
              " no link-detect\n"
              "!\n"
              "ip forwarding\n"
              " ip route 10.40.0.0 255.255.0.0 192.168.10.252\n"
              "!\n"
              "line vty\n"
              " exec-timeout 10 0\n"
              "!\n" +
                  routeLines());
}

TEST(ZebraText, RemovesTheRoutesWhenStaticRoutingIsOff)
{
    EXPECT_EQ(
        xasZebraText("hostname a\nip route 10.0.0.0 255.0.0.0 10.0.0.1\nline vty\n", staticRoutes(false)),
        "hostname a\nline vty\n");
}

TEST(ZebraText, WritesAll64RoutesWhateverTheirCountSays)
{
    XasRoutingPayload routerCfg = staticRoutes(true);
    routerCfg.routes[63] = {xasTestIPv4("10.63.0.0"), xasTestIPv4("255.255.0.0"),
                            xasTestIPv4("192.168.10.63")};
    for (const std::uint32_t count : {0U, 1U, 64U, 0xFFFFFFFFU}) {
        routerCfg.num_routes = count;
        const std::string text = xasZebraText("", routerCfg);
        EXPECT_EQ(std::ranges::count(text, '\n'), 64) << count;
        EXPECT_TRUE(text.ends_with("\nip route 10.63.0.0 255.255.0.0 192.168.10.63\n")) << count;
    }
}

TEST(ZebraText, DropsEveryLineThatBeginsWithTheEightCharacters)
{
    EXPECT_EQ(xasZebraText("ip route\nip routes\nip route6 ::/0 x\n=ip route a\nip rout\nip  route a\n"
                           "#ip route a\n!ip route a\nno ip route a\n",
                           staticRoutes(false)),
              "ip rout\nip  route a\n#ip route a\n!ip route a\nno ip route a\n");
}

TEST(ZebraText, KeepsCarriageReturnsOfCopiedLines)
{
    EXPECT_EQ(xasZebraText("hostname a\r\nip route 1.0.0.0 255.0.0.0 10.0.0.1\r\n", staticRoutes(false)),
              "hostname a\r\n");
}

TEST(ZebraText, TakesALongLineInPiecesOf511Bytes)
{
    const std::string first = "description " + std::string(499, 'd');
    ASSERT_EQ(first.size(), 511U);
    EXPECT_EQ(xasZebraText(first + "ip route a\nline vty\n", staticRoutes(false)), first + "line vty\n");
}

TEST(ZebraText, DoesNotChangeWhenItIsWrittenTwice)
{
    for (const bool enabled : {false, true}) {
        const std::string once = xasZebraText(LIFELIKE_ZEBRA, staticRoutes(enabled));
        EXPECT_EQ(xasZebraText(once, staticRoutes(enabled)), once);
    }
}

TEST(ZebraText, JoinsTheFirstRouteToALastLineWithoutLineFeedAndThenKeepsIt)
{
    const std::string once = xasZebraText("line vty", staticRoutes(true));
    EXPECT_EQ(once, "line vty" + routeLines());
    const std::string twice = xasZebraText(once, staticRoutes(true));
    EXPECT_EQ(twice, "line vtyip route 10.1.0.0 255.255.0.0 192.168.10.1\n" + routeLines());
    EXPECT_EQ(xasZebraText(twice, staticRoutes(true)), twice);
}

// The RIP daemon.

TEST(RipdText, ReplacesTheSectionsOfAWholeFile)
{
    EXPECT_EQ(xasRipdText(LIFELIKE_RIPD, rip(true, 0)), "!\n"
                                                        "! routing information protocol\n"
                                                        "# saved by hand\n"
                                                        "hostname console\n"
                                                        "password zebra\n"
                                                        "!\n"
                                                        "interface lo\n"
                                                        "!\n"
                                                        "interface eth2\n"
                                                        "  ip rip send version 2\n"
                                                        "!\n"
                                                        "access-list 1 permit 10.0.0.0 0.255.255.255\n"
                                                        "!\n"
                                                        "interface eth0\n"
                                                        "  ip rip send version 1\n"
                                                        "  ip rip receive version 1\n"
                                                        "!\n"
                                                        "interface eth1\n"
                                                        "  ip rip send version 1\n"
                                                        "  ip rip receive version 1\n"
                                                        "!\n"
                                                        "router rip\n"
                                                        "  network eth0\n"
                                                        "  network eth1\n"
                                                        "!\n"
                                                        "line vty\n"
                                                        " exec-timeout 10 0\n"
                                                        "!\n");
}

TEST(RipdText, NamesTheVersionsByTheirIndex)
{
    EXPECT_EQ(xasRipdText("line vty\n", rip(true, 0)), sections("1") + "line vty\n");
    EXPECT_EQ(xasRipdText("line vty\n", rip(true, 1)), sections("2") + "line vty\n");
    for (const std::uint32_t version : {2U, 7U, 0xFFFFFFFFU})
        EXPECT_EQ(xasRipdText("line vty\n", rip(true, version)), sections("1 2") + "line vty\n") << version;
}

TEST(RipdText, AddsNoSectionsToAFileWithoutItsLine)
{
    for (const char *text : {"hostname a\n", "line vty 0\n", " line vty\n", "line vty\r\n", "#line vty\n",
                             "line vty=\n", "line vty"})
        EXPECT_EQ(xasRipdText(text, rip(true)), text);
}

TEST(RipdText, AddsSectionsInFrontOfEveryLineVty)
{
    EXPECT_EQ(xasRipdText("line vty\n!\nline vty\n", rip(true)),
              sections("1") + "line vty\n!\n" + sections("1") + "line vty\n");
}

TEST(RipdText, KeepsSectionsWhoseFirstLineIsAnother)
{
    constexpr std::string_view TEXT =
        " interface eth0\n!\ninterface eth0 \n!\ninterface eth00\n!\n"
        "interface eth0\r\n!\n#router rip\n!\nrouter ripng\n!\ninterface eth0=\n"
        "!\ninterface eth1";
    EXPECT_EQ(xasRipdText(TEXT, rip(false)), TEXT);
}

TEST(RipdText, DropsEverythingUpToTheEndOfAFileInASectionWithoutEnd)
{
    EXPECT_EQ(xasRipdText("hostname a\nrouter rip\n network eth0\ninterface eth0\nline vty\n", rip(true)),
              "hostname a\n");
}

TEST(RipdText, EndsADroppedSectionAtTheFirstLineThatBeginsWithAnExclamationMark)
{
    EXPECT_EQ(xasRipdText("router rip\n !\n#\n!! end\nhostname a\n", rip(false)), "hostname a\n");
}

TEST(RipdText, TakesALongLineInPiecesOf511Bytes)
{
    const std::string first = "description " + std::string(499, 'd');
    // The first piece has no line feed; the second is a whole "line vty" line.
    EXPECT_EQ(xasRipdText(first + "line vty\n", rip(true)), first + sections("1") + "line vty\n");
    EXPECT_EQ(xasRipdText("router rip\n" + first + "!\nhostname a\n", rip(false)), "hostname a\n");
}

TEST(RipdText, DoesNotChangeWhenItIsWrittenTwice)
{
    for (const bool enabled : {false, true}) {
        const std::string once = xasRipdText(LIFELIKE_RIPD, rip(enabled, 1));
        EXPECT_EQ(xasRipdText(once, rip(enabled, 1)), once);
    }
}

// The editors.

// The handler.

TEST_F(RoutingUpdate, DoesNotLookAtTheWordInFrontOfItsSwitches)
{
    message.set("start=1 static_enabled=0 rip_enabled=0");
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(dir.read("zebra.conf"), "hostname a\n");
    EXPECT_EQ(dir.read("ripd.conf"), "line vty\n");
}
