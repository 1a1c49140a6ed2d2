/** What ends a command early, and the exit statuses of the program. */
#ifndef XAS_XMS_ERROR_H
#define XAS_XMS_ERROR_H

#include <stdexcept>
#include <string>

enum class XmsExit : int {
    applied = 0,  /**< done: the setting was applied, the question answered */
    refused = 1,  /**< the daemon refused the setting; or nothing is stored */
    usage = 2,    /**< wrong arguments: an unknown name, a value that will not do */
    noServer = 3, /**< no server, or no acknowledgement in time */
};

/** A text for the user and the status to end with. */
class XmsError : public std::runtime_error {
  public:
    XmsError(XmsExit exitStatus, const std::string &text) : std::runtime_error{text}, status{exitStatus} {}
    XmsExit status;
};

#endif
