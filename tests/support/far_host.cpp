#include "support/far_host.h"

#include "support/root.h"

#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <netinet/ip.h>
#include <netinet/ip_icmp.h>
#include <ostream>
#include <poll.h>
#include <sched.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr const char *NEAR = "10.9.0.1";

/**
 * A packet that has not come by then has been dropped. Both ends are on this machine, but the rejection of a
 * connection that arrives while it is still being opened only counts when it comes again, a second later.
 */
constexpr int DROPPED_AFTER_MS = 1500;

sockaddr_in addressOf(const char *ip, std::uint16_t port)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    if (::inet_pton(AF_INET, ip, &address.sin_addr) != 1)
        throw std::invalid_argument{ip};
    return address;
}

template <class Call>
int withAddress(Call call, int fd, const char *ip, std::uint16_t port)
{
    const sockaddr_in address = addressOf(ip, port);
    return call(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address);
}

/** A socket bound to an address. */
int boundSocket(int type, int protocol, const char *ip, std::uint16_t port)
{
    const int fd = ::socket(AF_INET, type | SOCK_CLOEXEC | SOCK_NONBLOCK, protocol);
    if (fd < 0 || withAddress(::bind, fd, ip, port) != 0)
        throw std::runtime_error{std::string{"cannot bind "} + ip};
    return fd;
}

bool awaits(int fd, short events)
{
    pollfd wait{.fd = fd, .events = events, .revents = 0};
    return ::poll(&wait, 1, DROPPED_AFTER_MS) > 0;
}

int errorOf(int fd)
{
    int error = 0;
    socklen_t size = sizeof error;
    ::getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &size);
    return error;
}

XasPacketFate fateOfConnection(const char *source, std::uint16_t port)
{
    const int fd = boundSocket(SOCK_STREAM, 0, source, 0);
    withAddress(::connect, fd, NEAR, port);
    if (!awaits(fd, POLLOUT))
        return XasPacketFate::dropped;
    return errorOf(fd) == 0 ? XasPacketFate::passed : XasPacketFate::rejected;
}

/** The near end sends every datagram back. */
XasPacketFate fateOfDatagram(const char *source, std::uint16_t port)
{
    const int fd = boundSocket(SOCK_DGRAM, 0, source, 0);
    withAddress(::connect, fd, NEAR, port);
    if (::send(fd, "?", 1, 0) != 1)
        return XasPacketFate::dropped;
    if (!awaits(fd, POLLIN))
        return XasPacketFate::dropped;
    char answer = 0;
    return ::recv(fd, &answer, 1, 0) == 1 ? XasPacketFate::passed : XasPacketFate::rejected;
}

XasPacketFate fateOfEcho(const char *source)
{
    const int fd = boundSocket(SOCK_RAW, IPPROTO_ICMP, source, 0);
    icmphdr request{};
    request.type = ICMP_ECHO;
    request.checksum = static_cast<std::uint16_t>(~htons(ICMP_ECHO << 8));
    withAddress(::connect, fd, NEAR, 0);
    if (::send(fd, &request, sizeof request, 0) != sizeof request || !awaits(fd, POLLIN))
        return XasPacketFate::dropped;
    std::array<unsigned char, 256> packet{};
    const ssize_t size = ::recv(fd, packet.data(), packet.size(), 0);
    const bool isReply = size > 20 && packet[20] == ICMP_ECHOREPLY;
    return isReply ? XasPacketFate::passed : XasPacketFate::rejected;
}

void runIp(const std::string &arguments)
{
    if (std::system(("ip " + arguments).c_str()) != 0)
        throw std::runtime_error{"failed: ip " + arguments};
}

/** A process that does nothing in a network namespace of its own. */
pid_t holdNamespace()
{
    std::array<int, 2> ready{};
    if (!xasInPrivateRoot() || ::pipe2(ready.data(), O_CLOEXEC) != 0)
        throw std::logic_error{"far hosts are made in the private root only"};
    const pid_t pid = ::fork();
    if (pid == 0) {
        if (::unshare(CLONE_NEWNET) == 0 && ::write(ready[1], "!", 1) == 1)
            ::pause();
        ::_exit(1);
    }
    char mark = 0;
    ::close(ready[1]);
    const bool isHeld = ::read(ready[0], &mark, 1) == 1;
    ::close(ready[0]);
    if (!isHeld)
        throw std::runtime_error{"cannot make a network namespace"};
    return pid;
}

/** Sends datagrams back to where they came from. */
void echoDatagrams(const std::vector<int> &sockets)
{
    for (const int fd : sockets) {
        char byte = 0;
        sockaddr_in from{};
        socklen_t size = sizeof from;
        if (::recvfrom(fd, &byte, 1, 0, reinterpret_cast<sockaddr *>(&from), &size) == 1)
            ::sendto(fd, &byte, 1, 0, reinterpret_cast<const sockaddr *>(&from), size);
    }
}

} // namespace

std::ostream &operator<<(std::ostream &out, XasPacketFate fate)
{
    constexpr std::array NAMES = {"passed", "rejected", "dropped"};
    return out << NAMES.at(static_cast<std::size_t>(fate));
}

XasFarHost::XasFarHost(const std::vector<std::uint16_t> &ports) : holder{holdNamespace()}
{
    const std::string pid = std::to_string(holder);
    const std::string far = " /bin/nsenter --net=/proc/" + pid + "/ns/net ip ";
    runIp("link add eth0 type veth peer name peer0 netns " + pid);
    runIp("address add 10.9.0.1/24 dev eth0 && ip link set lo up");
    std::string addresses =
        "link set eth0 up &&" + far + "link set peer0 up"; // a link is up when both ends are
    for (int host = 2; host <= 9; ++host)
        addresses += " &&" + far + "address add 10.9.0." + std::to_string(host) + "/24 dev peer0";
    runIp(addresses);
    for (const std::uint16_t port : ports) {
        const int listener = boundSocket(SOCK_STREAM, 0, NEAR, port);
        ::listen(listener, 64);
        sockets.push_back(listener);
    }
    for (const std::uint16_t port : ports)
        sockets.push_back(boundSocket(SOCK_DGRAM, 0, NEAR, port));
}

XasFarHost::~XasFarHost()
{
    for (const int fd : sockets)
        ::close(fd);
    ::kill(holder, SIGKILL);
    ::waitpid(holder, nullptr, 0);
    while (std::system("ip link show eth0 >/dev/null 2>&1") == 0)
        std::system("ip link delete eth0 2>/dev/null");
}

XasPacketFate XasFarHost::ask(const std::function<XasPacketFate()> &attempt) const
{
    const int far = ::open(("/proc/" + std::to_string(holder) + "/ns/net").c_str(), O_RDONLY | O_CLOEXEC);
    const pid_t pid = ::fork();
    if (pid == 0)
        ::_exit(::setns(far, CLONE_NEWNET) == 0 ? static_cast<int>(attempt()) : 99);
    ::close(far);
    int status = 0;
    while (::waitpid(pid, &status, WNOHANG) == 0) {
        echoDatagrams(sockets);
        ::usleep(1000);
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) > static_cast<int>(XasPacketFate::dropped))
        throw std::runtime_error{"the far host cannot send"};
    return static_cast<XasPacketFate>(WEXITSTATUS(status));
}

XasPacketFate XasFarHost::connect(const char *source, std::uint16_t port) const
{
    return ask([&] { return fateOfConnection(source, port); });
}

XasPacketFate XasFarHost::send(const char *source, std::uint16_t port) const
{
    return ask([&] { return fateOfDatagram(source, port); });
}

XasPacketFate XasFarHost::ping(const char *source) const
{
    return ask([&] { return fateOfEcho(source); });
}
