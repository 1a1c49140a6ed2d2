#include "wire/message_names.h"

#include "support/test.h"
#include "wire/message.h"

namespace {

struct TypeName {
    std::uint32_t value;
    const char *name;
};

/** Message types by number, as XMS knows them. */
constexpr std::array TYPE_NAMES = {
    TypeName{1, "XMSG_ETH"},
    TypeName{2, "XMSG_HOSTNAME"},
    TypeName{3, "XMSG_DNS"},
    TypeName{4, "XMSG_SECURITY"},
    TypeName{5, "XMSG_FIREWALL"},
    TypeName{6, "XMSG_IPFILTER_SET"},
    TypeName{7, "XMSG_IPFILTER_ASSIGN"},
    TypeName{8, "XMSG_ROUTING"},
    TypeName{9, "XMSG_VPN"},
    TypeName{10, "XMSG_TIMEZONE"},
    TypeName{11, "XMSG_NTP"},
    TypeName{12, "XMSG_SYSLOG"},
    TypeName{13, "XMSG_AUDITLOG"},
    TypeName{14, "XMSG_SSH"},
    TypeName{15, "XMSG_TELNET"},
    TypeName{16, "XMSG_SNMP"},
    TypeName{17, "XMSG_SMTP"},
    TypeName{18, "XMSG_PHONEHOME"},
    TypeName{19, "XMSG_NFS"},
    TypeName{20, "XMSG_CIFS"},
    TypeName{21, "XMSG_AUTH"},
    TypeName{22, "XMSG_LOCALUSERS"},
    TypeName{23, "XMSG_PWDHISTORY"},
    TypeName{24, "XMSG_NIS"},
    TypeName{25, "XMSG_LDAP"},
    TypeName{26, "XMSG_RADIUS"},
    TypeName{27, "XMSG_SECURID"},
    TypeName{28, "XMSG_KERBEROS"},
    TypeName{29, "XMSG_TACACS"},
    TypeName{30, "XMSG_REMOTEUSERS"},
    TypeName{31, "XMSG_GROUPS"},
    TypeName{32, "XMSG_TERMPORT"},
    TypeName{33, "XMSG_DP_GLOBAL"},
    TypeName{34, "XMSG_DP_DATA"},
    TypeName{35, "XMSG_DP_PPP"},
    TypeName{36, "XMSG_DP_LOGGING"},
    TypeName{37, "XMSG_DP_GENERAL"},
    TypeName{38, "XMSG_CONNECT"},
    TypeName{39, "XMSG_PCCARD"},
    TypeName{40, "XMSG_XPB_PWR"},
    TypeName{41, "XMSG_XPB_485"},
    TypeName{42, "XMSG_RPM"},
    TypeName{43, "XMSG_HOSTLIST"},
    TypeName{44, "XMSG_SITE"},
    TypeName{45, "XMSG_SERVER"},
    TypeName{46, "XMSG_EMAIL"},
    TypeName{47, "XMSG_KEYPAD"},
    TypeName{48, "XMSG_BANNER"},
    TypeName{49, "XMSG_BANNER2"},
    TypeName{50, "XMSG_WEB"},
    TypeName{51, "XMSG_USERMENU"},
    TypeName{52, "XMSG_ZELNETWORK"},
    TypeName{53, "XMSG_EVENTACTION"},
    TypeName{54, "XMSG_CONFIG"},
    TypeName{55, "XMSG_APPLICATION"},
    TypeName{56, "XMSG_GETUSER"},
    TypeName{57, "XMSG_USER"},
    TypeName{58, "XMSG_USERLIST"},
    TypeName{59, "XMSG_REMUSERLIST"},
    TypeName{60, "XMSG_PORTTEST"},
    TypeName{61, "XMSG_CLIQINSTANCE"},
    TypeName{62, "XMSG_PCCARD_NOTIFY"},
    TypeName{63, "XMSG_NAT_NOTIFY"},
    TypeName{64, "XMSG_NOTIFY"},
    TypeName{65, "XMSG_CMDDEVICE"},
    TypeName{67, "XMSG_ACKNAK"},
    TypeName{68, "XMSG_ERROR"},
};

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
    ASSERT_EQ(TYPE_NAMES.size(), 67U);
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
