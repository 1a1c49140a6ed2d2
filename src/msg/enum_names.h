/** Names of the values that messages carry, as the dumps show them. A value outside its table is "UNKNOWN".
 */
#ifndef XAS_MSG_ENUM_NAMES_H
#define XAS_MSG_ENUM_NAMES_H

#include <cstdint>

const char *msgYesNoName(std::uint32_t value); /**< 0 "n", any other "y" */
const char *msgAddressSourceName(std::uint32_t value);
const char *msgIPsecCipherName(std::uint32_t value);
const char *msgIPsecHashName(std::uint32_t value);
const char *msgIPsecGroupName(std::uint32_t value);
const char *msgLogLevelName(std::uint32_t value);
const char *msgSensorDeviceName(std::uint32_t value);
const char *msgParityName(std::uint32_t value);
const char *msgFlowControlName(std::uint32_t value);
const char *msgModemModeName(std::uint32_t value);
const char *msgPPPAuthName(std::uint32_t value);
const char *msgConnectionProtocolName(std::uint32_t value);
const char *msgPCCardTypeName(std::uint32_t value);
const char *msgUserActionName(std::uint32_t value);

#endif
