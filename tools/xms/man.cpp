#include "xms/man.h"

#include "auth/user_message.h"
#include "msg/fields.h"
#include "msg/type_names.h"
#include "xms/describe.h"
#include "xms/reference.h"

#include <cctype>
#include <sstream>

namespace {

constexpr std::size_t LINE_MAX_LENGTH = 79;

constexpr const char *HEAD = ".\\\" Generated from the descriptions of the fields by ./dev docs.\n"
                             ".Dd November 22, 2026\n"
                             ".Dt XASD-MESSAGES 7\n"
                             ".Os\n"
                             ".Sh NAME\n"
                             ".Nm xasd-messages\n"
                             ".Nd the messages between xasd and the configuration server\n"
                             ".Sh DESCRIPTION\n";

constexpr const char *ABOUT_TYPES =
    ".Ss Types\n"
    "The types of messages, each with its number and the application that it\n"
    "concerns.\n"
    "A type without an application is refused; answers and errors are never\n"
    "answered.\n";

constexpr const char *TAIL = ".Sh SEE ALSO\n"
                             ".Xr xms 1 ,\n"
                             ".Xr sysapp.xml 5 ,\n"
                             ".Xr xasd 8\n";

/** A word as the formatter takes it inside a line. */
std::string manWord(const std::string &word)
{
    std::string safe;
    for (const char character : word) {
        if (character == '\\')
            safe += "\\e";
        else
            safe += character;
    }
    for (std::size_t at = safe.find("×"); at != std::string::npos; at = safe.find("×"))
        safe.replace(at, std::string_view{"×"}.size(), "\\(mu");
    return safe;
}

bool endsSentence(const std::string &word)
{
    return word.ends_with('.');
}

/** One entry of a list of tags. */
std::string item(const std::string &tag, const std::string &text)
{
    return ".It " + (tag.empty() ? "No \\-" : "Li " + tag) + "\n" + xmsManText(text);
}

std::string list(const std::string &items)
{
    return ".Bl -tag -width Ds -compact\n" + items + ".El\n";
}

std::string placeText(const std::vector<std::string> &row)
{
    return "offset " + row[1] + ", " + row[2] + " bytes";
}

std::string headerList()
{
    std::string items;
    for (const auto &row : xmsHeaderRows())
        items += item(row[0], placeText(row) + ": " + row[3]);
    return ".Ss The header\n" + list(items);
}

std::string kindsList()
{
    std::string items;
    for (const auto &row : xmsKindRows())
        items += item(row[0], row[1]);
    return ".Ss Kinds of fields\n" + list(items);
}

std::string typesList()
{
    std::string items;
    for (const std::uint32_t msgtype : xmsNamedTypes()) {
        const XasMsgFields *fields = msgFieldsOf(msgtype);
        const std::string application = xmsApplicationText(msgtype);
        std::string text = std::to_string(msgtype);
        if (!application.empty())
            text += ", application " + application;
        if (fields != nullptr)
            text.append(": ").append(fields->meaning);
        items += item(msgLongName(msgtype), text);
    }
    return ABOUT_TYPES + list(items);
}

/** The fields, then how the elements of groups are numbered. */
std::string fieldsList(const XasMsgFields &fields)
{
    std::string items;
    for (const auto &row : xmsFieldRows(fields)) {
        const std::string initial = row[4] == "-" ? "" : ", default " + row[4];
        items += item(row[0], placeText(row) + ", " + row[3] + initial + ": " + row[5]);
    }
    std::string text = list(items);
    for (const std::string &group : xmsGroupTexts(fields))
        text += ".Pp\n" + xmsManText(group);
    return text;
}

std::string typeSection(const XasMsgFields &fields)
{
    const std::string application = xmsApplicationText(fields.msgtype);
    std::string about = msgLongName(fields.msgtype) + " (" + std::to_string(fields.msgtype) + "): ";
    about.append(fields.meaning).append("; ").append(xmsHandlingText(fields));
    if (!application.empty())
        about += "; application " + application;
    about += fields.fields.empty() ? "; no fields." : ".";
    return ".Ss " + msgShortName(fields.msgtype) + "\n" + xmsManText(about) +
           (fields.fields.empty() ? "" : fieldsList(fields));
}

} // namespace

std::string xmsManText(std::string_view text)
{
    std::istringstream words{std::string{text}};
    std::string lines;
    std::string line;
    bool isNewSentence = false;
    for (std::string word; words >> word; isNewSentence = endsSentence(word)) {
        if (!line.empty() && (isNewSentence || line.size() + 1 + word.size() > LINE_MAX_LENGTH)) {
            lines += line + "\n";
            line.clear();
        }
        const bool isControl = line.empty() && (word.starts_with('.') || word.starts_with('\''));
        line += (line.empty() ? (isControl ? "\\&" : "") : " ") + manWord(word);
    }
    return line.empty() ? lines : lines + line + "\n";
}

std::string xmsMessagesMan()
{
    std::string text = HEAD + xmsManText(XMS_WIRE_TEXT) + headerList() + kindsList() + typesList();
    for (const std::uint32_t msgtype : xmsNamedTypes()) {
        if (const XasMsgFields *fields = msgFieldsOf(msgtype))
            text += typeSection(*fields);
        if (msgtype == XMSG_LOCALUSERS)
            text +=
                ".Ss The list of users\n" + xmsManText(XMS_USERS_TEXT) + fieldsList(XAS_LISTED_USER_MESSAGE);
    }
    return text + TAIL;
}
