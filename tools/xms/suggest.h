/** "Did you mean ...?": the known names closest to a mistyped one. */
#ifndef XAS_XMS_SUGGEST_H
#define XAS_XMS_SUGGEST_H

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/** The fewest insertions, deletions and replacements of one character that turn `from` into `to`. */
std::size_t xmsEditDistance(std::string_view from, std::string_view to);

/**
 * At most four of the `known` names that `wanted` may have meant, best first: those within a third of its
 * length in edits (two at least), and members of groups whose last part is `wanted` ("ip" finds "eth1.ip").
 */
std::vector<std::string> xmsCloseNames(std::string_view wanted, const std::vector<std::string> &known);

/** " (did you mean dns1 or dns2?)", or the empty text when nothing is close. */
std::string xmsDidYouMean(std::string_view wanted, const std::vector<std::string> &known);

#endif
