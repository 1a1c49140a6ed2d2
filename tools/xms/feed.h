/** What happens at a server, for those who look on: the records that pass, and what is logged meanwhile. */
#ifndef XAS_XMS_FEED_H
#define XAS_XMS_FEED_H

#include "xms/logs.h"
#include "xms/show.h"
#include "xms/socket.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

using XmsEvent = std::variant<XmsTraffic, XmsLogLine>;

/** True for an acknowledgement from the daemon. */
bool xmsIsAnswer(const XmsTraffic &traffic);

class XmsFeed {
  public:
    /** Connects to the server and follows the logs. `end`, when it is given, is readable once it is time to
     * end. Throws XmsError. */
    XmsFeed(const std::string &socket, const std::vector<std::string> &paths,
            const XmsDescriptor *end = nullptr);

    /** Waits for what happens next, in order; what is logged about a message stands behind it, and before its
     * answer. None once the server has ended, or it is time to. */
    std::optional<std::vector<XmsEvent>> next();

  private:
    enum class Wait { server, end, log };

    void takeLine(const std::string &line, std::vector<XmsEvent> &events);
    std::vector<XmsLogLine> settle();
    [[nodiscard]] Wait wait() const;

    XmsLogs logs;
    XmsDescriptor server;
    const XmsDescriptor *ends;
    std::string buffer;
};

#endif
