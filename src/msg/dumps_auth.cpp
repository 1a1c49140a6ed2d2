#include "msg/dumps.h"

#include "auth/auth_message.h"
#include "auth/kerberos_message.h"
#include "auth/ldap_message.h"
#include "auth/nis_message.h"
#include "auth/radius_message.h"
#include "core/text.h"
#include "core/utils.h"
#include "msg/enum_names.h"
#include "platform/config_library.h"

namespace {

std::string radiusServerLine(int number, const XasRadiusServer &server)
{
    return xasFormat("  #%d- server: %s secret: %s port: %d\n", number, xasHostToStr(server.host).c_str(),
                     xasFieldString(server.secret).c_str(), server.port);
}

} // namespace

std::string msgDumpAuth(const XasMessage &msg)
{
    const auto auth = xasReadPayload<XasAuthPayload>(msg);
    return xasFormat("local: %d nis: %d ldap: %d radius: %d securid: %d ", auth.local, auth.nis, auth.ldap,
                     auth.radius, auth.securid) +
           xasFormat("kerberos: %d tacacs: %d\n", auth.kerberos, auth.tacacs);
}

std::string msgDumpNis(const XasMessage &msg)
{
    const auto nis = xasReadPayload<XasNisPayload>(msg);
    return xasFormat("enabled: %s order: %d domain: %s master: %s\n", msgYesNoName(nis.enabled), nis.order,
                     xasFieldString(nis.domain).c_str(), xasHostToStr(nis.master).c_str());
}

std::string msgDumpLdap(const XasMessage &msg)
{
    const auto ldap = xasReadPayload<XasLdapPayload>(msg);
    return xasFormat("enabled: %s order: %d server: %s base: %s\n", msgYesNoName(ldap.enabled), ldap.order,
                     xasHostToStr(ldap.server).c_str(), xasFieldString(ldap.base).c_str()) +
           xasFormat("bind_name: %s bind_passwd: %s port: %d ad_support: %s\n",
                     xasFieldString(ldap.bind_name).c_str(), xasFieldString(ldap.bind_passwd).c_str(),
                     static_cast<int>(ldap.port), msgYesNoName(ldap.ad_support));
}

std::string msgDumpRadius(const XasMessage &msg)
{
    const auto radius = xasReadPayload<XasRadiusPayload>(msg);
    // Permissions and menu of remote users are not in the record; the line has its place for them.
    return xasFormat("enabled: %s order: %d timeout: %d perm: 0x%x menu: %s\n", msgYesNoName(radius.enabled),
                     radius.order, radius.timeout, 0U, "") +
           radiusServerLine(1, radius.server1) + radiusServerLine(2, radius.server2);
}

std::string msgDumpKerberos(const XasMessage &msg)
{
    const auto kerberos = xasReadPayload<XasKerberosPayload>(msg);
    return xasFormat("enabled: %s order: %d realm: %s\n", msgYesNoName(kerberos.enabled), kerberos.order,
                     xasFieldString(kerberos.realm).c_str()) +
           xasFormat("kdc: %s kdc_ip: %s kdc_port: %d use_ldap: %s\n", xasFieldString(kerberos.kdc).c_str(),
                     xmlIPv4Or6ToStr(&kerberos.kdc_ip), kerberos.kdc_port, msgYesNoName(kerberos.use_ldap));
}
