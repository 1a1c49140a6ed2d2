// The tunnel's two files. Offsets count from the payload on.
#include "model/models.h"

#include <algorithm>
#include <arpa/inet.h>

namespace {

constexpr const char *KNOWN_ADDRESS = "192.0.2.1";
constexpr std::size_t REMOTE_HOST = 548;

std::string algorithm(std::uint32_t value, const char *first, const char *other)
{
    return value == 0 ? "" : value == 1 ? first : other;
}

std::string proposal(const XasRecordBytes &m, std::size_t at)
{
    const bool hasCipher = m.u32(at) != 0;
    const bool hasHash = m.u32(at + 4) != 0;
    return algorithm(m.u32(at), "3des", "aes") + (hasCipher && hasHash ? "-" : "") +
           algorithm(m.u32(at + 4), "sha1", "md5") + (hasCipher || hasHash ? ";" : "") +
           algorithm(m.u32(at + 8), "modp1024", "modp1536") + "\n";
}

std::string subnets(const char *side, std::string list)
{
    if (list.empty())
        return "";
    if (list.find(',') == std::string::npos)
        return std::string{"    "} + side + "subnet=" + list + "\n";
    std::replace(list.begin(), list.end(), ',', ' ');
    return std::string{"    "} + side + "subnets={" + list + "}\n";
}

std::string hop(const XasRecordBytes &m, const char *side, std::size_t at)
{
    return m.u32(at) == 0xFFFFFFFF ? "" : std::string{"    "} + side + "nexthop=" + m.ipv4(at) + "\n";
}

std::string identity(const char *side, const std::string &id)
{
    in_addr address{};
    if (id.empty())
        return "";
    return std::string{"    "} + side + (::inet_pton(AF_INET, id.c_str(), &address) == 1 ? "id=" : "id=@") +
           id + "\n";
}

std::string peer(const XasRecordBytes &m)
{
    if (m.u32(REMOTE_HOST) == 0)
        return m.ipv4(REMOTE_HOST + 8);
    const std::string name = m.text(REMOTE_HOST + 8, 68);
    return name.empty() || name == "any" ? "%any" : name;
}

std::string left(const XasRecordBytes &m, bool isKnown)
{
    const std::string unknown = m.u32(24) == 1 ? "%eth0" : "%eth1";
    std::string text = "    left=" + (isKnown ? KNOWN_ADDRESS : unknown) + "\n";
    text += subnets("left", m.text(752, 80)) + hop(m, "left", 748) + identity("left", m.text(728, 20));
    if (m.u32(868) != 0)
        text += "    leftxauthclient=yes\n    leftxauthusername=" + m.text(872, 33) + "\n";
    return text + (m.u32(864) != 0 ? "    leftmodecfgclient=yes\n" : "");
}

std::string right(const XasRecordBytes &m)
{
    return "    right=" + peer(m) + "\n" + (m.u32(868) != 0 ? "    rightxauthserver=yes\n" : "") +
           (m.u32(864) != 0 ? "    rightmodecfgserver=yes\n" : "") + subnets("right", m.text(648, 80)) +
           identity("right", m.text(624, 20)) + hop(m, "right", 644);
}

} // namespace

XasModelText xasModelVpn(const XasRecordBytes &record, unsigned variant, const std::string &old)
{
    const XasRecordBytes m = record.payload();
    std::string text;
    for (const std::string &line : xasModelLines(old)) {
        if (xasModelBegins(line, "conn "))
            break;
        text += (!xasModelBegins(line, "#") && xasModelHolds(line, "nat_traversal=yes") ? "#" : "") + line;
    }
    if (m.u32(0) == 0)
        return text;
    text += "conn " + m.text(4, 20) + "\n";
    if (!m.isZero(836, 12))
        text += "    ike=" + proposal(m, 836);
    if (!m.isZero(848, 8))
        text += "    phase2alg=" + proposal(m, 848);
    text += m.u32(832) != 0 ? "    aggrmode=yes\n" : "";
    text += m.u32(28) == 1 ? "    authby=secret\n" : "    authby=rsasig\n";
    text += left(m, variant != 0) + right(m) + (m.u32(860) != 0 ? "    pfs=yes\n" : "    pfs=no\n") +
            "    dpddelay=30\n    dpdtimeout=120\n    dpdaction=restart\n    auto=add\n    type=tunnel\n";
    return m.u32(28) == 0 ? text + "    rightrsasigkey=" + m.text(32, 516) + "\n" : text;
}

XasModelText xasModelVpnSecrets(const XasRecordBytes &record, unsigned variant, const std::string & /*old*/)
{
    const XasRecordBytes m = record.payload();
    std::string text;
    if (m.u32(28) == 1) {
        const std::string remoteId = m.text(624, 20);
        const std::string localId = m.text(728, 20);
        text = (!remoteId.empty()         ? "@" + remoteId
                : m.u32(REMOTE_HOST) != 0 ? m.text(REMOTE_HOST + 8, 68)
                                          : m.ipv4(REMOTE_HOST + 8)) +
               " " +
               (!localId.empty() ? "@" + localId
                : variant != 0   ? KNOWN_ADDRESS
                                 : "%any") +
               ": PSK \"" + m.text(32, 516) + "\"\n";
    }
    if (m.u32(868) != 0)
        text += "@" + m.text(872, 33) + ": XAUTH \"" + m.text(905, 2488 - 120 - 905) + "\"\n";
    return text;
}
