#include "xms/socket.h"

#include "xms/error.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/signalfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr int CONNECTIONS_WAITING = 16;

sockaddr_un socketAddress(const std::string &path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path)
        throw XmsError{XmsExit::usage, "the socket path must have 1 to " +
                                           std::to_string(sizeof address.sun_path - 1) + " characters"};
    path.copy(address.sun_path, path.size());
    return address;
}

XmsDescriptor makeSocket(int flags)
{
    XmsDescriptor descriptor{socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | flags, 0)};
    if (descriptor.get() < 0)
        throw XmsError{XmsExit::noServer, std::string{"cannot make a socket: "} + std::strerror(errno)};
    return descriptor;
}

bool tryConnect(const XmsDescriptor &descriptor, const sockaddr_un &address)
{
    return connect(descriptor.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
}

} // namespace

XmsDescriptor::XmsDescriptor(XmsDescriptor &&other) noexcept : number{std::exchange(other.number, -1)} {}

XmsDescriptor &XmsDescriptor::operator=(XmsDescriptor &&other) noexcept
{
    std::swap(number, other.number);
    return *this;
}

XmsDescriptor::~XmsDescriptor()
{
    if (number >= 0)
        close(number);
}

XmsDescriptor xmsConnect(const std::string &path)
{
    const sockaddr_un address = socketAddress(path);
    XmsDescriptor descriptor = makeSocket(0);
    if (tryConnect(descriptor, address))
        return descriptor;
    if (errno == ENOENT || errno == ECONNREFUSED)
        throw XmsError{XmsExit::noServer, "no server at " + path + ": start `xms serve`"};
    throw XmsError{XmsExit::noServer, "cannot reach the server at " + path + ": " + std::strerror(errno)};
}

XmsDescriptor xmsListen(const std::string &path)
{
    const sockaddr_un address = socketAddress(path);
    if (tryConnect(makeSocket(0), address))
        throw XmsError{XmsExit::noServer, "a server is already running at " + path};
    unlink(path.c_str());
    XmsDescriptor listener = makeSocket(SOCK_NONBLOCK);
    const mode_t old = umask(0177); // for the owner only from the moment it exists
    const int bound = bind(listener.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address);
    umask(old);
    if (bound != 0 || listen(listener.get(), CONNECTIONS_WAITING) != 0)
        throw XmsError{XmsExit::noServer, "cannot listen at " + path + ": " + std::strerror(errno)};
    return listener;
}

XmsDescriptor xmsCatchEnd()
{
    std::signal(SIGPIPE, SIG_IGN);
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    sigprocmask(SIG_BLOCK, &set, nullptr);
    return XmsDescriptor{signalfd(-1, &set, SFD_CLOEXEC | SFD_NONBLOCK)};
}

void xmsSendLine(const XmsDescriptor &socket, const std::string &line)
{
    const std::string text = line + "\n";
    std::size_t done = 0;
    while (done < text.size()) {
        const ssize_t size = send(socket.get(), text.data() + done, text.size() - done, MSG_NOSIGNAL);
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0)
            throw XmsError{XmsExit::noServer, "the server has ended"};
        done += static_cast<std::size_t>(size);
    }
}

std::optional<std::string> xmsReadLine(const XmsDescriptor &socket, std::string &buffer)
{
    for (;;) {
        if (auto line = xmsTakeLine(buffer))
            return line;
        std::array<char, 16384> block;
        const ssize_t size = recv(socket.get(), block.data(), block.size(), 0);
        if (size < 0 && errno == EINTR)
            continue;
        if (size <= 0)
            return std::nullopt;
        buffer.append(block.data(), static_cast<std::size_t>(size));
    }
}

std::optional<std::string> xmsTakeLine(std::string &buffer)
{
    const std::size_t end = buffer.find('\n');
    if (end == std::string::npos)
        return std::nullopt;
    std::string line = buffer.substr(0, end);
    buffer.erase(0, end + 1);
    return line;
}
