#include "xms/markdown.h"

#include "auth/user_message.h"
#include "msg/fields.h"
#include "msg/type_names.h"
#include "wire/message_names.h"
#include "xms/describe.h"

#include <algorithm>

namespace {

using Rows = std::vector<std::vector<std::string>>;

constexpr const char *ABOUT =
    "# Messages\n"
    "\n"
    "<!-- Generated from the descriptions of the fields: run ./dev docs after a change of src/msg. -->\n"
    "\n"
    "The daemon and the configuration server exchange records of 2488 bytes through two System V message queues:\n"
    "key 1005 from the daemon to the server, key 1006 to the daemon. The queue's own message type is that of the\n"
    "record. Numbers are little-endian, IPv4 addresses in network byte order. A text ends at its first NUL byte\n"
    "or with its field. All offsets count from the start of the record.\n"
    "\n"
    "`xms describe TYPE` shows the same for one type.\n";

constexpr const char *KINDS =
    "\n"
    "## Kinds\n"
    "\n"
    "| kind | bytes |\n"
    "|---|---|\n"
    "| text | characters up to a NUL byte or the end of the field |\n"
    "| u8, u16, u32, u64 | unsigned number |\n"
    "| i32 | signed number |\n"
    "| flag | 0 no, anything else yes |\n"
    "| choice | number, whose values are named in brackets |\n"
    "| mask | one bit for each port or right, from the lowest on |\n"
    "| IPv4 | 4 bytes in network order; where \"none\" is possible, that is 255.255.255.255 |\n"
    "| IPv6 | 16 bytes; all zero is none |\n"
    "| IPv6 socket | `sockaddr_in6`, 28 bytes; an address that is all zero is none |\n"
    "| address | u32, not 0 for IPv6; then 16 bytes: the IPv6 address, or the IPv4 address in the first four; all zero is "
    "none |\n"
    "| host | u32, not 0 for a name; u32, not 0 for IPv6; then 68 bytes: the name, or the address as above without "
    "its u32; an empty name is none |\n";

constexpr const char *USERS =
    "\n"
    "### The list of users\n"
    "\n"
    "When num_users is not 0, a second entry of 120 + 224 × num_users bytes follows the message in the queue: 120\n"
    "bytes that nobody reads, then the users. The place in the message behind num_users (offset 164) is the\n"
    "daemon's own. The offsets below are those of the first user in that entry; each further one stands 224 bytes\n"
    "behind.\n";

/** A cell's text where bars and angle brackets would be taken for markup. */
std::string cell(const std::string &text)
{
    std::string safe;
    for (const char character : text) {
        if (character == '|' || character == '<')
            safe += '\\';
        safe += character;
    }
    return safe;
}

std::string line(const std::vector<std::string> &cells)
{
    std::string text = "|";
    for (const std::string &one : cells)
        text += " " + one + " |";
    return text + "\n";
}

} // namespace

std::string xmsMarkdownTable(const std::vector<std::string> &head, const Rows &rows)
{
    std::string text = "\n" + line(head) + "|";
    for (std::size_t i = 0; i < head.size(); ++i)
        text += "---|";
    text += "\n";
    for (const auto &row : rows)
        text += line(row);
    return text;
}

namespace {

/** "0 Set, 1 Get, 2 Return": the names from 0 up to the first number without one. */
std::string numbered(std::string_view (*nameOf)(std::uint32_t))
{
    std::string text;
    for (std::uint32_t number = 0; !nameOf(number).empty(); ++number)
        text += (number == 0 ? "" : ", ") + std::to_string(number) + " " + std::string{nameOf(number)};
    return text;
}

std::string headerSection()
{
    return "\n## The header\n" +
           xmsMarkdownTable({"field", "offset", "bytes", "meaning"},
                            {{"`msgtype`", "0", "4", "type of the message, see below"},
                             {"`action`", "4", "4", numbered(xasActionName)},
                             {"`sender`", "8", "4", numbered(xasSenderName)},
                             {"`id`", "12", "4", "number of the message, given by its sender"},
                             {"`orig_id`", "16", "4", "in an answer the `id` of what it answers, else 0"},
                             {"", "20", "100", "not used, zero"},
                             {"", "120", "2368", "payload, by type"}});
}

std::string typesSection()
{
    Rows rows;
    for (std::uint32_t msgtype = XMSG_ETH; msgtype <= XMSG_ERROR; ++msgtype) {
        if (xasMsgTypeName(msgtype).empty())
            continue;
        const XasMsgFields *fields = msgFieldsOf(msgtype);
        std::vector<std::string> row = {std::to_string(msgtype), "`" + msgLongName(msgtype) + "`",
                                        xmsApplicationText(msgtype), ""};
        if (fields != nullptr) {
            row[1].insert(0, "[").append("](#").append(msgShortName(msgtype)).append(")");
            row[3] = fields->meaning;
        }
        rows.push_back(row);
    }
    return "\n## Types\n\nA type without an application is refused; answers and errors are never answered.\n" +
           xmsMarkdownTable({"number", "type", "application", "meaning"}, rows);
}

std::string fieldsTable(const XasMsgFields &fields)
{
    Rows rows = xmsFieldRows(fields);
    for (auto &row : rows) {
        row.front() = "`" + row.front() + "`";
        std::transform(row.begin() + 1, row.end(), row.begin() + 1, cell);
    }
    std::string text =
        xmsMarkdownTable({"field", "offset", "bytes", "kind", "default", "meaning (values)"}, rows);
    for (const std::string &group : xmsGroupTexts(fields)) {
        const std::size_t colon = group.find(':');
        text += "\n`" + group.substr(0, colon) + "`" + cell(group.substr(colon)) + "\n";
    }
    return text;
}

std::string typeSection(const XasMsgFields &fields)
{
    const std::string application = xmsApplicationText(fields.msgtype);
    std::string text = "\n## " + msgShortName(fields.msgtype) + "\n\n";
    text += "`" + msgLongName(fields.msgtype) + "` (" + std::to_string(fields.msgtype) + "): ";
    text.append(fields.meaning).append(".\nHandling: ").append(xmsHandlingText(fields));
    if (!application.empty())
        text += "; application: " + application;
    text += ".\n";
    return text + (fields.fields.empty() ? "\nNo fields.\n" : fieldsTable(fields));
}

} // namespace

std::string xmsMarkdown()
{
    std::string text = ABOUT + headerSection() + typesSection() + KINDS;
    for (std::uint32_t msgtype = XMSG_ETH; msgtype <= XMSG_ERROR; ++msgtype) {
        if (const XasMsgFields *fields = msgFieldsOf(msgtype))
            text += typeSection(*fields);
        if (msgtype == XMSG_LOCALUSERS)
            text += USERS + fieldsTable(XAS_LISTED_USER_MESSAGE);
    }
    return text;
}
