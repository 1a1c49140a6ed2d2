#include "xms/markdown.h"

#include "auth/user_message.h"
#include "msg/fields.h"
#include "msg/type_names.h"
#include "xms/describe.h"
#include "xms/reference.h"

#include <algorithm>

namespace {

using Rows = XmsRows;

constexpr const char *ABOUT =
    "# Messages\n"
    "\n"
    "<!-- Generated from the descriptions of the fields: run ./dev docs after a change of src/msg. -->\n"
    "\n";

constexpr const char *MORE = "\n`xms describe TYPE` shows the same for one type.\n";

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

std::string headerSection()
{
    Rows rows = xmsHeaderRows();
    for (auto &row : rows) {
        if (!row.front().empty())
            row.front() = "`" + row.front() + "`";
    }
    return "\n## The header\n" + xmsMarkdownTable({"field", "offset", "bytes", "meaning"}, rows);
}

std::string typesSection()
{
    Rows rows;
    for (const std::uint32_t msgtype : xmsNamedTypes()) {
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
    std::string text = std::string{ABOUT} + XMS_WIRE_TEXT + MORE + headerSection() + typesSection() +
                       "\n## Kinds\n" + xmsMarkdownTable({"kind", "bytes"}, xmsKindRows());
    for (const std::uint32_t msgtype : xmsNamedTypes()) {
        if (const XasMsgFields *fields = msgFieldsOf(msgtype))
            text += typeSection(*fields);
        if (msgtype == XMSG_LOCALUSERS)
            text += std::string{"\n### The list of users\n\n"} + XMS_USERS_TEXT +
                    fieldsTable(XAS_LISTED_USER_MESSAGE);
    }
    return text;
}
