/**
 * The log inside a test program. The program's own `syslog`, `vsyslog` and `openlog` take the place of the C
 * library's: nothing reaches the machine's log. Lines of forked children are seen too.
 */
#ifndef XAS_TEST_SUPPORT_LOG_H
#define XAS_TEST_SUPPORT_LOG_H

#include "support/log_line.h"

#include <sys/types.h>

/** Sees what is logged while it lives. */
class XasLogCapture {
  public:
    XasLogCapture();

    /** Every line so far, oldest first. */
    [[nodiscard]] std::vector<XasLogLine> lines() const;

    /** The lines since the last call of this function. */
    std::vector<XasLogLine> take();

  private:
    off_t from;
};

/** The arguments of the last openlog. */
struct XasOpenedLog {
    std::string ident;
    int option;
    int facility;

    bool operator==(const XasOpenedLog &) const = default;
};

/** How the log was opened; none when it was not. */
std::optional<XasOpenedLog> xasOpenedLog();

#endif
