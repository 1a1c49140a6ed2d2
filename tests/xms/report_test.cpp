#include "xms/report.h"

#include "msg/fields.h"
#include "support/message.h"
#include "support/test.h"
#include "xms/error.h"
#include "xms/secrets.h"

#include <regex>
#include <set>

using testing::Pair;

namespace {

XmsTraffic traffic(std::int64_t timeMs, bool toDaemon, const XasMessage &record)
{
    const auto bytes = xasBytesOf(record);
    return {timeMs, toDaemon, {bytes.begin(), bytes.end()}};
}

/** A recording that is put together line by line. */
struct Recording {
    std::string text = xmsJsonLine(xmsRecordingStart()) + "\n";

    Recording &set(std::int64_t timeMs, const XasMessage &record)
    {
        return add(xmsRecordingLine(traffic(timeMs, true, record), true));
    }
    Recording &answer(std::int64_t timeMs, std::uint32_t id, bool success, std::string_view reason = "")
    {
        return add(xmsRecordingLine(traffic(timeMs, false,
                                            XasMessageBuilder{XMSG_ACKNAK}
                                                .sender(4)
                                                .id(100 + id)
                                                .answering(id)
                                                .set("success", success)
                                                .set("rcode", success ? 0 : 3)
                                                .set("rstr", reason)),
                                    true));
    }
    Recording &log(std::int64_t timeMs, const std::string &line) { return add(xmsLogJson({timeMs, line})); }
    Recording &change(const std::string &path, const std::string &difference, bool isClosed = false)
    {
        return add(xmsChangeLine({5, path, difference, isClosed}));
    }
    Recording &add(const XmsJson &line)
    {
        text += xmsJsonLine(line) + "\n";
        return *this;
    }

    [[nodiscard]] XmsReport report(bool withSecrets = false) const
    {
        std::istringstream file{text};
        return xmsReportOf(file, "session", withSecrets);
    }
    [[nodiscard]] std::string page(bool withSecrets = false) const
    {
        return xmsReportPage(report(withSecrets));
    }
};

XasMessage hostname(std::uint32_t id, std::string_view name = "console1")
{
    return XasMessageBuilder{XMSG_HOSTNAME}.sender(1).id(id).set("hostname", name);
}

/** Complains about every tag and attribute of the page that a report does not have, and about what is left
 * open. */
void expectOnlyOwnMarkup(const std::string &page)
{
    static const std::set<std::string> TAGS = {
        "html",  "head",    "meta",    "title",  "style", "body",     "header", "main", "footer", "h1",
        "h2",    "h3",      "p",       "strong", "ul",    "ol",       "li",     "b",    "a",      "div",
        "table", "tr",      "th",      "td",     "form",  "fieldset", "legend", "span", "input",  "label",
        "time",  "details", "summary", "code",   "pre",   "dl",       "dt",     "dd"};
    static const std::regex ATTRIBUTES{
        R"re(( (class|id|for|name|lang|charset|content|http-equiv|scope|type|tabindex)="[^"<>]*"| href="#s[0-9]+")re"
        R"re(| style="--took: [0-9]+%"| open| checked)*)re"};
    std::vector<std::string> open;
    std::string body = page.substr(page.find('\n') + 1); // behind the document type
    const std::size_t style = body.find("<style>");
    body.erase(style + 7, body.find("</style>") - style - 7);
    static const std::regex TAG{"<(/?)([a-z0-9]*)([^>]*)>"};
    for (std::sregex_iterator tag{body.begin(), body.end(), TAG}; tag != std::sregex_iterator{}; ++tag) {
        const std::string name = (*tag)[2];
        ASSERT_TRUE(TAGS.contains(name)) << tag->str();
        if ((*tag)[1] == "/") {
            ASSERT_FALSE(open.empty()) << tag->str();
            ASSERT_EQ(open.back(), name);
            open.pop_back();
            continue;
        }
        ASSERT_TRUE(std::regex_match((*tag)[3].str(), ATTRIBUTES)) << tag->str();
        if (name != "meta" && name != "input")
            open.push_back(name);
    }
    EXPECT_THAT(open, IsEmpty());
    EXPECT_EQ(std::ranges::count(body, '<'),
              std::distance(std::sregex_iterator{body.begin(), body.end(), TAG}, {}));
}

const std::string HOSTILE = "</pre></style><script>alert(1)</script><img src=x onerror='alert(1)'>\"&#60;";

} // namespace

TEST(XmsReport, WhatIsNoRecordingIsRefused)
{
    std::istringstream file{"hello\n"};
    EXPECT_THROW(xmsReportOf(file, "session", false), XmsError);
}

TEST(XmsReport, AStepHoldsWhatFollowedFromItsMessage)
{
    const XmsReport report = Recording{}
                                 .log(900, "of before")
                                 .set(1000, hostname(1))
                                 .set(1010, XasMessageBuilder{XMSG_DNS}.id(2).set("dns1", "10.0.0.1"))
                                 .log(1020, "about the host name")
                                 .answer(1100, 1, true)
                                 .change("/etc/hosts", "@@ -1 +1 @@\n-a\n+b\n")
                                 .log(1150, "about the name servers")
                                 .answer(1400, 2, false, "no")
                                 .log(1500, "later")
                                 .set(2000, hostname(3))
                                 .report();
    EXPECT_EQ(report.beginMs, 900);
    EXPECT_EQ(report.endMs, 2000);
    EXPECT_THAT(report.before, ElementsAre("of before"));
    ASSERT_EQ(report.steps.size(), 3U);
    const XmsReportStep &host = report.steps[0];
    EXPECT_EQ(host.title, "hostname");
    EXPECT_EQ(host.from, "XMS Set");
    EXPECT_EQ(host.end, XmsStepEnd::applied);
    EXPECT_EQ(host.tookMs, 100);
    EXPECT_THAT(host.fields, ElementsAre(Pair("hostname", "console1")));
    EXPECT_THAT(host.log, ElementsAre("about the host name"));
    ASSERT_EQ(host.changes.size(), 1U);
    EXPECT_EQ(host.changes[0].path, "/etc/hosts");
    const XmsReportStep &dns = report.steps[1];
    EXPECT_EQ(dns.end, XmsStepEnd::refused);
    EXPECT_EQ(dns.tookMs, 390);
    EXPECT_EQ(dns.rcode, 3U);
    EXPECT_EQ(dns.reason, "no");
    EXPECT_THAT(dns.log, ElementsAre("about the name servers", "later"));
    EXPECT_THAT(dns.changes, IsEmpty());
    EXPECT_EQ(report.steps[2].end, XmsStepEnd::unanswered);
    EXPECT_EQ(report.steps[2].tookMs, std::nullopt);
}

TEST(XmsReport, WhatTheDaemonTellsAndWhatIsNeverAnsweredAreEvents)
{
    const XasMessage told = XasMessageBuilder{XMSG_NOTIFY}.sender(4).id(9).set("text", "Eth1 Link Down");
    const XmsReport report = Recording{}
                                 .add(xmsRecordingLine(traffic(1, false, told), true))
                                 .change("/etc/x", "@@ -1 +1 @@\n-a\n+b\n")
                                 .set(2, XasMessageBuilder{XMSG_NAT_NOTIFY}.sender(1).id(3))
                                 .answer(3, 77, true)
                                 .add({{"time_ms", 4}, {"to_daemon", false}, {"bytes", "0102"}})
                                 .report();
    ASSERT_EQ(report.steps.size(), 4U);
    for (const XmsReportStep &step : report.steps)
        EXPECT_EQ(step.end, XmsStepEnd::event) << step.title;
    EXPECT_EQ(report.steps[0].changes.size(), 1U);
    EXPECT_EQ(report.steps[2].title, "acknak") << "to what was sent before the recording began";
    EXPECT_EQ(report.steps[3].title, "odd record of 2 bytes");
}

TEST(XmsReport, UsersStandWithTheirMessage)
{
    std::string list(120 + 2 * 224, '\0');
    list.replace(120, 5, "alice").replace(120 + 33, 4, "$1$a").replace(344, 3, "bob");
    const auto bytes = std::as_bytes(std::span{list});
    Recording recording;
    recording.set(1, XasMessageBuilder{XMSG_LOCALUSERS}.id(1).set("num_users=2"))
        .add(xmsRecordingLine({2, true, {bytes.begin(), bytes.end()}}, true));
    EXPECT_THAT(recording.report().steps.at(0).fields,
                ElementsAre(Pair("num_users", "2"), Pair("user1.login", "alice"),
                            Pair("user1.password", "********"), Pair("user2.login", "bob")));
    EXPECT_THAT(recording.report(true).steps.at(0).fields, Contains(Pair("user1.password", "$1$a")));
}

TEST(XmsReport, SecretsAreMaskedEverywhereUnlessTheyAreAskedFor)
{
    Recording recording;
    recording.log(1, "before: testing")
        .set(2, XasMessageBuilder{XMSG_RADIUS}.id(1).set("secret1", "testing"))
        .log(3, "secret testing written")
        .answer(4, 1, false, "not testing")
        .change("/etc/raddb/server", "@@ -1 +1 @@\n-10.0.0.1 before\n+10.0.0.1 testing\n", true)
        .change("/etc/other", "@@ -1 +1 @@\n+secret=testing\n");
    const std::string page = recording.page();
    EXPECT_EQ(page.find("testing"), std::string::npos);
    EXPECT_EQ(page.find(" before"), std::string::npos) << "of a file that others may not read";
    EXPECT_THAT(page, AllOf(HasSubstr("Secrets are masked."), HasSubstr("not ********"),
                            HasSubstr("<span class=\"add\">+10.0.0.1 ********</span>")));
    EXPECT_THAT(recording.page(true),
                AllOf(HasSubstr("With secrets."), HasSubstr("<dt>secret1</dt><dd>testing</dd>"),
                      HasSubstr("before: testing"), HasSubstr("+10.0.0.1 testing")));
}

TEST(XmsReport, APageShowsEachMessageWithItsOutcomeAndDifferences)
{
    const std::string page = Recording{}
                                 .set(1000, hostname(1))
                                 .log(1010, "xasd: sw/err-no")
                                 .answer(1400, 1, false, "Error determining hosts file")
                                 .change("/etc/hosts", "@@ -1,2 +1,2 @@\n same\n-old\n+new\n")
                                 .page();
    expectOnlyOwnMarkup(page);
    EXPECT_THAT(
        page,
        AllOf(
            StartsWith("<!DOCTYPE html>\n"), HasSubstr("<li class=\"step refused t2\" id=\"s1\">"),
            HasSubstr("<span class=\"soft\">XMS Set #1 to xasd</span>"), HasSubstr("<span>400 ms</span>"),
            HasSubstr("<p class=\"reason\">Code 3: Error determining hosts file</p>"),
            HasSubstr("<dt>hostname</dt><dd>console1</dd>"),
            HasSubstr("<pre><span>xasd: sw/err-no</span></pre>"),
            HasSubstr("<code>/etc/hosts</code></summary><pre><span class=\"at\">@@ -1,2 +1,2 @@</span><span> "
                      "same</span><span class=\"cut\">-old</span><span class=\"add\">+new</span></pre>"),
            HasSubstr("<a href=\"#s1\">hostname #1</a> Error determining hosts file</li>")));
    EXPECT_THAT(page,
                AllOf(HasSubstr("<input type=\"radio\" name=\"type\" id=\"type-2\">"),
                      HasSubstr("body:has(#type-2:checked) .step:not(.t2) { display: none; }"),
                      HasSubstr("body:has(#end-refused:checked) .step:not(.refused) { display: none; }")));
}

TEST(XmsReport, AHostileRecordingIsShownAsText)
{
    Recording recording;
    recording.log(1, HOSTILE);
    for (std::uint32_t msgtype = 0; msgtype <= 70; ++msgtype) {
        XasMessageBuilder record{msgtype};
        const XasMsgFields *fields = msgFieldsOf(msgtype);
        for (const XasMsgFieldAt &where :
             fields == nullptr ? std::vector<XasMsgFieldAt>{} : xasListFields(*fields)) {
            if (where.field->kind == XasFieldKind::text)
                record.raw(where.name, HOSTILE.substr(0, where.place.width));
            else if (where.field->kind == XasFieldKind::hostAddr)
                record.raw(where.name, std::string("\1\0\0\0\0\0\0\0", 8) + HOSTILE.substr(0, 68));
        }
        recording.set(1, record.id(msgtype + 1).sender(200))
            .log(2, HOSTILE)
            .answer(3, msgtype + 1, false, HOSTILE);
        recording.change(HOSTILE, "+" + HOSTILE + "\n" + HOSTILE + "\n");
    }
    std::istringstream file{recording.text};
    const std::string page = xmsReportPage(xmsReportOf(file, HOSTILE, true));
    expectOnlyOwnMarkup(page);
    EXPECT_THAT(page, HasSubstr("&lt;script&gt;alert(1)&lt;/script&gt;"));
    EXPECT_EQ(page.find("<script"), std::string::npos);
    EXPECT_EQ(page.find("<img"), std::string::npos);
}

TEST(XmsReport, APageStaysBelowAMegabyte)
{
    Recording recording;
    std::string text;
    for (int line = 0; line < 20000; ++line)
        text += "+\"\"\"\"\"\"\"\"\"\"\n";
    for (std::uint32_t id = 1; id <= 3000; ++id) {
        recording.set(id, hostname(id)).answer(id, id, false, std::string(100, '"'));
        if (id % 100 == 0)
            recording.change("/etc/x", text).log(id, std::string(100000, '"'));
    }
    const std::string page = recording.page();
    EXPECT_LT(page.size(), 1000000U);
    EXPECT_THAT(page, HasSubstr(" further messages left out: the page would be too large."));
    expectOnlyOwnMarkup(page);
}

TEST(XmsReport, AnEmptyRecordingIsAPageToo)
{
    expectOnlyOwnMarkup(Recording{}.page());
}
