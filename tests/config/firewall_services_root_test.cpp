// A shell reads the firewall settings that we write.
#include "config/firewall_services.h"

#include "support/programs.h"

namespace {

class FirewallShell : public XasFilesTest {
  protected:
    XasFirewallCfg fWallCfg{.reject_method = 1,
                            .invisible = 1,
                            .ssh = 1,
                            .ssh_port = 2222,
                            .telnet = 0,
                            .www = 1,
                            .https = 0,
                            .smb = 1};

    /** The settings as a firewall script sees them, one a line, in brackets. */
    [[nodiscard]] XasProgramResult sourced() const
    {
        const std::string path = dir.write("firewall", "# settings\nTCP_PUBLIC_SERVICES=\"www $(false)\"\n"
                                                       "UDP_PUBLIC_SERVICES=\nREJECT_METHOD=x\n"
                                                       "INVISIBLE_TO_PING=x\nTRUSTED=\"lo\"\n");
        XasReplyStatus reply;
        EXPECT_EQ(xasEditFirewallCfgFile(path.c_str(), &fWallCfg, &reply), 0);
        return xasRunShell("set -eu; . " + path +
                           "; printf '[%s]\\n' \"$TCP_PUBLIC_SERVICES\" \"$UDP_PUBLIC_SERVICES\" "
                           "\"$REJECT_METHOD\" \"$INVISIBLE_TO_PING\" \"$TRUSTED\"; "
                           "for service in $TCP_PUBLIC_SERVICES; do printf '%s,' \"$service\"; done");
    }
};

} // namespace

TEST_F(FirewallShell, HasTheSettingsAsVariables)
{
    const XasProgramResult result = sourced();
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "[www 2222 135 netbios-ssn microsoft-ds]\n"
                             "[ntp router 161 162 30718:30721 135 netbios-ns netbios-dgm]\n"
                             "[DROP]\n[yes]\n[lo]\n"
                             "www,2222,135,netbios-ssn,microsoft-ds,");
}

TEST_F(FirewallShell, HasNoServicesWhenNothingIsOpen)
{
    fWallCfg = {};
    const XasProgramResult result = sourced();
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "[]\n[ntp router 161 162 30718:30721 ]\n[REJECT]\n[no]\n[lo]\n");
}
