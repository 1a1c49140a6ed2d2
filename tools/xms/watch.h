/** `xms watch`: the traffic between server and daemon as it passes, all of it or some. */
#ifndef XAS_XMS_WATCH_H
#define XAS_XMS_WATCH_H

#include "xms/commands.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

/** What is shown of the traffic. */
struct XmsWatchOptions {
    bool dump = false;              /**< each message whole */
    std::vector<std::string> types; /**< messages of these types and their acknowledgements; none: all */
    std::string only; /**< "refused": settings that were refused, with their answer; empty: all */
};

/** Picks the traffic to show. A setting that may still be refused is held back until it is answered. */
class XmsWatchFilter {
  public:
    XmsWatchFilter(std::vector<std::uint32_t> types, bool refusedOnly);

    /** What is to be shown now that `traffic` has passed, in order. */
    std::vector<XmsTraffic> pass(const XmsTraffic &traffic);

  private:
    /** A setting that has not been answered, with the list of users behind it. */
    struct Pending {
        std::uint32_t id;
        std::vector<XmsTraffic> records;
    };

    [[nodiscard]] bool isWanted(std::uint32_t msgtype) const;
    std::vector<XmsTraffic> passUsers(const XmsTraffic &traffic);
    std::vector<XmsTraffic> passAnswer(const XmsTraffic &traffic, const XasMessage &answer);
    void remember(const XmsTraffic &traffic, std::uint32_t id);

    std::vector<std::uint32_t> wanted;
    bool isRefusedOnly;
    bool areUsersWanted = false; /**< of the list of users that follows a message */
    std::deque<Pending> pending;
};

/** Shows what passes until the server ends: a line each, or as the options say. */
XmsExit xmsWatchCommand(const XmsOptions &options, const XmsWatchOptions &watch);

#endif
