/** What the command line says, and the commands that it is read for. */
#ifndef XAS_XMS_COMMAND_LINE_H
#define XAS_XMS_COMMAND_LINE_H

#include "xms/apply.h"
#include "xms/commands.h"
#include "xms/recorder.h"
#include "xms/watch.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

/** Everything the command line can say. */
struct XmsCommandLine {
    XmsOptions options{.socket = XMS_DEFAULT_SOCKET};
    std::string color = "auto";
    bool keepQueues = false;
    bool quiet = false;
    bool markdown = false;
    bool settings = false;
    bool man = false;
    XmsWatchOptions watch;
    std::string type;
    XmsGetOptions get;
    XmsSetOptions set;
    XmsApplyOptions apply;
    XmsRecordOptions record;
    std::string recording; /**< to be replayed, or made a page of */
    std::string list;
    std::string root;
    std::function<XmsExit()> run;
};

/** Adds a command that runs `run`, with the options that all have. */
CLI::App *xmsAddCommand(CLI::App &app, XmsCommandLine &line, const char *name, const char *help,
                        std::function<XmsExit()> run);

/** The options that several commands have. */
void xmsAddTimeout(CLI::App &command, double &seconds);
void xmsAddSecrets(CLI::App &command, XmsCommandLine &line, const char *help);
void xmsAddLogs(CLI::App &command, XmsCommandLine &line);

/** The commands about settings: set, preview, get, apply, types, describe. */
void xmsAddSettingCommands(CLI::App &app, XmsCommandLine &line);

/** The commands about the traffic: serve, watch, record, replay, report; and check. */
void xmsAddTrafficCommands(CLI::App &app, XmsCommandLine &line);

#endif
