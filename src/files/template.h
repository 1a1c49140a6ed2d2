/**
 * Configuration files that are expanded from a template of the system image. The template is read whole; its
 * placeholders, "$(NAME)", are replaced; the file is then written directly, without backup.
 */
#ifndef XAS_FILES_TEMPLATE_H
#define XAS_FILES_TEMPLATE_H

#include "files/generated_file.h"
#include "files/update.h"

#include <algorithm>
#include <span>
#include <string>

/** As much of a template as is used, in bytes. */
inline constexpr std::size_t XAS_TEMPLATE_MAX = 5000;

/** What is said when it fails. */
struct XasTemplateTexts {
    const char *templateReason; /**< the template cannot be opened (rcode 2) */
    XasEditTexts file;          /**< of the file: it cannot be opened, or not be written */
};

/** What stands for a placeholder. */
struct XasReplacement {
    const char *placeholder;
    std::string text;
};

/** `text` with the placeholders replaced one after the other. */
std::string xasExpandPlaceholders(std::string text, std::span<const XasReplacement> replacements);

/** Removes a file that is not wanted; one that is not there is fine. */
void xasRemoveFile(const char *cfgFileName);

/** Reads a template. Returns 0; or 1 with the reply set unless there is nothing in it. */
int xasReadTemplate(const char *path, const XasTemplateTexts &texts, std::string &text,
                    XasReplyStatus *reply);

/** Opens the file that is generated. Returns none with the reply set when it cannot be opened. */
XasFile xasOpenExpanded(const char *path, const XasTemplateTexts &texts, XasReplyStatus *reply);

/** Closes it. Returns 0; or 1 with the reply set when it was not, or cannot be, written. */
int xasCloseExpanded(XasFile file, bool isWritten, const XasTemplateTexts &texts, XasReplyStatus *reply);

/** An editor of such a file as a callable object: editor(templatePath, path, &values, &reply) returns 0; or 1
 * with the failure in the reply, which stays as it is when the template has nothing in it. */
template <class Values>
struct XasTemplateEditor {
    using Edited = Values;

    const char *argument; /**< the name of the values in the assertion that they are given */
    XasTemplateTexts texts;
    bool (*isWanted)(const Values &values) = nullptr; /**< false: the file is removed; none: always wanted */
    std::string (*expand)(std::string templateText, const Values &values) = nullptr;
    /** What stands behind the expanded template, asked for once that is written; usually nothing. */
    std::string (*tail)(const Values &values) = nullptr;

    int operator()(const char *cfgTemplateFileName, const char *cfgFileName, const Values *values,
                   XasReplyStatus *reply) const
    {
        xasAssertGiven(cfgTemplateFileName, "cfgTemplateFileName");
        xasAssertGiven(cfgFileName, "cfgFileName");
        xasAssertGiven(values, argument);
        if (isWanted != nullptr && !isWanted(*values)) {
            xasRemoveFile(cfgFileName);
            return 0;
        }
        std::string text;
        if (xasReadTemplate(cfgTemplateFileName, texts, text, reply) != 0)
            return 1;
        text = expand(std::move(text), *values);
        XasFile file = xasOpenExpanded(cfgFileName, texts, reply);
        if (!file)
            return 1;
        const bool isWritten = xasWriteGenerated(file.get(), text) &&
                               (tail == nullptr || xasWriteGenerated(file.get(), tail(*values)));
        return xasCloseExpanded(std::move(file), isWritten, texts, reply);
    }
};

/** A TYPE as a template argument. */
template <std::size_t N>
struct XasTypeName {
    // NOLINTNEXTLINE(google-explicit-constructor,hicpp-explicit-conversions): written as a literal
    constexpr XasTypeName(const char (&name)[N]) { std::copy_n(name, N, chars); }
    char chars[N];
};

/** The edit of a row by such an editor, from the file of TYPE `templateType`, which has been looked up. */
template <const auto &editor, XasTypeName templateType>
constexpr XasFileEdit xasExpandedBy{
    .run =
        [](const XasEditCall &call) {
            const auto payload =
                xasReadPayload<typename std::remove_cvref_t<decltype(editor)>::Edited>(call.msg);
            const char *templatePath = xasGetCfgFilePath(templateType.chars, call.cfgFiles);
            return editor(templatePath, call.path, &payload, call.reply);
        },
    .texts = &editor.texts.file,
    .templateReason = editor.texts.templateReason};

#endif
