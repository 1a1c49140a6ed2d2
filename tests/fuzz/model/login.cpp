// Files of the logins and of the tunnel.
#include "model/models.h"

#include <arpa/inet.h>
#include <cstring>

namespace {

using Order = std::uint32_t;
enum : std::size_t { LOCAL, NIS, LDAP, RADIUS, SECURID, KERBEROS, TACACS, FIRST };

Order position(const XasRecordBytes &m, std::size_t method)
{
    return m.u32(120 + 4 * method);
}

/** Every occurrence replaced, left to right; at most 5000 characters are looked at. */
void replace(std::string &text, const std::string &pattern, const std::string &by)
{
    const std::string old = text.substr(0, 5000);
    text.clear();
    for (std::size_t at = 0; at < old.size();) {
        if (old.compare(at, pattern.size(), pattern) == 0) {
            text += by;
            at += pattern.size();
        } else {
            text += old[at++];
        }
    }
}

std::string templateOf(const std::string &old)
{
    return std::string{old.c_str()}.substr(0, 5000);
}

} // namespace

XasModelText xasModelAuthOrder(const XasRecordBytes &m, unsigned /*variant*/, const std::string & /*old*/)
{
    const char *const names[] = {"LOCAL", "NIS", "LDAP", "RADIUS", "SECURID", "KERBEROS", "TACACS"};
    std::string text = m.u32(128) != 0 ? "FIRSTRSP=1\n" : "FIRSTRSP=0\n";
    for (std::size_t i = 0; i < 7; ++i)
        text += xasModelFormat("%s=%u\n", names[i], m.u8(120 + i) > 7 ? 0 : m.u8(120 + i));
    return text;
}

XasModelText xasModelNsswitch(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    const auto sources = [&](bool isPasswd) {
        std::string list;
        bool hasFiles = false;
        for (Order p = 1; p <= 7; ++p) {
            if (isPasswd && position(m, RADIUS) == p) {
                list += " files radius";
                hasFiles = true;
            }
            list += isPasswd && position(m, SECURID) == p ? " securid" : "";
            if (position(m, LOCAL) == p && !hasFiles) {
                list += " files";
                hasFiles = true;
            }
            list += position(m, NIS) == p ? " nis" : "";
        }
        return list.erase(0, list.empty() ? 0 : 1) +
               (hasFiles       ? ""
                : list.empty() ? "files"
                               : " files") +
               "\n";
    };
    const char *const keys[] = {
        "passwd:", "shadow:", "group:", "protocols:", "services:", "netgroup:", "automount:"};
    std::string text;
    for (const std::string &line : xasModelLines(old)) {
        std::string out = line;
        for (const char *key : keys) {
            if (xasModelBegins(line, key))
                out = xasModelFormat("%-12s", key) + sources(std::strcmp(key, "passwd:") == 0);
        }
        text += out;
    }
    return text;
}

namespace {

/** The lines of the remote methods of one section; a method without one has an empty text. */
std::string remote(const XasRecordBytes &m, const std::string (&lines)[5])
{
    std::string text;
    for (Order p = 1; p <= 7; ++p) {
        for (std::size_t i = 0; i < 5; ++i)
            text += position(m, LDAP + i) == p ? lines[i] : "";
    }
    return text;
}

std::string pamLine(const XasRecordBytes &m, const std::string &moduleText)
{
    return (position(m, FIRST) != 0
                ? "auth      [success=done new_authtok_reqd=done authinfo_unavail=ignore default=die]"
                : std::string{"auth      sufficient"}) +
           "\t/lib/security/" + moduleText;
}

std::string tacacsLine(const XasRecordBytes &m)
{
    const std::string servers[] = {m.text(152, 257), m.text(537, 257), m.text(794, 257)};
    std::string text =
        "pam_tacplus.so  use_first_pass server=" + servers[0] + " secret=" + m.text(409, 128) + " ";
    for (const std::string &server : {servers[1], servers[2]})
        text += server.empty() ? "" : ("server=" + server + " ").substr(0, 75);
    return pamLine(m, text + ("login=" + m.text(1051, 21) + " ").substr(0, 75) +
                          (m.u32(1076) == 1 ? " encrypt\n" : "\n"));
}

} // namespace

XasModelText xasModelPam(const XasRecordBytes &m, unsigned /*variant*/, const std::string & /*old*/)
{
    std::string text = "#%PAM-1.0 system-auth file\nauth      required\t/lib/security/pam_env.so readenv=0\n"
                       "auth      sufficient\t/lib/security/pam_sp_user.so\n";
    bool hasUnix = false;
    for (Order p = 1; p <= 7; ++p) {
        if (!hasUnix && (position(m, LOCAL) == p || position(m, NIS) == p)) {
            text += pamLine(m, "pam_unix.so  use_first_pass\n");
            hasUnix = true;
        } else if (position(m, LDAP) == p) {
            text += pamLine(m, "pam_ldap.so  use_first_pass\n");
        } else if (position(m, RADIUS) == p) {
            text += pamLine(m, "pam_radius_auth.so  use_first_pass\n");
        } else if (position(m, SECURID) == p) {
            text += pamLine(m, "pam_securid.so  use_first_pass\n");
        } else if (position(m, KERBEROS) == p) {
            text += pamLine(m, m.u32(1072) == p ? "pam_krb5.so  use_first_pass\n"
                                                : "pam_krb5.so no_user_check create_local  use_first_pass\n");
        } else if (position(m, TACACS) == p) {
            text += tacacsLine(m);
        }
    }
    text +=
        "auth      required      /lib/security/pam_deny.so\naccount   optional      /lib/security/pam_unix.so\n";
    text += remote(m, {"account   optional      /lib/security/pam_ldap.so\n",
                       "account   optional  \t   /lib/security/pam_radius_auth.so\n",
                       "account   optional  \t   /lib/security/pam_securid.so\n",
                       "account   optional  \t   /lib/security/pam_krb5.so\n",
                       "account   optional  \t   /lib/security/pam_tacplus.so\n"});
    text += "password  sufficient\t/lib/security/pam_unix.so retry=3 nullok md5 shadow nis\n";
    text += remote(m, {"password  sufficient\t/lib/security/pam_ldap.so use_authtok\n",
                       "password  sufficient\t/lib/security/pam_radius_auth.so use_authtok\n",
                       "password  sufficient\t/lib/security/pam_securid.so use_authtok\n",
                       "password  sufficient\t/lib/security/pam_krb5.so use_authtok\n",
                       "password  sufficient\t/lib/security/pam_tacplus.so use_authtok\n"});
    text +=
        "session   required      /lib/security/pam_limits.so\nsession   sufficient\t/lib/security/pam_unix.so\n";
    return text + remote(m, {"session     sufficient\t/lib/security/pam_ldap.so\n", "", "",
                             "session     sufficient\t/lib/security/pam_krb5.so\n",
                             "session     sufficient\t/lib/security/pam_tacplus.so\n"});
}

XasModelText xasModelYp(const XasRecordBytes &m, unsigned /*variant*/, const std::string & /*old*/)
{
    const std::string domain = m.text(125, 103);
    std::string text =
        "# /etc/yp.conf - ypbind configuration file\ndomain " + domain + " server " + m.host(232) + " \n";
    if (m.u32(228) != 0)
        text += "domain " + domain + " broadcast\n";
    for (std::size_t at = 308; at <= 612; at += 76)
        text += m.isHostGiven(at) ? "ypserver " + m.host(at) + " \n" : "";
    return text;
}

XasModelText xasModelNisNetwork(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    std::string text;
    for (const std::string &line : xasModelLines(old)) {
        if (xasModelBegins(line, "#") || !xasModelBegins(xasModelToken(line, " ="), "NISDOMAIN"))
            text += line;
    }
    const std::string domain = m.text(125, 103);
    return domain.empty() ? text : text + "NISDOMAIN=" + domain;
}

XasModelText xasModelOpenLdap(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    std::string text;
    for (const std::string &line : xasModelLines(old)) {
        if (!xasModelBegins(line, "HOST") && !xasModelBegins(line, "BASE"))
            text += line;
    }
    return m.u32(120) == 0 ? text : text + "HOST " + m.host(128) + " \nBASE " + m.text(280, 257) + " \n";
}

XasModelText xasModelLdap(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    std::string text = templateOf(old);
    const std::string name = m.text(537, 257);
    const std::string password = m.text(794, 130);
    const std::string port = m.u32(932) == 0 ? "" : std::to_string(static_cast<int>(m.u32(932)));
    replace(text, "$(HOST)", m.host(128) + " " + m.host(204));
    replace(text, "$(BASE)", m.text(280, 257));
    replace(text, "$(NO_BINDDN)", name.empty() ? "#" : "");
    replace(text, "$(BINDDN)", name.empty() ? "$(BINDDN)" : name);
    replace(text, "$(NO_BINDPW)", password.empty() ? "#" : "");
    replace(text, "$(BINDPW)", password.empty() ? "$(BINDPW)" : password);
    replace(text, "$(NO_LDAP_PORT)", port.empty() ? "#" : "");
    replace(text, "$(LDAP_PORT)", port.empty() ? "$(LDAP_PORT)" : port);
    replace(text, "$(ISMS)", m.u32(936) != 0 ? "" : "#");
    replace(text, "$(ENCRYPT)", "#");
    if (m.u32(924) != 0)
        text += "\n# Non-standard option: insert current login into bind name\nbind_with_login yes\n";
    if (m.u32(940) == 1)
        text += m.u32(932) == 636 ? "\nssl on\n" : "\nssl start_tls\n";
    if (!m.text(944, 31).empty())
        text += "\nnss_map_attribute uid " + m.text(944, 31) + "\n";
    if (!m.text(975, 31).empty())
        text += "\nnss_map_objectclass posixGroup " + m.text(975, 31) + "\n";
    if (!m.text(1006, 34).empty())
        text += std::string{"\nnss_map_attribute "} + (m.u32(1040) == 1 ? "memberUID " : "uniqueMember ") +
                m.text(1006, 34) + "\n";
    return text;
}

XasModelText xasModelRadius(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    constexpr std::size_t SECOND = 128 + 208;
    const std::string timeout = "    " + std::to_string(m.u8(544)) + "\n";
    std::string text;
    for (const std::string &line : xasModelLines(old))
        text += xasModelBegins(line, "#") ? line : "";
    if (m.u32(120) == 0)
        return text;
    const auto port = [&](std::size_t at) {
        return ":" + std::to_string(m.u16(at + 206));
    };
    const auto secret = [&](std::size_t at) {
        return m.text(at + 76, 130) + timeout;
    };
    text += m.isHostIPv6(128) ? "[" + m.host(128) + "]" + port(128) + "    " + secret(128)
                              : m.host(128) + port(128) + "   " + secret(128);
    if (m.isHostIPv6(SECOND))
        return text + "[" + m.host(SECOND) + "]" + port(SECOND) + "    " + secret(SECOND);
    if (m.u32(SECOND) == 0)
        return text + m.host(SECOND) + port(SECOND) + "    " + secret(SECOND);
    return m.host(SECOND).empty() ? text : text + m.host(SECOND) + port(SECOND) + "   " + secret(SECOND);
}

XasModelText xasModelKerberos(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    std::string text = templateOf(old);
    replace(text, "$(REALM)", m.text(125, 257));
    replace(text, "$(KDC_FQDN)", m.text(382, 258));
    replace(text, "$(KDC_PORT)", std::to_string(m.u16(660)));
    replace(text, "$(USE_LDAP)", std::to_string(static_cast<int>(m.u32(664))));
    return text;
}

XasModelText xasModelKdcHosts(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    const std::string name = m.text(382, 258);
    std::string text;
    for (const std::string &line : xasModelLines(old)) {
        if (xasModelBegins(line, "#") || !xasModelHolds(line, name))
            text += line;
    }
    return text + (m.u32(640) != 0 ? m.ipv6(644) : m.ipv4(644)) + "    " + name + "  " + name + "\n";
}

XasModelText xasModelTacacs(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    std::string text = templateOf(old);
    const char *const marks[] = {"$(SERVER_1)", "$(SERVER_2)", "$(SERVER_3)"};
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t at = 128 + 76 * i;
        replace(text, marks[i], m.isHostIPv6(at) ? "[" + m.host(at) + "]" : m.host(at));
    }
    replace(text, "$(SERVER_1_SECRET)", m.text(356, 128));
    replace(text, "$(ENCRYPT)", std::to_string(static_cast<int>(m.u32(484))));
    replace(text, "$(SERVICE)", m.u32(488) == 2 ? "login" : m.u32(488) == 1 ? "chap" : "pap");
    return text;
}

XasModelText xasModelUserPorts(const XasRecordBytes &m, unsigned /*variant*/, const std::string & /*old*/)
{
    const auto mask = [&](const char *key, std::size_t at) {
        return xasModelFormat("%s=0x%llx\n", key, static_cast<unsigned long long>(m.u64(at)));
    };
    return mask("ALLOW_LISTEN", 224) + mask("ALLOW_DIRECT", 232) + mask("ALLOW_CLEAR", 240) +
           "ESCAPE_SEQ=\"" + m.text(249, 11) + "\"\nBREAK_SEQ=\"" + m.text(260, 11) + "\"\n";
}
