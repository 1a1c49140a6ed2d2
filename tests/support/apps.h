/** Applications as tests describe them, for both of their forms: the list in memory and the list's file. */
#ifndef XAS_TEST_SUPPORT_APPS_H
#define XAS_TEST_SUPPORT_APPS_H

#include "core/appmgr.h"

#include <string>
#include <utility>
#include <vector>

/** One application; an empty script is an absent one. */
struct XasTestApp {
    std::string name;
    std::string startScript = {};
    std::string stopScript = {};
    std::vector<std::string> exes = {};
    std::vector<std::pair<std::string, std::string>> cfgFiles = {}; /**< TYPE, PATH */
};

/** The list in memory, as the parser would build it. */
XasAppList xasTestAppList(const std::vector<XasTestApp> &apps);

/** The text of the list's file. */
std::string xasSysappText(const std::vector<XasTestApp> &apps);

/** A list of configuration files: TYPE, PATH. */
XasCfgFileList xasTestCfgFiles(const std::vector<std::pair<std::string, std::string>> &cfgFiles);

#endif
