// The authentication order: its file in both forms, and reading it back.
#include "auth/auth_order.h"

#include "support/files.h"
#include "support/log.h"
#include "support/reply.h"

#include <tuple>

namespace {

/** Positions of local accounts, NIS, LDAP, RADIUS, SecurID, Kerberos and TACACS+. */
using Positions = std::array<std::uint8_t, 7>;

XasAuthPayload settings(const Positions &p)
{
    return {p[0], p[1], p[2], p[3], p[4], p[5], p[6], 77, 0x80000000U, 9};
}

XasAuthOrder orderOf(const Positions &p, std::uint32_t firstResponding)
{
    return {p[0], p[1], p[2], p[3], p[4], p[5], p[6], firstResponding};
}

auto valuesOf(const XasAuthOrder &order)
{
    return std::tuple{order.local,   order.nis,      order.ldap,   order.radius,
                      order.securid, order.kerberos, order.tacacs, order.firstResponding};
}

XasAuthOrder parsed(std::string_view text)
{
    XasAuthOrder order{};
    xasParseAuthOrder(text, order);
    return order;
}

class AuthOrderFile : public XasFilesTest {
  protected:
    int edit() { return xasEditAuthenOrderCfgFile(path.c_str(), &cfgAuth, &reply); }

    std::string path = dir.write("order", "# comment\nLOCAL=4\nOTHER=1\n");
    XasAuthPayload cfgAuth{};
    XasLogCapture log;
    XasReplyStatus reply;
};

} // namespace

TEST_F(AuthOrderFile, IsWrittenAnewWithTheFirstResponderInItsFirstLine)
{
    cfgAuth = settings({1, 2, 3, 4, 5, 6, 7});
    EXPECT_EQ(edit(), 0);
    EXPECT_EQ(dir.read("order"), "FIRSTRSP=1\nLOCAL=1\nNIS=2\nLDAP=3\nRADIUS=4\nSECURID=5\nKERBEROS=6\n"
                                 "TACACS=7\n");
    EXPECT_EQ(dir.read("order.old"), "# comment\nLOCAL=4\nOTHER=1\n");
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(AuthOrderFile, HasZeroForPositionsAboveSevenInTheFileAndInTheMessage)
{
    cfgAuth = settings({7, 8, 9, 10, 127, 128, 255});
    EXPECT_EQ(edit(), 0);
    EXPECT_EQ(dir.read("order"), "FIRSTRSP=1\nLOCAL=7\nNIS=0\nLDAP=0\nRADIUS=0\nSECURID=0\nKERBEROS=0\n"
                                 "TACACS=0\n");
    EXPECT_EQ(cfgAuth.local, 7);
    for (const std::uint8_t position :
         {cfgAuth.nis, cfgAuth.ldap, cfgAuth.radius, cfgAuth.securid, cfgAuth.kerberos, cfgAuth.tacacs})
        EXPECT_EQ(position, 0);
    EXPECT_EQ(cfgAuth.unused, 77);
    EXPECT_EQ(cfgAuth.start_nis, 9U);
}

TEST(AuthOrderText, HasBlanksInFourLinesAndNoFirstResponderWhenWrittenDirectly)
{
    EXPECT_EQ(xasAuthOrderText(orderOf({1, 2, 3, 4, 5, 6, 7}, 1)),
              "LOCAL=1\nNIS=2\nLDAP=3 \nRADIUS=4\nSECURID=5 \nKERBEROS=6 \nTACACS=7 \n");
    EXPECT_EQ(xasAuthOrderText({}),
              "LOCAL=0\nNIS=0\nLDAP=0 \nRADIUS=0\nSECURID=0 \nKERBEROS=0 \nTACACS=0 \n");
}

TEST(AuthOrderText, PrintsPositionsAsSignedNumbers)
{
    XasAuthOrder order{};
    order.nis = 0xFFFFFFFFU;
    EXPECT_EQ(xasAuthOrderText(order),
              "LOCAL=0\nNIS=-1\nLDAP=0 \nRADIUS=0\nSECURID=0 \nKERBEROS=0 \nTACACS=0 \n");
}

TEST(AuthOrderReader, TakesTheFormOfTheMessage)
{
    const auto order =
        parsed("FIRSTRSP=1\nLOCAL=2\nNIS=3\nLDAP=4\nRADIUS=5\nSECURID=6\nKERBEROS=7\nTACACS=1\n");
    EXPECT_EQ(valuesOf(order), std::tuple(2U, 3U, 4U, 5U, 6U, 7U, 1U, 1U));
}

TEST(AuthOrderReader, TakesTheFormOfTheDirectWriter)
{
    const XasAuthOrder written = orderOf({7, 6, 5, 4, 3, 2, 1}, 0);
    EXPECT_EQ(valuesOf(parsed(xasAuthOrderText(written))), valuesOf(written));
}

TEST(AuthOrderReader, LeavesAloneWhatTheFileDoesNotName)
{
    XasAuthOrder order{};
    order.radius = 5;
    order.firstResponding = 1;
    xasParseAuthOrder("LOCAL=1\n", order);
    EXPECT_EQ(valuesOf(order), std::tuple(1U, 0U, 0U, 5U, 0U, 0U, 0U, 1U));
    xasParseAuthOrder("", order);
    EXPECT_EQ(valuesOf(order), std::tuple(1U, 0U, 0U, 5U, 0U, 0U, 0U, 1U));
}

TEST(AuthOrderReader, IgnoresLinesOfOtherKeysAndKeysWithoutNumber)
{
    const auto order = parsed("# LOCAL=1\nlocal=1\nNIS\nLDAP=\nRADIUS=none\nXTACACS=4\n=7\n\nKERBEROS 3\n");
    EXPECT_EQ(valuesOf(order), std::tuple(0U, 0U, 0U, 0U, 0U, 0U, 0U, 0U));
}

TEST(AuthOrderReader, ComparesAKeyOverItsOwnLengthBehindLeadingBlanks)
{
    const auto order = parsed(" \t LOCALS=3\nNISPLUS = 4\nLDAP\t=\t 5 # six\n");
    EXPECT_EQ(valuesOf(order), std::tuple(3U, 4U, 5U, 0U, 0U, 0U, 0U, 0U));
}

TEST(AuthOrderReader, KeepsTheLastValueOfAKey)
{
    EXPECT_EQ(parsed("LDAP=1\nLDAP=6\n").ldap, 6U);
    EXPECT_EQ(parsed("LDAP=1\nLDAP=\n").ldap, 1U);
    EXPECT_EQ(parsed("LDAP=12\n").ldap, 12U) << "whatever its size";
}

TEST(AuthOrderReader, CutsALineAtItsFirstCarriageReturnAndNeedsNoLineFeed)
{
    EXPECT_EQ(parsed("LOCAL=3\r\nNIS=2").local, 3U);
    EXPECT_EQ(parsed("LOCAL=3\r\nNIS=2").nis, 2U);
    EXPECT_EQ(parsed("LOCAL=\r4\n").local, 0U);
}
