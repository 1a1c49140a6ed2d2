/** Names of the values that messages carry, as the dumps show them. */
#ifndef XAS_MSG_ENUM_NAMES_H
#define XAS_MSG_ENUM_NAMES_H

#include <cstdint>
#include <iterator>

/** Gives the name of a value: msgParityName(1) is "odd". A value without name is "UNKNOWN". */
struct XasEnumNames {
    const char *names[9]; /**< by value; null: the value has none */

    constexpr const char *operator()(std::uint32_t value) const
    {
        return value < std::size(names) && names[value] != nullptr ? names[value] : "UNKNOWN";
    }
};

inline constexpr XasEnumNames msgAddressSourceName{{"disabled", "rip", "static"}};
inline constexpr XasEnumNames msgIPsecCipherName{{"any", "3des", "aes"}};
inline constexpr XasEnumNames msgIPsecHashName{{"any", "sha1", "md5"}};
inline constexpr XasEnumNames msgIPsecGroupName{{"any", "dhg2", "dhg5"}};
inline constexpr XasEnumNames msgLogLevelName{{"off", "info", "warn", "error", "debug"}};
inline constexpr XasEnumNames msgSensorDeviceName{
    {"nodevice", "slp8", "slp16", "sensorsoft", "slp8exp16", "slp8exp16", "slp16exp8", "slp16exp16"}};
inline constexpr XasEnumNames msgParityName{{"none", "odd", "even"}};
inline constexpr XasEnumNames msgFlowControlName{{"none", "xon/xoff", "rts/cts"}};
inline constexpr XasEnumNames msgModemModeName{{"disabled", "dialout", "dialin", "dialback", "dialondemand"}};
inline constexpr XasEnumNames msgPPPAuthName{{"pap", "chap"}};
inline constexpr XasEnumNames msgConnectionProtocolName{
    {"ssh", "telnet", "udp", "tcp", "serial", "modem", nullptr, nullptr, "rlogin"}};
inline constexpr XasEnumNames msgPCCardTypeName{
    {"none", "compactflash", "modem", "isdn", "wireless", "gsm modem"}};
inline constexpr XasEnumNames msgUserActionName{
    {"add", "edit", "delete", "password", nullptr, "edit_clisettings"}};

/** 0 is "n", any other value "y". */
constexpr const char *msgYesNoName(std::uint32_t value)
{
    return value != 0 ? "y" : "n";
}

#endif
