/** The asking end of the server's socket: what the commands send and get; the lines are in xms_socket.h. */
#ifndef XAS_XMS_ASKING_H
#define XAS_XMS_ASKING_H

#include "wire/message.h"
#include "xms/outcome.h"
#include "xms/socket.h"
#include "xms/users.h"

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

/** The server's next line; its complaints, its end and what cannot be understood are thrown as XmsError. */
XmsJson xmsReadAnswer(const XmsDescriptor &server, std::string &buffer);

/** When and how people are told that they are waiting. */
struct XmsPatience {
    std::function<void()> tell = {}; /**< none: nobody is told */
    std::chrono::milliseconds limit{1000};
};

/** Has a setting sent, the list of users behind it when there is one, and waits for what becomes of it;
 * a wait that tries the patience is told once. */
XmsOutcome xmsAskToSet(const XmsDescriptor &server, const XasMessage &record, const XmsUserEntry &users,
                       double timeoutSeconds, const XmsPatience &patience = {});

/** The stored record of the type and request keys of `request`, or none. */
std::optional<XasMessage> xmsAskStored(const XmsDescriptor &server, const XasMessage &request);

/** Every stored record. */
std::vector<XasMessage> xmsAskAllStored(const XmsDescriptor &server);

/** Asks for the traffic, and returns once the server tells it; `buffer` may then hold some of it already. */
void xmsAskToWatch(const XmsDescriptor &server, std::string &buffer);

/** The traffic that a line of the server tells. */
XmsTraffic xmsTrafficFrom(const XmsJson &line);

#endif
