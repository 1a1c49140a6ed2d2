/** Messages and tables as people and programs read them. */
#ifndef XAS_XMS_SHOW_H
#define XAS_XMS_SHOW_H

#include "wire/message.h"
#include "xms/logs.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

using XmsJson = nlohmann::ordered_json;

/** Whether texts are coloured. */
enum class XmsPaint : std::uint8_t { plain, coloured };

/** The colours, named by what they mean. */
enum class XmsInk : std::uint8_t { good, bad, faint, strong };

/** `text` in the colour of `ink`, or as it is. */
std::string xmsPainted(XmsPaint paint, XmsInk ink, std::string_view text);

/** One record that passed between server and daemon, whole or odd. */
struct XmsTraffic {
    std::int64_t timeMs = 0; /**< milliseconds since the epoch */
    bool toDaemon = false;
    std::vector<std::byte> bytes;
};

/** `text` with control characters escaped. */
std::string xmsEscaped(std::string_view text);

/** `text` as one word of a line: in double quotes, escaped, where it is empty or holds blanks or quotes. */
std::string xmsQuoted(std::string_view text);

/** "name=value name=value": the fields that are not zero. */
std::string xmsFieldsLine(const XasMessage &record);

/** One aligned "  name  value" line for each field; unused elements of groups are left out. */
std::string xmsFieldsTable(const XasMessage &record);

/** An object of all fields but those of unused elements: flags as booleans, numbers as numbers. */
XmsJson xmsFieldsJson(const XasMessage &record);

/** One line, without line end: time, direction, action, type, ids, fields. A record of a wrong size is odd.
 */
std::string xmsTrafficLine(const XmsTraffic &traffic, XmsPaint paint);

/** The message that passed; all zero for an odd record and a list of users. */
XasMessage xmsTrafficMessage(const XmsTraffic &traffic);

/**
 * The whole message behind such a line, as the dump of messages shows it: header and payload, with a line
 * end. A list of users is shown as that of `last`, the message before it.
 */
std::string xmsTrafficDump(const XmsTraffic &traffic, const XasMessage &last, XmsPaint paint);

/** One line as an object. */
XmsJson xmsTrafficJson(const XmsTraffic &traffic);

/** A line of the log, among the others. */
std::string xmsLogLineText(const XmsLogLine &line, XmsPaint paint);
XmsJson xmsLogJson(const XmsLogLine &line);

/** `json` on one line; bytes that are no text are replaced. */
std::string xmsJsonLine(const XmsJson &json);

/** Columns padded to their widest cell and separated by two blanks; the last one is not padded. */
std::string xmsAligned(const std::vector<std::vector<std::string>> &rows, std::string_view indent = "  ");

#endif
