#include "core/utils.h"

#include "platform/config_library.h"
#include "support/eth.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"

#include <arpa/inet.h>

namespace {

/** A test with files of its own that sees the log. */
class Utils : public XasFilesTest {
  protected:
    XasLogCapture log;
};

/** A test with a store of its own. */
class StoredEth : public Utils {
  protected:
    StoredEth() { ::setenv("XMS_STORE", dir.path().c_str(), 1); }
    ~StoredEth() override { ::unsetenv("XMS_STORE"); }

    void store(const XasMessage &record) const { dir.write("XMSG_ETH", xasMessageBytes(record)); }
};

} // namespace

TEST(Addresses, OfNetworkAndBroadcastFollowFromTheMask)
{
    EXPECT_EQ(xasNetworkAddr(xasTestIPv4("192.168.5.77"), xasTestIPv4("255.255.255.0")),
              xasTestIPv4("192.168.5.0"));
    EXPECT_EQ(xasBroadcastAddr(xasTestIPv4("192.168.5.77"), xasTestIPv4("255.255.255.0")),
              xasTestIPv4("192.168.5.255"));
    EXPECT_EQ(xasNetworkAddr(xasTestIPv4("10.20.30.40"), xasTestIPv4("255.240.0.0")),
              xasTestIPv4("10.16.0.0"));
    EXPECT_EQ(xasBroadcastAddr(xasTestIPv4("10.20.30.40"), xasTestIPv4("255.240.0.0")),
              xasTestIPv4("10.31.255.255"));
    EXPECT_EQ(xasBroadcastAddr(xasTestIPv4("10.20.30.40"), {}), xasTestIPv4("255.255.255.255"));
    EXPECT_EQ(xasNetworkAddr(xasTestIPv4("10.20.30.40"), {}), XasIPv4{});
}

TEST(Addresses, OfIPv4AreDotted)
{
    EXPECT_EQ(xasIPv4ToStr({}), "0.0.0.0");
    EXPECT_EQ(xasIPv4ToStr(xasTestIPv4("1.20.255.4")), "1.20.255.4");
}

TEST(Addresses, OfIPv6AreTheShortForm)
{
    unsigned char address[16] = {};
    EXPECT_EQ(xasIPv6ToStr(address), "::");
    ::inet_pton(AF_INET6, "2001:db8::8:800:200c:417a", address);
    EXPECT_EQ(xasIPv6ToStr(address), "2001:db8::8:800:200c:417a");
}

TEST(Addresses, OfIPv6CarryTheirPrefixLength)
{
    unsigned char address[16] = {};
    EXPECT_EQ(xasIPv6PrefixToStr(address, 64), "::/64");
    ::inet_pton(AF_INET6, "2001:db8:1111:2222:3333:4444:5555:6666", address);
    EXPECT_EQ(xasIPv6PrefixToStr(address, 128), "2001:db8:1111:2222:3333:4444:5555:6666/128");
}

TEST(Addresses, OfIPv6WithAPrefixAreCutAfter49Characters)
{
    unsigned char address[16] = {};
    ::inet_pton(AF_INET6, "2001:db8:1111:2222:3333:4444:5555:6666", address);
    EXPECT_EQ(xasIPv6PrefixToStr(address, 0x80000000U), "2001:db8:1111:2222:3333:4444:5555:6666/-214748364");
}

TEST(Addresses, OfIPv4AreNoneWhenAllBitsAreSetAndUnsetWhenNoneIs)
{
    EXPECT_TRUE(xasTestIPv4("255.255.255.255").isNone());
    EXPECT_FALSE(xasTestIPv4("255.255.255.254").isNone());
    EXPECT_FALSE(XasIPv4{}.isNone());
    EXPECT_TRUE(xasTestIPv4("0.0.0.0").isUnset());
    EXPECT_FALSE(xasTestIPv4("0.0.0.1").isUnset());
}

TEST_F(Utils, GiveAnInvalidTextForAnAddressThatHasNone)
{
    const unsigned char address[16] = {};
    {
        const XasFault fault{"inet_ntop", EAFNOSUPPORT};
        EXPECT_EQ(xasIPv6ToStr(address), "<invalid>");
        EXPECT_EQ(xasIPv6PrefixToStr(address, 64), "<invalid>");
    }
    const auto line = xasErrorLine("Error IPv6 address format");
    EXPECT_THAT(log.lines(), ElementsAre(line, line));
}

TEST_F(Utils, GiveAllOnesForANameThatDoesNotResolve)
{
    const XasFault fault{"gethostbyname", 0};
    EXPECT_EQ(xasHostByName("no.such.name"), XAS_NO_IPV4);
    EXPECT_EQ(xasHostByName(""), XAS_NO_IPV4);
}

TEST_F(Utils, GiveAllOnesForANameThatCannotBeAskedFor)
{
    const XasFault fault{"fork", EAGAIN};
    EXPECT_EQ(xasHostByName("127.0.0.1"), XAS_NO_IPV4);
}

TEST_F(Utils, ResolveATextualAddressToItself)
{
    EXPECT_EQ(xasHostByName("127.0.0.1"), xasTestIPv4("127.0.0.1"));
    EXPECT_EQ(xasHostByName("10.2.3.4"), xasTestIPv4("10.2.3.4"));
}

TEST(HostRecord, ReadsAsItsNameItsIPv4OrItsIPv6Text)
{
    XasHostAddr host{};
    EXPECT_EQ(xasHostToStr(host), "0.0.0.0");
    ::inet_pton(AF_INET, "192.0.2.9", host.value);
    EXPECT_EQ(xasHostToStr(host), "192.0.2.9");
    host.is_ipv6 = 1;
    ::inet_pton(AF_INET6, "fe80::2", host.value);
    EXPECT_EQ(xasHostToStr(host), "fe80::2");
    host.is_name = 7;
    xasSetFieldText(host.value, "server");
    EXPECT_EQ(xasHostToStr(host), "server");
}

TEST_F(Utils, TellRegularFilesFromDirectoriesAndNothing)
{
    const std::string file = dir.write("file", "");
    EXPECT_EQ(xasIsRegularFile(file.c_str()), 1);
    EXPECT_EQ(xasIsDirectory(file.c_str()), 0);
    EXPECT_EQ(xasIsRegularFile(dir.path().c_str()), 0);
    EXPECT_EQ(xasIsDirectory(dir.path().c_str()), 1);
    EXPECT_EQ(xasIsRegularFile(dir.path("missing").c_str()), 0);
    EXPECT_EQ(xasIsDirectory(dir.path("missing").c_str()), 0);
    EXPECT_EQ(xasIsRegularFile("/dev/null"), 0);
}

TEST_F(Utils, FollowALinkToWhatItNames)
{
    dir.write("file", "");
    ASSERT_EQ(::symlink("file", dir.path("link").c_str()), 0);
    ASSERT_EQ(::symlink("missing", dir.path("dangling").c_str()), 0);
    EXPECT_EQ(xasIsRegularFile(dir.path("link").c_str()), 1);
    EXPECT_EQ(xasIsRegularFile(dir.path("dangling").c_str()), 0);
}

TEST_F(Utils, MakeNoDirectoryForARelativePathAndCountItAsDone)
{
    EXPECT_EQ(xasMakeDirPath("relative/path"), 0);
    EXPECT_EQ(xasMakeDirPath(""), 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Invalid directory path relative/path\n"),
                                         xasErrorLine("Invalid directory path \n")));
    EXPECT_FALSE(xasExists("relative"));
}

TEST_F(Utils, NameTheDirectoryThatCannotBeMade)
{
    dir.write("file", "");
    EXPECT_EQ(xasMakeDirPath(dir.path("a/b").c_str()), 0);
    EXPECT_EQ(xasMakeDirPath(dir.path("file/b/c").c_str()), 1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error making directory " + dir.path("file") + "\n")));
}

TEST_F(Utils, StopAtTheFirstDirectoryThatCannotBeMade)
{
    const XasFault fault{"mkdir", EACCES, 1};
    EXPECT_EQ(xasMakeDirPath(dir.path("a/b/c").c_str()), 1);
    EXPECT_EQ(fault.calls(), 2U);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error making directory " + dir.path("a/b") + "\n")));
    EXPECT_TRUE(dir.has("a"));
}

TEST_F(Utils, MakeEveryMissingDirectoryOfAPath)
{
    ::umask(022);
    EXPECT_EQ(xasMakeDirPath(dir.path("a//b/c/").c_str()), 0);
    EXPECT_EQ(xasIsDirectory(dir.path("a/b/c").c_str()), 1);
    EXPECT_EQ(xasModeOf(dir.path("a")), 0755U);
    EXPECT_EQ(xasModeOf(dir.path("a/b/c")), 0755U);
    EXPECT_EQ(xasMakeDirPath(dir.path("a/b/c").c_str()), 0);
    EXPECT_EQ(xasMakeDirPath("/"), 0);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST(TrimString, GivesTheEmptyTextAtTheEndOfABlankOne)
{
    const std::string_view text = " \t ";
    EXPECT_EQ(xasTrimString(text), "");
    EXPECT_EQ(xasTrimString(text).data(), text.data() + 3);
    EXPECT_EQ(xasTrimString(""), "");
}

TEST(TrimString, CutsBlanksAndTabsOffBothEnds)
{
    EXPECT_EQ(xasTrimString(" \t abc \t"), "abc");
    EXPECT_EQ(xasTrimString("a b\tc"), "a b\tc");
    EXPECT_EQ(xasTrimString(" x"), "x");
}

TEST(TrimString, KeepsLineFeedsAndWhatStandsBeforeThem)
{
    EXPECT_EQ(xasTrimString(" abc \n"), "abc \n");
    EXPECT_EQ(xasTrimString("\n abc"), "\n abc");
}

TEST(TrimStringDeathTest, NeedsAText)
{
    EXPECT_DEATH(xasTrimString(std::string_view{}), "str != \\(\\(void \\*\\)0\\)");
}

TEST_F(Utils, TakeNoEmptyCommandForExecutable)
{
    EXPECT_EQ(xasIsExecutable(""), 0);
    EXPECT_EQ(xasIsExecutable("   "), 0);
    const auto line = xasErrorLine("Error parsing exe path");
    EXPECT_THAT(log.lines(), ElementsAre(line, line));
}

TEST_F(Utils, TakeNoDirectoryNoPlainFileAndNothingMissingForExecutable)
{
    EXPECT_EQ(xasIsExecutable(dir.path()), 0);
    EXPECT_EQ(xasIsExecutable(dir.path("missing") + " -x"), 0);
    EXPECT_EQ(xasIsExecutable(dir.write("plain", "", 0644)), 0);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Utils, LookAtTheOwnersRightToExecuteAlone)
{
    EXPECT_EQ(xasIsExecutable(dir.write("owner", "", 0100)), 1);
    EXPECT_EQ(xasIsExecutable(dir.write("others", "", 0655)), 0);
}

TEST_F(Utils, LookAtTheFirstWordOfACommand)
{
    const std::string program = dir.write("program", "", 0755);
    EXPECT_EQ(xasIsExecutable(program), 1);
    EXPECT_EQ(xasIsExecutable(program + " -x /missing"), 1);
    EXPECT_EQ(xasIsExecutable("  " + program + " "), 1);
    EXPECT_EQ(xasIsExecutable(program + "\t-x"), 0) << "a tab does not end the word";
    EXPECT_EQ(xasIsExecutable(program + "\n"), 0) << "nor does a line feed";
}

TEST_F(Utils, LogACommandThatCannotBeCopied)
{
    const std::string program = dir.write("a-program-with-a-name-too-long-to-be-kept-inside", "", 0755);
    {
        const XasFailingNew failing{program.size(), 0, 1};
        EXPECT_EQ(xasIsExecutable(program), 0);
    }
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error allocating memory\n")));
}

TEST_F(StoredEth, CannotBeHadWhenNothingIsStored)
{
    XasMessage record{};
    std::uint32_t value = 5;
    std::uint32_t other = 6;
    EXPECT_EQ(xasGetEthCfg(record), 1);
    EXPECT_NE(xasGetEthPortState(0, value, other), 0);
    EXPECT_NE(xasGetEthPortMode(1, value), 0);
    const auto line = xasErrorLine("Error getting Ethernet configuration\n");
    EXPECT_THAT(log.lines(), ElementsAre(line, line, line));
}

TEST_F(StoredEth, HasNoThirdPort)
{
    store(XasMessageBuilder{XMSG_ETH});
    std::uint32_t value = 5;
    std::uint32_t other = 6;
    EXPECT_NE(xasGetEthPortState(2, value, other), 0);
    EXPECT_NE(xasGetEthPortMode(2, value), 0);
}

TEST_F(StoredEth, GivesEachPortsOwnWords)
{
    store(XasMessageBuilder{XMSG_ETH}.set(
        "eth1.enabled=11 eth1.source=12 eth1.mode=13 eth2.enabled=21 eth2.source=22 eth2.mode=23"));
    std::uint32_t enabled = 0;
    std::uint32_t source = 0;
    std::uint32_t mode = 0;
    EXPECT_EQ(xasGetEthPortState(0, enabled, source), 0);
    EXPECT_EQ(xasGetEthPortMode(0, mode), 0);
    EXPECT_EQ(enabled, 11U);
    EXPECT_EQ(source, 12U);
    EXPECT_EQ(mode, 13U);
    EXPECT_EQ(xasGetEthPortState(1, enabled, source), 0);
    EXPECT_EQ(xasGetEthPortMode(1, mode), 0);
    EXPECT_EQ(enabled, 21U);
    EXPECT_EQ(source, 22U);
    EXPECT_EQ(mode, 23U);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(Utils, LooksForAnAccountInAChildAndTakesItForThereWhenNobodyCanAsk)
{
    EXPECT_TRUE(xasHasAccount("root"));
    EXPECT_FALSE(xasHasAccount("nobody of that name"));
    const XasFault fault{"fork", EAGAIN};
    EXPECT_TRUE(xasHasAccount("nobody of that name"));
    EXPECT_EQ(fault.calls(), 1U);
}
