/**
 * Recorded sessions: lines of JSON, one object a line.
 *
 *   {"recording": "xms", "version": 1}
 *       the first line
 *   {"time_ms": N, "to_daemon": true or false, "type": NAME, "action": N, "sender": N, "id": N,
 *    "orig_id": N, "payload": HEX}
 *       a message; the zeroes at its end are left out
 *   {"time_ms": N, "to_daemon": true, "users": HEX}
 *       the list of users that followed its message, whole
 *   {"time_ms": N, "to_daemon": true or false, "bytes": HEX}
 *       a record that is neither, whole
 *   {"time_ms": N, "log": TEXT}
 *       a line of the log
 *   {"time_ms": N, "file": PATH, "difference": TEXT}
 *       what has changed in a file, behind the message from the daemon after which it was seen; and with
 *       "closed": true when others may not read it
 *
 * Without its secrets, each record that had one has "masked": [NAME...], the fields whose secret is replaced;
 * what is not described is then all zero.
 */
#ifndef XAS_XMS_RECORDING_H
#define XAS_XMS_RECORDING_H

#include "wire/reply_message.h"
#include "xms/logs.h"
#include "xms/show.h"
#include "xms/users.h"
#include "xms/watched_files.h"

#include <functional>
#include <istream>
#include <optional>
#include <string>
#include <variant>
#include <vector>

/** The first line of a recording. */
XmsJson xmsRecordingStart();

/** The line of one record, with its secrets or without, and of a file's change. Log lines: xmsLogJson(). */
XmsJson xmsRecordingLine(const XmsTraffic &traffic, bool withSecrets);
XmsJson xmsChangeLine(const XmsFileChange &change);

/** A record of a recording. */
struct XmsRecordedTraffic {
    XmsTraffic traffic;
    std::vector<std::string> masked; /**< the fields whose secrets were not recorded */
};

/** What a line tells. */
using XmsRecordedEvent = std::variant<XmsRecordedTraffic, XmsLogLine, XmsFileChange>;

/** Calls `take` for each line but the first. `name` is the recording's name for complaints. Throws XmsError
 * with status usage when a line is not understood, or `take` throws. */
void xmsReadRecording(std::istream &recording, const std::string &name,
                      const std::function<void(XmsRecordedEvent)> &take);

/** A setting of a recording, and what became of it then. */
struct XmsRecordedSetting {
    XasMessage record{};
    XmsUserEntry users = {};                             /**< the list behind XMSG_LOCALUSERS */
    std::optional<XasReplyPayload> reply = std::nullopt; /**< none: it was not answered while recording */
    std::vector<std::string> masked = {};                /**< the fields whose secrets were not recorded */
};

/**
 * The settings of a recording in their order: everything that was sent to the daemon as "Set". Answers to
 * what the daemon asked are left out, for the server gives them anew.
 */
std::vector<XmsRecordedSetting> xmsRecordedSettings(std::istream &recording, const std::string &name);

#endif
