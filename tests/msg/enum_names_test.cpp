#include "msg/enum_names.h"

#include "support/test.h"

namespace {

/** The names of the values from 0 on, one behind the other. */
std::vector<std::string> namesOf(const XasEnumNames &nameOf, std::uint32_t count)
{
    std::vector<std::string> names;
    for (std::uint32_t value = 0; value < count; ++value)
        names.emplace_back(nameOf(value));
    return names;
}

using Names = std::vector<std::string>;

} // namespace

TEST(MsgEnumNames, EveryValueOutsideItsTableIsUnknown)
{
    const std::vector<std::pair<XasEnumNames, std::uint32_t>> firstOutside = {
        {msgAddressSourceName, 3},
        {msgIPsecCipherName, 3},
        {msgIPsecHashName, 3},
        {msgIPsecGroupName, 3},
        {msgLogLevelName, 5},
        {msgSensorDeviceName, 8},
        {msgParityName, 3},
        {msgFlowControlName, 3},
        {msgModemModeName, 5},
        {msgPPPAuthName, 2},
        {msgPCCardTypeName, 6},
        {msgUserActionName, 6},
        {msgConnectionProtocolName, 9},
    };
    for (const auto &[nameOf, first] : firstOutside) {
        for (const std::uint32_t value : {first, first + 1, 255U, 0x80000000U, 0xFFFFFFFFU})
            EXPECT_STREQ(nameOf(value), "UNKNOWN") << value;
    }
}

TEST(MsgEnumNames, GapsInTheTablesAreUnknown)
{
    EXPECT_STREQ(msgConnectionProtocolName(6), "UNKNOWN");
    EXPECT_STREQ(msgConnectionProtocolName(7), "UNKNOWN");
    EXPECT_STREQ(msgUserActionName(4), "UNKNOWN");
}

TEST(MsgEnumNames, ZeroIsNoAndEverythingElseIsYes)
{
    EXPECT_STREQ(msgYesNoName(0), "n");
    for (const std::uint32_t value : {1U, 2U, 256U, 0x80000000U, 0xFFFFFFFFU})
        EXPECT_STREQ(msgYesNoName(value), "y") << value;
}

TEST(MsgEnumNames, TheNetworkTables)
{
    EXPECT_EQ(namesOf(msgAddressSourceName, 3), (Names{"disabled", "rip", "static"}));
    EXPECT_EQ(namesOf(msgIPsecCipherName, 3), (Names{"any", "3des", "aes"}));
    EXPECT_EQ(namesOf(msgIPsecHashName, 3), (Names{"any", "sha1", "md5"}));
    EXPECT_EQ(namesOf(msgIPsecGroupName, 3), (Names{"any", "dhg2", "dhg5"}));
    EXPECT_EQ(namesOf(msgPPPAuthName, 2), (Names{"pap", "chap"}));
    EXPECT_EQ(namesOf(msgLogLevelName, 5), (Names{"off", "info", "warn", "error", "debug"}));
}

TEST(MsgEnumNames, TheSerialPortAndModemTables)
{
    EXPECT_EQ(namesOf(msgParityName, 3), (Names{"none", "odd", "even"}));
    EXPECT_EQ(namesOf(msgFlowControlName, 3), (Names{"none", "xon/xoff", "rts/cts"}));
    EXPECT_EQ(namesOf(msgModemModeName, 5),
              (Names{"disabled", "dialout", "dialin", "dialback", "dialondemand"}));
    EXPECT_EQ(namesOf(msgPCCardTypeName, 6),
              (Names{"none", "compactflash", "modem", "isdn", "wireless", "gsm modem"}));
    EXPECT_EQ(namesOf(msgConnectionProtocolName, 9),
              (Names{"ssh", "telnet", "udp", "tcp", "serial", "modem", "UNKNOWN", "UNKNOWN", "rlogin"}));
}

TEST(MsgEnumNames, TwoSensorDevicesShareAName)
{
    EXPECT_EQ(namesOf(msgSensorDeviceName, 8), (Names{"nodevice", "slp8", "slp16", "sensorsoft", "slp8exp16",
                                                      "slp8exp16", "slp16exp8", "slp16exp16"}));
}

TEST(MsgEnumNames, TheUserActions)
{
    EXPECT_EQ(namesOf(msgUserActionName, 6),
              (Names{"add", "edit", "delete", "password", "UNKNOWN", "edit_clisettings"}));
}
