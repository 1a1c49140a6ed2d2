/** Host records as tests write them. */
#ifndef XAS_TEST_SUPPORT_HOSTS_H
#define XAS_TEST_SUPPORT_HOSTS_H

#include "wire/address.h"

#include <arpa/inet.h>
#include <cstring>
#include <stdexcept>
#include <string>
#include <string_view>

inline XasHostAddr xasNamedHost(std::string_view name)
{
    XasHostAddr host{.is_name = 1, .is_ipv6 = 0, .value = {}};
    name.copy(host.value, sizeof host.value);
    return host;
}

/** An IPv4 or IPv6 address from its text. */
inline XasHostAddr xasHostWithAddress(const char *address)
{
    const bool isIpv6 = std::string_view{address}.find(':') != std::string_view::npos;
    XasHostAddr host{.is_name = 0, .is_ipv6 = isIpv6 ? 1U : 0U, .value = {}};
    if (::inet_pton(isIpv6 ? AF_INET6 : AF_INET, address, host.value) != 1)
        throw std::invalid_argument{address};
    return host;
}

/** The bytes of a record, for a message. */
inline std::string xasHostBytes(const XasHostAddr &host)
{
    return {reinterpret_cast<const char *>(&host), sizeof host};
}

#endif
