/** What each setting changes and answers, from the rows that the daemon runs: docs/settings.md. */
#ifndef XAS_XMS_SETTINGS_TEXT_H
#define XAS_XMS_SETTINGS_TEXT_H

#include <cstdint>
#include <string>
#include <vector>

/** For each file of a type, by its TYPE, and for each other reason: what happens, code, reason; the file is
 * empty for the type's own reasons. */
std::vector<std::vector<std::string>> xmsResultRows(std::uint32_t msgtype);

/** When a type's application is started: "always", "when tunnel is not 0"; empty for a type that is refused.
 */
std::string xmsStartText(std::uint32_t msgtype);

/** The whole document. */
std::string xmsSettingsMarkdown();

#endif
