// Files of settings through the message tool's server; the test plays the daemon.
#include "support/serve_fixture.h"

#include <regex>

namespace {

class XmsApply : public XmsServeTest {
  protected:
    XmsApply()
    {
        dir.write("file", "hostname: {hostname: console1}\n"
                          "radius: {server1: 192.168.10.42, secret1: testing}\n"
                          "dns: {dns1: 10.0.0.1}\n");
    }

    pid_t startApply(std::vector<std::string> options = {})
    {
        options.insert(options.begin(), {"apply", dir.path("file")});
        return startProgram(options, "out");
    }

    /** Answers the next setting and returns its type. */
    std::uint32_t answerNext(bool success)
    {
        const auto record = receive();
        if (!record)
            return 0;
        acknowledge(record->xH.id, success, success ? "" : "no");
        return record->xH.msgtype;
    }

    void applyWhole()
    {
        const pid_t client = startApply();
        for (int n = 0; n < 3; ++n)
            answerNext(true);
        EXPECT_EQ(statusOf(client), 0);
    }

    std::string printed() const
    {
        return std::regex_replace(dir.read("out"), std::regex{"[0-9]+ ms"}, "N ms");
    }
};

} // namespace

TEST_F(XmsApply, AFileWithAMistakeSendsNothing)
{
    serve();
    dir.write("file", "hostname: {hostname: console1}\ndns: {dns1: ns1, dns2: ns2}\nntp: {sync: often}\n");
    EXPECT_EQ(statusOf(startApply()), 2);
    EXPECT_THAT(errorsOf("out"), AllOf(HasSubstr(dir.path("file") + ":2: dns: dns1: "),
                                       HasSubstr(dir.path("file") + ":3: ntp: sync: "),
                                       EndsWith("xms: 2 mistakes, nothing was sent\n")));
    EXPECT_FALSE(receive(300ms));
    EXPECT_EQ(dir.read("out"), "");
}

TEST_F(XmsApply, TheFirstRefusalStopsIt)
{
    serve();
    const pid_t client = startApply();
    EXPECT_EQ(answerNext(true), XMSG_HOSTNAME);
    EXPECT_EQ(answerNext(false), XMSG_DNS);
    EXPECT_EQ(statusOf(client), 1);
    EXPECT_EQ(printed(), "hostname #1: applied, rcode 0, N ms\n"
                         "dns #2: refused, rcode 1, \"no\", N ms\n"
                         "3 settings: 1 applied, 1 refused, 1 not sent, 0 as stored\n");
    EXPECT_FALSE(receive(300ms));
}

TEST_F(XmsApply, ItGoesOnAfterARefusalWhenAskedTo)
{
    serve();
    const pid_t client = startApply({"--go-on", "--json"});
    EXPECT_EQ(answerNext(false), XMSG_HOSTNAME);
    EXPECT_EQ(answerNext(true), XMSG_DNS);
    EXPECT_EQ(answerNext(false), XMSG_RADIUS);
    EXPECT_EQ(statusOf(client), 1);
    EXPECT_THAT(dir.read("out"),
                EndsWith("\n{\"applied\":1,\"refused\":2,\"not_sent\":0,\"as_stored\":0}\n"));
}

TEST_F(XmsApply, WhoeverDoesNotAnswerEndsIt)
{
    serve();
    EXPECT_EQ(statusOf(startApply({"--timeout", "0.1", "--go-on"})), 3);
    EXPECT_THAT(printed(), EndsWith("\n3 settings: 0 applied, 1 refused, 2 not sent, 0 as stored\n"));
}

TEST_F(XmsApply, ADryRunSendsNothing)
{
    serve();
    EXPECT_EQ(statusOf(startApply({"--dry-run"})), 0);
    EXPECT_EQ(dir.read("out"), "hostname: would be sent\ndns: would be sent\nradius: would be sent\n"
                               "3 settings: 3 would be sent, 0 as stored\n");
    EXPECT_FALSE(receive(300ms));
}

TEST_F(XmsApply, WhatTheFileOfAllSettingsHoldsChangesNothing)
{
    serve();
    applyWhole();
    for (const std::vector<std::string> &get : {std::vector<std::string>{"get", "--all", "--yaml"},
                                                {"get", "--all", "--yaml", "--secrets"},
                                                {"get", "--all", "--json"},
                                                {"get", "--all", "--json", "--secrets"}}) {
        ASSERT_EQ(run(get), 0);
        EXPECT_EQ(dir.read("out").find("testing") != std::string::npos, get.back() == "--secrets");
        dir.write("file", dir.read("out"));
        EXPECT_EQ(statusOf(startApply()), 0);
        EXPECT_EQ(dir.read("out"), "3 settings: 0 applied, 0 refused, 3 as stored\n");
        EXPECT_FALSE(receive(100ms));
    }
}

TEST_F(XmsApply, WhatIsStoredIsSentAgainWhenAskedForWithItsSecrets)
{
    serve();
    applyWhole();
    ASSERT_EQ(run({"get", "radius", "--yaml"}), 0);
    EXPECT_THAT(dir.read("out"), HasSubstr("\n  secret1: \"********\"\n"));
    dir.write("file", dir.read("out"));
    const pid_t client = startApply({"--again"});
    const auto record = receive();
    ASSERT_TRUE(record);
    EXPECT_EQ(xasValueIn(*record, "secret1"), "testing");
    acknowledge(record->xH.id, true);
    EXPECT_EQ(statusOf(client), 0);
}

TEST_F(XmsApply, AllThatIsStoredIsShownTypeByType)
{
    serve();
    applyWhole();
    ASSERT_EQ(run({"get", "--all"}), 0);
    EXPECT_THAT(dir.read("out"), HasSubstr("dns\n  dns1         10.0.0.1\n"));
    EXPECT_THAT(dir.read("out"), HasSubstr("\nradius\n"));
    EXPECT_THAT(dir.read("out"), HasSubstr("  secret1  ********\n"));
}
