/**
 * Files of settings, in YAML or JSON: a mapping from message types to their fields.
 *
 *   hostname:
 *     hostname: "console1"
 *   eth:
 *     eth1.source: static        # fields as in `xms set`,
 *     eth2: {source: dhcp}       # or those of one element together
 *   ipfilter_set:                # several of a type
 *     - {id: 1, name: "office"}
 *     - {id: 2, name: "modem"}
 *
 * Values are those of `xms set`; a text that is not UTF-8 is written as !!binary.
 */
#ifndef XAS_XMS_SETTINGS_FILE_H
#define XAS_XMS_SETTINGS_FILE_H

#include "xms/record.h"
#include "xms/show.h"

#include <istream>
#include <string>
#include <vector>

/** A field of a setting, and the line that it stands in. */
struct XmsFileField {
    XmsAssignment assignment;
    std::size_t line;
};

/** A setting as it was written. */
struct XmsFileSetting {
    std::string type;
    std::size_t line;
    std::vector<XmsFileField> fields;
};

/** What a file holds, in its order; what cannot be read is added to `complaints`, each with its line:
 * "FILE:LINE: TEXT". */
std::vector<XmsFileSetting> xmsReadSettings(std::istream &file, const std::string &name,
                                            std::vector<std::string> &complaints);

/** The fields of a stored setting that make it again. Of a list of users, which is not stored, nothing is
 * said, and what only counts elements is left out. */
std::vector<XasMsgFieldAt> xmsFieldsToWrite(const XasMessage &record);

/** The comment that a file written by `xms get` begins with. */
std::string xmsSettingsHead(bool withSecrets);

/** Such a file of records of any types, those of one type together. Types that are not described are
 * only named. */
std::string xmsSettingsYaml(const std::vector<XasMessage> &records);
XmsJson xmsSettingsJson(const std::vector<XasMessage> &records);

#endif
