/** Every text function of the daemon's editors beside its second model. */
#ifndef XAS_FUZZ_TEXTS_EDITORS_H
#define XAS_FUZZ_TEXTS_EDITORS_H

#include "files/editor.h"
#include "model/models.h"
#include "wire/message.h"

#include <span>

/** What an editor's text is made of. */
struct XasTextInput {
    const XasMessage &msg;
    unsigned variant; /**< see the models */
    const std::string &old;
};

struct XasTextEditor {
    const char *name;
    XasMsgType msgtype;
    XasNewText (*text)(const XasTextInput &in);
    XasModel model;
    unsigned variants = 1;
    /** Whether the old text's lines are kept but for some; otherwise it is a template, or does not matter. */
    bool isEdited = false;
    /** Whether the daemon makes the text of this message at all; none: of every one whose texts are fit. */
    bool (*isMade)(const XasMessage &msg) = nullptr;
    /** False: making it once more may change it again; none: never. */
    bool (*settles)(const XasMessage &msg) = nullptr;
};

std::span<const XasTextEditor> xasNetworkEditors();
std::span<const XasTextEditor> xasServiceEditors();
std::span<const XasTextEditor> xasLoginEditors();

#endif
