/**
 * Configuration files that are expanded from a template of the system image. The template is read whole; its
 * placeholders, "$(NAME)", are replaced; the file is then written directly, without backup.
 */
#ifndef XAS_FILES_TEMPLATE_H
#define XAS_FILES_TEMPLATE_H

#include "core/reply.h"
#include "files/generated_file.h"

#include <functional>
#include <span>
#include <string>

/** As much of a template as is used, in bytes. */
inline constexpr std::size_t XAS_TEMPLATE_MAX = 5000;

/** What is said when it fails. */
struct XasTemplateTexts {
    const char *templateReason; /**< the template cannot be opened (rcode 2) */
    const char *openReason;     /**< the file cannot be opened (rcode 2) */
    const char *writeReason;    /**< the file cannot be written (rcode 3) */
    XasFileAccess access = XasFileAccess::kept;
};

/** What stands for a placeholder. */
struct XasReplacement {
    const char *placeholder;
    std::string text;
};

/** `text` with the placeholders replaced one after the other. */
std::string xasExpandPlaceholders(std::string text, std::span<const XasReplacement> replacements);

/**
 * Writes the file: the template as `expand` makes it, and behind it what `makeTail` gives, which is called
 * once the expanded template is written. Returns 0; or 1 with the failure in `reply`, which stays as it is
 * when the template has nothing in it.
 */
int xasGenerateFromTemplate(const char *cfgTemplateFileName, const char *cfgFileName,
                            const XasTemplateTexts &texts, XasReplyStatus *reply,
                            const std::function<std::string(std::string templateText)> &expand,
                            const std::function<std::string()> &makeTail = nullptr);

#endif
