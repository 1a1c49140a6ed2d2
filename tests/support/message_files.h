/** Tests of messages that rewrite files: the built daemon with one application, whose files a test prepares.
 */
#ifndef XAS_TEST_SUPPORT_MESSAGE_FILES_H
#define XAS_TEST_SUPPORT_MESSAGE_FILES_H

#include "support/daemon.h"

/** A directory whose files a test takes away. */
class XasPreparedFiles : public XasTestDir {
  public:
    void remove(const std::string &name) const { std::filesystem::remove(path(name)); }
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
                app.cfgFiles.emplace_back(type, files.path(type));
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
    std::vector<XasLogLine> logLines() { return daemon.log.lines(); }

    std::vector<std::string> commands() { return daemon.stubs.lines(); }

    XasPreparedFiles files;
    XasTestDaemon daemon;

  private:
    std::string name;
    std::vector<std::string> types;
};

#endif
