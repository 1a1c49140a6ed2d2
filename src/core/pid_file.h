/** Pid files of the file servers, which put themselves in the background. */
#ifndef XAS_CORE_PID_FILE_H
#define XAS_CORE_PID_FILE_H

#include <string>
#include <sys/types.h>

/** The pid in the first line of a server's pid file; 0 unless that process runs and has the server's name. */
pid_t xasRunningServer(const std::string &pidFile, const std::string &server);

#endif
