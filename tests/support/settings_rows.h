/** The rows of the table of settings in few words; for the files of the table alone. */
#ifndef XAS_TEST_SUPPORT_SETTINGS_ROWS_H
#define XAS_TEST_SUPPORT_SETTINGS_ROWS_H

#include "support/message.h"
#include "support/settings_table.h"

namespace xasRows {

/** A reason that is the log line. */
inline constexpr const char *SAME = "same";

inline XasExpectedFile row(XasFileWay way, const char *type, std::string oldText, std::string newText,
                           XasExpectedTexts texts, std::vector<std::string> restored = {})
{
    if (texts.missingReason == SAME)
        texts.missingReason = texts.missing;
    return {.type = type,
            .way = way,
            .oldText = std::move(oldText),
            .newText = std::move(newText),
            .texts = std::move(texts),
            .restoredIfMissing = restored,
            .restoredIfEditFails = restored};
}

inline XasExpectedFile edited(const char *type, std::string oldText, std::string newText,
                              XasExpectedTexts texts, std::vector<std::string> restored = {})
{
    return row(XasFileWay::edited, type, std::move(oldText), std::move(newText), std::move(texts),
               std::move(restored));
}

inline XasExpectedFile regenerated(const char *type, std::string oldText, std::string newText,
                                   XasExpectedTexts texts, std::vector<std::string> restored = {})
{
    return row(XasFileWay::regenerated, type, std::move(oldText), std::move(newText), std::move(texts),
               std::move(restored));
}

inline XasExpectedFile generated(const char *type, std::string oldText, std::string newText,
                                 XasExpectedTexts texts)
{
    return row(XasFileWay::generated, type, std::move(oldText), std::move(newText), std::move(texts));
}

inline XasExpectedFile templateFile(const char *type, const std::string &text, XasExpectedTexts texts)
{
    return row(XasFileWay::model, type, text, text, std::move(texts));
}

/** The same file with one thing more said about it. */
inline XasExpectedFile goingOn(XasExpectedFile file)
{
    file.goesOn = true;
    return file;
}

inline XasExpectedFile secret(XasExpectedFile file)
{
    file.secret = true;
    return file;
}

inline XasExpectedFile madeFrom(const char *model, XasExpectedFile file)
{
    file.model = model;
    return file;
}

/** These are rolled back when its edit fails, and none when it is missing. */
inline XasExpectedFile rollingBack(std::vector<std::string> types, XasExpectedFile file)
{
    file.restoredIfEditFails = std::move(types);
    return file;
}

inline XasExpectedFile withWriteReason(const char *reason, XasExpectedFile file)
{
    file.writeReason = reason;
    return file;
}

inline XasExpectedFile at(const char *path, XasExpectedFile file)
{
    file.path = path;
    return file;
}

/** A host record with a name, an empty one for none. */
inline std::string host(std::string_view name)
{
    std::string record(76, '\0');
    record[0] = 1;
    return record.replace(8, name.size(), name);
}

} // namespace xasRows

#endif
