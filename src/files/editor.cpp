#include "files/editor.h"

#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"

#include <algorithm>

namespace {

bool writeLines(FILE *outFile, const XasEditTexts &texts, std::string_view text)
{
    if (texts.writeLog == nullptr) {
        std::fwrite(text.data(), 1, text.size(), outFile);
        return true;
    }
    bool isFirst = true;
    while (!text.empty()) {
        const std::size_t feed = std::min(text.find('\n'), text.size() - 1);
        const std::string line{text.substr(0, feed + 1)};
        if (xasOutputLine(outFile, line.c_str(), false) != 0) {
            xasLogError("%s", texts.writeLogOf != nullptr ? texts.writeLogOf(line, isFirst) : texts.writeLog);
            return false;
        }
        text.remove_prefix(line.size());
        isFirst = false;
    }
    return true;
}

int finish(XasCfgFile &cf, const XasEditTexts &texts, XasReplyStatus *reply, const XasNewText &newText)
{
    const bool written = writeLines(cf.outFile.get(), texts, newText.text);
    if (!written && texts.writeReason != nullptr)
        xasSetReply(*reply, XAS_RCODE_SAVE, texts.writeReason);
    if (!written || !newText.complete) {
        xasCloseCfgFile(&cf);
        return 1;
    }
    writeLines(cf.outFile.get(), texts, newText.tail);
    const int result = xasSaveCfgFile(&cf);
    if (result != 0)
        xasSetReply(*reply, XAS_RCODE_SAVE, texts.saveReason);
    return result;
}

/** False, after logging, when reading failed half way: what is made of that must not replace the file. */
bool readOldText(const XasCfgFile &cf, std::string &oldText)
{
    if (!cf.inFile)
        return true;
    oldText = xasReadAll(cf.inFile.get());
    if (std::ferror(cf.inFile.get()) == 0 || xasIsDirectory(cf.cfgFileName.c_str()) != 0)
        return true;
    xasLogError("Error reading config file \"%s\"\n", cf.cfgFileName.c_str());
    return false;
}

} // namespace

int xasEditFile(const char *cfgFileName, const XasEditTexts &texts, XasReplyStatus *reply,
                const XasTextMaker &maker)
{
    XasCfgFile cf;
    const bool opened = (texts.anew ? xasCfgOpenOutFile(cfgFileName, &cf, texts.secrecy)
                                    : xasCfgOpenFiles(cfgFileName, &cf, texts.secrecy)) == 0;
    std::string oldText;
    if (!opened || !readOldText(cf, oldText)) {
        xasCloseCfgFile(&cf);
        xasSetReply(*reply, XAS_RCODE_OPEN, texts.openReason);
        return 1;
    }
    return finish(cf, texts, reply, maker.make(maker.context, oldText, reply));
}
