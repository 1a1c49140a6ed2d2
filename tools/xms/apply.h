/** `xms apply`: the settings of a file, sent one after the other once all of them are known to be right. */
#ifndef XAS_XMS_APPLY_H
#define XAS_XMS_APPLY_H

#include "xms/commands.h"
#include "xms/settings_file.h"

#include <span>
#include <string>
#include <vector>

struct XmsApplyOptions {
    std::string file;    /**< "-" is standard input */
    bool keep = false;   /**< fields that are not named keep what is stored; else they get their defaults */
    bool goOn = false;   /**< after a setting that is refused */
    bool again = false;  /**< what is stored just so is sent, too */
    bool dryRun = false; /**< nothing is sent */
    double timeoutSeconds = 30;
};

/** A setting of a file, ready to be sent. */
struct XmsPlanned {
    std::string name; /**< the type, with its key where there are several: "ipfilter_set 2" */
    XasMessage record{};
    XmsUserEntry users;
    bool isStored = false; /**< nothing would change */
};

/**
 * What is to be sent, in a sensible order: addresses and names first, what needs them behind, filter sets
 * before their use, login methods before their order. Whatever is wrong is added to `complaints`, and then
 * nothing is to be sent. XMS_MASK in place of a secret stands for the stored one.
 */
std::vector<XmsPlanned> xmsPlan(std::span<const XmsFileSetting> settings,
                                const std::vector<XasMessage> &stored, const XmsApplyOptions &apply,
                                std::vector<std::string> &complaints);

/** The types in the order in which they are sent. */
std::span<const std::uint32_t> xmsApplyOrder();

XmsExit xmsApplyCommand(const XmsOptions &options, const XmsApplyOptions &apply);

#endif
