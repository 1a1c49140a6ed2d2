/**
 * The machine on which the daemon is disturbed: files that are the same at the beginning of each run,
 * programs that stand in for others, the system logger's socket, and the processes. In the private root
 * alone.
 */
#ifndef XAS_TEST_FAULTS_MACHINE_H
#define XAS_TEST_FAULTS_MACHINE_H

#include <map>
#include <string>
#include <sys/types.h>
#include <vector>

struct XasFileState {
    std::string text; /**< of a link: where it leads */
    mode_t mode;      /**< its type too */
    bool operator==(const XasFileState &) const = default;
};

/** Every file and link by its path. */
using XasFileStates = std::map<std::string, XasFileState>;

/** Puts the stand-ins where the machine's programs are, and makes this process the one that collects orphans.
 */
void xasFurnishMachine();

/** The files as the machine is shipped. */
XasFileStates xasShippedFiles();

/** What is there now. */
XasFileStates xasFilesNow();

/** Makes exactly these files be there. */
void xasPutFiles(const XasFileStates &files);

/** A further file of a set. */
void xasAddFile(XasFileStates &files, const std::string &path, std::string text, mode_t mode = 0644);

/** False for what a save leaves beside a file: its backup, and temporaries. */
bool xasIsLive(const std::string &path);

/** The file beside which it was left; the path itself when it is live. */
std::string xasLivePathOf(const std::string &path);

/** The calls of the stand-ins since the last time, in their order. */
std::vector<std::string> xasTakeCalls();

struct XasProcess {
    pid_t pid;
    char state;
    std::string command; /**< its words, one blank between them */
};

/** All processes but this one, the one that holds the root together, and those that only wait to be
 * collected. */
std::vector<XasProcess> xasOtherProcesses();

/** Whether a child of `parent` waits to be collected by it. */
bool xasHasUncollectedChild(pid_t parent);

/** Waits until all of them but `pid` have nothing to do. False when that does not come in five seconds. */
bool xasAwaitQuiet(pid_t pid);

/** Ends them all, as a power cut does. */
void xasEndProcesses();

/** The system logger's socket. */
class XasFaultsLog {
  public:
    XasFaultsLog();
    ~XasFaultsLog();
    XasFaultsLog(const XasFaultsLog &) = delete;
    XasFaultsLog &operator=(const XasFaultsLog &) = delete;

    /** Takes what has arrived; to be called before the daemon logs, so that it never waits. */
    void drain();

    /** The lines so far, with programs in place of process ids; forgets them. */
    std::vector<std::string> take();

  private:
    std::string withPrograms(std::string text);

    int fd;
    std::vector<std::string> lines;
    std::map<std::string, std::string> programs; /**< by process id */
};

#endif
