/** `xms watch`: the traffic between server and daemon as it passes, all of it or some. */
#ifndef XAS_XMS_WATCH_H
#define XAS_XMS_WATCH_H

#include "xms/commands.h"
#include "xms/feed.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

/** What is shown. */
struct XmsWatchOptions {
    bool dump = false;              /**< each message whole */
    std::vector<std::string> types; /**< messages of these types and their acknowledgements; none: all */
    std::string only; /**< "refused": settings that were refused, with their answer; empty: all */
};

/** Picks what is shown. A setting that may still be refused is held back until it is answered, and with it
 * what is logged meanwhile: the daemon acts on one setting after the other, in their order. */
class XmsWatchFilter {
  public:
    XmsWatchFilter(std::vector<std::uint32_t> types, bool refusedOnly);

    /** What is to be shown now that this has passed, in order. */
    std::vector<XmsEvent> pass(const XmsEvent &event);

  private:
    /** A setting that has not been answered, with the list of users behind it. */
    struct Pending {
        std::uint32_t id;
        std::vector<XmsEvent> held;
    };

    [[nodiscard]] bool isWanted(std::uint32_t msgtype) const;
    std::vector<XmsEvent> passLog(const XmsLogLine &line);
    std::vector<XmsEvent> passRecord(const XmsTraffic &traffic);
    std::vector<XmsEvent> passUsers(const XmsTraffic &traffic);
    std::vector<XmsEvent> passAnswer(const XmsTraffic &traffic, const XasMessage &answer);
    void remember(const XmsTraffic &traffic, const XasMessage &setting);

    std::vector<std::uint32_t> wanted;
    bool isRefusedOnly;
    bool areUsersWanted = false; /**< of the list of users that follows a message */
    std::deque<Pending> pending;
};

/** Shows what passes until the server ends: a line each, or as the options say. */
XmsExit xmsWatchCommand(const XmsOptions &options, const XmsWatchOptions &watch);

#endif
