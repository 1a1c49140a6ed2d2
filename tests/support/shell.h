/** The shell in a test's hands, for the private root: every command line that somebody hands to it. */
#ifndef XAS_TEST_SUPPORT_SHELL_H
#define XAS_TEST_SUPPORT_SHELL_H

#include "support/files.h"

/** While it lives, "/bin/sh" notes the lines it is given with "-c" and hands them to the real shell. */
class XasShellLines {
  public:
    XasShellLines();
    ~XasShellLines();
    XasShellLines(const XasShellLines &) = delete;
    XasShellLines &operator=(const XasShellLines &) = delete;

    /** The lines since the last call of this function, oldest first. */
    std::vector<std::string> take();

  private:
    XasTestDir dir;
};

#endif
