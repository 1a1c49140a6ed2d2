#include "msg/enum_names.h"

#include <array>
#include <cstddef>

namespace {

constexpr const char *UNKNOWN = "UNKNOWN";

/** Names by value; null: the value has none. */
template <std::size_t N>
using Names = std::array<const char *, N>;

constexpr Names<3> ADDRESS_SOURCES = {"disabled", "rip", "static"};
constexpr Names<3> IPSEC_CIPHERS = {"any", "3des", "aes"};
constexpr Names<3> IPSEC_HASHES = {"any", "sha1", "md5"};
constexpr Names<3> IPSEC_GROUPS = {"any", "dhg2", "dhg5"};
constexpr Names<5> LOG_LEVELS = {"off", "info", "warn", "error", "debug"};
constexpr Names<8> SENSOR_DEVICES = {"nodevice",  "slp8",      "slp16",     "sensorsoft",
                                     "slp8exp16", "slp8exp16", "slp16exp8", "slp16exp16"};
constexpr Names<3> PARITIES = {"none", "odd", "even"};
constexpr Names<3> FLOW_CONTROLS = {"none", "xon/xoff", "rts/cts"};
constexpr Names<5> MODEM_MODES = {"disabled", "dialout", "dialin", "dialback", "dialondemand"};
constexpr Names<2> PPP_AUTHS = {"pap", "chap"};
constexpr Names<9> PROTOCOLS = {"ssh", "telnet", "udp", "tcp", "serial", "modem", nullptr, nullptr, "rlogin"};
constexpr Names<6> PC_CARDS = {"none", "compactflash", "modem", "isdn", "wireless", "gsm modem"};
constexpr Names<6> USER_ACTIONS = {"add", "edit", "delete", "password", nullptr, "edit_clisettings"};

template <std::size_t N>
const char *nameOf(const Names<N> &names, std::uint32_t value)
{
    return value < N && names[value] != nullptr ? names[value] : UNKNOWN;
}

} // namespace

const char *msgYesNoName(std::uint32_t value)
{
    return value != 0 ? "y" : "n";
}

const char *msgAddressSourceName(std::uint32_t value)
{
    return nameOf(ADDRESS_SOURCES, value);
}

const char *msgIPsecCipherName(std::uint32_t value)
{
    return nameOf(IPSEC_CIPHERS, value);
}

const char *msgIPsecHashName(std::uint32_t value)
{
    return nameOf(IPSEC_HASHES, value);
}

const char *msgIPsecGroupName(std::uint32_t value)
{
    return nameOf(IPSEC_GROUPS, value);
}

const char *msgLogLevelName(std::uint32_t value)
{
    return nameOf(LOG_LEVELS, value);
}

const char *msgSensorDeviceName(std::uint32_t value)
{
    return nameOf(SENSOR_DEVICES, value);
}

const char *msgParityName(std::uint32_t value)
{
    return nameOf(PARITIES, value);
}

const char *msgFlowControlName(std::uint32_t value)
{
    return nameOf(FLOW_CONTROLS, value);
}

const char *msgModemModeName(std::uint32_t value)
{
    return nameOf(MODEM_MODES, value);
}

const char *msgPPPAuthName(std::uint32_t value)
{
    return nameOf(PPP_AUTHS, value);
}

const char *msgConnectionProtocolName(std::uint32_t value)
{
    return nameOf(PROTOCOLS, value);
}

const char *msgPCCardTypeName(std::uint32_t value)
{
    return nameOf(PC_CARDS, value);
}

const char *msgUserActionName(std::uint32_t value)
{
    return nameOf(USER_ACTIONS, value);
}
