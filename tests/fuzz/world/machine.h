/**
 * A whole appliance around the daemon's library, inside this process and, for its files, inside the private
 * root: pretended processes (processes.h), queues, clock, accounts, links and names; the files and the
 * application list of the appliance to try things on. Before each input everything is as it was in the
 * beginning.
 *
 * What must hold whatever happens is required here: no command line beyond the known set, one answer for each
 * message that is answered, no signal to others, nobody waiting for ever.
 */
#ifndef XAS_FUZZ_WORLD_MACHINE_H
#define XAS_FUZZ_WORLD_MACHINE_H

#include "core/appmgr.h"
#include "wire/message.h"
#include "world/processes.h"

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

using namespace std::chrono_literals;

/** Path and content; of a link, where it leads to, behind "-> ". */
using XasFiles = std::map<std::string, std::string>;

class XasMachine {
  public:
    /** Furnishes the private root; there is one. */
    XasMachine();

    /** As it was in the beginning. */
    void reset();

    /** Everything below the directories that the daemon writes to, but for "/tmp". */
    static XasFiles files();
    static void write(const std::string &path, std::string_view text);

    /** Has the dispatcher handle one message. Returns the acknowledgement's "success rcode reason"; empty for
     * none. */
    std::string process(const XasMessage &msg, std::string_view users = {});

    /** Lets time pass while no message comes; what the daemon does then of its own is done. */
    void idle(std::chrono::milliseconds time);

    /** Whatever came before: each daemon that counts as running lives, each living process is one's, nobody
     * was restarted more often than may be, and no descriptor stayed open. */
    void requireOrder();

    void at(std::chrono::nanoseconds time, std::function<void()> event);

    /** What was logged and what was run, for whoever looks at a failure. */
    [[nodiscard]] std::string story() const;

    XasAppList apps;
    std::vector<std::string>
        ran;                    /**< since reset: programs with their pids, and the command lines of shells */
    std::deque<int> exits;      /**< of the next commands and scripts: wait statuses; 0 when empty */
    std::uint64_t executed = 0; /**< in all */
    std::uint64_t startedTwice = 0; /**< daemons that were alive when they were started; in all */
    std::set<std::string> accounts;
    std::deque<std::string> toDaemon; /**< entries of the queue */
    std::deque<std::string> fromDaemon;
    unsigned fullFor = 0; /**< so many sends find the queue full */
    bool queuesThere = true;
    bool links[2] = {false, false};
    std::chrono::nanoseconds now{0};
    std::multimap<std::chrono::nanoseconds, std::function<void()>> events;
    std::string listing; /**< of the filter's rules */

  private:
    XasFate execute(pid_t pid, const std::vector<std::string> &words);
    XasFate replaceEarlier(const std::string &application, const std::string &program);

    XasAppList initialApps;
    std::size_t descriptors = 0;
};

/** The one that there is; it is made when it is first asked for. */
XasMachine &xasTheMachine();

/** The same, none before. */
XasMachine *xasMachine();

#endif
