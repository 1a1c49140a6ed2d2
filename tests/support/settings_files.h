/** A setting's files as they are before its message: for tests and measurements, in a private root alone. */
#ifndef XAS_TEST_SUPPORT_SETTINGS_FILES_H
#define XAS_TEST_SUPPORT_SETTINGS_FILES_H

#include "support/files.h"
#include "support/settings_table.h"

#include <utility>

inline constexpr mode_t XAS_SETTING_FILE_MODE = 0640;
inline constexpr mode_t XAS_SETTING_SECRET_MODE = 0600;

/** Empties the directory and puts the files there. What is read at fixed paths says as little as it can. */
void xasPutSettingFiles(const XasExpectedSetting &setting, const XasTestDir &dir);

/** TYPE and PATH of each of them. */
std::vector<std::pair<std::string, std::string>> xasSettingFileList(const XasExpectedSetting &setting,
                                                                    const XasTestDir &dir);

#endif
