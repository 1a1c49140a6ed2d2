/** What a recording tells, step by step, and as a page to pass on. */
#ifndef XAS_XMS_REPORT_H
#define XAS_XMS_REPORT_H

#include "xms/commands.h"
#include "xms/recording.h"

#include <istream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

enum class XmsStepEnd : std::uint8_t {
    applied,
    refused,
    unanswered, /**< when the recording ended */
    event       /**< is never answered, or not by the daemon */
};

/** A message, and what followed from it. */
struct XmsReportStep {
    std::int64_t timeMs = 0;
    bool toDaemon = false;
    std::uint32_t msgtype = 0;
    std::string title; /**< "hostname", "odd record of 5 bytes" */
    std::string from;  /**< "XMS Set" */
    std::uint32_t id = 0;
    std::uint32_t answers = 0; /**< the id of what it answers, else 0 */
    XmsStepEnd end = XmsStepEnd::event;
    std::optional<std::int64_t> tookMs;
    std::uint32_t rcode = 0;
    std::string reason;
    std::vector<std::pair<std::string, std::string>> fields; /**< those that are not zero, users' included */
    std::vector<std::string> log;
    std::vector<XmsFileChange> changes;
};

struct XmsReport {
    std::string name; /**< of the recording */
    bool hasSecrets = false;
    std::int64_t beginMs = 0;
    std::int64_t endMs = 0;
    std::vector<std::string> before; /**< what was logged before the first message */
    std::vector<XmsReportStep> steps;
};

/** Reads a recording. Secrets that it holds are masked unless `withSecrets`. Throws XmsError when it is none.
 */
XmsReport xmsReportOf(std::istream &recording, const std::string &name, bool withSecrets);

/** One self-contained page of HTML, which runs nothing and loads nothing; less than a megabyte. */
std::string xmsReportPage(const XmsReport &report);

/** `xms report`: the page of the recording at `path` on standard output. */
XmsExit xmsReportCommand(const XmsOptions &options, const std::string &path);

#endif
