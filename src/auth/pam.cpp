#include "auth/pam.h"

#include "core/assert.h"
#include "core/text.h"
#include "files/generated_file.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace {

constexpr const char *KERBEROS_FILE = "/etc/krb5.conf";
constexpr const char *TACACS_FILE = "/etc/tacplus.conf";

constexpr const char *ANY_METHOD = "sufficient";
constexpr const char *FIRST_METHOD =
    "[success=done new_authtok_reqd=done authinfo_unavail=ignore default=die]";

/** With its own blank, so that the lines carry two blanks before it. */
constexpr const char *AUTH_OPTIONS = " use_first_pass";

using Position = std::uint32_t XasAuthOrder::*;

/** The lines of a remote method in the later sections; null: none. */
struct RemoteLines {
    Position position;
    const char *account;
    const char *password;
    const char *session;
};

/** In the order of methods that share a position. */
constexpr std::array REMOTE_LINES = {
    RemoteLines{&XasAuthOrder::ldap, "account   optional      /lib/security/pam_ldap.so\n",
                "password  sufficient\t/lib/security/pam_ldap.so use_authtok\n",
                "session     sufficient\t/lib/security/pam_ldap.so\n"},
    RemoteLines{&XasAuthOrder::radius, "account   optional  \t   /lib/security/pam_radius_auth.so\n",
                "password  sufficient\t/lib/security/pam_radius_auth.so use_authtok\n", nullptr},
    RemoteLines{&XasAuthOrder::securid, "account   optional  \t   /lib/security/pam_securid.so\n",
                "password  sufficient\t/lib/security/pam_securid.so use_authtok\n", nullptr},
    RemoteLines{&XasAuthOrder::kerberos, "account   optional  \t   /lib/security/pam_krb5.so\n",
                "password  sufficient\t/lib/security/pam_krb5.so use_authtok\n",
                "session     sufficient\t/lib/security/pam_krb5.so\n"},
    RemoteLines{&XasAuthOrder::tacacs, "account   optional  \t   /lib/security/pam_tacplus.so\n",
                "password  sufficient\t/lib/security/pam_tacplus.so use_authtok\n",
                "session     sufficient\t/lib/security/pam_tacplus.so\n"},
};

/** One section's lines of all remote methods, by position. */
std::string remoteLines(const XasAuthOrder &order, const char *RemoteLines::*section)
{
    std::string lines;
    for (std::uint32_t position = 1; position <= XAS_AUTH_POSITIONS; ++position) {
        for (const RemoteLines &method : REMOTE_LINES) {
            if (order.*method.position == position && method.*section != nullptr)
                lines += method.*section;
        }
    }
    return lines;
}

std::string authLine(const char *control, const char *module)
{
    return xasFormat("auth      %s\t/lib/security/%s %s\n", control, module, AUTH_OPTIONS);
}

std::string piece(const char *name, const std::string &value)
{
    return xasFormat("%s=%s ", name, value.c_str()).substr(0, XAS_PAM_PIECE_MAX);
}

std::string tacacsLine(const char *control, const XasPamModuleData &moduleData)
{
    std::string line =
        xasFormat("auth      %s\t/lib/security/pam_tacplus.so %s server=%s secret=%s ", control, AUTH_OPTIONS,
                  moduleData.server1.c_str(), moduleData.server1_secret.c_str());
    for (const std::string *server : {&moduleData.server2, &moduleData.server3}) {
        if (!server->empty())
            line += piece("server", *server);
    }
    line += piece("login", moduleData.login);
    return line + (moduleData.encrypt == 1 ? " encrypt\n" : "\n");
}

/** The line of a position; empty when no method has it. Local accounts and NIS share one line, the first. */
std::string authLineAt(std::uint32_t position, const XasAuthOrder &order, const XasPamModuleData &moduleData,
                       bool &hasUnix)
{
    const char *control = order.firstResponding != 0 ? FIRST_METHOD : ANY_METHOD;
    if (!hasUnix && (order.local == position || order.nis == position)) {
        hasUnix = true;
        return authLine(control, "pam_unix.so");
    }
    if (order.ldap == position)
        return authLine(control, "pam_ldap.so");
    if (order.radius == position)
        return authLine(control, "pam_radius_auth.so");
    if (order.securid == position)
        return authLine(control, "pam_securid.so");
    if (order.kerberos == position)
        return authLine(control, moduleData.useLdap == position ? "pam_krb5.so"
                                                                : "pam_krb5.so no_user_check create_local");
    if (order.tacacs == position)
        return tacacsLine(control, moduleData);
    return {};
}

std::string authSection(const XasAuthOrder &order, const XasPamModuleData &moduleData)
{
    std::string lines = "auth      required\t/lib/security/pam_env.so readenv=0\n"
                        "auth      sufficient\t/lib/security/pam_sp_user.so\n";
    bool hasUnix = false;
    for (std::uint32_t position = 1; position <= XAS_AUTH_POSITIONS; ++position)
        lines += authLineAt(position, order, moduleData, hasUnix);
    return lines + "auth      required      /lib/security/pam_deny.so\n";
}

bool carriesSecret(const std::string &text, const XasPamModuleData &moduleData)
{
    return !moduleData.server1_secret.empty() && text.find(" secret=") != std::string::npos;
}

/** Reads a text setting, cut to `longest` characters. */
void readText(const char *path, const char *tag, std::size_t longest, std::string &setting)
{
    if (xasGetConfData(path, tag, &setting) == 0)
        setting.resize(std::min(setting.size(), longest));
}

/** Reads a switch: off when the value begins with 0. */
void readSwitch(const char *path, const char *tag, std::uint32_t &setting)
{
    std::string value;
    if (xasGetConfData(path, tag, &value) == 0)
        setting = value.starts_with('0') ? 0 : 1;
}

} // namespace

std::string xasPamSystemAuthText(const XasAuthOrder &order, const XasPamModuleData &moduleData)
{
    std::string text = "#%PAM-1.0 system-auth file\n";
    text += authSection(order, moduleData);
    text += "account   optional      /lib/security/pam_unix.so\n";
    text += remoteLines(order, &RemoteLines::account);
    text += "password  sufficient\t/lib/security/pam_unix.so retry=3 nullok md5 shadow nis\n";
    text += remoteLines(order, &RemoteLines::password);
    text += "session   required      /lib/security/pam_limits.so\n"
            "session   sufficient\t/lib/security/pam_unix.so\n";
    text += remoteLines(order, &RemoteLines::session);
    return text;
}

int xasWritePamSystemAuthFile(const XasAuthOrder &order, const char *path, const XasPamModuleData *moduleData)
{
    xasAssertGiven(path, "cfgFileName");
    xasAssertGiven(moduleData, "moduleData");
    const std::string text = xasPamSystemAuthText(order, *moduleData);
    const bool isSecret = carriesSecret(text, *moduleData);
    return xasGenerateFile(path, text, isSecret ? XasFileAccess::owner : XasFileAccess::everybody);
}

int xasBuildPamSystemAuth(const char *path, const XasPamModuleData *moduleData)
{
    xasAssertGiven(path, "cfgFileName");
    xasAssertGiven(moduleData, "moduleData");
    XasAuthOrder order{};
    if (xasReadAuthenOrder(order) == XAS_ORDER_UNKNOWN)
        return 0;
    std::ignore = xasWritePamSystemAuthFile(order, path, moduleData); // never the message's failure
    return 0;
}

bool xasFindConfData(std::string_view text, std::string_view tag, std::string &value)
{
    const std::string pattern = std::string{tag} + " = ";
    bool found = false;
    xasForEachLine(text, [&](std::string_view line) {
        const std::size_t at = line.find(pattern);
        if (at == std::string_view::npos)
            return;
        value = line.substr(std::min(line.find('=', at) + 2, line.size()));
        if (!value.empty())
            value.pop_back();
        found = true;
    });
    return found;
}

int xasGetConfData(const char *cfgFileName, const char *tag, std::string *value)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(tag, "tag");
    xasAssertGiven(value, "value");
    std::string text;
    const bool isRead = xasReadWhole(cfgFileName, text) == XasReading::whole;
    return isRead && xasFindConfData(text, tag, *value) ? 0 : 1;
}

int xasGetPamModuleData(XasPamModuleData *moduleData)
{
    xasAssertGiven(moduleData, "moduleData");
    readSwitch(KERBEROS_FILE, "use_ldap", moduleData->useLdap);
    readText(TACACS_FILE, "server1", XAS_PAM_SERVER_MAX, moduleData->server1);
    readText(TACACS_FILE, "server2", XAS_PAM_SERVER_MAX, moduleData->server2);
    readText(TACACS_FILE, "server3", XAS_PAM_SERVER_MAX, moduleData->server3);
    readText(TACACS_FILE, "server1_secret", XAS_PAM_SECRET_MAX, moduleData->server1_secret);
    readSwitch(TACACS_FILE, "encrypt", moduleData->encrypt);
    readText(TACACS_FILE, "login", XAS_PAM_LOGIN_MAX, moduleData->login);
    return 0;
}
