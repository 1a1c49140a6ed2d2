#include "platform/config_library.h"

#include "wire/address.h"
#include "wire/message.h"

#include <algorithm>
#include <arpa/inet.h>

namespace {

/** One caller's text: long enough for a 68-character name and for every IPv6 text. */
using TextBuffer = char[80];

/** inet_ntop never fails for the two families with a buffer of this size. */
const char *addressText(bool isIpv6, const void *address, TextBuffer &buffer)
{
    return inet_ntop(isIpv6 ? AF_INET6 : AF_INET, address, buffer, sizeof buffer);
}

} // namespace

const char *xmlIPv4Or6ToStr(const XasIpAddr *address)
{
    static TextBuffer buffer;
    const bool unset =
        address->is_ipv6 == 0 && std::ranges::all_of(address->address, [](auto b) { return b == 0; });
    return unset ? "" : addressText(address->is_ipv6 != 0, address->address, buffer);
}

const char *xmlNameOrIpToStr(const XasHostAddr *host)
{
    static TextBuffer buffer;
    if (host->is_name == 0)
        return addressText(host->is_ipv6 != 0, host->value, buffer);
    const std::string_view name = xasFieldText(host->value);
    *std::ranges::copy(name, buffer).out = '\0';
    return buffer;
}

const char *xmlSockAddr6ToStr(const sockaddr_in6 *address)
{
    static TextBuffer buffer;
    return addressText(true, &address->sin6_addr, buffer);
}
