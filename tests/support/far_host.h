/** A host at the other end of a cable, for the private root: what comes through from there. */
#ifndef XAS_TEST_SUPPORT_FAR_HOST_H
#define XAS_TEST_SUPPORT_FAR_HOST_H

#include <cstdint>
#include <functional>
#include <string>
#include <sys/types.h>
#include <vector>

/** What became of a packet. */
enum class XasPacketFate { passed, rejected, dropped };

std::ostream &operator<<(std::ostream &out, XasPacketFate fate);

/**
 * The far end of Ethernet port eth0 (10.9.0.1/24) in a network namespace of its own, with the addresses
 * 10.9.0.2 to 10.9.0.9. Its packets are answered by sockets of the test: TCP and UDP on `ports`.
 */
class XasFarHost {
  public:
    explicit XasFarHost(const std::vector<std::uint16_t> &ports);
    ~XasFarHost();
    XasFarHost(const XasFarHost &) = delete;
    XasFarHost &operator=(const XasFarHost &) = delete;

    /** Opens a TCP connection from `source` to a port of the near end. */
    [[nodiscard]] XasPacketFate connect(const char *source, std::uint16_t port) const;

    /** Sends a datagram from `source` to a port of the near end. */
    [[nodiscard]] XasPacketFate send(const char *source, std::uint16_t port) const;

    /** Sends an echo request from `source`. */
    [[nodiscard]] XasPacketFate ping(const char *source) const;

  private:
    [[nodiscard]] XasPacketFate ask(const std::function<XasPacketFate()> &attempt) const;

    pid_t holder;             /**< keeps the namespace alive */
    std::vector<int> sockets; /**< of the near end */
};

#endif
