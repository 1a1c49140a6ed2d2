// Files of services: time, logs, firewall, routes, agent, shares.
#include "model/models.h"

#include <array>

namespace {

struct Category {
    const char *facility;
    const char *file;
    int level; /**< 6: always "info" */
};

constexpr std::array<Category, 8> CATEGORIES = {{{"local0", "/var/log/network", 0},
                                                 {"local1", "/var/log/services", 1},
                                                 {"authpriv", "/var/log/secure", 2},
                                                 {"local3", "/var/log/devports", 3},
                                                 {"local4", "/var/log/diag", 4},
                                                 {"local5", "/var/log/general", 5},
                                                 {"local6", "/var/log/sw", 6},
                                                 {"kern", "/var/log/general", 5}}};

std::string level(const XasRecordBytes &m, const Category &category)
{
    constexpr std::array NAMES = {"none", "info", "warning", "err", "debug"};
    return category.level == 6 ? "info" : NAMES.at(m.u32(120 + 4 * static_cast<std::size_t>(category.level)));
}

/** A line of the NTP configuration without its comment mark. */
std::string uncommented(const std::string &line)
{
    return xasModelBegins(line, "#") ? line.substr(1) : line;
}

std::string withComment(const std::string &line)
{
    return "#" + uncommented(line);
}

} // namespace

XasModelText xasModelNtpStep(const XasRecordBytes &m, unsigned /*variant*/, const std::string & /*old*/)
{
    if (m.u32(128) == 1)
        return m.host(360) + "\n0.0.0.0\n0.0.0.0\n";
    return m.host(132) + "\n" + m.host(208) + "\n" + m.host(284) + "\n";
}

XasModelText xasModelNtp(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    const std::uint32_t sync = m.u32(124);
    const bool polls = sync == 1;
    std::string servers = polls ? "server " + m.host(m.u32(128) == 0 ? 132 : 360) + "\n" : "";
    for (const std::size_t at : {208UL, 284UL}) {
        if (polls && m.u32(128) == 0 && m.isHostGiven(at))
            servers += "server " + m.host(at) + "\n";
    }
    std::string text;
    bool isFirst = true;
    for (const std::string &line : xasModelLines(old)) {
        const std::string name = xasModelToken(uncommented(line), " \t");
        const std::string second = xasModelToken(uncommented(line), " \t", 1);
        if (name == "server" && !second.empty() && second != "127.127.1.0") {
            if (sync != 1)
                text += withComment(line);
            else if (isFirst)
                text += servers;
            isFirst = isFirst && sync != 1;
        } else if (name == "broadcastclient") {
            text += sync == 0 ? "broadcastclient\n" : withComment(line);
        } else {
            text += name == "authenticate" ? "disable auth\n" : line;
        }
    }
    return text;
}

XasModelText xasModelSyslog(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    std::string text;
    for (const std::string &line : xasModelLines(old)) {
        if (!xasModelBegins(line, "#") && xasModelHolds(line, "@"))
            continue;
        std::string out = line;
        for (const Category &category : CATEGORIES) {
            if (xasModelBegins(line, "#") || xasModelToken(line, ".") != category.facility)
                continue;
            out = !xasModelHolds(line, "/") ? std::string{}
                                            : xasModelLine("%s.%s    %s\n", category.facility,
                                                           level(m, category).c_str(), category.file);
        }
        text += out;
    }
    for (const std::size_t at : {144UL, 220UL}) {
        if (!m.isHostGiven(at))
            continue;
        for (const Category &category : CATEGORIES)
            text += xasModelLine("%s.%s    @%s\n", category.facility, level(m, category).c_str(),
                                 m.host(at).c_str());
        text += xasModelLine("auth.info    @%s\n", m.host(at).c_str());
    }
    return text;
}

XasModelText xasModelLogrotate(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    std::string text;
    unsigned size = m.u16(298);
    for (const std::string &line : xasModelLines(old)) {
        const auto upTo = [&](const std::string &token) {
            return line.substr(0, line.find(token) + token.size());
        };
        std::string out = line;
        if (xasModelHolds(line, "size "))
            out = xasModelLine("%s%uk\n", upTo("size ").c_str(), size);
        else if (xasModelHolds(line, "$logbytes -gt "))
            out = xasModelLine("%s%u ] ; then\n", upTo("$logbytes -gt ").c_str(), size * 1024);
        else if (xasModelHolds(line, "tail -c "))
            out = xasModelLine("%s%d $1 > /www/$1.log\n", upTo("tail -c ").c_str(),
                               static_cast<int>(size * 0.5 * 1024));
        else if (xasModelHolds(line, "/var/log/nut"))
            size = m.u16(296);
        text += out;
    }
    return text;
}

XasModelText xasModelFirewall(const XasRecordBytes &m, unsigned variant, const std::string &old)
{
    std::string tcp = std::string{m.u32(144) != 0 ? "www " : ""} + (m.u32(148) != 0 ? "https " : "");
    if (m.u32(136) != 0)
        tcp += variant == 22 ? "ssh " : std::to_string(variant) + " ";
    tcp += m.u32(140) != 0 ? "telnet " : "";
    tcp += m.u32(152) != 0 ? "135 netbios-ssn microsoft-ds" : "";
    std::string text;
    for (const std::string &line : xasModelLines(old)) {
        const std::string key = xasModelToken(line, "=");
        if (key == "TCP_PUBLIC_SERVICES")
            text += key + "=\"" + tcp + "\"\n";
        else if (key == "UDP_PUBLIC_SERVICES")
            text += key + "=\"ntp router 161 162 30718:30721 " +
                    (m.u32(152) != 0 ? "135 netbios-ns netbios-dgm" : "") + "\"\n";
        else if (key == "REJECT_METHOD" && m.u32(128) > 1)
            return {text, false};
        else if (key == "REJECT_METHOD")
            text += m.u32(128) == 0 ? "REJECT_METHOD=\"REJECT\"\n" : "REJECT_METHOD=\"DROP\"\n";
        else if (key == "INVISIBLE_TO_PING")
            text += m.u32(132) != 0 ? "INVISIBLE_TO_PING=\"yes\"\n" : "INVISIBLE_TO_PING=\"no\"\n";
        else
            text += line;
    }
    return text;
}

XasModelText xasModelZebra(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    std::string text;
    for (const std::string &line : xasModelLines(old)) {
        const std::size_t begin = line.find_first_not_of('=');
        if (begin == std::string::npos || line.compare(begin, 8, "ip route") != 0)
            text += line;
    }
    for (std::size_t at = 140; m.u32(124) != 0 && at < 140 + 64 * 12; at += 12)
        text += "ip route " + m.ipv4(at) + " " + m.ipv4(at + 4) + " " + m.ipv4(at + 8) + "\n";
    return text;
}

XasModelText xasModelRipd(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    const std::string version = m.u32(132) == 0 ? "1\n" : m.u32(132) == 1 ? "2\n" : "1 2\n";
    const std::string rip =
        "  ip rip send version " + version + "  ip rip receive version " + version + "!\n";
    const std::string sections = "interface eth0\n" + rip + "interface eth1\n" + rip +
                                 "router rip\n  network eth0\n  network eth1\n!\n";
    std::string text;
    bool isDropped = false;
    for (const std::string &line : xasModelLines(old)) {
        std::string scratch = line;
        char *state = nullptr;
        const char *token = ::strtok_r(scratch.data(), "=", &state);
        const std::string whole = token != nullptr ? token : "";
        if (isDropped) {
            isDropped = !xasModelBegins(line, "!");
        } else if (whole == "interface eth0\n" || whole == "interface eth1\n" || whole == "router rip\n") {
            isDropped = true;
        } else {
            text += (whole == "line vty\n" && m.u32(128) != 0 ? sections : "") + line;
        }
    }
    return text;
}

namespace {

std::string snmpUser(const XasRecordBytes &m, const char *key, std::size_t user)
{
    const auto quoted = [](const std::string &phrase) {
        return phrase.find(' ') == std::string::npos ? phrase : "\"" + phrase + "\"";
    };
    const std::uint32_t security = m.u32(448);
    const std::string name = m.text(user, 21);
    return std::string{key} + "  " + name +
           (security == 0   ? " noauth"
            : security == 2 ? " priv"
                            : " auth") +
           "\n" + "createUser " + name + (m.u32(452) == 1 ? " SHA " : " MD5 ") +
           quoted(m.text(user + 21, 21)) + (m.u32(456) == 1 ? " AES " : " DES ") +
           quoted(m.text(user + 42, 21)) + "\n";
}

} // namespace

XasModelText xasModelSnmp(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    const std::uint32_t mode = m.u32(532);
    const std::string readOnly = mode != 0 ? "" : "  " + m.text(460, 21) + "\n";
    const std::string readWrite = mode != 0 ? "" : "  " + m.text(481, 21) + "\n";
    bool hasReadOnly = mode != 0;
    bool hasReadWrite = mode != 0;
    std::string text;
    for (const std::string &line : xasModelLines(old)) {
        const std::string word = xasModelToken(line, " \t");
        if (word == "syscontact")
            text += "syscontact  " + m.text(301, 21) + "\n";
        else if (word == "syslocation")
            text += "syslocation  " + m.text(280, 21) + "\n";
        else if (word == "rouser")
            text += snmpUser(m, "rouser", 322);
        else if (word == "rwuser")
            text += snmpUser(m, "rwuser", 385);
        else if (word == "trapcommunity")
            text += "trapcommunity  " + m.text(502, 21) + "\n";
        else if (word == "rocommunity" || word == "rocommunity6") {
            hasReadOnly = true;
            text += mode == 0 ? word + readOnly : mode == 1 ? "" : line;
        } else if (word == "rwcommunity" || word == "rwcommunity6") {
            hasReadWrite = true;
            text += mode == 0 ? "rwcommunity" + readWrite : mode == 1 ? "" : line;
        } else if (word != "trapsink" && word != "trap2sink" && word != "createUser")
            text += line;
    }
    text += (hasReadOnly ? "" : "rocommunity" + readOnly) + (hasReadWrite ? "" : "rwcommunity" + readWrite);
    for (const std::size_t at : {128UL, 204UL}) {
        if (!m.host(at).empty())
            text += "trapsink " + m.host(at) + "\ntrap2sink " + m.host(at) + "\n";
    }
    return text;
}

namespace {

constexpr std::size_t MOUNTS = 120;
constexpr std::size_t MOUNT_SIZE = 268;

std::string escaped(const std::string &path)
{
    std::string text;
    for (const char c : path)
        text += c == '#' && text.empty() ? "\\043"
                : c == ' '               ? "\\040"
                : c == '\t'              ? "\\011"
                : c == '\\'              ? "\\134"
                                         : std::string{c};
    return text;
}

} // namespace

XasModelText xasModelNfsServers(const XasRecordBytes &m, unsigned /*variant*/, const std::string & /*old*/)
{
    std::string list;
    std::vector<std::uint32_t> seen = {0xFFFFFFFF};
    for (const std::size_t at : {120UL, 124UL, 128UL}) {
        bool isNew = true;
        for (const std::uint32_t address : seen)
            isNew = isNew && address != m.u32(at);
        seen.push_back(m.u32(at));
        list += isNew ? m.ipv4(at) + " " : "";
    }
    if (!list.empty())
        list.pop_back();
    return "NFS_SERVERS=\"" + list + "\"\n";
}

XasModelText xasModelFstab(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    std::string text;
    for (const std::string &line : xasModelLines(old)) {
        if (xasModelBegins(line, "#") || xasModelToken(line, " \t", 2) != "nfs")
            text += line;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t at = MOUNTS + i * MOUNT_SIZE;
        if (m.u32(at + 264) == 0)
            continue;
        const std::string remote = m.text(at, 129);
        if (remote.empty())
            break; // nothing is written any more
        const std::string line = escaped(remote) + "\t " + escaped("/var/nfsmounts" + m.text(at + 129, 131)) +
                                 "\t nfs\t defaults,nodev,soft,intr,nolock" +
                                 (m.u32(at + 260) == 0 ? ",ro" : "") + " 0 0\n";
        text += line.size() < 308 ? line : "";
    }
    return text;
}

XasModelText xasModelSmb(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    std::string text;
    for (const std::string &line : xasModelLines(old)) {
        std::string key = xasModelToken(line, " =");
        while (!key.empty() && (key.back() == ' ' || key.back() == '\t'))
            key.pop_back();
        while (!key.empty() && (key.front() == ' ' || key.front() == '\t'))
            key.erase(0, 1);
        if (xasModelBegins(line, "#") || xasModelBegins(line, ";"))
            text += line;
        else if (key == "workgroup")
            text += xasModelLine("   workgroup = %s\n", m.text(215, 2488 - 215).c_str());
        else if (key == "interfaces")
            text += std::string{"   interfaces = 127.0.0.1 "} + (m.u32(124) != 0 ? "eth0 " : "") +
                    (m.u32(128) != 0 ? "eth1" : "") + "\n";
        else
            text += line;
    }
    return text;
}

XasModelText xasModelSmbPass(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    const bool isOn = m.u32(120) != 0;
    std::string text;
    for (const std::string &line : xasModelLines(old)) {
        if (!isOn || !xasModelBegins(line, "cifs"))
            text += line;
    }
    if (!isOn)
        return text;
    const std::string lanman = m.text(132, 33);
    const std::string nt = m.text(165, 33);
    const std::string changed = m.text(198, 17);
    if (lanman.empty() || nt.empty() || changed.empty())
        return {text, false};
    return text + "cifsuser:100:" + lanman + ":" + nt + ":[U          ]:" + changed + ":Cifs User\n";
}
