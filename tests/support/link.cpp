#include "support/link.h"

#include "support/root.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace {

void runIp(const std::string &arguments)
{
    if (!xasInPrivateRoot())
        throw std::logic_error{"network devices are made in the private root only"};
    // By its path: where BusyBox is the shell, it takes its own, which knows no pairs of ports.
    if (std::system(("/bin/ip " + arguments).c_str()) != 0)
        throw std::runtime_error{"failed: ip " + arguments};
}

} // namespace

XasTestLink::XasTestLink(int portNumber) : port{portNumber}
{
    const std::string number = std::to_string(port);
    runIp("link add eth" + number + " type veth peer name peer" + number);
    runIp("link set eth" + number + " up");
}

XasTestLink::~XasTestLink()
{
    runIp("link delete eth" + std::to_string(port));
}

void XasTestLink::plug() const
{
    runIp("link set peer" + std::to_string(port) + " up");
}

void XasTestLink::unplug() const
{
    runIp("link set peer" + std::to_string(port) + " down");
}
