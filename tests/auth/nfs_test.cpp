// Remote directories: the list of their servers and their lines in the file-system table.
#include "auth/nfs.h"

#include "support/log.h"
#include "support/reply.h"
#include "wire/address.h"

#include <arpa/inet.h>

namespace {

constexpr XasIPv4 NONE = XAS_NO_IPV4;

const XasLogLine EMPTY_PATH = xasWarningLine("Ignoring NFS mount with empty path\n");
const XasLogLine TOO_LONG = xasErrorLine("NFS entry exceeds memory limits");

/** A table as it may have grown on an appliance, by hand and by earlier settings. */
constexpr const char *LIFELIKE =
    "# /etc/fstab: static file system information.\n"
    "#\n"
    "# <file system> <mount point>   <type>  <options>       <dump>  <pass>\n"
    "/dev/root\t/\text4\tro,noatime\t0 1\n"
    "proc            /proc           proc    defaults        0       0\n"
    "\n"
    "192.168.10.20:/export/logs\t /var/nfsmounts/logs\t nfs\t defaults,nodev,soft,intr,nolock,ro 0 0\n"
    "  10.0.0.7:/old /var/nfsmounts/old nfs defaults 0 0\n"
    "#10.0.0.8:/kept\t /var/nfsmounts/kept\t nfs\t defaults 0 0\n"
    " # an nfs comment that does not begin its line\n"
    "server:/v4 /mnt/v4 nfs4 defaults 0 0\n"
    "tmpfs /var/nfsmounts/nfs tmpfs nfs 0 0\n"
    "//server/share /mnt/share cifs guest 0 0\n";

XasNfsShare share(std::string remote, std::string local, bool readWrite = true)
{
    return {.remote = std::move(remote), .local = std::move(local), .readWrite = readWrite, .used = true};
}

/** A share whose line has `length` characters, the line feed included. */
XasNfsShare shareOfLength(std::size_t length, bool readWrite)
{
    // a TAB and a blank three times, "nfs", the options, a blank, "0 0" and the line feed
    const std::size_t rest = 6 + 3 + (readWrite ? 31 : 34) + 1 + 3 + 1;
    return share("s:/" + std::string(117, 'r'), "/" + std::string(length - rest - 121, 'l'), readWrite);
}

class NfsText : public testing::Test {
  protected:
    std::string text(std::string_view oldText, const XasNfsShares &shares)
    {
        reply = {};
        return xasFstabText(oldText, shares, &reply);
    }

    XasLogCapture log;
    XasReplyStatus reply;
};

} // namespace

TEST(NfsServersText, IsEmptyInItsQuotesWithoutServers)
{
    EXPECT_EQ(xasNfsServersText({NONE, NONE, NONE}), "NFS_SERVERS=\"\"\n");
}

TEST(NfsServersText, NamesEachServerOnce)
{
    const XasIPv4 a{::inet_addr("192.168.10.20")};
    const XasIPv4 b{::inet_addr("10.0.0.1")};
    const XasIPv4 c{::inet_addr("0.0.0.0")};
    EXPECT_EQ(xasNfsServersText({a, b, c}), "NFS_SERVERS=\"192.168.10.20 10.0.0.1 0.0.0.0\"\n");
    EXPECT_EQ(xasNfsServersText({a, a, NONE}), "NFS_SERVERS=\"192.168.10.20\"\n");
    EXPECT_EQ(xasNfsServersText({a, NONE, a}), "NFS_SERVERS=\"192.168.10.20\"\n");
    EXPECT_EQ(xasNfsServersText({b, a, a}), "NFS_SERVERS=\"10.0.0.1 192.168.10.20\"\n");
    EXPECT_EQ(xasNfsServersText({a, b, a}), "NFS_SERVERS=\"192.168.10.20 10.0.0.1\"\n");
    EXPECT_EQ(xasNfsServersText({a, a, a}), "NFS_SERVERS=\"192.168.10.20\"\n");
    EXPECT_EQ(xasNfsServersText({NONE, NONE, b}), "NFS_SERVERS=\"10.0.0.1\"\n");
}

TEST_F(NfsText, LosesAllOldSharesWhenNoneIsUsed)
{
    EXPECT_EQ(text(LIFELIKE, {}), "# /etc/fstab: static file system information.\n"
                                  "#\n"
                                  "# <file system> <mount point>   <type>  <options>       <dump>  <pass>\n"
                                  "/dev/root\t/\text4\tro,noatime\t0 1\n"
                                  "proc            /proc           proc    defaults        0       0\n"
                                  "\n"
                                  "#10.0.0.8:/kept\t /var/nfsmounts/kept\t nfs\t defaults 0 0\n"
                                  "server:/v4 /mnt/v4 nfs4 defaults 0 0\n"
                                  "tmpfs /var/nfsmounts/nfs tmpfs nfs 0 0\n"
                                  "//server/share /mnt/share cifs guest 0 0\n");
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
}

TEST_F(NfsText, HasTheUsedSharesAtItsEnd)
{
    XasNfsShares shares = {share("192.168.10.20:/export/logs", "/var/nfsmounts/logs", false),
                           share("unused:/x", "/var/nfsmounts/x"),
                           share("files.example.org:/home", "/var/nfsmounts/home")};
    shares[1].used = false;
    EXPECT_EQ(
        text("tmpfs /tmp tmpfs size=32m 0 0\nold:/x /x nfs ro 0 0\nproc /proc proc defaults 0 0\n", shares),
        "tmpfs /tmp tmpfs size=32m 0 0\n"
        "proc /proc proc defaults 0 0\n"
        "192.168.10.20:/export/logs\t /var/nfsmounts/logs\t nfs\t defaults,nodev,soft,intr,nolock,ro 0 0\n"
        "files.example.org:/home\t /var/nfsmounts/home\t nfs\t defaults,nodev,soft,intr,nolock 0 0\n");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(NfsText, DropsALineByItsThirdFieldAlone)
{
    EXPECT_EQ(text("a b nfs\n\ta\t \tb\t\tnfs\t\nx # nfs\n # a nfs\na b nfs\r\na b nfs", {}), "");
    constexpr std::string_view KEPT =
        "nfs\nnfs nfs\na nfs b\na b c nfs\na b nfs4\na b NFS\na b nfs,c\n#a b nfs\n\n"
        "a\v b\v nfs\v\na b\n";
    EXPECT_EQ(text(KEPT, {}), KEPT);
}

TEST_F(NfsText, JoinsTheFirstShareToALastLineWithoutLineFeed)
{
    EXPECT_EQ(text("proc /proc proc defaults 0 0", {share("s:/a", "/m"), {}, {}}),
              "proc /proc proc defaults 0 0s:/a\t /m\t nfs\t defaults,nodev,soft,intr,nolock 0 0\n");
}

TEST_F(NfsText, TakesALongLineInPiecesOf511Bytes)
{
    const std::string comment = "#" + std::string(510, 'c');
    const std::string old = "a b nfs " + std::string(503, 'o');
    ASSERT_EQ(old.size(), 511U);
    EXPECT_EQ(text(comment + old + "tail\n", {}), comment + "tail\n");
}

TEST_F(NfsText, LeavesAShareWithoutAPathOutAndWritesNoneBehindIt)
{
    const XasNfsShare first = share("s:/a", "/m/a");
    const XasNfsShare last = share("s:/c", "/m/c");
    EXPECT_EQ(text("old\n", {first, share("", "/m/b"), last}),
              "old\ns:/a\t /m/a\t nfs\t defaults,nodev,soft,intr,nolock 0 0\n");
    EXPECT_THAT(log.take(), ElementsAre(EMPTY_PATH));
    EXPECT_EQ(text("old\n", {first, share("s:/b", ""), last}),
              "old\ns:/a\t /m/a\t nfs\t defaults,nodev,soft,intr,nolock 0 0\n");
    EXPECT_THAT(log.take(), ElementsAre(EMPTY_PATH));
    EXPECT_EQ(text("old\n", {share("", ""), first, last}), "old\n");
    EXPECT_THAT(log.take(), ElementsAre(EMPTY_PATH));
    EXPECT_EQ(text("old\n", {share("", "/m/a"), share("", "/m/b"), last}), "old\n");
    EXPECT_THAT(log.take(), ElementsAre(EMPTY_PATH, EMPTY_PATH));
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
}

TEST_F(NfsText, HasBlanksTabsAndBackslashesOfPathsAsTheMountTableWantsThem)
{
    EXPECT_EQ(text("", {share("s:/my files\\x", "/m/a b\tc"), {}, {}}),
              "s:/my\\040files\\134x\t /m/a\\040b\\011c\t nfs\t defaults,nodev,soft,intr,nolock 0 0\n");
}

TEST_F(NfsText, LetsNoPathBeginAComment)
{
    const std::string once = text("", {share("#s:/a#b", "/m/a"), {}, {}});
    EXPECT_EQ(once, "\\043s:/a#b\t /m/a\t nfs\t defaults,nodev,soft,intr,nolock 0 0\n");
    EXPECT_EQ(text(once, {share("#s:/a#b", "/m/a"), {}, {}}), once)
        << "a comment would stay, one more each time";
}

TEST_F(NfsText, TakesLinesOf307CharactersWithTheirLineFeed)
{
    const std::string text307 = text("", {shareOfLength(307, true), shareOfLength(307, false), {}});
    EXPECT_EQ(text307.size(), 2U * 307U);
    EXPECT_EQ(text307, "s:/" + std::string(117, 'r') + "\t /" + std::string(141, 'l') +
                           "\t nfs\t defaults,nodev,soft,intr,nolock 0 0\n" + "s:/" + std::string(117, 'r') +
                           "\t /" + std::string(138, 'l') +
                           "\t nfs\t defaults,nodev,soft,intr,nolock,ro 0 0\n");
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
}

TEST_F(NfsText, LeavesALineOf308CharactersOutAndGoesOn)
{
    for (const bool readWrite : {true, false}) {
        EXPECT_EQ(text("old\n", {shareOfLength(308, readWrite), share("s:/b", "/m/b"), {}}),
                  "old\ns:/b\t /m/b\t nfs\t defaults,nodev,soft,intr,nolock 0 0\n");
        EXPECT_THAT(log.take(), ElementsAre(TOO_LONG));
        EXPECT_EQ(xasReplyText(reply), "4 NFS entry exceeds memory limmits");
    }
    EXPECT_EQ(text("", {shareOfLength(308, true), shareOfLength(309, true), shareOfLength(500, false)}), "");
    EXPECT_THAT(log.take(), ElementsAre(TOO_LONG, TOO_LONG, TOO_LONG));
    EXPECT_EQ(xasReplyText(reply), "4 NFS entry exceeds memory limmits");
}

TEST_F(NfsText, DoesNotChangeWhenItIsMadeTwice)
{
    const XasNfsShares shares = {share("s:/a", "/m/a"), share("s:/b", "/m/b", false), {}};
    const std::string once = text(LIFELIKE, shares);
    EXPECT_EQ(text(once, shares), once);
}
