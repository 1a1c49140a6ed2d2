/** Records as hexadecimal text, as they travel over the server's socket. */
#ifndef XAS_XMS_HEX_H
#define XAS_XMS_HEX_H

#include "wire/message.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/** Two lower-case digits for each byte. */
std::string xmsToHex(std::span<const std::byte> bytes);
std::string xmsToHex(const XasMessage &record);

/** The bytes; blanks and line ends between digits are skipped. None when `text` is not whole bytes of hex. */
std::optional<std::vector<std::byte>> xmsFromHex(std::string_view text);

/** The record; none when `text` is not exactly one record. */
std::optional<XasMessage> xmsRecordFromHex(std::string_view text);

#endif
