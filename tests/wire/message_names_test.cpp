#include "wire/message_names.h"

#include "support/test.h"
#include "wire/message.h"

namespace {

struct TypeName {
    std::uint32_t value;
    const char *name;
};

/** Message types by number, as XMS knows them. */
constexpr TypeName TYPE_NAMES[] = {{1, "XMSG_ETH"},
                                   {2, "XMSG_HOSTNAME"},
                                   {3, "XMSG_DNS"},
                                   {4, "XMSG_SECURITY"},
                                   {5, "XMSG_FIREWALL"},
                                   {6, "XMSG_IPFILTER_SET"},
                                   {7, "XMSG_IPFILTER_ASSIGN"},
                                   {8, "XMSG_ROUTING"},
                                   {9, "XMSG_VPN"},
                                   {10, "XMSG_TIMEZONE"},
                                   {11, "XMSG_NTP"},
                                   {12, "XMSG_SYSLOG"},
                                   {13, "XMSG_AUDITLOG"},
                                   {14, "XMSG_SSH"},
                                   {15, "XMSG_TELNET"},
                                   {16, "XMSG_SNMP"},
                                   {17, "XMSG_SMTP"},
                                   {18, "XMSG_PHONEHOME"},
                                   {19, "XMSG_NFS"},
                                   {20, "XMSG_CIFS"},
                                   {21, "XMSG_AUTH"},
                                   {22, "XMSG_LOCALUSERS"},
                                   {23, "XMSG_PWDHISTORY"},
                                   {24, "XMSG_NIS"},
                                   {25, "XMSG_LDAP"},
                                   {26, "XMSG_RADIUS"},
                                   {27, "XMSG_SECURID"},
                                   {28, "XMSG_KERBEROS"},
                                   {29, "XMSG_TACACS"},
                                   {30, "XMSG_REMOTEUSERS"},
                                   {31, "XMSG_GROUPS"},
                                   {32, "XMSG_TERMPORT"},
                                   {33, "XMSG_DP_GLOBAL"},
                                   {34, "XMSG_DP_DATA"},
                                   {35, "XMSG_DP_PPP"},
                                   {36, "XMSG_DP_LOGGING"},
                                   {37, "XMSG_DP_GENERAL"},
                                   {38, "XMSG_CONNECT"},
                                   {39, "XMSG_PCCARD"},
                                   {40, "XMSG_XPB_PWR"},
                                   {41, "XMSG_XPB_485"},
                                   {42, "XMSG_RPM"},
                                   {43, "XMSG_HOSTLIST"},
                                   {44, "XMSG_SITE"},
                                   {45, "XMSG_SERVER"},
                                   {46, "XMSG_EMAIL"},
                                   {47, "XMSG_KEYPAD"},
                                   {48, "XMSG_BANNER"},
                                   {49, "XMSG_BANNER2"},
                                   {50, "XMSG_WEB"},
                                   {51, "XMSG_USERMENU"},
                                   {52, "XMSG_ZELNETWORK"},
                                   {53, "XMSG_EVENTACTION"},
                                   {54, "XMSG_CONFIG"},
                                   {55, "XMSG_APPLICATION"},
                                   {56, "XMSG_GETUSER"},
                                   {57, "XMSG_USER"},
                                   {58, "XMSG_USERLIST"},
                                   {59, "XMSG_REMUSERLIST"},
                                   {60, "XMSG_PORTTEST"},
                                   {61, "XMSG_CLIQINSTANCE"},
                                   {62, "XMSG_PCCARD_NOTIFY"},
                                   {63, "XMSG_NAT_NOTIFY"},
                                   {64, "XMSG_NOTIFY"},
                                   {65, "XMSG_CMDDEVICE"},
                                   {67, "XMSG_ACKNAK"},
                                   {68, "XMSG_ERROR"}};

} // namespace

TEST(MessageNames, AreEmptyForTypesThatHaveNone)
{
    EXPECT_EQ(xasMsgTypeName(0), "");
    EXPECT_EQ(xasMsgTypeName(66), "");
    EXPECT_EQ(xasMsgTypeName(69), "");
    EXPECT_EQ(xasMsgTypeName(0xFFFFFFFFU), "");
}

TEST(MessageNames, LookUpNoTypeForTextsThatAreNoName)
{
    EXPECT_EQ(xasMsgTypeByName(""), 0U);
    EXPECT_EQ(xasMsgTypeByName("XMSG_"), 0U);
    EXPECT_EQ(xasMsgTypeByName("xmsg_eth"), 0U);
    EXPECT_EQ(xasMsgTypeByName("XMSG_ETHER"), 0U);
}

TEST(MessageNames, NameEveryTypeByItsNumberAndBack)
{
    ASSERT_EQ(std::size(TYPE_NAMES), 67U);
    for (const TypeName &type : TYPE_NAMES) {
        EXPECT_EQ(xasMsgTypeName(type.value), type.name) << type.value;
        EXPECT_EQ(xasMsgTypeByName(type.name), type.value) << type.name;
    }
}

TEST(MessageNames, NameTheThreeActions)
{
    EXPECT_EQ(xasActionName(0), "Set");
    EXPECT_EQ(xasActionName(1), "Get");
    EXPECT_EQ(xasActionName(2), "Return");
    EXPECT_EQ(xasActionName(3), "");
    EXPECT_EQ(xasActionName(0xFFFFFFFFU), "");
}

TEST(MessageNames, NameTheSendersAndLeaveUnknownOnesEmpty)
{
    constexpr std::array SENDERS = {"XCS", "XMS", "XWS", "CLI", "APP",  "LCD",
                                    "XLD", "XPB", "XDD", "XPC", "SNMPD"};
    for (std::uint32_t sender = 0; sender < SENDERS.size(); ++sender)
        EXPECT_EQ(xasSenderName(sender), SENDERS[sender]);
    EXPECT_EQ(xasSenderName(11), "");
    EXPECT_EQ(xasSenderName(0xFFFFFFFFU), "");
}

TEST(MessageTypes, CarryTheNumbersOfTheWire)
{
    EXPECT_EQ(XMSG_ETH, 1U);
    EXPECT_EQ(XMSG_HOSTNAME, 2U);
    EXPECT_EQ(XMSG_DNS, 3U);
    EXPECT_EQ(XMSG_LOCALUSERS, 22U);
    EXPECT_EQ(XMSG_APPLICATION, 55U);
    EXPECT_EQ(XMSG_USER, 57U);
    EXPECT_EQ(XMSG_USERLIST, 58U);
    EXPECT_EQ(XMSG_NAT_NOTIFY, 63U);
    EXPECT_EQ(XMSG_NOTIFY, 64U);
    EXPECT_EQ(XMSG_CMDDEVICE, 65U);
    EXPECT_EQ(XMSG_ACKNAK, 67U);
    EXPECT_EQ(XMSG_ERROR, 68U);
}
