#include "xms/describe.h"

#include "support/test.h"

namespace {

std::string describe(std::uint32_t msgtype)
{
    return xmsDescribeText(msgtype, XmsPaint::plain);
}

} // namespace

TEST(XmsDescribe, ATypeThatIsNotDescribedSaysSo)
{
    EXPECT_EQ(describe(XMSG_SSH), "XMSG_SSH (14): its fields are not described\n");
    EXPECT_EQ(describe(66), "type 66 (66): its fields are not described\n");
    EXPECT_EQ(xmsJsonLine(xmsDescribeJson(XMSG_SSH)["fields"]), "[]");
}

TEST(XmsDescribe, ATypeWithoutFieldsSaysSo)
{
    EXPECT_EQ(describe(XMSG_USERLIST), "XMSG_USERLIST (58): the list of users changed\n"
                                       "  acknowledged, not stored\n"
                                       "  no fields\n"
                                       "  userlist is started: always\n");
}

TEST(XmsDescribe, EveryFieldHasItsPlaceKindDefaultAndMeaning)
{
    EXPECT_EQ(describe(XMSG_NAT_NOTIFY),
              "XMSG_NAT_NOTIFY (63): address translation changes (never answered)\n"
              "  never answered, not stored\n"
              "  field    offset  bytes  kind  default  meaning (values)\n"
              "  add      120     4      flag  yes      yes: add the address, no: delete it\n"
              "  address  124     4      IPv4  0.0.0.0  the address to translate\n"
              "  nat is started: always\n");
}

TEST(XmsDescribe, TheFilesOfASettingStandThereWithWhatIsSaidOfTheirFailures)
{
    EXPECT_THAT(
        describe(XMSG_SNMP),
        HasSubstr(
            "  snmp is started: when enabled is not 0\n"
            "  file  when                                         code  reason\n"
            "  -     a text that would break a file or a command  5     Invalid character in <field>\n"
            "  snmp  not in the application list                  1     Error determining snmp config file\n"
            "  snmp  cannot be opened                             2     Error opening SNMP config file\n"
            "  snmp  cannot be saved                              3     Error saving new SNMP config file\n"));
    EXPECT_THAT(describe(XMSG_ROUTING),
                HasSubstr("  router is started: when start or static_enabled is not 0\n"));
    EXPECT_THAT(describe(XMSG_APPLICATION),
                HasSubstr("is started: when start is not 0, xpb only on models that have it\n"));
    EXPECT_THAT(describe(XMSG_LDAP), HasSubstr("its template cannot be opened                2     "
                                               "Error opening ldap.conf.tempalte file for read\n"));
    EXPECT_THAT(describe(XMSG_NTP), HasSubstr("1     Invalid NTP polling type\n"));
}

TEST(XmsDescribe, ChoicesShowTheirNumbersAndGroupsTheirExtent)
{
    EXPECT_THAT(describe(XMSG_ETH),
                AllOf(HasSubstr("0 none, 1 active-backup, 2 802.3ad, 3 balance-tlb"), HasSubstr("eth<n>.ip "),
                      Not(HasSubstr("eth1.ip")), HasSubstr("eth<n>: n is 1 to 2, 48 bytes apart"),
                      HasSubstr("IPv6 prefix length (0 to 128)")));
}

TEST(XmsDescribe, ProgramsGetEveryFieldOfEveryElement)
{
    const XmsJson eth = xmsDescribeJson(XMSG_ETH);
    EXPECT_EQ(eth["type"], "eth");
    EXPECT_EQ(eth["number"], 1);
    EXPECT_EQ(eth["application"], "eth");
    ASSERT_EQ(eth["fields"].size(), 32U);
    const XmsJson &source = eth["fields"][11];
    EXPECT_EQ(source["name"], "eth2.source");
    EXPECT_EQ(source["offset"], 176);
    EXPECT_EQ(source["width"], 4);
    EXPECT_EQ(source["default"], "dhcp");
    EXPECT_EQ(xmsJsonLine(source["values"]),
              R"([{"value":0,"name":"bootp"},{"value":1,"name":"dhcp"},{"value":2,"name":"static"}])");
}

TEST(XmsDescribe, TheTypesAreAllNamedTypesWithTheirApplications)
{
    const XmsJson types = xmsTypesJson();
    ASSERT_EQ(types.size(), 67U); // 1 to 68 without 66
    EXPECT_EQ(types[1]["type"], "hostname");
    EXPECT_EQ(types[1]["application"], "hostname");
    EXPECT_EQ(types[19]["name"], "XMSG_CIFS");
    EXPECT_EQ(types[19]["application"], "samba");
    EXPECT_EQ(types[13]["application"], ""); // XMSG_SSH is refused
    EXPECT_EQ(types[66]["number"], 68);
    EXPECT_THAT(xmsTypesText(), HasSubstr("  24  nis              ypbind "));
}
