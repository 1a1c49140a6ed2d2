#include "config/update_syslog.h"

#include "config/logrotate.h"
#include "config/syslog.h"
#include "core/assert.h"
#include "core/log.h"

int xasUpdateSyslogCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_SYSLOG == msg->xH.msgtype, "XMSG_SYSLOG == msg->xH.msgtype");
    xasAssertGiven(cfgFiles, "cfgFiles");

    const char *syslogFile = xasGetCfgFilePath("syslog", *cfgFiles);
    if (syslogFile == nullptr) {
        xasLogError("Error determining config file for syslog\n");
        return 1;
    }
    const auto sysLogInfo = xasReadPayload<XasSyslogPayload>(*msg);
    if (!xasAreSyslogLevelsValid(sysLogInfo))
        return 1;
    const int syslogResult = xasEditSyslogCfgFile(syslogFile, &sysLogInfo, reply);
    if (syslogResult != 0)
        xasLogError("Error editing syslog config file\n");

    const char *logrotateFile = xasGetCfgFilePath("logrotate", *cfgFiles);
    if (logrotateFile == nullptr) {
        xasLogError("Error determining config file for logrotate\n");
        return 1;
    }
    if (xasEditLogrotateCfgFile(logrotateFile, &sysLogInfo, reply) != 0) {
        xasLogError("Error editing logrotate config file\n");
        return 1;
    }
    return syslogResult;
}
