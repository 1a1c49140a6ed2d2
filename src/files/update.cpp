#include "files/update.h"

#include "core/log.h"
#include "files/config_file.h"
#include "wire/message_names.h"

#include <algorithm>
#include <tuple>
#include <vector>

namespace {

/** One update being run. */
struct Run {
    const XasFilesUpdate &update;
    XasMessage &msg;
    const XasCfgFileList &cfgFiles;
    XasReplyStatus *reply;

    /** Rolls back what stands in front of `row`, unless the row names the files itself. */
    void rollBack(const XasFileRow &row, bool isEdited) const
    {
        if (update.onFailure != XasOnFailure::rollBack)
            return;
        if (!row.restored.empty())
            return xasRestoreCfgTypes(cfgFiles, row.restored);
        for (const XasFileRow &earlier : update.files) {
            if (&earlier == &row && !(isEdited && row.restoresItself))
                return;
            xasRestoreCfgTypes(cfgFiles, {&earlier.type, 1});
            if (&earlier == &row)
                return;
        }
    }

    /** The edit of one file, which has been found. */
    [[nodiscard]] int edit(const XasFileRow &row) const
    {
        const char *path = xasGetCfgFilePath(row.type, cfgFiles);
        if (row.edit.run == nullptr)
            return 0;
        const int result = xasGuardEdit(row.edit.texts, reply, [&] {
            return row.edit.run({path, msg, cfgFiles, reply});
        });
        if (result == 0)
            return 0;
        if (row.editLog != nullptr)
            xasLogError(row.editLog, path);
        rollBack(row, true);
        return result;
    }

    /** Finds the files of a batch, then edits them. False when the update is over, giving `result`. */
    bool runBatch(std::span<const XasFileRow> batch, int &result) const
    {
        const auto isThere = [&](const XasFileRow &row) {
            return xasFindRowFile(row, cfgFiles, reply) != nullptr;
        };
        if (!std::ranges::all_of(batch, isThere)) {
            rollBack(batch.front(), false);
            result = 1;
            return false;
        }
        if (update.settled != nullptr && batch.data() == update.files.data()) {
            if (const auto settled = update.settled(msg)) {
                result = *settled;
                return false;
            }
        }
        for (const bool last : {false, true}) {
            for (const XasFileRow &row : batch) {
                const int edited = row.editedLast == last ? edit(row) : 0;
                result = edited != 0 ? edited : result;
                if (edited != 0 && update.onFailure == XasOnFailure::rollBack)
                    return false;
            }
        }
        return true;
    }

    /** The files at the front of `rest` that are looked up together. */
    [[nodiscard]] std::span<const XasFileRow> nextBatch(std::span<const XasFileRow> rest) const
    {
        if (update.lookUp == XasLookUp::each)
            return rest.first(1);
        const auto next = std::find_if(rest.begin() + 1, rest.end(),
                                       [](const XasFileRow &row) { return row.lookedUpLater; });
        return {rest.begin(), next};
    }
};

} // namespace

int XasFilesUpdate::operator()(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply) const
{
    xasAssertUpdate(msg, msgtype, cfgFiles);
    const Run run{*this, *msg, *cfgFiles, reply};
    int result = 0;
    for (std::span<const XasFileRow> rest = files; !rest.empty();) {
        const std::span<const XasFileRow> batch = run.nextBatch(rest);
        if (!run.runBatch(batch, result))
            return result;
        rest = rest.subspan(batch.size());
    }
    return result;
}

void xasAssertUpdate(const XasMessage *msg, XasMsgType msgtype, const XasCfgFileList *cfgFiles,
                     XasCodePlace where)
{
    xasAssertGiven(msg, "msg", where);
    if (msg->xH.msgtype != msgtype)
        xasAssert(false, (std::string{xasMsgTypeName(msgtype)} + " == msg->xH.msgtype").c_str(), where);
    xasAssertGiven(cfgFiles, "cfgFiles", where);
}

const char *xasFindRowFile(const XasFileRow &row, const XasCfgFileList &cfgFiles, XasReplyStatus *reply)
{
    const char *path = xasGetCfgFilePath(row.type, cfgFiles);
    if (path == nullptr) {
        xasLogError("%s", row.missingLog);
        if (row.missingReason != nullptr)
            xasSetReply(*reply, XAS_RCODE_MISSING, row.missingReason);
    }
    return path;
}

void xasRestoreCfgTypes(const XasCfgFileList &cfgFiles, std::span<const std::string_view> types)
{
    for (const std::string_view type : types) {
        if (const char *cfgFileName = xasGetCfgFilePath(type, cfgFiles))
            std::ignore = xasRestoreCfgFile(cfgFileName); // it logs why it cannot; the others are restored
    }
}
