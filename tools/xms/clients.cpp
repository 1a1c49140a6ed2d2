#include "xms/clients.h"

#include <array>
#include <cerrno>
#include <sys/socket.h>

namespace {

/** A client may leave this much unread, and send a line as long as this. */
constexpr std::size_t LARGEST_BACKLOG = 4U << 20;

/** Reads what has arrived without waiting. */
void readInput(XmsClient &client)
{
    std::array<char, 16384> block;
    while (client.input.size() < LARGEST_BACKLOG) {
        const ssize_t size = recv(client.socket.get(), block.data(), block.size(), MSG_DONTWAIT);
        if (size <= 0) {
            client.gone = size == 0 || (errno != EAGAIN && errno != EINTR);
            return;
        }
        client.input.append(block.data(), static_cast<std::size_t>(size));
    }
    client.gone = true;
}

void writeOutput(XmsClient &client)
{
    while (!client.output.empty()) {
        const ssize_t size = send(client.socket.get(), client.output.data(), client.output.size(),
                                  MSG_DONTWAIT | MSG_NOSIGNAL);
        if (size < 0) {
            client.gone = client.gone || (errno != EAGAIN && errno != EINTR);
            return;
        }
        client.output.erase(0, static_cast<std::size_t>(size));
    }
}

} // namespace

void xmsAcceptClients(XmsClients &clients, const XmsDescriptor &listener)
{
    for (;;) {
        XmsDescriptor socket{accept4(listener.get(), nullptr, nullptr, SOCK_CLOEXEC)};
        if (socket.get() < 0)
            return;
        clients.all[++clients.lastNumber].socket = std::move(socket);
    }
}

void xmsAddToPoll(const XmsClients &clients, std::vector<pollfd> &waits)
{
    for (const auto &[number, client] : clients.all) {
        const int events = client.output.empty() ? POLLIN : POLLIN | POLLOUT;
        waits.push_back({client.socket.get(), static_cast<short>(events), 0});
    }
}

void xmsReadClients(XmsClients &clients, const std::function<void(int, const std::string &)> &handle)
{
    for (auto &[number, client] : clients.all) {
        readInput(client);
        while (const auto line = xmsTakeLine(client.input))
            handle(number, *line);
    }
}

void xmsTell(XmsClients &clients, int number, std::string_view line)
{
    const auto found = clients.all.find(number);
    if (found == clients.all.end())
        return;
    XmsClient &client = found->second;
    client.output.append(line).append("\n");
    client.gone = client.gone || client.output.size() > LARGEST_BACKLOG;
}

void xmsTellWatchers(XmsClients &clients, std::string_view line)
{
    for (const auto &[number, client] : clients.all) {
        if (client.watches)
            xmsTell(clients, number, line);
    }
}

void xmsFlushClients(XmsClients &clients)
{
    for (auto &[number, client] : clients.all)
        writeOutput(client);
}

std::vector<int> xmsDropGone(XmsClients &clients)
{
    std::vector<int> numbers;
    for (const auto &[number, client] : clients.all) {
        if (client.gone)
            numbers.push_back(number);
    }
    for (const int number : numbers)
        clients.all.erase(number);
    return numbers;
}
