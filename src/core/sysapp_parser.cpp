#include "core/sysapp_parser.h"

#include "core/file.h"
#include "core/log.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <expat.h>
#include <new>
#include <type_traits>

namespace {

enum class Element { none, app, name, exe, startScript, stopScript, cfgFile, type, path };

struct KnownElement {
    std::string_view name;
    Element id;
};

constexpr KnownElement KNOWN_ELEMENTS[] = {
    {"APP", Element::app},
    {"NAME", Element::name},
    {"EXE", Element::exe},
    {"STARTSCRIPT", Element::startScript},
    {"STOPSCRIPT", Element::stopScript},
    {"CFGFILE", Element::cfgFile},
    {"TYPE", Element::type},
    {"PATH", Element::path},
};

constexpr std::size_t CHUNK_SIZE = 2048;

/** Longer element texts are cut; they are command lines and paths. */
constexpr std::size_t TEXT_MAX = 4096;

struct ListBuilder {
    XasAppList apps;
    XasAppList building; /**< the application whose element is open: one, or none */
    bool inCfgFile = false;
    Element current = Element::none;
    std::string text;
    unsigned pieces = 0; /**< pieces of the current element's text applied so far */
};

void startApp(ListBuilder &builder)
{
    try {
        builder.building.clear();
        builder.building.emplace_back();
    } catch (const std::bad_alloc &) {
        xasLogError("Error allocating memory for app structure\n");
    }
    builder.inCfgFile = false;
}

void startCfgFile(ListBuilder &builder)
{
    if (builder.building.empty()) {
        xasLogError("Error determining current application\n");
        return;
    }
    try {
        builder.building.front().cfgFiles.emplace_back();
        builder.inCfgFile = true;
    } catch (const std::bad_alloc &) {
        xasLogInfo("Error allocating entry for cfg file list\n");
    }
}

void applyExe(ListBuilder &builder, XasApp &app)
{
    try {
        if (builder.pieces > 0 && !app.daemons.empty())
            app.daemons.back().exe = builder.text;
        else
            app.daemons.push_back({.exe = builder.text});
    } catch (const std::bad_alloc &) {
        if (app.daemons.empty())
            xasLogError("Error allocating memory for daemon list\n");
        else
            xasLogError("Error allocating exe list member\n");
    }
}

void applyToCfgFile(ListBuilder &builder, std::optional<std::string> XasCfgFileEntry::*member)
{
    if (builder.inCfgFile)
        builder.building.front().cfgFiles.back().*member = builder.text;
    else
        xasLogInfo("Error determining cfg file\n");
}

void applyText(ListBuilder &builder)
{
    if (builder.building.empty()) {
        xasLogError("Error determining current application\n");
        return;
    }
    XasApp &app = builder.building.front();
    switch (builder.current) {
    case Element::name:
        app.name = builder.text;
        break;
    case Element::startScript:
        app.startScript = builder.text;
        break;
    case Element::stopScript:
        app.stopScript = builder.text;
        break;
    case Element::exe:
        applyExe(builder, app);
        break;
    case Element::type:
        applyToCfgFile(builder, &XasCfgFileEntry::type);
        break;
    case Element::path:
        applyToCfgFile(builder, &XasCfgFileEntry::path);
        break;
    case Element::none:
    case Element::app:
    case Element::cfgFile:
        break;
    }
}

void onStartElement(ListBuilder &builder, std::string_view name)
{
    builder.pieces = 0;
    const auto *const known = std::ranges::find(KNOWN_ELEMENTS, name, &KnownElement::name);
    if (known != std::end(KNOWN_ELEMENTS))
        builder.current = known->id;
    if (builder.current == Element::app)
        startApp(builder);
    else if (builder.current == Element::cfgFile)
        startCfgFile(builder);
}

void onText(ListBuilder &builder, std::string_view piece)
{
    if (builder.pieces == 0)
        builder.text.clear();
    builder.text += piece.substr(0, TEXT_MAX - std::min(TEXT_MAX, builder.text.size()));
    if (builder.text.find_first_not_of(" \t\n") == std::string::npos)
        return;
    applyText(builder);
    ++builder.pieces;
}

void onEndElement(ListBuilder &builder, std::string_view name)
{
    builder.pieces = 0;
    if (name == "APP" && !builder.building.empty()) {
        XasApp &app = builder.building.front();
        app.running = 0;
        app.auxList.clear();
        builder.apps.splice(builder.apps.end(), builder.building);
        builder.inCfgFile = false;
    } else if (name == "CFGFILE") {
        builder.inCfgFile = false;
    }
}

/** Runs a handler for the parser, whose C code no exception may pass; without memory an element is lost. */
template <class Handler>
void guarded(void *data, Handler handler) noexcept
{
    try {
        handler(*static_cast<ListBuilder *>(data));
    } catch (const std::bad_alloc &) {
        xasLogError("Error allocating memory\n");
    }
}

void XMLCALL startElement(void *data, const XML_Char *name, const XML_Char ** /*attributes*/)
{
    guarded(data, [&](ListBuilder &builder) { onStartElement(builder, name); });
}

void XMLCALL endElement(void *data, const XML_Char *name)
{
    guarded(data, [&](ListBuilder &builder) { onEndElement(builder, name); });
}

void XMLCALL characterData(void *data, const XML_Char *text, int length)
{
    guarded(data, [&](ListBuilder &builder) { onText(builder, {text, static_cast<std::size_t>(length)}); });
}

void XMLCALL comment(void * /*data*/, const XML_Char * /*text*/) {}

using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)>;

bool parseFile(XML_Parser parser, FILE *file)
{
    std::array<char, CHUNK_SIZE> chunk{};
    bool last = false;
    while (!last) {
        const std::size_t size = std::fread(chunk.data(), 1, chunk.size(), file);
        if (std::ferror(file) != 0) {
            xasLogError("Error reading XML document\n");
            return false;
        }
        last = std::feof(file) != 0;
        if (XML_Parse(parser, chunk.data(), static_cast<int>(size), last ? 1 : 0) == XML_STATUS_ERROR) {
            xasLogError("XML Parse error at line %d: %s\n",
                        static_cast<int>(XML_GetCurrentLineNumber(parser)),
                        XML_ErrorString(XML_GetErrorCode(parser)));
            return false;
        }
    }
    return true;
}

} // namespace

int xasLoadAppList(const char *path, XasAppList &apps)
{
    const Parser parser{XML_ParserCreate(nullptr), &XML_ParserFree};
    if (!parser) {
        xasLogError("Error getting XML document handle\n");
        return -1;
    }
    ListBuilder builder;
    XML_SetUserData(parser.get(), &builder);
    XML_SetElementHandler(parser.get(), startElement, endElement);
    XML_SetCharacterDataHandler(parser.get(), characterData);
    XML_SetCommentHandler(parser.get(), comment);

    const XasFile file = xasOpenFile(path);
    if (!file) {
        xasLogError("Error opening XML document (%s)\n", std::strerror(errno));
        return -1;
    }
    if (!parseFile(parser.get(), file.get()))
        return -1;
    apps = std::move(builder.apps);
    return 0;
}
