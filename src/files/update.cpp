#include "files/update.h"

#include "core/log.h"
#include "files/config_file.h"

namespace {

int runFileStep(const XasCfgFileList &cfgFiles, XasReplyStatus *reply, const XasFileStep &step)
{
    const char *cfgFileName = xasGetCfgFilePath(step.type, cfgFiles);
    if (cfgFileName == nullptr) {
        xasLogError("%s", step.missingLog);
        xasSetReply(*reply, XAS_RCODE_MISSING, step.missingReason);
        xasRestoreCfgTypes(cfgFiles, step.restoreIfMissing);
        return 1;
    }
    if (step.edit(cfgFileName) != 0) {
        xasLogError("%s", step.editLog);
        xasRestoreCfgTypes(cfgFiles, step.restoreIfEditFails);
        return 1;
    }
    return 0;
}

} // namespace

int xasRunFileSteps(const XasCfgFileList &cfgFiles, XasReplyStatus *reply, std::span<const XasFileStep> steps)
{
    for (const XasFileStep &step : steps) {
        if (runFileStep(cfgFiles, reply, step) != 0)
            return 1;
    }
    return 0;
}

void xasRestoreCfgTypes(const XasCfgFileList &cfgFiles, std::span<const std::string_view> types)
{
    for (const std::string_view type : types) {
        if (const char *cfgFileName = xasGetCfgFilePath(type, cfgFiles))
            xasRestoreCfgFile(cfgFileName);
    }
}
