// What the daemon asks the machine for besides processes: queues, names, accounts, links, the alarm.
#include "support/fuzz.h"
#include "world/machine.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstring>
#include <dlfcn.h>
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <netdb.h>
#include <netinet/in.h>
#include <pwd.h>
#include <sys/ioctl.h>
#include <sys/ipc.h>
#include <sys/msg.h>

namespace {

constexpr int TO_XMS = 1;
constexpr int FROM_XMS = 2;

template <class Function>
Function *real(Function * /*own*/, const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

bool isGone()
{
    if (xasMachine()->queuesThere)
        return false;
    errno = EIDRM;
    return true;
}

} // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name): the C library's names are reserved ones
extern "C" {

int msgget(key_t key, int /*flags*/) noexcept
{
    errno = ENOENT;
    if (!xasMachine()->queuesThere)
        return -1;
    return key == 1005 ? TO_XMS : FROM_XMS;
}

ssize_t msgrcv(int /*queue*/, void *record, std::size_t capacity, long /*type*/, int flags)
{
    const XasOwnWork own;
    auto &entries = xasMachine()->toDaemon;
    if (isGone())
        return -1;
    if (entries.empty()) {
        errno = ENOMSG;
        return -1;
    }
    const std::string entry = entries.front();
    if (entry.size() > capacity && (flags & MSG_NOERROR) == 0) {
        errno = E2BIG;
        return -1;
    }
    entries.pop_front();
    const long mtype = 1;
    const std::size_t size = std::min(entry.size(), capacity);
    std::memcpy(record, &mtype, sizeof mtype);
    std::memcpy(static_cast<char *>(record) + sizeof mtype, entry.data(), size);
    return static_cast<ssize_t>(size);
}

int msgsnd(int /*queue*/, const void *record, std::size_t size, int /*flags*/)
{
    const XasOwnWork own;
    if (isGone())
        return -1;
    if (xasMachine()->fullFor > 0) {
        --xasMachine()->fullFor;
        errno = EAGAIN;
        return -1;
    }
    xasMachine()->fromDaemon.emplace_back(static_cast<const char *>(record) + sizeof(long), size);
    return 0;
}

int msgctl(int /*queue*/, int command, msqid_ds *limits) noexcept
{
    if (command == IPC_INFO)
        reinterpret_cast<msginfo *>(limits)->msgmax = 8192;
    return 0;
}

unsigned alarm(unsigned seconds) noexcept
{
    const XasOwnWork own;
    XasMachine &machine = *xasMachine();
    machine.at(machine.now + std::chrono::seconds{seconds}, [] { ::raise(SIGALRM); });
    return 0;
}

hostent *gethostbyname(const char *name)
{
    static in_addr address{};
    static std::array<char *, 2> addresses{reinterpret_cast<char *>(&address), nullptr};
    static hostent found{};
    if (*name < 'a' || *name > 'z')
        return nullptr;
    address.s_addr = htonl(0xC0000200U + static_cast<unsigned char>(*name));
    found.h_addrtype = AF_INET;
    found.h_length = sizeof address;
    found.h_addr_list = addresses.data();
    return &found;
}

passwd *getpwnam(const char *login)
{
    static passwd account{};
    return xasMachine()->accounts.contains(login) ? &account : nullptr;
}

int ioctl(int fd, unsigned long request, ...) noexcept
{
    va_list arguments;
    va_start(arguments, request);
    void *const argument = va_arg(arguments, void *);
    va_end(arguments);
    auto *const interface = static_cast<ifreq *>(argument);
    if (request == SIOCGIFADDR) {
        const sockaddr_in address{
            .sin_family = AF_INET, .sin_port = 0, .sin_addr = {htonl(0xC0000201U)}, .sin_zero = {}};
        std::memcpy(&interface->ifr_addr, &address, sizeof address);
        return std::strcmp(interface->ifr_name, "eth0") == 0 ? 0 : -1;
    }
    if (request == SIOCETHTOOL) {
        reinterpret_cast<ethtool_value *>(interface->ifr_data)->data =
            xasMachine()->links[interface->ifr_name[3] == '1' ? 1 : 0] ? 1 : 0;
        return 0;
    }
    return real(ioctl, "ioctl")(fd, request, argument);
}
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)
