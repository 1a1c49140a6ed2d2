/**
 * The real readers of our files, for the private root: programs of the packages that "./dev test" unpacks
 * below build/packages, and commands that a shell runs.
 */
#ifndef XAS_TEST_SUPPORT_PROGRAMS_H
#define XAS_TEST_SUPPORT_PROGRAMS_H

#include "support/files.h"

#include <sys/types.h>

/** The path of a program of the unpacked packages ("usr/sbin/ntpd"); throws where there is none. */
std::string xasUnpackedProgram(const std::string &program);

/** What a program printed, on both of its outputs, and how it ended. */
struct XasProgramResult {
    int exitStatus; /**< -1 when a signal ended it */
    std::string output;
};

/** Runs a command line with the shell to its end. Libraries of the unpacked packages are found. */
XasProgramResult xasRunShell(const std::string &commandLine);

/** A program in the background, ended with the object. */
class XasBackgroundProgram {
  public:
    explicit XasBackgroundProgram(std::vector<std::string> words);
    ~XasBackgroundProgram();
    XasBackgroundProgram(const XasBackgroundProgram &) = delete;
    XasBackgroundProgram &operator=(const XasBackgroundProgram &) = delete;

    /** What it has printed so far. */
    [[nodiscard]] std::string output() const { return dir.read("output"); }

    /** Waits until it has printed `part`; false when time is up. */
    [[nodiscard]] bool await(std::string_view part) const;

    /** Ends it with SIGTERM and gives all that it printed. */
    std::string end();

  private:
    XasTestDir dir;
    pid_t pid;
};

#endif
