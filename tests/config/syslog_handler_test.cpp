// The handler of the logging settings.
#include "config/syslog.h"

#include "support/apps.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"
#include "support/reply.h"

namespace {

constexpr const char *OLD_SYSLOG = "local0.info    /var/log/network\nlocal5.info    /var/log/general\n";
constexpr const char *OLD_LOGROTATE = "size 100k\n/var/log/nut {\nsize 100k\n}\n";

class SyslogUpdate : public XasFilesTest {
  protected:
    XasMessageBuilder message{XMSG_SYSLOG};
    std::string syslogFile = dir.write("syslog.conf", OLD_SYSLOG);
    std::string logrotateFile = dir.write("logrotate.conf", OLD_LOGROTATE);
    XasCfgFileList files = xasTestCfgFiles({{"syslog", syslogFile}, {"logrotate", logrotateFile}});
    XasLogCapture log;
    XasReplyStatus reply;

    SyslogUpdate()
    {
        message.set("local0=3 local1=1 authpriv=1 local3=1 local4=1 local5=4 remote1= remote2=loghost "
                    "nut_size=30 log_size=64");
    }

    int update()
    {
        XasMessage msg = message;
        return xasUpdateSyslogCfg(&msg, &files, &reply);
    }
};

constexpr const char *NEW_SYSLOG = "local0.err    /var/log/network\n"
                                   "local5.debug    /var/log/general\n"
                                   "local0.err    @loghost\n"
                                   "local1.info    @loghost\n"
                                   "authpriv.info    @loghost\n"
                                   "local3.info    @loghost\n"
                                   "local4.info    @loghost\n"
                                   "local5.debug    @loghost\n"
                                   "local6.info    @loghost\n"
                                   "kern.debug    @loghost\n"
                                   "auth.info    @loghost\n";
constexpr const char *NEW_LOGROTATE = "size 64k\n/var/log/nut {\nsize 30k\n}\n";

} // namespace

TEST_F(SyslogUpdate, RefusesAnUnknownLevelInAnyPlaceWithoutAWord)
{
    for (const char *facility : {"local0", "local1", "authpriv", "local3", "local4", "local5"}) {
        message.set(facility, 5);
        EXPECT_EQ(update(), 1) << facility;
        message.set(facility, 4);
    }
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), IsEmpty());
    EXPECT_THAT(dir.names(), ElementsAre("logrotate.conf", "syslog.conf"));
}

TEST_F(SyslogUpdate, AppliedTwiceChangesNoByteTheSecondTime)
{
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(update(), 0);
    EXPECT_EQ(dir.read("syslog.conf"), NEW_SYSLOG);
    EXPECT_EQ(dir.read("logrotate.conf"), NEW_LOGROTATE);
}
