// The sizes in the log rotation's configuration and in its shell fragment.
#include "config/logrotate.h"

#include "support/test.h"

namespace {

/** As the appliance ships it, and what becomes of it. */
constexpr const char *LIFELIKE = "# rotate when a log is too large; see \"man logrotate\"\n"
                                 "missingok\n"
                                 "nocompress\n"
                                 "rotate 1\n"
                                 "\n"
                                 "/var/log/network /var/log/services /var/log/secure {\n"
                                 "    size 100k\n"
                                 "    prerotate\n"
                                 "        logbytes=$(stat -c %s $1)\n"
                                 "        if [ $logbytes -gt 102400 ] ; then\n"
                                 "            tail -c 51200 $1 > /www/$1.log\n"
                                 "        else\n"
                                 "            cp $1 /www/$1.log\n"
                                 "        fi\n"
                                 "    endscript\n"
                                 "}\n"
                                 "\n"
                                 "/var/log/nut {\n"
                                 "    size 50k\n"
                                 "    prerotate\n"
                                 "        logbytes=$(stat -c %s $1)\n"
                                 "        if [ $logbytes -gt 51200 ] ; then\n"
                                 "            tail -c 25600 $1 > /www/$1.log\n"
                                 "        fi\n"
                                 "    endscript\n"
                                 "}\n"
                                 "\n"
                                 "/var/log/messages {\n"
                                 "\tsize 100k # of all\n"
                                 "}\n";

/** The logs of /var/log/nut rotate at 30, all others at 64 kilobytes. */
XasSyslogPayload sizes(std::uint16_t nutSize = 30, std::uint16_t logSize = 64)
{
    XasSyslogPayload sysLogInfo{};
    sysLogInfo.nut_size = nutSize;
    sysLogInfo.log_size = logSize;
    return sysLogInfo;
}

} // namespace

TEST(LogrotateText, ReplacesAWholeFile)
{
    EXPECT_EQ(xasLogrotateText(LIFELIKE, sizes()), "# rotate when a log is too large; see \"man logrotate\"\n"
                                                   "missingok\n"
                                                   "nocompress\n"
                                                   "rotate 1\n"
                                                   "\n"
                                                   "/var/log/network /var/log/services /var/log/secure {\n"
                                                   "    size 64k\n"
                                                   "    prerotate\n"
                                                   "        logbytes=$(stat -c %s $1)\n"
                                                   "        if [ $logbytes -gt 65536 ] ; then\n"
                                                   "            tail -c 32768 $1 > /www/$1.log\n"
                                                   "        else\n"
                                                   "            cp $1 /www/$1.log\n"
                                                   "        fi\n"
                                                   "    endscript\n"
                                                   "}\n"
                                                   "\n"
                                                   "/var/log/nut {\n"
                                                   "    size 30k\n"
                                                   "    prerotate\n"
                                                   "        logbytes=$(stat -c %s $1)\n"
                                                   "        if [ $logbytes -gt 30720 ] ; then\n"
                                                   "            tail -c 15360 $1 > /www/$1.log\n"
                                                   "        fi\n"
                                                   "    endscript\n"
                                                   "}\n"
                                                   "\n"
                                                   "/var/log/messages {\n"
                                                   "\tsize 30k\n"
                                                   "}\n");
}

TEST(LogrotateText, ChangesTheSizesWhereverTheirTokensStand)
{
    xasExpectTexts({
        {"replaces whatever stands behind a token",
         xasLogrotateText("size 100k\n$logbytes -gt 1\ntail -c 1\n", sizes()),
         "size 64k\n$logbytes -gt 65536 ] ; then\ntail -c 32768 $1 > /www/$1.log\n"},
        {"keeps half of an odd size to the byte", xasLogrotateText("tail -c \n", sizes(0, 33)),
         "tail -c 16896 $1 > /www/$1.log\n"},
        {"keeps half of an odd size to the byte", xasLogrotateText("tail -c \n", sizes(0, 1)),
         "tail -c 512 $1 > /www/$1.log\n"},
        {"finds a token anywhere in a line comments and longer words included",
         xasLogrotateText("# the size of each\nmaxsize 1M\nminsize 1k size 2k\n", sizes()),
         "# the size 64k\nmaxsize 64k\nminsize 64k\n"},
        {"lets the first rule win in a line with several tokens",
         xasLogrotateText("tail -c 1 # $logbytes -gt 2\n", sizes()),
         "tail -c 1 # $logbytes -gt 65536 ] ; then\n"},
        {"lets the first rule win in a line with several tokens",
         xasLogrotateText("tail -c 1 # size 2\n", sizes()), "tail -c 1 # size 64k\n"},
        {"changes the size behind any line with the nut log unless another rule takes that line",
         xasLogrotateText("size 1\n# /var/log/nuts\nsize 1\n/var/log/messages {\nsize 1\n", sizes()),
         "size 64k\n# /var/log/nuts\nsize 30k\n/var/log/messages {\nsize 30k\n"},
        {"changes the size behind any line with the nut log unless another rule takes that line",
         xasLogrotateText("# size of /var/log/nut\nsize 1\n", sizes()), "# size 64k\nsize 64k\n"},
        {"ends a replaced last line but not a copied one", xasLogrotateText("size 1", sizes()), "size 64k\n"},
        {"ends a replaced last line but not a copied one", xasLogrotateText("rotate 1", sizes()), "rotate 1"},
        {"loses the carriage returns of replaced lines only",
         xasLogrotateText("rotate 1\r\nsize 1\r\n", sizes()), "rotate 1\r\nsize 64k\n"},
    });
}

TEST(LogrotateText, TakesTheSmallestAndTheLargestSize)
{
    constexpr const char *TEXT = "size x\n$logbytes -gt x\ntail -c x\n";
    EXPECT_EQ(xasLogrotateText(TEXT, sizes(0, 0)),
              "size 0k\n$logbytes -gt 0 ] ; then\ntail -c 0 $1 > /www/$1.log\n");
    EXPECT_EQ(xasLogrotateText(TEXT, sizes(0, 65535)),
              "size 65535k\n$logbytes -gt 67107840 ] ; then\ntail -c 33553920 $1 > /www/$1.log\n");
}

TEST(LogrotateText, KeepsLinesWithHalfAToken)
{
    constexpr std::string_view TEXT =
        "size\nsize\t100k\nsize=100k\n$logbytes -gt\n$logbytes -lt 1\ntail -n 1\n";
    EXPECT_EQ(xasLogrotateText(TEXT, sizes()), TEXT);
}

TEST(LogrotateText, TakesALongLineInPiecesOf511Bytes)
{
    const std::string first = "#" + std::string(510, 'c');
    EXPECT_EQ(xasLogrotateText(first + "size 1\n", sizes()), first + "size 64k\n");
}

TEST(LogrotateText, CutsAReplacedLineAt511Bytes)
{
    const std::string first = std::string(503, 'c') + "size ";
    EXPECT_EQ(xasLogrotateText(first + "1\n", sizes()), first + "64k");
    EXPECT_EQ(xasLogrotateText("c" + first + "\n", sizes()), "c" + first + "64");
}

TEST(LogrotateText, DoesNotChangeWhenItIsWrittenTwice)
{
    const std::string once = xasLogrotateText(LIFELIKE, sizes());
    EXPECT_EQ(xasLogrotateText(once, sizes()), once);
}
