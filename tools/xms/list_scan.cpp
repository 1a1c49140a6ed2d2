#include "xms/list_scan.h"

#include "xms/error.h"

#include <expat.h>
#include <fstream>
#include <memory>
#include <sstream>
#include <type_traits>

namespace {

struct Scanner {
    XML_Parser parser;
    XmsListScan scan;
    std::size_t open = XMS_NO_ELEMENT; /**< the innermost element that is open */
};

void XMLCALL startElement(void *data, const XML_Char *name, const XML_Char **attributes)
{
    Scanner &scanner = *static_cast<Scanner *>(data);
    scanner.scan.elements.push_back({.name = name,
                                     .line = static_cast<int>(XML_GetCurrentLineNumber(scanner.parser)),
                                     .parent = scanner.open,
                                     .text = {},
                                     .hasAttributes = attributes[0] != nullptr});
    scanner.open = scanner.scan.elements.size() - 1;
}

void XMLCALL endElement(void *data, const XML_Char * /*name*/)
{
    Scanner &scanner = *static_cast<Scanner *>(data);
    scanner.open = scanner.scan.elements[scanner.open].parent;
}

void XMLCALL characterData(void *data, const XML_Char *text, int length)
{
    Scanner &scanner = *static_cast<Scanner *>(data);
    scanner.scan.elements[scanner.open].text.append(text, static_cast<std::size_t>(length));
}

std::string contentOf(const std::string &path)
{
    std::ifstream file{path, std::ios::binary};
    std::ostringstream content;
    if (!file || !(content << file.rdbuf()))
        throw XmsError{XmsExit::usage, "cannot read " + path};
    return content.str();
}

} // namespace

std::vector<const XmsListElement *> XmsListScan::inside(const XmsListElement &parent,
                                                        std::string_view name) const
{
    std::vector<const XmsListElement *> found;
    for (const XmsListElement &element : elements) {
        if (element.parent != XMS_NO_ELEMENT && &elements[element.parent] == &parent && element.name == name)
            found.push_back(&element);
    }
    return found;
}

std::string_view XmsListScan::parentName(const XmsListElement &element) const
{
    return element.parent == XMS_NO_ELEMENT ? std::string_view{} : elements[element.parent].name;
}

bool xmsHasText(std::string_view text)
{
    return text.find_first_not_of(" \t\n") != std::string_view::npos;
}

XmsListScan xmsScanList(const std::string &path)
{
    const std::string content = contentOf(path);
    const std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)> parser{
        XML_ParserCreate(nullptr), &XML_ParserFree};
    if (!parser)
        throw std::bad_alloc{};
    Scanner scanner{parser.get(), {}};
    XML_SetUserData(parser.get(), &scanner);
    XML_SetElementHandler(parser.get(), startElement, endElement);
    XML_SetCharacterDataHandler(parser.get(), characterData);
    if (XML_Parse(parser.get(), content.data(), static_cast<int>(content.size()), 1) == XML_STATUS_ERROR) {
        scanner.scan.problem = XML_ErrorString(XML_GetErrorCode(parser.get()));
        scanner.scan.problemLine = static_cast<int>(XML_GetCurrentLineNumber(parser.get()));
    }
    return std::move(scanner.scan);
}
