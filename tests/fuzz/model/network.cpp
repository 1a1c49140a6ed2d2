// Network files: interfaces, gateways, names.
#include "model/models.h"

namespace {

constexpr std::size_t ETH_PORT = 48;

std::string bondingOptions(std::uint32_t mode)
{
    const std::string tail = "miimon=250 use_carrier=1 downdelay=2500 updelay=2500";
    if (mode == 1)
        return "mode=active-backup primary=eth0 " + tail;
    if (mode == 2)
        return "mode=802.3ad " + tail;
    return mode == 3 ? "mode=balance-tlb " + tail : "";
}

std::string fullName(const XasRecordBytes &m)
{
    std::string name = m.text(120, 65);
    const std::string domain = m.text(185, 2488 - 185);
    if (!domain.empty())
        name += "." + domain;
    return name.substr(0, 255);
}

/** The lines of the file, those with one of the keys replaced. */
struct KeyLine {
    const char *key;
    std::string line;
};

std::string withKeys(const std::string &old, const char *delimiters, const std::vector<KeyLine> &keys)
{
    std::string text;
    for (const std::string &line : xasModelLines(old)) {
        std::string out = line;
        for (const KeyLine &key : keys) {
            if (xasModelToken(line, delimiters) == key.key)
                out = key.line;
        }
        text += out;
    }
    return text;
}

std::string masked(const XasRecordBytes &m, std::size_t address, std::size_t mask, bool withHosts)
{
    std::string text;
    for (std::size_t i = 0; i < 4; ++i) {
        unsigned byte = m.u8(address + i) & m.u8(mask + i);
        if (withHosts)
            byte |= ~m.u8(mask + i) & 0xFF;
        text += (i == 0 ? "" : ".") + std::to_string(byte);
    }
    return text;
}

} // namespace

XasModelText xasModelGWPrec(const XasRecordBytes &m, unsigned /*variant*/, const std::string & /*old*/)
{
    const std::uint32_t port = m.u32(256);
    return xasModelLine("DHCP_GW_PRECEDENCE=%d\n", port == 1 ? 1 : port == 2 ? 2 : 0);
}

XasModelText xasModelKernel(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    return withKeys(
        old, " =",
        {{"net.ipv4.ip_forward", xasModelLine("net.ipv4.ip_forward = %d\n", static_cast<int>(m.u32(280)))},
         {"net.ipv4.tcp_keepalive_time",
          xasModelLine("net.ipv4.tcp_keepalive_time = %d\n", static_cast<int>(m.u32(272)))},
         {"net.ipv4.tcp_keepalive_probes",
          xasModelLine("net.ipv4.tcp_keepalive_probes = %d\n", static_cast<int>(m.u16(276)))},
         {"net.ipv4.tcp_keepalive_intvl",
          xasModelLine("net.ipv4.tcp_keepalive_intvl = %d\n", static_cast<int>(m.u16(278)))}});
}

XasModelText xasModelModprobe(const XasRecordBytes &m, unsigned /*variant*/, const std::string & /*old*/)
{
    std::string text;
    if (m.u32(252) != 0) {
        text += "alias netdev-bond0 bonding\n";
        if (bondingOptions(m.u32(252)).empty())
            return {text, false};
        text += "options bond0 " + bondingOptions(m.u32(252)) + "\n";
    }
    return text + (m.u32(216) == 0 ? "options ipv6 disable=1\n" : "");
}

XasModelText xasModelInterface(const XasRecordBytes &m, unsigned variant, const std::string &old)
{
    const bool isBond = variant % 4 >= 2;
    const std::size_t port = 120 + (variant % 4 == 1 ? ETH_PORT : 0);
    std::string text = std::string{"DEVICE="} +
                       (isBond             ? "bond0"
                        : variant % 4 == 1 ? "eth1"
                                           : "eth0") +
                       "\n" + (isBond ? "TYPE=Bonding\n" : "TYPE=Ethernet\n");
    if (variant / 4 != 0)
        return text + "MASTER=bond0\nSLAVE=yes\nBOOTPROTO=none\nONBOOT=yes\n";
    const std::uint32_t source = m.u32(port + 8);
    if (source > 2)
        return {text, false};
    text += source == 0 ? "BOOTPROTO=bootp\n" : source == 1 ? "BOOTPROTO=dhcp\n" : "BOOTPROTO=static\n";
    text += "IPADDR=" + m.ipv4(port + 12) + "\nNETMASK=" + m.ipv4(port + 16) + "\n";
    text += "NETWORK=" + masked(m, port + 12, port + 16, false) + "\n";
    text += "BROADCAST=" + masked(m, port + 12, port + 16, true) + "\nIPV6INIT=yes\nIPV6ADDR=";
    if (!m.isZero(port + 20, 16))
        text += xasModelFormat("%s/%d", m.ipv6(port + 20).c_str(), static_cast<int>(m.u32(port + 36)))
                    .substr(0, 49);
    text += "\nDHCP_HOSTNAME=" + (source == 1 ? xasModelWebHostname(old) : "") + "\n";
    text += m.u32(port + 4) != 0 ? "ONBOOT=yes\n" : "ONBOOT=no\n";
    text += xasModelFormat("MTU=%d\n", static_cast<int>(m.u32(port + 44)));
    if (!isBond)
        return text;
    const std::string options = bondingOptions(m.u32(252));
    return options.empty() ? XasModelText{text, false} : text + "BONDING_OPTS=\"" + options + "\"\n";
}

XasModelText xasModelEnable(const XasRecordBytes & /*m*/, unsigned variant, const std::string &old)
{
    return withKeys(old, "=", {{"ONBOOT", variant != 0 ? "ONBOOT=yes\n" : "ONBOOT=no\n"}});
}

XasModelText xasModelGateways(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    const std::string gateway = m.u32(220) == 0xFFFFFFFF ? "" : "GATEWAY=" + m.ipv4(220) + "\n";
    const std::string gateway6 = m.isZero(232, 16) ? "" : "IPV6_GATEWAY=" + m.ipv6(232) + "\n";
    bool hasGateway = false;
    bool hasGateway6 = false;
    for (const std::string &line : xasModelLines(old)) {
        hasGateway = hasGateway || xasModelToken(line, "=") == "GATEWAY";
        hasGateway6 = hasGateway6 || xasModelToken(line, "=") == "IPV6_GATEWAY";
    }
    return withKeys(
               old, "=",
               {{"GATEWAY", gateway},
                {"IPV6_GATEWAY", gateway6},
                {"NETWORKING_IPV6", m.u32(216) != 0 ? "NETWORKING_IPV6=yes\n" : "NETWORKING_IPV6=no\n"}}) +
           (hasGateway ? "" : gateway) + (hasGateway6 ? "" : gateway6);
}

XasModelText xasModelAltGW(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    return withKeys(old, "=",
                    {{"DGD_GATEWAY", "DGD_GATEWAY=" + m.ipv4(260) + "\n"},
                     {"DGD_PING_IP", "DGD_PING_IP=" + m.ipv4(264) + "\n"},
                     {"DGD_PING_IFC", m.u8(268) == 1 ? "DGD_PING_IFC=eth0\n" : "DGD_PING_IFC=eth1\n"},
                     {"DGD_PING_DELAY", "DGD_PING_DELAY=" + std::to_string(m.u8(269)) + "\n"},
                     {"DGD_PING_FAILED", "DGD_PING_FAILED=" + std::to_string(m.u8(270)) + "\n"}});
}

XasModelText xasModelHosts(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    std::string text = "127.0.0.1\t" + fullName(m) + "\tlocalhost.localdomain\tlocalhost\n";
    for (const std::string &line : xasModelLines(old)) {
        if (!xasModelHolds(line, "127.0.0.1") || !xasModelHolds(line, "localhost.localdomain") ||
            !xasModelHolds(line, "localhost"))
            text += line;
    }
    return text;
}

XasModelText xasModelHostname(const XasRecordBytes &m, unsigned /*variant*/, const std::string & /*old*/)
{
    return fullName(m) + "\n";
}

XasModelText xasModelNetworkName(const XasRecordBytes &m, unsigned /*variant*/, const std::string &old)
{
    return withKeys(old, "=", {{"HOSTNAME", "HOSTNAME=" + fullName(m).substr(0, 65) + "\n"}});
}

XasModelText xasModelDomain(const XasRecordBytes &m, unsigned /*variant*/, const std::string & /*old*/)
{
    const std::string name = fullName(m);
    const std::size_t dot = name.find('.');
    if (dot == std::string::npos || dot + 1 == name.size())
        return std::string{};
    return "STATIC_DOMAIN=" + name.substr(dot + 1) + "\n";
}

XasModelText xasModelResolver(const XasRecordBytes &m, unsigned /*variant*/, const std::string & /*old*/)
{
    std::string text;
    for (const std::size_t at : {120UL, 140UL, 160UL}) {
        if (m.u32(at) != 0)
            text += m.ipv6(at + 4) + "\n";
        else if (!m.isZero(at + 4, 16))
            text += m.ipv4(at + 4) + "\n";
    }
    return text;
}

XasModelText xasModelPrecedence(const XasRecordBytes &m, unsigned /*variant*/, const std::string & /*old*/)
{
    return std::string{m.u32(180) != 0 ? "IPV4_PRECEDENCE=yes" : "IPV4_PRECEDENCE=no"};
}

std::string xasModelWebHostname(const std::string &text)
{
    std::string name;
    for (const std::string &line : xasModelLines(text)) {
        if (!xasModelHolds(line, "<HOSTNAME>"))
            continue;
        const std::size_t begin = line.find('>') + 1;
        const std::size_t end = line.find('<', begin);
        if (end == std::string::npos || end == begin || end - begin > 63)
            continue;
        bool isPlain = true;
        for (std::size_t i = begin; i < end; ++i) {
            const char c = line[i];
            isPlain =
                isPlain && ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                            std::string{"_-.,:/@%+="}.find(c) != std::string::npos);
        }
        if (isPlain)
            name = line.substr(begin, end - begin);
    }
    return name;
}
