/**
 * The loops that all editors share. An editor is a pure function from the old text of a file, and the values
 * to write, to its new text; these loops read, write and commit through the safe replacement, and set the
 * reply's code and reason as every editor does.
 */
#ifndef XAS_FILES_EDITOR_H
#define XAS_FILES_EDITOR_H

#include "core/reply.h"
#include "files/config_file.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>

/** What an editor says when it fails. */
struct XasEditTexts {
    const char *openReason; /**< reason when the files cannot be opened (rcode 2) */
    const char *writeLog;   /**< logged when a line cannot be written; null: only the save notices */
    const char *saveReason; /**< reason when the new file cannot be saved (rcode 3) */
    XasSecrecy secrecy = XasSecrecy::plain;
    /** Picks what is logged for a line of the new file where not every line has the same text; usually none.
     */
    const char *(*writeLogOf)(std::string_view line, bool isFirst) = nullptr;
    /** Reason when a line cannot be written (rcode 3); usually none, the reply then stays as it is. */
    const char *writeReason = nullptr;
};

/** The new text of a file, or as much of it as there is when its editor gives up. */
struct XasNewText {
    // NOLINTNEXTLINE(google-explicit-constructor,hicpp-explicit-conversions): a complete text is the usual
    // case
    XasNewText(std::string newText) : text{std::move(newText)} {}
    XasNewText(std::string textSoFar, bool isComplete) : text{std::move(textSoFar)}, complete{isComplete} {}

    std::string text;
    bool complete = true; /**< false: `text` stays in the temporary, nothing is saved; the editor said why */
    std::string tail;     /**< stands behind `text`; when it cannot be written, the save is tried and fails */
};

/** Edits an existing file; one that cannot be read to its end counts as not opened. Returns 0; or 1, the
 * failure being logged and, but for a failed write, in `reply`.
 */
int xasEditFile(const char *cfgFileName, const XasEditTexts &texts, XasReplyStatus *reply,
                const std::function<XasNewText(std::string_view oldText)> &edit);

/** Writes a file anew; it need not exist. `make` is called when the file is open. Returns as xasEditFile. */
int xasRegenerateFile(const char *cfgFileName, const XasEditTexts &texts, XasReplyStatus *reply,
                      const std::function<XasNewText()> &make);

#endif
