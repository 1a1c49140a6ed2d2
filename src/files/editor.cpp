#include "files/editor.h"

#include "core/log.h"
#include "files/new_file.h"

namespace {

/** The line of `text` in which its byte `at` stands. */
std::string lineAt(std::string_view text, std::size_t at)
{
    const std::size_t begin = at == 0 ? 0 : text.rfind('\n', at - 1) + 1;
    const std::string_view rest = text.substr(begin);
    return std::string{rest.substr(0, rest.find('\n', at - begin))} + "\n";
}

/** Writes the text in one go. False after logging the line that could not be written. */
bool writeLines(FILE *outFile, const XasEditTexts &texts, std::string_view text)
{
    const std::size_t written = xasWriteText(outFile, text);
    if (written == text.size())
        return true;
    xasLogError("Error printing line to file\n");
    const bool isFirst = text.find('\n') >= written;
    if (texts.writeLogOf != nullptr)
        xasLogError("%s", texts.writeLogOf(lineAt(text, written), isFirst));
    else if (texts.writeLog != nullptr)
        xasLogError("%s", texts.writeLog);
    return false;
}

int finish(XasCfgFile &cf, const XasEditTexts &texts, XasReplyStatus *reply, const XasNewText &newText)
{
    const bool isWritten = writeLines(cf.outFile.get(), texts, newText.text);
    if (!newText.complete)
        return 1;
    const bool isAllWritten = isWritten && writeLines(cf.outFile.get(), texts, newText.tail);
    const int result = isAllWritten ? xasSaveCfgFile(&cf) : 1;
    const char *reason = !isWritten && texts.writeLog != nullptr ? texts.writeReason : texts.saveReason;
    if (result != 0 && reason != nullptr)
        xasSetReply(*reply, XAS_RCODE_SAVE, reason);
    return result;
}

/** False, after logging, when reading failed half way: what is made of that must not replace the file. */
bool readOldText(const XasCfgFile &cf, std::string &oldText)
{
    if (!cf.inFile)
        return true;
    std::optional<std::string> whole = xasReadAll(cf.inFile.get());
    if (!whole) {
        xasLogError("Error reading config file \"%s\"\n", cf.cfgFileName.c_str());
        return false;
    }
    oldText = std::move(*whole);
    return true;
}

int edit(XasCfgFile &cf, const char *cfgFileName, const XasEditTexts &texts, XasReplyStatus *reply,
         const XasTextMaker &maker)
{
    const bool opened = (texts.anew ? xasCfgOpenOutFile(cfgFileName, &cf, texts.secrecy)
                                    : xasCfgOpenFiles(cfgFileName, &cf, texts.secrecy)) == 0;
    std::string oldText;
    if (!opened || !readOldText(cf, oldText)) {
        xasSetReply(*reply, XAS_RCODE_OPEN, texts.openReason);
        return 1;
    }
    return finish(cf, texts, reply, maker.make(maker.context, oldText, reply));
}

} // namespace

int xasEditFile(const char *cfgFileName, const XasEditTexts &texts, XasReplyStatus *reply,
                const XasTextMaker &maker)
{
    return xasGuardEdit(&texts, reply, [&] {
        XasCfgFile cf; // it closes what is open
        return edit(cf, cfgFileName, texts, reply, maker);
    });
}

int xasFailEdit(const XasEditTexts *texts, XasReplyStatus *reply, const char *what)
{
    xasLogError("%s\n", what);
    const bool hasReason = texts != nullptr && texts->saveReason != nullptr;
    xasSetReply(*reply, XAS_RCODE_SAVE, hasReason ? texts->saveReason : what);
    return 1;
}
