/** Tests of messages that rewrite files: the built daemon with one application, whose files a test prepares.
 */
#ifndef XAS_TEST_SUPPORT_MESSAGE_FILES_H
#define XAS_TEST_SUPPORT_MESSAGE_FILES_H

#include "support/daemon.h"
#include "support/settled_log.h"
#include "support/small_disk.h"

#include <map>

/** A directory whose files a test takes away, or replaces by directories. */
class XasPreparedFiles : public XasTestDir {
  public:
    void remove(const std::string &name) const { std::filesystem::remove(path(name)); }

    /** Puts a directory that is not empty in the place of a file. */
    void putDirectory(const std::string &name) const
    {
        remove(name);
        write(name + "/inside", "");
    }
};

class XasMessageFilesTest : public testing::Test {
  protected:
    XasMessageFilesTest(std::string application, std::vector<std::string> fileTypes)
        : name{std::move(application)}, types{std::move(fileTypes)}
    {
    }

    /** Starts the daemon; every TYPE but `missing` has the file of its name. */
    void start(const std::string &missing = {})
    {
        XasTestApp app{.name = name};
        for (const std::string &type : types) {
            if (type != missing)
                app.cfgFiles.emplace_back(type, pathOf(type));
        }
        daemon.start({app});
        daemon.ask(XasMessageBuilder{XMSG_SSH});
        daemon.stubs.forget();
        daemon.log.clear();
    }

    /** The acknowledgement of a message: success, rcode and rstr. */
    std::string outcome(const XasMessage &msg)
    {
        daemon.log.clear();
        return daemon.outcome(msg);
    }

    /** What was logged for the last message. */
    std::vector<XasLogLine> logLines() { return xasSettledLines(daemon.log); }

    std::vector<std::string> commands() { return daemon.stubs.lines(); }

    XasLogLine openFailed(const std::string &file) { return fileLine("opening config", file); }
    XasLogLine renameOldFailed(const std::string &file) { return fileLine("renaming old config", file); }
    XasLogLine renameNewFailed(const std::string &file) { return fileLine("renaming new config", file); }
    XasLogLine restoreFailed(const std::string &file) { return fileLine("restoring old config", file); }

    XasPreparedFiles files;
    std::map<std::string, std::string> elsewhere; /**< paths of files that are not in `files` */
    XasTestDaemon daemon;

  private:
    [[nodiscard]] std::string pathOf(const std::string &file) const
    {
        const auto found = elsewhere.find(file);
        return found != elsewhere.end() ? found->second : files.path(file);
    }

    XasLogLine fileLine(const std::string &what, const std::string &file)
    {
        return xasErrorLine("Error " + what + " file \"" + pathOf(file) + "\"\n");
    }

    std::string name;
    std::vector<std::string> types;
};

#endif
