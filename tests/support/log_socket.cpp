#include "support/log_socket.h"

#include <charconv>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>

namespace {

/** The length of "Mmm dd hh:mm:ss ". */
constexpr std::size_t TIMESTAMP_LENGTH = 16;

int bindSocket(const std::string &path)
{
    ::unlink(path.c_str());
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int fd = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    if (fd < 0 || ::bind(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        throw std::runtime_error{"cannot bind " + path + ": " + std::strerror(errno)};
    return fd;
}

} // namespace

XasSocketLine xasParseLogDatagram(std::string_view datagram)
{
    XasSocketLine result{.line = {-1, std::string{datagram}}, .ident = {}, .arrived = {}};
    const std::size_t close = datagram.find('>');
    if (!datagram.starts_with('<') || close == std::string_view::npos)
        return result;
    std::from_chars(datagram.data() + 1, datagram.data() + close, result.line.priority);
    std::string_view rest = datagram.substr(std::min(close + 1 + TIMESTAMP_LENGTH, datagram.size()));
    const std::size_t colon = rest.find(": ");
    if (colon == std::string_view::npos)
        return result;
    result.ident = rest.substr(0, colon);
    result.line.text = rest.substr(colon + 2);
    return result;
}

XasLogSocket::XasLogSocket(const std::string &socketPath)
    : path{socketPath}, fd{bindSocket(socketPath)}, reader{[this] {
          read();
      }}
{
}

XasLogSocket::~XasLogSocket()
{
    ending = true;
    reader.join();
    ::close(fd);
    ::unlink(path.c_str());
}

void XasLogSocket::read()
{
    while (!ending) {
        pollfd readable{.fd = fd, .events = POLLIN, .revents = 0};
        if (::poll(&readable, 1, 10) > 0)
            hold();
    }
}

std::unique_lock<std::mutex> XasLogSocket::hold() const
{
    std::unique_lock lock{mutex};
    std::array<char, 65536> datagram{};
    for (ssize_t size = 0; (size = ::recv(fd, datagram.data(), datagram.size(), MSG_DONTWAIT)) >= 0;) {
        XasSocketLine line = xasParseLogDatagram({datagram.data(), static_cast<std::size_t>(size)});
        line.arrived = std::chrono::steady_clock::now();
        received.push_back(std::move(line));
        changed.notify_all();
    }
    return lock;
}

std::vector<XasLogLine> XasLogSocket::lines() const
{
    std::vector<XasLogLine> found;
    for (const XasSocketLine &line : arrived())
        found.push_back({LOG_PRI(line.line.priority), line.line.text});
    return found;
}

std::vector<XasSocketLine> XasLogSocket::arrived() const
{
    const auto lock = hold();
    return received;
}

std::size_t XasLogSocket::countFrom(std::string_view part, std::size_t from) const
{
    std::size_t found = 0;
    for (std::size_t i = from; i < received.size(); ++i)
        found += received[i].line.text.find(part) != std::string::npos ? 1 : 0;
    return found;
}

bool XasLogSocket::await(std::string_view part, std::chrono::milliseconds atMost, std::size_t from) const
{
    auto lock = hold();
    return changed.wait_for(lock, atMost, [&] { return countFrom(part, from) > 0; });
}

bool XasLogSocket::awaitCount(std::string_view part, std::size_t count,
                              std::chrono::milliseconds atMost) const
{
    auto lock = hold();
    return changed.wait_for(lock, atMost, [&] { return countFrom(part, 0) >= count; });
}

std::size_t XasLogSocket::count(std::string_view part) const
{
    const auto lock = hold();
    return countFrom(part, 0);
}

std::size_t XasLogSocket::size() const
{
    const auto lock = hold();
    return received.size();
}

void XasLogSocket::clear()
{
    const auto lock = hold();
    received.clear();
}
