/**
 * Recorded traffic: lines of JSON, one object a line.
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
 *
 * A recording holds what the settings hold, secrets included.
 */
#ifndef XAS_XMS_RECORDING_H
#define XAS_XMS_RECORDING_H

#include "wire/reply_message.h"
#include "xms/show.h"
#include "xms/users.h"

#include <istream>
#include <optional>
#include <string>
#include <vector>

/** The first line of a recording. */
XmsJson xmsRecordingStart();

/** The line of one record. */
XmsJson xmsRecordingLine(const XmsTraffic &traffic);

/** A setting of a recording, and what became of it then. */
struct XmsRecordedSetting {
    XasMessage record{};
    XmsUserEntry users = {};                             /**< the list behind XMSG_LOCALUSERS */
    std::optional<XasReplyPayload> reply = std::nullopt; /**< none: it was not answered while recording */
};

/**
 * The settings of a recording in their order: everything that was sent to the daemon as "Set". Answers to
 * what the daemon asked are left out, for the server gives them anew. `name` is the recording's name for
 * complaints. Throws XmsError with status usage when a line is not understood.
 */
std::vector<XmsRecordedSetting> xmsRecordedSettings(std::istream &recording, const std::string &name);

#endif
