/**
 * Configuration files that are expanded from a template of the system image. The template is read whole; its
 * placeholders, "$(NAME)", are replaced; the file is then generated, without backup.
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

/** Reads a template. Returns 0; or 1 with the reply set unless there is nothing in it. */
[[nodiscard]] int xasReadTemplate(const char *path, const XasTemplateTexts &texts, std::string &text,
                                  XasReplyStatus *reply);

/** What the file's texts say about who may read it. */
inline XasFileAccess xasAccessOf(const XasTemplateTexts &texts)
{
    return texts.file.secrecy == XasSecrecy::secret ? XasFileAccess::owner : XasFileAccess::kept;
}

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

    [[nodiscard]] int operator()(const char *cfgTemplateFileName, const char *cfgFileName,
                                 const Values *values, XasReplyStatus *reply) const
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
        XasGeneratedFile file{cfgFileName, xasAccessOf(texts)};
        if (!file) {
            xasSetReply(*reply, XAS_RCODE_OPEN, texts.file.openReason);
            return 1;
        }
        if (file.write(text) && tail != nullptr)
            file.write(tail(*values));
        if (file.save())
            return 0;
        xasSetReply(*reply, XAS_RCODE_SAVE, texts.file.saveReason);
        return 1;
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
