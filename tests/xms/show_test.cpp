#include "xms/show.h"

#include "support/message.h"
#include "support/test.h"

#include <ctime>

namespace {

/** 1970-01-02 03:04:05.067 in Greenwich. */
constexpr std::int64_t TIME_MS = (((24 + 3) * 60 + 4) * 60 + 5) * 1000LL + 67;

XmsTraffic trafficOf(const XasMessage &record, bool toDaemon)
{
    const auto bytes = std::as_bytes(std::span{&record, 1});
    return {TIME_MS, toDaemon, {bytes.begin(), bytes.end()}};
}

XasMessage acknowledgement(bool success, std::uint32_t rcode, std::string_view reason)
{
    XasMessage record = XasMessageBuilder{XMSG_ACKNAK}
                            .sender(4)
                            .id(10)
                            .set("success", success ? 1 : 0)
                            .set("complete", 1)
                            .set("rcode", rcode)
                            .set("rstr", reason);
    record.xH.action = 2;
    record.xH.orig_id = 7;
    return record;
}

class XmsShow : public testing::Test {
  protected:
    XmsShow()
    {
        setenv("TZ", "UTC", 1);
        tzset();
    }
};

} // namespace

TEST_F(XmsShow, ARecordOfAWrongSizeIsShownAsOddAndNotDecoded)
{
    const XmsTraffic odd{TIME_MS, false, std::vector<std::byte>(2487)};
    EXPECT_EQ(xmsTrafficLine(odd, XmsPaint::plain),
              "03:04:05.067  <- odd record of 2487 bytes, 2488 expected");
    EXPECT_EQ(xmsJsonLine(xmsTrafficJson(odd)),
              R"({"time_ms":97445067,"direction":"from-daemon","size":2487})");
    const XmsTraffic empty{TIME_MS, false, {}};
    EXPECT_THAT(xmsTrafficLine(empty, XmsPaint::plain), HasSubstr("odd record of 0 bytes"));
}

TEST_F(XmsShow, NumbersWithoutNamesAreShownAsNumbers)
{
    XasMessage record = XasMessageBuilder{4000000000U}.id(3).sender(11);
    record.xH.action = 9;
    EXPECT_EQ(xmsTrafficLine(trafficOf(record, true), XmsPaint::plain),
              "03:04:05.067  -> 11   9       4000000000  #3");
}

TEST_F(XmsShow, ASettingIsShownWithTheFieldsThatAreNotZero)
{
    const XasMessage record =
        XasMessageBuilder{XMSG_HOSTNAME}.id(12345).sender(1).set("hostname", "console1");
    EXPECT_EQ(xmsTrafficLine(trafficOf(record, true), XmsPaint::plain),
              "03:04:05.067  -> XMS  Set     hostname    #12345  hostname=console1");
}

TEST_F(XmsShow, AnAcknowledgementIsShownByItsOutcome)
{
    EXPECT_EQ(xmsTrafficLine(trafficOf(acknowledgement(true, 0, ""), false), XmsPaint::plain),
              "03:04:05.067  <- APP  Return  acknak      #10   to #7  applied");
    EXPECT_EQ(xmsTrafficLine(trafficOf(acknowledgement(false, 1, "Error a"), false), XmsPaint::plain),
              "03:04:05.067  <- APP  Return  acknak      #10   to #7  refused rcode=1 rstr=\"Error a\"");
    EXPECT_THAT(xmsTrafficLine(trafficOf(acknowledgement(true, 0, ""), false), XmsPaint::coloured),
                HasSubstr("\033[32mapplied\033[0m"));
}

TEST_F(XmsShow, TrafficForProgramsCarriesHeaderAndFields)
{
    EXPECT_EQ(
        xmsJsonLine(xmsTrafficJson(trafficOf(acknowledgement(false, 3, "no"), false))),
        R"({"time_ms":97445067,"direction":"from-daemon","size":2488,"type":"acknak","action":"Return",)"
        R"("sender":"APP","id":10,"orig_id":7,)"
        R"("fields":{"success":false,"complete":true,"rcode":3,"rstr":"no"}})");
}

TEST_F(XmsShow, ControlCharactersNeverReachTheTerminal)
{
    EXPECT_EQ(xmsEscaped("a\033[31m\nb\177"), "a\\x1b[31m\\nb\\x7f");
    const XasMessage record = XasMessageBuilder{XMSG_HOSTNAME}.set("hostname", "a\033]0;x\007");
    EXPECT_EQ(xmsFieldsTable(record), "  hostname  a\\x1b]0;x\\x07\n  domain\n");
}

TEST_F(XmsShow, WordsOfALineAreQuotedWhereTheyMustBe)
{
    EXPECT_EQ(xmsQuoted("plain"), "plain");
    EXPECT_EQ(xmsQuoted(""), "\"\"");
    EXPECT_EQ(xmsQuoted("two words"), "\"two words\"");
    EXPECT_EQ(xmsQuoted("a\"b"), "\"a\\\"b\"");
}

TEST_F(XmsShow, FieldsForProgramsKeepTheirOrderAndTheirTypes)
{
    const XasMessage record = XasMessageBuilder{XMSG_DNS}.set("dns2", "10.0.0.53").set("prefer_ipv4", 1);
    EXPECT_EQ(xmsJsonLine(xmsFieldsJson(record)),
              R"({"dns1":"none","dns2":"10.0.0.53","dns3":"none","prefer_ipv4":true})");
}

TEST_F(XmsShow, BytesThatAreNoTextDoNotBreakTheJson)
{
    const XasMessage record = XasMessageBuilder{XMSG_HOSTNAME}.set("hostname", "a\xFF");
    EXPECT_EQ(xmsJsonLine(xmsFieldsJson(record)), "{\"hostname\":\"a\xEF\xBF\xBD\",\"domain\":\"\"}");
}

TEST_F(XmsShow, ATypeThatIsNotDescribedShowsNoFields)
{
    const XasMessage record = XasMessageBuilder{XMSG_SSH}.bytes(120, "\x05");
    EXPECT_EQ(xmsFieldsLine(record), "");
    EXPECT_EQ(xmsJsonLine(xmsFieldsJson(record)), "{}");
}

TEST_F(XmsShow, ColumnsArePaddedToTheirWidestCell)
{
    EXPECT_EQ(xmsAligned({{"a", "bb", "c"}, {"aaa", "b", ""}, {"aa"}}), "  a    bb  c\n  aaa  b\n  aa\n");
}

TEST_F(XmsShow, ADumpOfAnOddRecordSaysHowLongItIs)
{
    const XmsTraffic odd{TIME_MS, false, std::vector<std::byte>(2487)};
    EXPECT_EQ(xmsTrafficDump(odd, {}, XmsPaint::plain), "03:04:05.067  <- xasd\n"
                                                        "odd record of 2487 bytes, 2488 expected\n");
}

TEST_F(XmsShow, ADumpShowsHeaderAndPayloadWhole)
{
    const XasMessage record = XasMessageBuilder{XMSG_DNS}.sender(1).id(7).set("prefer_ipv4", 1);
    EXPECT_EQ(xmsTrafficDump(trafficOf(record, true), {}, XmsPaint::plain),
              "03:04:05.067  -> xasd\n"
              "msgPrintBasic: type=XMSG_DNS, action=Set, sender=XMS\n"
              "               id=7, orig_id=0\n"
              "dns: none,none,none\n"
              "prefer IPv4 DNS records: y\n");
}

TEST_F(XmsShow, ADumpLetsNoValueDriveTheTerminal)
{
    const std::string dump =
        xmsTrafficDump(trafficOf(XasMessageBuilder{XMSG_TIMEZONE}.id(7).set("zone", "\x1b[2J\x07"), true), {},
                       XmsPaint::plain);
    EXPECT_THAT(dump, EndsWith("zone: \\x1b[2J\\x07\n"));
}

TEST_F(XmsShow, TheDumpOfAListShowsTheUsersThatItsMessageCounts)
{
    std::string list(120 + 2 * 224, '\0');
    list.replace(120, 5, "alice").replace(344, 3, "bob");
    const auto bytes = std::as_bytes(std::span{list});
    const XmsTraffic traffic{TIME_MS, true, {bytes.begin(), bytes.end()}};
    const XasMessage message = XasMessageBuilder{XMSG_LOCALUSERS}.set("num_users", 1);
    EXPECT_EQ(xmsTrafficDump(traffic, message, XmsPaint::plain),
              "03:04:05.067  -> xasd\n"
              "  login: alice password:  uid: 0 listen: 0x0\n"
              "  data: 0x0 clear: 0x0 outlets: 0x0 escseq:  brkseq: \n"
              "  menu:  dialback: n dialback_num:  perm: 0x0 cli: 0x0\n"
              "  pwd_change: n pwd_expires: 0 pwd_login_change: n login_attempts: 0\n");
}
