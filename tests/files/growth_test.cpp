// Editing a text takes the same time for each of its lines, however many there are.
#include "support/growth.h"

#include "auth/cifs.h"
#include "auth/nfs.h"
#include "auth/snmp.h"
#include "config/firewall_services.h"
#include "config/logrotate.h"
#include "config/ntp.h"
#include "config/routing.h"
#include "config/syslog.h"
#include "support/test.h"

TEST(TimeOfALine, IsTheSameInAnyFile)
{
    XasReplyStatus reply;
    const std::pair<std::function<std::string(std::string_view)>, const char *> editors[] = {
        {[](auto text) { return xasSmbText(text, {}); }, "   workgroup = WORKGROUP\n"},
        {[&](auto text) { return xasFstabText(text, {}, &reply); },
         "server:/somewhere /mnt/somewhere nfs ro 0 0\n"},
        {[](auto text) { return xasSnmpText(text, {}); }, "rouser somebody auth\n"},
        {[&](auto text) { return xasFirewallText(text, {}, &reply).text; }, "TCP_PUBLIC_SERVICES=\"www\"\n"},
        {[](auto text) { return xasLogrotateText(text, {}); },
         "            tail -c 51200 $1 > /www/$1.log\n"},
        {[](auto text) { return xasNtpCfgText(text, {}); }, "server ntp.example.org iburst\n"},
        {[](auto text) { return xasZebraText(text, {}); }, "access-list 1 permit 10.0.0.0 0.255.255.255\n"},
        {[](auto text) { return xasRipdText(text, {}); }, "access-list 1 permit 10.0.0.0 0.255.255.255\n"},
        {[](auto text) { return xasRipdText(text, {}); }, "router rip\n"},
        {[](auto text) { return xasSyslogLocalText(text, {}); }, "local0.*    /var/log/somewhere\n"},
    };
    for (const auto &[edit, line] : editors)
        EXPECT_LT(xasGrowthPerLine(edit, line), XAS_CONSTANT_GROWTH) << line;
}
