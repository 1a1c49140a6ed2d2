#include "config/hostname.h"

#include "support/test.h"

namespace {

XasHostnamePayload payloadOf(std::string_view hostname, std::string_view domain)
{
    XasHostnamePayload payload{};
    hostname.copy(payload.hostname, sizeof payload.hostname);
    domain.copy(payload.domain, sizeof payload.domain);
    return payload;
}

/** A payload whose full name is `fullName`. */
XasHostnamePayload named(std::string_view fullName)
{
    return payloadOf(fullName, "");
}

} // namespace

TEST(FullHostname, IsTheNameAndBehindADotTheDomain)
{
    xasExpectTexts({
        {"is the name alone without a domain", xasFullHostname(payloadOf("console1", "")), "console1"},
        {"is the name alone without a domain", xasFullHostname(payloadOf("a.b", "")), "a.b"},
        {"is the name a dot and the domain", xasFullHostname(payloadOf("console1", "example.org")),
         "console1.example.org"},
        {"is the name a dot and the domain", xasFullHostname(payloadOf("", "example.org")), ".example.org"},
        {"ends the name with its field", xasFullHostname(payloadOf(std::string(65, 'h'), "d")),
         std::string(65, 'h') + ".d"},
        {"is kept within255 characters", xasFullHostname(payloadOf("h", std::string(253, 'd'))),
         "h." + std::string(253, 'd')},
        {"is kept within255 characters", xasFullHostname(payloadOf("h", std::string(2000, 'd'))),
         "h." + std::string(253, 'd')},
    });
}

TEST(HostsText, BeginsWithTheLoopbackLineAlsoForAnEmptyFile)
{
    EXPECT_EQ(xasHostsText("", named("a")), "127.0.0.1\ta\tlocalhost.localdomain\tlocalhost\n");
}

TEST(HostsText, LosesEveryOldLoopbackLineWhereverTheWordsStand)
{
    EXPECT_EQ(xasHostsText("# localhost localhost.localdomain x127.0.0.1x\n"
                           "127.0.0.1 localhost.localdomain\n"
                           "1.2.3.4 b\n",
                           named("a")),
              "127.0.0.1\ta\tlocalhost.localdomain\tlocalhost\n"
              "1.2.3.4 b\n")
        << "the third word is part of the second";
}

TEST(HostsText, KeepsLinesThatLackOneOfTheThreeWords)
{
    const std::string kept = "127.0.0.1\tlocalhost\n::1\tlocalhost.localdomain localhost\n\n# comment\nlast";
    EXPECT_EQ(xasHostsText(kept, named("a")), "127.0.0.1\ta\tlocalhost.localdomain\tlocalhost\n" + kept);
}

TEST(DomainText, IsEmptyWithoutADotAndBehindTheLastCharacter)
{
    EXPECT_EQ(xasDomainText(named("console1")), "");
    EXPECT_EQ(xasDomainText(named("")), "");
    EXPECT_EQ(xasDomainText(named("console1.")), "");
    EXPECT_EQ(xasDomainText(named(".")), "");
}

TEST(DomainText, IsWhatStandsBehindTheFirstDot)
{
    EXPECT_EQ(xasDomainText(named("console1.example.org")), "STATIC_DOMAIN=example.org\n");
    EXPECT_EQ(xasDomainText(named("a.b")), "STATIC_DOMAIN=b\n");
    EXPECT_EQ(xasDomainText(named("a..b")), "STATIC_DOMAIN=.b\n");
}
