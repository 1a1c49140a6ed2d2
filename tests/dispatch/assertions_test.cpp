// Programming errors end the process with the assertion's text: every one of the transport, the process
// manager, the safe replacement, the editors and the packet filter. (Those of all handlers are in
// support/settings_tests.h.)
#include "auth/auth_order.h"
#include "auth/cifs.h"
#include "auth/kerberos.h"
#include "auth/ldap.h"
#include "auth/nis.h"
#include "auth/nsswitch.h"
#include "auth/pam.h"
#include "auth/radius.h"
#include "auth/snmp.h"
#include "auth/sys_auth.h"
#include "auth/tacacs.h"
#include "auth/user_ports.h"
#include "config/dns.h"
#include "config/firewall_services.h"
#include "config/kernel.h"
#include "config/logrotate.h"
#include "config/modprobe.h"
#include "config/network_file.h"
#include "config/ntp.h"
#include "config/routing.h"
#include "config/syslog.h"
#include "core/daemon.h"
#include "core/msgqueue.h"
#include "dispatch/ipfilter_assign.h"
#include "dispatch/ipfilter_script.h"
#include "dispatch/ipfilter_set.h"
#include "dispatch/ipfilter_timer.h"
#include "dispatch/update_firewall.h"
#include "dispatch/vpn.h"
#include "files/config_file.h"
#include "support/ipfilter.h"
#include "support/test.h"

namespace {

/** The report of an assertion: its text and, where it tells something, the function that it stands in. */
auto assertion(const std::string &text, const std::string &function = "")
{
    return AllOf(HasSubstr("Assertion `" + text + "' failed."),
                 HasSubstr(function.empty() ? "" : ": " + function + ": "));
}

auto given(const std::string &argument, const std::string &function = "")
{
    return assertion(argument + " != ((void *)0)", function);
}

class AssertionsDeathTest : public testing::Test {
  protected:
    template <class Values, class Editor>
    void expectPathAndValuesNeeded(const Editor &edit, const char *argument)
    {
        Values values{};
        EXPECT_DEATH(std::ignore = edit(nullptr, &values, &reply), given("cfgFileName"));
        EXPECT_DEATH(std::ignore = edit("/x", nullptr, &reply), given(argument));
    }

    /** The same of an editor that reads a template too. */
    template <class Values, class Editor>
    void expectBothPathsAndValuesNeeded(const Editor &edit, const char *argument)
    {
        const Values values{};
        EXPECT_DEATH(std::ignore = edit(nullptr, "/x", &values, &reply), given("cfgTemplateFileName"));
        EXPECT_DEATH(std::ignore = edit("/x", nullptr, &values, &reply), given("cfgFileName"));
        EXPECT_DEATH(std::ignore = edit("/x", "/x", nullptr, &reply), given(argument));
    }

    XasReplyStatus reply;
    XasCfgFile cf;
};

} // namespace

TEST_F(AssertionsDeathTest, OfTheTransportNameTheMessage)
{
    XasUserList users;
    EXPECT_DEATH(std::ignore = xasSendMessage(nullptr), given("msg", "xasSendMessage"));
    EXPECT_DEATH(std::ignore = xasGetMessage(nullptr, true), given("msg", "xasGetMessage"));
    EXPECT_DEATH(std::ignore = xasReceiveMessage(nullptr, users, {}), given("msg", "xasReceiveMessage"));
}

TEST_F(AssertionsDeathTest, OfTheProcessManagerNameTheDaemon)
{
    EXPECT_DEATH(std::ignore = xasStopDaemon(nullptr), given("daemon", "xasStopDaemon"));
}

TEST_F(AssertionsDeathTest, OfTheSafeReplacementNameTheArgument)
{
    EXPECT_DEATH(std::ignore = xasCfgOpenFiles(nullptr, &cf), given("cfgFileName", "xasCfgOpenFiles"));
    EXPECT_DEATH(std::ignore = xasCfgOpenFiles("/x", nullptr), given("cf", "xasCfgOpenFiles"));
    EXPECT_DEATH(std::ignore = xasCfgOpenOutFile(nullptr, &cf), given("cfgFileName", "xasCfgOpenOutFile"));
    EXPECT_DEATH(std::ignore = xasCfgOpenOutFile("/x", nullptr), given("cf", "xasCfgOpenOutFile"));
    EXPECT_DEATH(std::ignore = xasOutputLine(nullptr, "", false), given("outFile", "xasOutputLine"));
    EXPECT_DEATH(std::ignore = xasOutputLine(stdout, nullptr, false), given("line", "xasOutputLine"));
    EXPECT_DEATH(xasCloseCfgFile(nullptr), given("cf", "xasCloseCfgFile"));
    EXPECT_DEATH(std::ignore = xasSaveCfgFile(nullptr), given("cf", "xasSaveCfgFile"));
    EXPECT_DEATH(std::ignore = xasRestoreCfgFile(nullptr), given("cfgFileName", "xasRestoreCfgFile"));
    EXPECT_DEATH(std::ignore = xasRestoreCfgFile(""),
                 assertion("strlen(cfgFileName) > 0", "xasRestoreCfgFile"));
}

TEST_F(AssertionsDeathTest, OfTheEditorsOfConfigurationNamePathAndValues)
{
    expectPathAndValuesNeeded<XasDnsPayload>(xasEditDNSCfgFile, "dnsInfo");
    expectPathAndValuesNeeded<XasFirewallCfg>(xasEditFirewallCfgFile, "fWallCfg");
    expectPathAndValuesNeeded<XasEthPayload>(xasEditKernelCfgFile, "kernCfg");
    expectPathAndValuesNeeded<XasSyslogPayload>(xasEditLogrotateCfgFile, "sysLogInfo");
    expectPathAndValuesNeeded<XasNetInfo>(xasEditNetCfgFile, "netInfo");
    expectPathAndValuesNeeded<XasNtpPayload>(xasEditNTPStepFile, "ntpServer");
    expectPathAndValuesNeeded<XasNtpPayload>(xasEditNTPCfgFile, "ntpInfo");
    expectPathAndValuesNeeded<XasRoutingPayload>(xasEditZebraCfgFile, "routerCfg");
    expectPathAndValuesNeeded<XasRoutingPayload>(xasEditRipdCfgFile, "routerCfg");
    expectPathAndValuesNeeded<XasSyslogPayload>(xasEditSyslogCfgFile, "sysLogInfo");
    expectPathAndValuesNeeded<XasVpnPayload>(xasEditIPsecCfgFile, "vpnCfg");
    const XasEthPayload eth{};
    EXPECT_DEATH(std::ignore = xasEditModProbeCfgFile(nullptr, &eth, &reply), given("cfgFileName"));
}

TEST_F(AssertionsDeathTest, OfTheEditorsOfLoginsAndSharesNamePathsAndValues)
{
    expectPathAndValuesNeeded<XasAuthPayload>(xasEditAuthenOrderCfgFile, "cfgAuth");
    expectPathAndValuesNeeded<XasCifsPayload>(xasEditSMBCfgFile, "cifs");
    expectPathAndValuesNeeded<XasCifsPayload>(xasEditSMBPassCfgFile, "cfgSmbPassCfg");
    expectPathAndValuesNeeded<XasLdapPayload>(xasEditOpenLdapCfgFile, "cfgLDAP");
    expectPathAndValuesNeeded<XasNisPayload>(xasEditYpCfgFile, "cfgNIS");
    expectPathAndValuesNeeded<XasNisPayload>(xasEditNetworkCfgFile, "cfgNIS");
    expectPathAndValuesNeeded<XasRadiusPayload>(xasEditRadiusCfgFile, "cfgRadius");
    expectPathAndValuesNeeded<XasSnmpPayload>(xasEditSNMPCfgFile, "snmpCfg");
    const XasSnmpPayload snmp{};
    EXPECT_DEATH(std::ignore = xasEditSNMPCfgFile("/x", &snmp, nullptr), given("replyReason"));
    expectBothPathsAndValuesNeeded<XasKerberosPayload>(xasEditKerberosCfgFile, "cfgKerberos");
    expectBothPathsAndValuesNeeded<XasLdapPayload>(xasEditLdapCfgFileBC, "cfgLDAP");
    expectBothPathsAndValuesNeeded<XasTacacsPayload>(xasEditTacacsCfgFile, "cfgTacacs");
}

TEST_F(AssertionsDeathTest, OfTheFilesOfTheLoginOrderNameTheArgument)
{
    const XasPamModuleData moduleData;
    std::string value;
    EXPECT_DEATH(std::ignore = xasEditNsswitchCfgFile(nullptr, &reply), given("cfgFileName"));
    EXPECT_DEATH(std::ignore = xasWritePamSystemAuthFile({}, "/x", nullptr), given("moduleData"));
    EXPECT_DEATH(std::ignore = xasWritePamSystemAuthFile({}, nullptr, &moduleData), given("cfgFileName"));
    EXPECT_DEATH(std::ignore = xasBuildPamSystemAuth("/x", nullptr), given("moduleData"));
    EXPECT_DEATH(std::ignore = xasGetPamModuleData(nullptr), given("moduleData"));
    EXPECT_DEATH(std::ignore = xasGetConfData("/x", nullptr, &value), given("tag"));
    EXPECT_DEATH(std::ignore = xasGetConfData("/x", "tag", nullptr), given("value"));
    EXPECT_DEATH(std::ignore = xasEditSysAuthCfgFile(nullptr, &reply), given("cfgFileName"));
    EXPECT_DEATH(std::ignore = xasEditNisSysAuthCfgFile("/x", nullptr), given("cfgNIS"));
    EXPECT_DEATH(std::ignore = xasEditLdapSysAuthCfgFile("/x", nullptr), given("cfgLDAP"));
    EXPECT_DEATH(std::ignore = xasEditRadiusSysAuthCfgFile("/x", nullptr), given("cfgRadius"));
    EXPECT_DEATH(std::ignore = xasEditKerberosSysAuthCfgFile("/x", nullptr), given("cfgKerberos"));
    EXPECT_DEATH(std::ignore = xasEditTacacsSysAuthCfgFile("/x", nullptr), given("cfgTacacs"));
}

TEST_F(AssertionsDeathTest, OfTheHandlerOfTheFirewallSettingsNameMessageAndList)
{
    const XasCfgFileList cfgFiles;
    XasMessage msg = XasMessageBuilder{XMSG_FIREWALL};
    XasMessage other = XasMessageBuilder{XMSG_NTP};
    EXPECT_DEATH(std::ignore = xasUpdateFirewallCfg(nullptr, &cfgFiles, &reply), given("msg"));
    EXPECT_DEATH(std::ignore = xasUpdateFirewallCfg(&other, &cfgFiles, &reply),
                 assertion("XMSG_FIREWALL == msg->xH.msgtype"));
    EXPECT_DEATH(std::ignore = xasUpdateFirewallCfg(&msg, nullptr, &reply), given("cfgFiles"));
}

TEST_F(AssertionsDeathTest, OfAHostsLineAndOfAUsersPortsNameTheArgument)
{
    EXPECT_DEATH(std::ignore = xasAddLinetoHostsFile(nullptr, "a", "c", "a", &reply), given("cfgFileName"));
    EXPECT_DEATH(std::ignore = xasAddLinetoHostsFile("/x", nullptr, "c", "a", &reply), given("address"));
    EXPECT_DEATH(std::ignore = xasAddLinetoHostsFile("/x", "a", nullptr, "a", &reply),
                 given("canonical_name"));
    EXPECT_DEATH(std::ignore = xasAddLinetoHostsFile("/x", "a", "c", nullptr, &reply), given("alias"));
    EXPECT_DEATH(std::ignore = xasLocalUserPortFiles(nullptr, &reply), given("pxUser"));
}

TEST_F(AssertionsDeathTest, OfThePacketFilterNameTheArgument)
{
    const XasCfgFileList cfgFiles;
    const XasMessage msg = xasTestFilterSetMessage(xasTestFilterSet("set", {}));
    const XasMessage other = XasMessageBuilder{XMSG_FIREWALL};
    EXPECT_DEATH(std::ignore = xasUpdateFirewall(nullptr, &cfgFiles, &reply), given("msg"));
    EXPECT_DEATH(std::ignore = xasIPFilterAssign(nullptr, &reply), given("msg"));
    EXPECT_DEATH(std::ignore = xasIPFilterTestTimer(nullptr, &reply), given("msg"));
    EXPECT_DEATH(std::ignore = xasIPFilterSet(nullptr, &reply), given("msg"));
    EXPECT_DEATH(std::ignore = xasIPFilterSet(&other, &reply),
                 assertion("XMSG_IPFILTER_SET == msg->xH.msgtype"));
    EXPECT_DEATH(std::ignore = xasIPFilterSetAddRules(nullptr, stderr, true), given("msg"));
    EXPECT_DEATH(std::ignore = xasIPFilterSetAddRules(&msg, nullptr, true), given("fp"));
    EXPECT_DEATH(std::ignore = xasIPFilterSetRemove(nullptr, stderr), given("msg"));
    EXPECT_DEATH(std::ignore = xasIPFilterSetRemove(&msg, nullptr), given("fp"));
    EXPECT_DEATH(std::ignore = xasIPFilterAddInput(nullptr), given("fp"));
}
