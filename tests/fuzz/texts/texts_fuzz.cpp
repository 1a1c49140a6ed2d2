/**
 * Any old text and any payload through the text functions of all editors, in memory.
 *
 * An input: the editor (its place in the lists), the variant (two bytes), the payload with its length, the
 * old text. What must hold:
 *  - the text is what the second model says;
 *  - of a message that passes the check on arrival no value that is written holds a control character;
 *  - made once more, from itself, the text does not change.
 */
#include "dispatch/settings.h"
#include "support/fuzz.h"
#include "texts/editors.h"

#include <vector>

namespace {

const std::vector<const XasTextEditor *> &allEditors()
{
    static const std::vector<const XasTextEditor *> all = [] {
        std::vector<const XasTextEditor *> editors;
        for (const auto list : {xasNetworkEditors(), xasServiceEditors(), xasLoginEditors()}) {
            for (const XasTextEditor &editor : list)
                editors.push_back(&editor);
        }
        return editors;
    }();
    return all;
}

/** True for a message that the daemon makes this text for. */
bool isMade(const XasTextEditor &editor, const XasMessage &msg)
{
    const XasSetting *setting = xasFindSetting(msg.xH.msgtype);
    return (setting == nullptr || xasFindUnfitText(setting->texts, msg).empty()) &&
           (editor.isMade == nullptr || editor.isMade(msg));
}

std::string whole(const XasNewText &text)
{
    return text.text + text.tail;
}

/** Of the sequences in a user's port file only line ends are refused. */
void requireNoControls(const XasTextEditor &editor)
{
    const XasReadControls noted = xasReadControls();
    xasFuzzRequire(editor.msgtype == XMSG_USER ? !noted.lineEnd : !noted.any,
                   "no value brings a control character", editor.name);
}

/** True for a text of lines that are read in one piece, each ended, without NULs. */
bool isOrdinary(std::string_view text)
{
    std::size_t length = 0;
    for (const char c : text) {
        length = c == '\n' ? 0 : length + 1;
        if (c == '\0' || length > 509)
            return false;
    }
    return text.empty() || text.ends_with('\n');
}

void requireSettled(const XasTextEditor &editor, const XasTextInput &in, const std::string &text)
{
    const bool endsOpen = editor.msgtype == XMSG_NIS; // its last line has no end
    if (!editor.isEdited || !isOrdinary(in.old) || !isOrdinary(text + (endsOpen ? "\n" : "")) ||
        (editor.settles != nullptr && !editor.settles(in.msg)))
        return;
    const std::string again = whole(editor.text({in.msg, in.variant, text}));
    xasFuzzRequire(again == text, "once more changes nothing", text, again);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    XasFuzzInput input{data, size};
    const XasTextEditor &editor = *allEditors()[input.byte() % allEditors().size()];
    const unsigned variant = input.word() % editor.variants;
    const XasMessage msg = input.record(editor.msgtype);
    const std::string old{input.rest()};
    if (editor.msgtype == XMSG_SYSLOG && !isMade(editor, msg))
        return 0; // its text is made of no others
    const XasTextInput in{msg, variant, old};
    xasFuzzLog().clear();
    const XasNewText text = editor.text(in);
    xasReadControls() = {};
    const XasModelText model = editor.model(XasRecordBytes{msg}, variant, old);
    xasFuzzRequire(whole(text) == model.text, editor.name, whole(text), model.text);
    xasFuzzRequire(text.complete == model.complete, "both models give up, or none", editor.name);
    if (!text.complete || !isMade(editor, msg))
        return 0;
    requireNoControls(editor);
    requireSettled(editor, in, whole(text));
    return 0;
}
