// The editors that refresh the PAM file after a login method's own settings changed.
#include "auth/sys_auth.h"

#include "auth/kerberos_message.h"
#include "auth/ldap_message.h"
#include "auth/nis_message.h"
#include "auth/radius_message.h"
#include "auth/tacacs_message.h"
#include "support/login_files.h"

namespace {

using SysAuth = XasLoginFilesTest;

} // namespace

TEST_F(SysAuth, EveryEditorRefreshesThePamFile)
{
    const std::string path = dir.path("system-auth");
    const auto expectRefreshed = [&](int result) {
        EXPECT_EQ(result, 0);
        EXPECT_EQ(dir.read("system-auth"), LOCAL_PAM);
        dir.write("system-auth", "old\n");
    };
    const XasNisPayload nis{};
    const XasLdapPayload ldap{};
    const XasRadiusPayload radius{};
    const XasKerberosPayload kerberos{};
    const XasTacacsPayload tacacs{};
    expectRefreshed(xasEditSysAuthCfgFile(path.c_str(), &reply));
    expectRefreshed(xasEditLocalUsersSysAuthCfgFile(path.c_str()));
    expectRefreshed(xasEditNisSysAuthCfgFile(path.c_str(), &nis));
    expectRefreshed(xasEditLdapSysAuthCfgFile(path.c_str(), &ldap));
    expectRefreshed(xasEditRadiusSysAuthCfgFile(path.c_str(), &radius));
    expectRefreshed(xasEditKerberosSysAuthCfgFile(path.c_str(), &kerberos));
    expectRefreshed(xasEditTacacsSysAuthCfgFile(path.c_str(), &tacacs));
}
