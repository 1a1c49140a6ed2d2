#include "world/commands.h"

#include "support/fuzz.h"
#include "support/words.h"

#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace fs = std::filesystem;

namespace {

std::string readAll(const std::string &path)
{
    std::ifstream file{path, std::ios::binary};
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

void removeLines(const std::string &path, const std::string &holding)
{
    std::istringstream old{readAll(path)};
    std::string text;
    for (std::string line; std::getline(old, line);)
        text += line.find(holding) == std::string::npos ? line + "\n" : "";
    XasMachine::write(path, text);
}

/** A command without a variable part. */
struct Fixed {
    std::string_view line;
    void (*run)(XasMachine &machine);
};

void nothing(XasMachine & /*machine*/) {}

const std::array FIXED = {
    Fixed{"/bin/killall syslogd", nothing},
    Fixed{"/bin/killall klogd", nothing},
    Fixed{"/bin/killall -SIGHUP syslogd", nothing},
    Fixed{"/bin/killall -SIGHUP snmpd", nothing},
    Fixed{"/usr/bin/xas_iptables.sh resetAll", nothing},
    Fixed{"/tmp/xas_iptables.sh resetAll", nothing},
    Fixed{"/tmp/xas_iptables.sh resetInput", nothing},
    Fixed{"/tmp/xas_iptables.sh resetNone", nothing},
    Fixed{"XTABLES_LIBDIR=/libexec/xtables;export XTABLES_LIBDIR;/bin/iptables -D INPUT -j ACCEPT", nothing},
    Fixed{"XTABLES_LIBDIR=/libexec/xtables;export XTABLES_LIBDIR;/bin/iptables -I INPUT 1 -j ACCEPT",
          nothing},
    Fixed{"/bin/cp -f /var/log/debug /var/log/devports /var/log/diag /var/log/general /var/log/messages "
          "/var/log/network /var/log/secure /var/log/services /var/log/sw /var/log/syslog /www/savelogs/",
          nothing},
    Fixed{"/usr/sbin/logrotate -v /etc/logrotate.conf > /tmp/logrotate.txt 2>&1",
          [](XasMachine &) {
              XasMachine::write("/tmp/logrotate.txt", "reading\nerror: a log\n");
          }},
    Fixed{"/bin/mv -f /etc/.lusers_tmp /etc/.lusers",
          [](XasMachine &) {
              std::error_code ignored;
              fs::rename("/etc/.lusers_tmp", "/etc/.lusers", ignored);
          }},
    Fixed{"/bin/cp -af /usr/bin/xas_iptables.sh /tmp/xas_iptables.sh > /dev/null 2>&1",
          [](XasMachine &) {
              XasMachine::write("/tmp/xas_iptables.sh", "#!/bin/sh\n");
          }},
    Fixed{"/bin/sed -i '/PSK/d' /etc/ipsec.secrets",
          [](XasMachine &) {
              removeLines("/etc/ipsec.secrets", "PSK");
          }},
    Fixed{"/bin/sed -i '/XAUTH/d' /etc/ipsec.secrets",
          [](XasMachine &) {
              removeLines("/etc/ipsec.secrets", "XAUTH");
          }},
    Fixed{"/usr/sbin/ipsec showhostkey --left | tail -1 >> /etc/ipsec.conf",
          [](XasMachine &) {
              std::ofstream{"/etc/ipsec.conf", std::ios::app} << "\tleftrsasigkey=0sAQ\n";
          }},
};

/** A command with words from a message in it: what it begins with and ends with, and how many words are
 * between. */
struct Open {
    std::string_view begin;
    std::string_view end;
    std::size_t fewest;
    std::size_t most;
    void (*run)(XasMachine &machine, const std::vector<std::string> &words);
};

void noted(XasMachine & /*machine*/, const std::vector<std::string> & /*words*/) {}

const std::array OPEN = {
    Open{"/bin/adduser -D -H -u ", "", 5, 12,
         [](XasMachine &machine, const auto &words) {
             machine.accounts.insert(words.back());
         }},
    Open{"/bin/deluser ", "", 1, 1,
         [](XasMachine &machine, const auto &words) {
             machine.accounts.erase(words[0]);
         }},
    Open{"XTABLES_LIBDIR=/libexec/xtables; export XTABLES_LIBDIR; /bin/iptables -L INPUT -v -n |grep ",
         " > /tmp/xas_ipfilter.txt", 1, 1,
         [](XasMachine &machine, const auto &) {
             XasMachine::write("/tmp/xas_ipfilter.txt", machine.listing);
         }},
    Open{"XTABLES_LIBDIR=/libexec/xtables; export XTABLES_LIBDIR; /bin/iptables -A INPUT -i ", "", 3, 3,
         noted},
    Open{"XTABLES_LIBDIR=/libexec/xtables; export XTABLES_LIBDIR; /bin/iptables -D INPUT -i ", "", 3, 3,
         noted},
    Open{"/usr/bin/openssl x509 -in /www/xml/", "", 5, 5, noted},
    Open{"/usr/bin/openssl rsa -in /www/xml/", "", 5, 5, noted},
};

/** The administrator's comment is the one text with a quote of its own. */
std::string withoutComment(std::string line)
{
    const std::string comment = " -g \"System Administrator\"";
    const std::size_t at = line.starts_with("/bin/adduser ") ? line.find(comment) : std::string::npos;
    return at == std::string::npos ? line : line.erase(at, comment.size());
}

} // namespace

void xasRunKnownCommand(XasMachine &machine, const std::string &line)
{
    for (const Fixed &known : FIXED) {
        if (line == known.line)
            return known.run(machine);
    }
    for (const Open &known : OPEN) {
        const std::string plain = withoutComment(line);
        if (!plain.starts_with(known.begin) || !plain.ends_with(known.end))
            continue;
        const auto words = xasShellWords(
            plain.substr(known.begin.size(), plain.size() - known.begin.size() - known.end.size()));
        xasFuzzRequire(words && words->size() >= known.fewest && words->size() <= known.most,
                       "a command of the known set has its words", line);
        return known.run(machine, *words);
    }
    xasFuzzFail("a command is one of the known set", line);
}
