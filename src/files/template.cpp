#include "files/template.h"

#include "files/config_file.h"

#include <algorithm>
#include <unistd.h>
#include <utility>

std::string xasExpandPlaceholders(std::string text, std::span<const XasReplacement> replacements)
{
    for (const XasReplacement &replacement : replacements)
        xasReplaceString(text, replacement.placeholder, replacement.text.c_str());
    return text;
}

void xasRemoveFile(const char *cfgFileName)
{
    ::unlink(cfgFileName);
}

int xasReadTemplate(const char *path, const XasTemplateTexts &texts, std::string &text, XasReplyStatus *reply)
{
    const XasFile file = xasOpenFile(path);
    if (!file) {
        xasSetReply(*reply, XAS_RCODE_OPEN, texts.templateReason);
        return 1;
    }
    text.resize(XAS_TEMPLATE_MAX);
    const std::size_t size = std::fread(text.data(), 1, text.size(), file.get());
    text.resize(size);
    text.resize(std::min(text.find('\0'), size));
    return size > 0 ? 0 : 1;
}

XasFile xasOpenExpanded(const char *path, const XasTemplateTexts &texts, XasReplyStatus *reply)
{
    XasFile file = xasOpenGeneratedFile(path, texts.file.secrecy == XasSecrecy::secret ? XasFileAccess::owner
                                                                                       : XasFileAccess::kept);
    if (!file)
        xasSetReply(*reply, XAS_RCODE_OPEN, texts.file.openReason);
    return file;
}

int xasCloseExpanded(XasFile file, bool isWritten, const XasTemplateTexts &texts, XasReplyStatus *reply)
{
    if (xasCloseGenerated(std::move(file)) && isWritten)
        return 0;
    xasSetReply(*reply, XAS_RCODE_SAVE, texts.file.saveReason);
    return 1;
}
