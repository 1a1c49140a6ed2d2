#include "config/web_hostname.h"

#include "core/file.h"
#include "core/log.h"
#include "core/text.h"
#include "wire/text_rule.h"

namespace {

constexpr const char *SETTINGS = "/www/xml/network.xml";

/** What stands between the first ">" of a line that has one and the next "<"; empty when that is missing. */
std::string_view elementText(std::string_view line)
{
    const std::size_t begin = line.find('>') + 1;
    const std::size_t end = line.find('<', begin);
    return end == std::string_view::npos ? std::string_view{} : line.substr(begin, end - begin);
}

bool canBeTaken(std::string_view name)
{
    return !name.empty() && name.size() <= XAS_WEB_HOSTNAME_MAX &&
           name.find_first_not_of(XAS_PLAIN_CHARACTERS) == std::string_view::npos;
}

} // namespace

std::string xasWebHostname(std::string_view text)
{
    std::string hostname;
    xasForEachLine(text, [&](std::string_view line) {
        if (line.find("<HOSTNAME>") == std::string_view::npos)
            return;
        const std::string_view name = elementText(line);
        if (canBeTaken(name))
            hostname = name;
    });
    return hostname;
}

int xasGetXmlHostname(std::string &hostname)
{
    std::string text;
    const XasReading reading = xasReadWhole(SETTINGS, text);
    if (reading == XasReading::notOpened)
        return xasLogFailure("cannot open network.xml file\n");
    if (reading == XasReading::notRead)
        return 1;
    std::string found = xasWebHostname(text);
    if (found.empty())
        return 1;
    hostname = std::move(found);
    return 0;
}
