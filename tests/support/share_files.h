/** The files of the remote directories and of the offered share, for the handlers that write them. */
#ifndef XAS_TEST_ROOT_SHARE_FILES_H
#define XAS_TEST_ROOT_SHARE_FILES_H

#include "files/update.h"
#include "support/dispatcher_fixture.h"

/** The files as they were before a message, and the hosts that are known. */
class XasShareFiles : public XasTestDir {
  public:
    static constexpr const char *SERVERS = "NFS_SERVERS=\"10.9.9.9\"\n";
    static constexpr const char *TABLE =
        "proc /proc proc defaults 0 0\n10.9.9.9:/old /var/nfsmounts/old nfs ro 0 0\n";
    static constexpr const char *SMB = "[global]\nworkgroup = OLD\ninterfaces = lo\n";
    static constexpr const char *PASSWORDS =
        "# passwords\ncifsuser:100:OLD:OLD:[U          ]:LCT-0:Cifs User\n";

    XasShareFiles()
    {
        write("nfsServers", SERVERS);
        write("fstab", TABLE);
        write("smb", SMB);
        write("smbpasswd", PASSWORDS);
        std::filesystem::remove_all("/var/nfsmounts");
        xasWriteFile("/etc/nsswitch.conf", "hosts: files\n");
        xasWriteFile("/etc/hosts", "127.0.0.1 localhost\n192.168.10.20 nas nas.example.org\n");
    }

    /** These TYPEs with the files of their names. */
    [[nodiscard]] std::vector<std::pair<std::string, std::string>>
    named(const std::vector<std::string> &types) const
    {
        std::vector<std::pair<std::string, std::string>> cfgFiles;
        for (const std::string &type : types)
            cfgFiles.emplace_back(type, path(type));
        return cfgFiles;
    }
};

/** The handlers inside the test program. */
class XasUpdateSharesTest : public testing::Test {
  protected:
    int update(XasUpdate handler, const XasMessageBuilder &builder, const std::vector<std::string> &types)
    {
        reply = {};
        log.take();
        XasMessage msg = builder;
        const XasCfgFileList list = xasTestCfgFiles(files.named(types));
        return handler(&msg, &list, &reply);
    }

    void expectReply(std::uint32_t rcode, std::string_view reason) const
    {
        EXPECT_EQ(reply.rcode, rcode);
        EXPECT_EQ(reply.rstr, reason);
    }

    XasShareFiles files;
    XasLogCapture log;
    XasReplyStatus reply;
};

/** The dispatcher with one of the applications. */
class XasDispatchSharesTest : public XasDispatcherTest {
  protected:
    /** The application, running. */
    void prepare(const std::string &name, const std::vector<std::string> &types, int startStatus = 0)
    {
        XasTestApp application{.name = name,
                               .startScript = script("start-" + name, startStatus),
                               .stopScript = script("stop-" + name),
                               .cfgFiles = files.named(types)};
        apps = xasTestAppList({application});
        app(name).running = 1;
    }

    XasShareFiles files;
};

#endif
