#include "core/utils.h"

#include "core/assert.h"
#include "core/child.h"
#include "core/command_line.h"
#include "core/log.h"
#include "core/text.h"
#include "core/wait.h"
#include "platform/config_library.h"
#include "wire/eth_message.h"

#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <fcntl.h>
#include <netdb.h>
#include <new>
#include <pwd.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/** Stands for the text of an address that has none. */
constexpr const char *NO_ADDRESS_TEXT = "<invalid>";

constexpr std::size_t PREFIX_TEXT_MAX = 49;

bool isOfKind(const char *path, mode_t kind)
{
    struct stat status {};
    return ::stat(path, &status) == 0 && (status.st_mode & S_IFMT) == kind;
}

/** Both ends of a pipe; the child writes, the parent reads. */
struct Pipe {
    std::array<int, 2> ends{-1, -1};

    Pipe()
    {
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            ends = {-1, -1};
    }
    ~Pipe()
    {
        ::close(ends[0]);
        ::close(ends[1]);
    }
    Pipe(const Pipe &) = delete;
    Pipe &operator=(const Pipe &) = delete;
};

XasIPv4 resolve(const char *name)
{
    const hostent *host = ::gethostbyname(name);
    if (host == nullptr || host->h_addrtype != AF_INET || host->h_addr_list[0] == nullptr)
        return XAS_NO_IPV4;
    return xasIPv4At(host->h_addr_list[0]);
}

bool storedPort(unsigned port, XasEthPort &stored)
{
    XasMessage record{};
    if (port >= XAS_ETH_PORTS || xasGetEthCfg(record) != 0)
        return false;
    stored = xasReadPayload<XasEthPayload>(record).ports[port];
    return true;
}

} // namespace

XasIPv4 xasNetworkAddr(XasIPv4 address, XasIPv4 mask)
{
    return {address.bits & mask.bits};
}

XasIPv4 xasBroadcastAddr(XasIPv4 address, XasIPv4 mask)
{
    return {(address.bits & mask.bits) | ~mask.bits};
}

std::string xasIPv4ToStr(XasIPv4 address)
{
    return ::inet_ntoa(in_addr{.s_addr = address.bits});
}

std::string xasIPv6ToStr(const unsigned char *address)
{
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (::inet_ntop(AF_INET6, address, text.data(), text.size()) == nullptr) {
        xasLogError("Error IPv6 address format");
        return NO_ADDRESS_TEXT;
    }
    return text.data();
}

std::string xasIPv6PrefixToStr(const unsigned char *address, std::uint32_t prefix)
{
    std::string text = xasIPv6ToStr(address);
    if (text == NO_ADDRESS_TEXT)
        return text;
    return xasFormat("%s/%d", text.c_str(), static_cast<int>(prefix)).substr(0, PREFIX_TEXT_MAX);
}

XasIPv4 xasHostByName(const std::string &name)
{
    // The resolver blocks for seconds when no server answers: a child asks it, so that signals are served.
    const Pipe answer;
    const pid_t pid = xasFork();
    if (pid == 0) {
        const XasIPv4 address = resolve(name.c_str());
        ::_exit(::write(answer.ends[1], &address, sizeof address) == sizeof address ? 0 : 1);
    }
    int status = 0;
    XasIPv4 address = XAS_NO_IPV4;
    if (pid < 0 || !xasWaitForChild(pid, status) || status != 0 ||
        ::read(answer.ends[0], &address, sizeof address) != sizeof address)
        return XAS_NO_IPV4;
    return address;
}

bool xasHasAccount(const std::string &login)
{
    // Accounts may be looked up over the network, too.
    constexpr int NO_ACCOUNT = 1;
    const pid_t pid = xasFork();
    if (pid == 0)
        ::_exit(::getpwnam(login.c_str()) != nullptr ? 0 : NO_ACCOUNT);
    int status = 0;
    return pid < 0 || !xasWaitForChild(pid, status) || !WIFEXITED(status) ||
           WEXITSTATUS(status) != NO_ACCOUNT;
}

std::string xasHostToStr(const XasHostAddr &host)
{
    if (host.is_name != 0)
        return xasFieldString(host.value);
    if (host.is_ipv6 == 0)
        return xasIPv4ToStr(xasIPv4At(host.value));
    std::array<unsigned char, 16> address{};
    std::memcpy(address.data(), host.value, address.size());
    return xasIPv6ToStr(address.data());
}

bool xasIsHostGiven(const XasHostAddr &host)
{
    return host.is_name == 0 || host.value[0] != '\0';
}

int xasIsRegularFile(const char *path)
{
    return isOfKind(path, S_IFREG) ? 1 : 0;
}

int xasIsDirectory(const char *path)
{
    return isOfKind(path, S_IFDIR) ? 1 : 0;
}

int xasMakeDirPath(const char *path)
{
    if (*path != '/') {
        xasLogError("Invalid directory path %s\n", path);
        return 0;
    }
    std::string_view rest = path;
    std::string prefix;
    for (auto name = xasNextToken(rest, "/"); !name.empty(); name = xasNextToken(rest, "/")) {
        prefix.append("/").append(name);
        if (xasIsDirectory(prefix.c_str()) == 0 && ::mkdir(prefix.c_str(), 0755) != 0)
            return xasLogFailure("Error making directory %s\n", prefix.c_str());
    }
    return 0;
}

std::string_view xasTrimString(std::string_view str)
{
    xasAssertGiven(str.data(), "str");
    constexpr std::string_view BLANKS = " \t";
    str.remove_prefix(std::min(str.find_first_not_of(BLANKS), str.size()));
    return str.substr(0, str.find_last_not_of(BLANKS) + 1);
}

int xasIsExecutable(std::string_view commandLine)
{
    try {
        const std::string program{xasProgramOf(commandLine)};
        if (program.empty()) {
            xasLogError("Error parsing exe path");
            return 0;
        }
        struct stat status {};
        const bool executable = ::stat(program.c_str(), &status) == 0 && !S_ISDIR(status.st_mode) &&
                                (status.st_mode & S_IXUSR) != 0;
        return executable ? 1 : 0;
    } catch (const std::bad_alloc &) {
        xasLogError("Error allocating memory\n");
        return 0;
    }
}

int xasGetEthCfg(XasMessage &record)
{
    if (xmlGetMsg(stdout, XMSG_ETH, &record) != 0)
        return xasLogFailure("Error getting Ethernet configuration\n");
    return 0;
}

int xasGetEthPortState(unsigned port, std::uint32_t &enabled, std::uint32_t &source)
{
    XasEthPort stored{};
    if (!storedPort(port, stored))
        return 1;
    enabled = stored.enabled;
    source = stored.source;
    return 0;
}

int xasGetEthPortMode(unsigned port, std::uint32_t &mode)
{
    XasEthPort stored{};
    if (!storedPort(port, stored))
        return 1;
    mode = stored.mode;
    return 0;
}

int xasGetBondingOptions(std::uint32_t mode, std::string &options)
{
    static constexpr std::array<std::string_view, 4> MODES = {"", "mode=active-backup primary=eth0",
                                                              "mode=802.3ad", "mode=balance-tlb"};
    options.clear();
    if (mode == 0 || mode >= MODES.size())
        return 1;
    options.append(MODES[mode]).append(" miimon=250 use_carrier=1 downdelay=2500 updelay=2500");
    return 0;
}
