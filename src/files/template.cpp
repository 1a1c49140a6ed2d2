#include "files/template.h"

#include "files/config_file.h"

#include <utility>

namespace {

/** The template's text, which ends at a NUL. False when it cannot be opened or nothing can be read. */
bool readTemplate(const char *path, const XasTemplateTexts &texts, XasReplyStatus *reply, std::string &text)
{
    const XasFile file = xasOpenFile(path, "r");
    if (!file) {
        xasSetReply(*reply, XAS_RCODE_OPEN, texts.templateReason);
        return false;
    }
    text.resize(XAS_TEMPLATE_MAX);
    const std::size_t size = std::fread(text.data(), 1, text.size(), file.get());
    text.resize(size);
    text.resize(std::min(text.find('\0'), size));
    return size > 0;
}

} // namespace

std::string xasExpandPlaceholders(std::string text, std::span<const XasReplacement> replacements)
{
    for (const XasReplacement &replacement : replacements)
        xasReplaceString(text, replacement.placeholder, replacement.text.c_str());
    return text;
}

int xasGenerateFromTemplate(const char *cfgTemplateFileName, const char *cfgFileName,
                            const XasTemplateTexts &texts, XasReplyStatus *reply,
                            const std::function<std::string(std::string)> &expand,
                            const std::function<std::string()> &makeTail)
{
    std::string text;
    if (!readTemplate(cfgTemplateFileName, texts, reply, text))
        return 1;
    text = expand(std::move(text));
    XasFile file = xasOpenGeneratedFile(cfgFileName, texts.access);
    if (!file) {
        xasSetReply(*reply, XAS_RCODE_OPEN, texts.openReason);
        return 1;
    }
    bool written = xasWriteGenerated(file.get(), text);
    if (written && makeTail)
        written = xasWriteGenerated(file.get(), makeTail());
    if (!xasCloseGenerated(std::move(file)) || !written) {
        xasSetReply(*reply, XAS_RCODE_SAVE, texts.writeReason);
        return 1;
    }
    return 0;
}
