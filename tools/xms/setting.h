/** A setting as the user wrote it, checked and built without the server. */
#ifndef XAS_XMS_SETTING_H
#define XAS_XMS_SETTING_H

#include "xms/record.h"
#include "xms/users.h"

#include <fstream>
#include <string>
#include <vector>

struct XmsSetOptions {
    std::string type;
    std::vector<std::string> assignments; /**< "field=value" */
    bool fresh = false;                   /**< start from defaults, not from the stored record */
    bool force = false;                   /**< take values that the field tables do not allow */
    double timeoutSeconds = 30;
    std::string rawFile; /**< hexadecimal payload; "-" is standard input, empty is none */
};

/** What is to be sent. */
struct XmsSetting {
    XasMessage record{};
    std::vector<XmsAssignment> assignments; /**< those that set the record's own fields */
    XmsUserEntry users;                     /**< the list behind XMSG_LOCALUSERS */
};

/** Opens `path` as `file` and gives it; standard input for "-". Throws XmsError. */
std::istream &xmsOpenInput(const std::string &path, std::ifstream &file);

/** Which values the options let pass. */
XasValueCheck xmsCheckOf(const XmsSetOptions &set);

/** The setting that the assignments make of a type's defaults, checked but for its texts. Throws XmsError. */
XmsSetting xmsBuildSetting(std::uint32_t msgtype, std::vector<XmsAssignment> assignments,
                           XasValueCheck check);

/** Throws XmsError with the daemon's own words when a text of the record is one that it refuses. */
void xmsRequireFitTexts(const XasMessage &record);

/** The same, unless any value is to pass. */
void xmsRequireFitTexts(const XasMessage &record, const XmsSetOptions &set);

/** The setting, as far as it can be built, and checked, without the server. Throws XmsError. */
XmsSetting xmsSettingFrom(const XmsSetOptions &set);

#endif
