#include "msg/dumps.h"

#include "auth/cifs_message.h"
#include "auth/nfs_message.h"
#include "auth/snmp_message.h"
#include "core/text.h"
#include "msg/enum_names.h"

std::string msgDumpSnmp(const XasMessage &msg)
{
    const auto snmp = xasReadPayload<XasSnmpPayload>(msg);
    return xasFormat(
               "ro_community: %s rw_community: %s trap_community: %s v3user: %s v3pass: %s v3phrase: %s\n",
               xasFieldString(snmp.ro_community).c_str(), xasFieldString(snmp.rw_community).c_str(),
               xasFieldString(snmp.trap_community).c_str(), xasFieldString(snmp.v3user).c_str(),
               xasFieldString(snmp.v3pass).c_str(), xasFieldString(snmp.v3phrase).c_str()) +
           xasFormat("v3rwuser: %s v3rwpass: %s v3rwphrase: %s v3security: %s v3auth: %s v3encrypt: %s "
                     "alarm_delay: %d\n",
                     xasFieldString(snmp.v3rwuser).c_str(), xasFieldString(snmp.v3rwpass).c_str(),
                     xasFieldString(snmp.v3rwphrase).c_str(), msgYesNoName(snmp.v3security),
                     msgYesNoName(snmp.v3auth), msgYesNoName(snmp.v3encrypt),
                     static_cast<int>(snmp.alarm_delay));
}

std::string msgDumpNfs(const XasMessage &msg)
{
    std::string text;
    const auto payload = xasReadPayload<XasNfsPayload>(msg);
    for (const XasNfsMount &mount : payload.mounts)
        text += xasFormat("rem_dir: %s local_dir: %s read_write: %s mount: %s\n",
                          xasFieldString(mount.rem_dir).c_str(), xasFieldString(mount.local_dir).c_str(),
                          msgYesNoName(mount.read_write), msgYesNoName(mount.mount));
    return text;
}

std::string msgDumpCifs(const XasMessage &msg)
{
    const auto cifs = xasReadPayload<XasCifsPayload>(msg);
    return xasFormat("enabled: %s eth1: %s eth2: %s\n", msgYesNoName(cifs.enabled), msgYesNoName(cifs.eth1),
                     msgYesNoName(cifs.eth2)) +
           xasFormat("lanman_pwd: %s lct_field: %s\n", xasFieldString(cifs.lanman_pwd).c_str(),
                     xasFieldString(cifs.lct_field).c_str()) +
           xasFormat("nt_pwd: %s workgroup: %s\n", xasFieldString(cifs.nt_pwd).c_str(),
                     xasFieldString(cifs.workgroup).c_str());
}
