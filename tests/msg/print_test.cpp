#include "msg/print.h"

#include "support/message.h"
#include "support/test.h"

#include <arpa/inet.h>

namespace {

/** A record whose header is set and whose payload is zero. */
XasMessage withHeader(std::uint32_t msgtype, std::uint32_t action, std::uint32_t sender, std::uint32_t id,
                      std::uint32_t origId)
{
    XasMessage msg = XasMessageBuilder{msgtype}.sender(sender).id(id);
    msg.xH.action = action;
    msg.xH.orig_id = origId;
    return msg;
}

/** What `print` writes to standard output. */
template <class Print>
std::string printed(Print print)
{
    testing::internal::CaptureStdout();
    print();
    return testing::internal::GetCapturedStdout();
}

} // namespace

TEST(MsgPrint, NoMessageIsToldInsteadOfAHeader)
{
    EXPECT_EQ(msgBasicText(nullptr), "msgPrintBasic: p is NULL");
    EXPECT_EQ(printed([] { msgPrintBasic(nullptr); }), "msgPrintBasic: p is NULL");
}

TEST(MsgPrint, ATypeOutsideTheTableHasNoName)
{
    for (const std::uint32_t msgtype : {0U, 66U, 69U, 0xFFFFFFFFU}) {
        const XasMessage msg = withHeader(msgtype, 0, 1, 2, 3);
        EXPECT_EQ(msgBasicText(&msg), "msgPrintBasic: type=, action=Set, sender=XMS\n"
                                      "               id=2, orig_id=3\n")
            << msgtype;
    }
}

TEST(MsgPrint, AnActionOrSenderOutsideItsTableHasNoName)
{
    const XasMessage oddAction = withHeader(1, 3, 10, 0, 0);
    EXPECT_EQ(msgBasicText(&oddAction), "msgPrintBasic: type=XMSG_ETH, action=, sender=SNMPD\n"
                                        "               id=0, orig_id=0\n");
    const XasMessage oddSender = withHeader(68, 1, 11, 0, 0);
    EXPECT_EQ(msgBasicText(&oddSender), "msgPrintBasic: type=XMSG_ERROR, action=Get, sender=\n"
                                        "               id=0, orig_id=0\n");
}

TEST(MsgPrint, TheHeaderIsTwoLinesOnStandardOutput)
{
    const XasMessage msg = withHeader(67, 2, 4, 4294967295U, 2147483648U);
    EXPECT_EQ(printed([&] { msgPrintBasic(&msg); }),
              "msgPrintBasic: type=XMSG_ACKNAK, action=Return, sender=APP\n"
              "               id=4294967295, orig_id=2147483648\n");
}

TEST(MsgPrint, EverySenderHasItsName)
{
    const std::vector<std::string> names = {"XCS", "XMS", "XWS", "CLI", "APP",  "LCD",
                                            "XLD", "XPB", "XDD", "XPC", "SNMPD"};
    for (std::uint32_t sender = 0; sender < names.size(); ++sender) {
        const XasMessage msg = withHeader(2, 0, sender, 1, 0);
        EXPECT_EQ(msgBasicText(&msg), "msgPrintBasic: type=XMSG_HOSTNAME, action=Set, sender=" +
                                          names[sender] + "\n               id=1, orig_id=0\n");
    }
}

TEST(MsgPrint, ATypeThatIsNotDescribedHasNoLines)
{
    for (const std::uint32_t msgtype : {0U, 4U, 14U, 66U, 68U, 69U})
        EXPECT_EQ(msgAllText(XasMessageBuilder{msgtype}.bytes(120, "\x01")), "") << msgtype;
}

TEST(MsgPrint, ThePayloadGoesToStandardOutput)
{
    const XasMessage msg =
        XasMessageBuilder{XMSG_HOSTNAME}.set("hostname", "console1").set("domain", "example.org");
    EXPECT_EQ(printed([&] { msgPrintAll(msg); }), "hostname: console1 domain: example.org\n");
}

TEST(MsgPrint, AnAddressIsDottedWithOrWithoutAPort)
{
    EXPECT_EQ(msgIPv4Text({htonl(0xC0A80A01)}), "192.168.10.1");
    EXPECT_EQ(msgIPv4Text({0}), "0.0.0.0");
    EXPECT_EQ(msgIPv4PortText({htonl(0x0A000001)}, 22), "10.0.0.1:22");
    EXPECT_EQ(msgIPv4PortText({0xFFFFFFFF}, 65535), "255.255.255.255:65535");
}

TEST(MsgPrint, AnAddressStaysWhenTheNextOneIsFormatted)
{
    const std::string first = msgIPv4Text({htonl(0x0A000001)});
    EXPECT_EQ(msgIPv4PortText({htonl(0x0A000002)}, 80), "10.0.0.2:80");
    EXPECT_EQ(first, "10.0.0.1");
}

TEST(MsgPrint, ThreeValuesAreJoinedByCommasAndAnEmptyOneReadsNone)
{
    EXPECT_EQ(msgThreeText("a", "b", "c"), "a,b,c");
    EXPECT_EQ(msgThreeText("", "b", ""), "none,b,none");
    EXPECT_EQ(msgThreeText("", "", ""), "none,none,none");
}
