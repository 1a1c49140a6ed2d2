/**
 * The application registry: which services exist on the appliance, their scripts and daemons, and where their
 * configuration files are. Read once at start from the application list (xas_sysapp_parser.h), kept until
 * exit.
 */
#ifndef XAS_CORE_APPMGR_H
#define XAS_CORE_APPMGR_H

#include <cstdint>
#include <forward_list>
#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

/** A daemon of an application. */
struct XasDaemon {
    std::string exe;           /**< the command line: program path, then blank-separated arguments */
    std::int32_t running = 0;  /**< 1 while the process, or the server that replaced it, is alive */
    std::int32_t stopping = 0; /**< 1 while it is being stopped; its exit is then no reason to restart it */
    std::int32_t restarts = 0; /**< automatic restarts since the last hourly reset */
    pid_t pid = 0;             /**< 0 before the first start, -1 after the process ended */
    pid_t pgrp = 0;            /**< process group at start */
};

/** A configuration file of an application. */
struct XasCfgFileEntry {
    std::optional<std::string> type; /**< the lookup key */
    std::optional<std::string> path; /**< the file's absolute path */
};

/** In document order. */
using XasCfgFileList = std::vector<XasCfgFileEntry>;

/** A node of XasApp::auxList; nothing fills that list. */
struct XasAuxNode {
    std::uintptr_t first = 0;
    std::uintptr_t second = 0;
};

/** An application. */
struct XasApp {
    std::optional<std::string> name;
    std::int32_t running = 0; /**< 1 from its start by the service start operation to its stop */
    std::vector<XasDaemon> daemons;
    std::optional<std::string> startScript; /**< a command line */
    std::optional<std::string> stopScript;  /**< a command line */
    XasCfgFileList cfgFiles;
    std::forward_list<XasAuxNode> auxList;
};

/** The applications in document order. Their addresses do not change while they are in the list. */
using XasAppList = std::list<XasApp>;

/** The first application whose name is `name` exactly, or none. */
XasApp *xasFindApp(std::string_view name, XasAppList &apps);

/** The path of the first entry whose type is `type` exactly, or none (null). Logs nothing. */
const char *xasGetCfgFilePath(std::string_view type, const XasCfgFileList &cfgFiles);

/** Removes `app` from the list and releases it; an application that is not in the list is left alone. */
void xasFreeApp(XasAppList &apps, const XasApp *app);

#endif
