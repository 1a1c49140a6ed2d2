/** The configuration files as they were after each message, and what a disk may hold when the power was cut.
 */
#ifndef XAS_POWERCUT_VERSIONS_H
#define XAS_POWERCUT_VERSIONS_H

#include <map>
#include <string>
#include <vector>

/** A tree of files: path to content; of a link, an arrow and where it leads. */
using XasTree = std::map<std::string, std::string>;

/** What is below the directories of `top` that hold configuration files. Throws when one cannot be read. */
XasTree xasReadTree(const std::string &top);

/** The trees DIR/0, DIR/1 and so on: before the first message, after it, ... */
std::vector<XasTree> xasReadVersions(const std::string &directory);

struct XasFinding {
    std::vector<std::string> bad;
    std::size_t leftOvers = 0;
    bool isSecretsEmptied = false;
};

/**
 * Looks at a tree after a cut. All that was acknowledged must be there: each file is as after message
 * `acknowledged` or as after a later one up to `begun`, whose answer was not marked yet. A backup is whole
 * when it is any version of its file. Files that are in no version are left-overs when they are temporary
 * ones, and bad otherwise. While the message under way changes the keys of the tunnels their file may have no
 * content, which is told apart: the daemon has to let sed edit it.
 */
XasFinding xasCheckTree(const XasTree &tree, const std::vector<XasTree> &versions, std::size_t acknowledged,
                        std::size_t begun);

#endif
