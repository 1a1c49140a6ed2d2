#include "files/template.h"

#include "files/config_file.h"

#include <algorithm>

std::string xasExpandPlaceholders(std::string text, std::span<const XasReplacement> replacements)
{
    for (const XasReplacement &replacement : replacements)
        xasReplaceString(text, replacement.placeholder, replacement.text.c_str());
    return text;
}

int xasReadTemplate(const char *path, const XasTemplateTexts &texts, std::string &text, XasReplyStatus *reply)
{
    if (xasReadWhole(path, text) != XasReading::whole) {
        xasSetReply(*reply, XAS_RCODE_OPEN, texts.templateReason);
        return 1;
    }
    const bool isEmpty = text.empty();
    text.resize(std::min({text.find('\0'), text.size(), XAS_TEMPLATE_MAX}));
    return isEmpty ? 1 : 0;
}
