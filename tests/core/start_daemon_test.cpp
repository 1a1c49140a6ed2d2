// The built daemon from the command line to its first message.
#include "support/daemon.h"

TEST(DaemonStart, FailsWhenTheApplicationListCannotBeParsed)
{
    const XasLogSocket log;
    const XasTestDir dir;
    const XasRunResult result = xasRunDaemonProgram({"-f", "-c", dir.write("bad.xml", "<A>\n<B>\n</A>\n")});
    EXPECT_EQ(result.exitStatus, 255);
    EXPECT_EQ(result.errors, "Error allocating application list\n");
    ASSERT_TRUE(log.await("sw/err-XML Parse error at line 3: mismatched tag\n"));
    EXPECT_EQ(log.arrived().front().ident, "xasd") << "the program's own name: the log is not open yet";
    EXPECT_EQ(log.arrived().front().line.priority, LOG_USER | LOG_ERR);
}

TEST(DaemonStart, AnswersAnUnknownMessageTypeWithAFailure)
{
    XasTestDaemon daemon;
    daemon.start({});
    const XasMessage answer = daemon.ask(XasMessageBuilder{XMSG_SSH}.id(4711));
    EXPECT_EQ(
        xasMessageBytes(answer),
        xasMessageBytes(XasMessageBuilder{XMSG_ACKNAK}.sender(4).id(10).answering(4711).set("complete", 1)));
    EXPECT_THAT(daemon.stubs.lines(), ElementsAre("/usr/bin/xas_iptables.sh resetAll"));
    EXPECT_THAT(daemon.log.lines(), ElementsAre(xasInfoLine("Initializing application server\n")));
    EXPECT_EQ(daemon.log.arrived().front().ident, "xasd");
    EXPECT_EQ(daemon.log.arrived().front().line.priority, LOG_INFO | LOG_LOCAL6)
        << "the facility that the log was opened with";
}
