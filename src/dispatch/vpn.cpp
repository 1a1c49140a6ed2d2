#include "dispatch/vpn.h"

#include "core/log.h"
#include "core/shell.h"
#include "core/text.h"
#include "core/utils.h"
#include "files/generated_file.h"
#include "files/sync.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <net/if.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr const char *SECRETS_FILE = "/etc/ipsec.secrets";

/** The two interfaces that a tunnel may begin at: the system's name, and the appliance's. */
struct LocalInterface {
    const char *device;
    const char *unknownAddress; /**< stands for the address where it is unknown */
    const char *displayName;
};

constexpr LocalInterface ETH1{"eth0", "%eth0", "Eth1"};
constexpr LocalInterface ETH2{"eth1", "%eth1", "Eth2"};

const LocalInterface &localInterface(const XasVpnPayload &vpn)
{
    return vpn.ifac == 1 ? ETH1 : ETH2;
}

std::optional<std::string> localAddress(const LocalInterface &interface)
{
    const int fd = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0) {
        xasLogError("cannot get %s IP address to add PSK to ipsec.secrets", interface.displayName);
        return std::nullopt;
    }
    ifreq request{};
    std::string_view{interface.device}.copy(request.ifr_name, sizeof request.ifr_name - 1);
    const bool known = ::ioctl(fd, SIOCGIFADDR, &request) == 0;
    ::close(fd);
    if (!known)
        return std::nullopt;
    sockaddr_in address{};
    std::memcpy(&address, &request.ifr_addr, sizeof address);
    return xasIPv4ToStr({address.sin_addr.s_addr});
}

/** Names by value: 0 none, 1 the first, any other the second. */
using AlgorithmNames = std::array<std::string_view, 3>;
constexpr AlgorithmNames CIPHERS = {"", "3des", "aes"};
constexpr AlgorithmNames HASHES = {"", "sha1", "md5"};
constexpr AlgorithmNames GROUPS = {"", "modp1024", "modp1536"};

std::string_view algorithmName(const AlgorithmNames &names, std::uint32_t value)
{
    return names[std::min<std::size_t>(value, names.size() - 1)];
}

/** Cipher, hash and group as one proposal. */
std::string proposal(const XasVpnAlgorithms &algorithms)
{
    std::string text{algorithmName(CIPHERS, algorithms.enc)};
    if (algorithms.enc != 0 && algorithms.hash != 0)
        text += '-';
    text += algorithmName(HASHES, algorithms.hash);
    if (algorithms.enc != 0 || algorithms.hash != 0)
        text += ';';
    text += algorithmName(GROUPS, algorithms.dhgroup);
    return text;
}

/** "left" or "right" keys of one side, in the order in which both sides have them. */
std::string subnetLine(const char *side, std::string_view subnets)
{
    std::string list{subnets};
    if (list.empty())
        return {};
    if (list.find(',') == std::string::npos)
        return xasFormat("    %ssubnet=%s\n", side, list.c_str());
    std::ranges::replace(list, ',', ' ');
    return xasFormat("    %ssubnets={%s}\n", side, list.c_str());
}

std::string nextHopLine(const char *side, XasIPv4 hop)
{
    return hop.isNone() ? std::string{} : xasFormat("    %snexthop=%s\n", side, xasIPv4ToStr(hop).c_str());
}

std::string idLine(const char *side, std::string_view text)
{
    const std::string id{text};
    if (id.empty())
        return {};
    in_addr address{};
    const bool isAddress = ::inet_pton(AF_INET, id.c_str(), &address) == 1;
    return xasFormat("    %sid=%s%s\n", side, isAddress ? "" : "@", id.c_str());
}

std::string leftLines(const XasVpnPayload &vpn, const std::optional<std::string> &address)
{
    std::string text =
        xasFormat("    left=%s\n", address ? address->c_str() : localInterface(vpn).unknownAddress);
    text += subnetLine("left", xasFieldText(vpn.local_subnet));
    text += nextHopLine("left", vpn.local_hop);
    text += idLine("left", xasFieldText(vpn.local_id));
    if (vpn.xauth != 0) {
        const std::string login{xasFieldText(vpn.xauth_login)};
        text += "    leftxauthclient=yes\n" + xasFormat("    leftxauthusername=%s\n", login.c_str());
    }
    if (vpn.modecfg != 0)
        text += "    leftmodecfgclient=yes\n";
    return text;
}

/** The remote host as the files name it; "%any" for any, or for an address that has no text. */
std::string remoteHost(const XasHostAddr &host)
{
    if (host.is_name != 0) {
        const std::string_view name = xasFieldText(host.value);
        return name.empty() || name == "any" ? "%any" : std::string{name};
    }
    std::array<char, INET_ADDRSTRLEN> address{};
    if (::inet_ntop(AF_INET, host.value, address.data(), address.size()) != nullptr)
        return address.data();
    xasLogError("Invalid VPN remote host IP address\n");
    return "%any";
}

std::string rightLines(const XasVpnPayload &vpn)
{
    std::string text = xasFormat("    right=%s\n", remoteHost(vpn.remote_host).c_str());
    if (vpn.xauth != 0)
        text += "    rightxauthserver=yes\n";
    if (vpn.modecfg != 0)
        text += "    rightmodecfgserver=yes\n";
    text += subnetLine("right", xasFieldText(vpn.remote_subnet));
    text += idLine("right", xasFieldText(vpn.remote_id));
    text += nextHopLine("right", vpn.remote_hop);
    return text;
}

/** The remote host as the secrets file names it. */
std::string secretsPeer(const XasHostAddr &host)
{
    return host.is_name != 0 ? xasFieldString(host.value) : xasIPv4ToStr(xasIPv4At(host.value));
}

/** The old secrets go, the file staying what it is. */
void removeOldSecrets()
{
    if (::access(SECRETS_FILE, F_OK) != 0)
        return;
    xasTrySystem(XasShellCommand{"/bin/sed -i '/PSK/d' /etc/ipsec.secrets"});
    xasTrySystem(XasShellCommand{"/bin/sed -i '/XAUTH/d' /etc/ipsec.secrets"});
    xasSyncFile(SECRETS_FILE);
}

void appendHostKey()
{
    const XasShellCommand append{"/usr/sbin/ipsec showhostkey --left | tail -1 >> /etc/ipsec.conf"};
    if (xasSystem(append).shellNotRun())
        xasLogError("cannot add ZEL RSA public key to ipsec.conf");
    xasSyncFile("/etc/ipsec.conf");
}

/** Appends to the secrets file, which nobody else may read from the moment it exists. */
void appendSecrets(std::string_view text)
{
    if (xasAppendToFile(SECRETS_FILE, text, XasFileAccess::owner) != 0)
        xasLogError("cannot add Pre-Shared Key to ipsec.secrets");
}

void addSecrets(const XasVpnPayload &vpn, const std::optional<std::string> &address)
{
    if (vpn.auth == XAS_VPN_RSA)
        appendHostKey();
    else if (vpn.auth == XAS_VPN_PSK || vpn.xauth != 0)
        appendSecrets(xasIPsecSecretsText(vpn, address));
}

} // namespace

std::string xasIPsecGlobalText(std::string_view oldText)
{
    std::string newText = xasBeginNewText(oldText);
    bool inConnections = false;
    xasForEachLine(oldText, [&](std::string_view line) {
        inConnections = inConnections || line.starts_with("conn ");
        if (inConnections)
            return;
        if (!line.starts_with('#') && line.find("nat_traversal=yes") != std::string_view::npos)
            newText += '#';
        newText += line;
    });
    return newText;
}

std::string xasIPsecConnText(const XasVpnPayload &vpn, const std::optional<std::string> &localAddress)
{
    std::string text = xasFormat("conn %s\n", xasFieldString(vpn.name).c_str());
    if (vpn.ike.enc != 0 || vpn.ike.hash != 0 || vpn.ike.dhgroup != 0)
        text += "    ike=" + proposal(vpn.ike) + "\n";
    if (vpn.esp.enc != 0 || vpn.esp.hash != 0)
        text += "    phase2alg=" + proposal(vpn.esp) + "\n";
    if (vpn.aggressive != 0)
        text += "    aggrmode=yes\n";
    text += xasFormat("    authby=%s\n", vpn.auth == XAS_VPN_PSK ? "secret" : "rsasig");
    text += leftLines(vpn, localAddress);
    text += rightLines(vpn);
    text += xasFormat("    pfs=%s\n", vpn.pfs != 0 ? "yes" : "no");
    text += "    dpddelay=30\n    dpdtimeout=120\n    dpdaction=restart\n    auto=add\n    type=tunnel\n";
    if (vpn.auth == XAS_VPN_RSA)
        text += xasFormat("    rightrsasigkey=%s\n", xasFieldString(vpn.auth_key).c_str());
    return text;
}

std::string xasIPsecSecretsText(const XasVpnPayload &vpn, const std::optional<std::string> &localAddress)
{
    std::string text;
    if (vpn.auth == XAS_VPN_PSK) {
        const std::string remoteId = xasFieldString(vpn.remote_id);
        const std::string localId = xasFieldString(vpn.local_id);
        text += (remoteId.empty() ? secretsPeer(vpn.remote_host) : "@" + remoteId) + " ";
        text += localId.empty() ? localAddress.value_or("%any") : "@" + localId;
        text += xasFormat(": PSK \"%s\"\n", xasFieldString(vpn.auth_key).c_str());
    }
    if (vpn.xauth != 0)
        text += xasFormat("@%s: XAUTH \"%s\"\n", xasFieldString(vpn.xauth_login).c_str(),
                          xasFieldString(vpn.xauth_passwd).c_str());
    return text;
}

constexpr XasEditTexts TEXTS{.openReason = "Error opening VPN config file",
                             .saveReason = "Error saving new VPN config file"};

constexpr XasFileRow FILES[] = {
    {.type = "ipsec",
     .edit = {[](const XasEditCall &call) {
                  const auto vpn = xasReadPayload<XasVpnPayload>(call.msg);
                  return xasEditIPsecCfgFile(call.path, &vpn, call.reply);
              },
              &TEXTS},
     .missingLog = "Error determining vpn config file\n",
     .editLog = "Error editing VPN config file\n"},
};

int xasEditIPsecCfgFile(const char *cfgFileName, const XasVpnPayload *vpn, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    xasAssertGiven(vpn, "vpnCfg");
    bool opened = false;
    std::optional<std::string> address;
    const int result = xasEditFile(cfgFileName, TEXTS, reply, [&](std::string_view oldText) {
        opened = true;
        std::string newText = xasIPsecGlobalText(oldText);
        if (vpn->tunnel != 0) {
            address = localAddress(localInterface(*vpn));
            newText += xasIPsecConnText(*vpn, address);
        }
        return XasNewText{std::move(newText)};
    });
    if (!opened)
        return 1;
    removeOldSecrets();
    if (vpn->tunnel != 0)
        addSecrets(*vpn, address);
    return result;
}

constexpr XasFilesUpdate xasUpdateVPNCfg{.msgtype = XMSG_VPN, .files = FILES};
