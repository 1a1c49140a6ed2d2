// The clock-step option of the NTP daemon, which depends on a file of the appliance.
#include "core/command_line.h"
#include "support/files.h"

TEST(NtpCommandLine, IsUnchangedWhenThereAreStepTickers)
{
    xasWriteFile("/etc/ntp/step-tickers", "0.pool\n");
    EXPECT_THAT(xasBuildArguments("/bin/ntpd -n").words, ElementsAre("/bin/ntpd", "-n"));
}

TEST(NtpCommandLine, MayStepTheClockWithoutStepTickers)
{
    std::remove("/etc/ntp/step-tickers");
    EXPECT_THAT(xasBuildArguments("/bin/ntpd -n").words, ElementsAre("/bin/ntpd", "-n", "-g"));
}

TEST(NtpCommandLine, MayStepTheClockWithEmptyStepTickers)
{
    xasWriteFile("/etc/ntp/step-tickers", "");
    EXPECT_THAT(xasBuildArguments("/bin/ntpd").words, ElementsAre("/bin/ntpd", "-g"));
}

TEST(NtpCommandLine, IsTheOnlyOneThatGetsTheOption)
{
    xasWriteFile("/etc/ntp/step-tickers", "");
    EXPECT_THAT(xasBuildArguments("/usr/bin/ntpd").words, ElementsAre("/usr/bin/ntpd"));
    EXPECT_THAT(xasBuildArguments(" /bin/ntpd").words, ElementsAre("/bin/ntpd"));
    EXPECT_THAT(xasBuildArguments("/bin/ntp").words, ElementsAre("/bin/ntp"));
}

TEST(NtpCommandLine, IsMeantByItsFirstNineCharacters)
{
    xasWriteFile("/etc/ntp/step-tickers", "");
    EXPECT_THAT(xasBuildArguments("/bin/ntpdate now").words, ElementsAre("/bin/ntpdate", "now", "-g"));
}

TEST(NtpCommandLine, LosesTheOptionBehindItsTwentiethWord)
{
    xasWriteFile("/etc/ntp/step-tickers", "");
    const auto words = xasBuildArguments("/bin/ntpd 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20").words;
    ASSERT_EQ(words.size(), 20U);
    EXPECT_EQ(words.back(), "20");
}

TEST(NtpCommandLine, IsRefusedWhenTheOptionMakesItLongerThan255Characters)
{
    xasWriteFile("/etc/ntp/step-tickers", "");
    const std::string fits = "/bin/ntpd " + std::string(242, 'x');
    EXPECT_THAT(xasBuildArguments(fits).words, ElementsAre("/bin/ntpd", std::string(242, 'x'), "-g"));
    EXPECT_THAT(xasBuildArguments(fits + "x").words, IsEmpty());
}
