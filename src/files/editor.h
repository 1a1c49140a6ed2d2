/**
 * Editors: how one file gets its new text. An editor is a pure function from the old text of a file, and the
 * values to write, to its new text; the loop that all of them share reads, writes and commits through the
 * safe replacement (config_file.h), and sets the reply's code and reason.
 */
#ifndef XAS_FILES_EDITOR_H
#define XAS_FILES_EDITOR_H

#include "core/assert.h"
#include "core/reply.h"
#include "files/config_file.h"

#include <exception>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

/** What an editor says when it fails. */
struct XasEditTexts {
    const char *openReason = nullptr; /**< reason when the files cannot be opened (rcode 2) */
    const char *writeLog = nullptr;   /**< logged when a line cannot be written; null: then the save fails */
    const char *saveReason = nullptr; /**< reason when the new file cannot be saved (rcode 3) */
    XasSecrecy secrecy = XasSecrecy::plain;
    /** Picks what is logged for a line of the new file where they do not all have the same; usually none. */
    const char *(*writeLogOf)(std::string_view line, bool isFirst) = nullptr;
    /** Reason when a line cannot be written (rcode 3); usually none, the reply then stays as it is. */
    const char *writeReason = nullptr;
    /** The file is written anew and need not exist; its old text is not read. */
    bool anew = false;
};

/** The new text of a file, or as much of it as there is when its editor gives up. */
struct XasNewText {
    // NOLINTNEXTLINE(google-explicit-constructor,hicpp-explicit-conversions): usually the text is complete
    XasNewText(std::string newText) : text{std::move(newText)} {}
    XasNewText(std::string textSoFar, bool isComplete) : text{std::move(textSoFar)}, complete{isComplete} {}

    std::string text;
    bool complete = true; /**< false: `text` stays in the temporary, nothing is saved; the editor said why */
    std::string tail;     /**< stands behind `text`; when it cannot be written, the save fails */
};

/** Whoever makes a new text: a function and what it works on, which must outlive the call. */
struct XasTextMaker {
    const void *context;
    XasNewText (*make)(const void *context, std::string_view oldText, XasReplyStatus *reply);
};

/** Tells that an exception ended an edit: logged, with code and reason of a failed save; the exception itself
 * is the reason where that has none. Returns 1. */
[[nodiscard]] int xasFailEdit(const XasEditTexts *texts, XasReplyStatus *reply, const char *what);

/** Runs an edit, which no exception leaves: one is its failure. Returns what it returns, or 1. */
template <class Edit>
[[nodiscard]] int xasGuardEdit(const XasEditTexts *texts, XasReplyStatus *reply, const Edit &edit)
{
    try {
        return edit();
    } catch (const std::exception &error) {
        return xasFailEdit(texts, reply, error.what());
    } catch (...) {
        return xasFailEdit(texts, reply, "Unknown error");
    }
}

/** Gives a file the text that `maker` makes of the old one; `maker` is asked when the files are open. Returns
 * 0; or 1, the failure being logged and, but for a failed write that has a text of its own, in `reply`. A
 * file that cannot be read to its end counts as not opened; an exception, memory that ran out for one, as not
 * saved. */
[[nodiscard]] int xasEditFile(const char *cfgFileName, const XasEditTexts &texts, XasReplyStatus *reply,
                              const XasTextMaker &maker);

/** The same with a function object: make(oldText) gives the new text. */
template <class Make>
[[nodiscard]] int xasEditFile(const char *cfgFileName, const XasEditTexts &texts, XasReplyStatus *reply,
                              const Make &make)
{
    return xasEditFile(cfgFileName, texts, reply,
                       XasTextMaker{&make,
                                    [](const void *context, std::string_view oldText,
                                       XasReplyStatus * /*reply*/) -> XasNewText {
                                        return (*static_cast<const Make *>(context))(oldText);
                                    }});
}

/** The text function of an editor whose text is made by `make`, a function of the values alone, of the old
 * text and the values, or of those and the reply. */
template <auto make, class Values>
XasNewText xasMadeBy(std::string_view oldText, const Values &values, XasReplyStatus *reply)
{
    if constexpr (std::is_invocable_v<decltype(make), const Values &>)
        return make(values);
    else if constexpr (std::is_invocable_v<decltype(make), std::string_view, const Values &>)
        return make(oldText, values);
    else
        return make(oldText, values, reply);
}

/** An editor as a callable object: editor(path, &values, &reply) returns as xasEditFile does. */
template <class Values>
struct XasEditor {
    using Edited = Values;

    const char *argument; /**< the name of the values in the assertion that they are given */
    XasEditTexts texts;
    XasNewText (*text)(std::string_view oldText, const Values &values, XasReplyStatus *reply);

    [[nodiscard]] int operator()(const char *cfgFileName, const Values *values, XasReplyStatus *reply) const
    {
        struct Call {
            const XasEditor &editor;
            const Values &values;
        };
        xasAssertGiven(cfgFileName, "cfgFileName");
        xasAssertGiven(values, argument);
        const Call call{*this, *values};
        return xasEditFile(
            cfgFileName, texts, reply,
            XasTextMaker{&call, [](const void *context, std::string_view oldText, XasReplyStatus *told) {
                             const Call &made = *static_cast<const Call *>(context);
                             return made.editor.text(oldText, made.values, told);
                         }});
    }
};

#endif
