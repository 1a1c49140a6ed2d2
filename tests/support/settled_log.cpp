#include "support/settled_log.h"

#include <sys/socket.h>
#include <sys/un.h>

namespace {

constexpr std::string_view MARK_TEXT = "(all before this has been read)";

void sendMark()
{
    const std::string datagram = "<0>Jan  1 00:00:00 mark: " + std::string{MARK_TEXT};
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = "/dev/log"};
    const int fd = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    EXPECT_GT(::sendto(fd, datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr *>(&address),
                       sizeof address),
              0);
    ::close(fd);
}

} // namespace

std::vector<XasLogLine> xasSettledLines(const XasLogSocket &log)
{
    const std::size_t from = log.size();
    sendMark();
    EXPECT_TRUE(log.await(MARK_TEXT, std::chrono::seconds{10}, from));
    std::vector<XasLogLine> lines = log.lines();
    std::erase_if(lines, [](const XasLogLine &line) { return line.text == MARK_TEXT; });
    return lines;
}
