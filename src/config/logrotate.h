/**
 * How large a log may grow before it is rotated: the rotation's configuration (logrotate.conf(5)) with its
 * embedded shell fragment. A line with "size ", with "$logbytes -gt " (the same limit in bytes, in the
 * fragment) or with "tail -c " (half of it, which is what stays of a log that is cut) keeps what stands up
 * to there; the rest is replaced.
 */
#ifndef XAS_CONFIG_LOGROTATE_H
#define XAS_CONFIG_LOGROTATE_H

#include "config/syslog_message.h"
#include "files/editor.h"

#include <string>
#include <string_view>

/** The new text: behind the first line of "/var/log/nut" with the size of its logs, before with the other. */
std::string xasLogrotateText(std::string_view oldText, const XasSyslogPayload &syslog);

/** Edits the file, which must exist. */
extern const XasEditor<XasSyslogPayload> xasEditLogrotateCfgFile;

#endif
