/** The handlers of the login methods inside the test program, with the files that stand at fixed paths. */
#ifndef XAS_TEST_ROOT_LOGIN_FILES_H
#define XAS_TEST_ROOT_LOGIN_FILES_H

#include "files/update.h"
#include "support/apps.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"
#include "support/reply.h"

class XasLoginFilesTest : public XasFilesTest {
  protected:
    XasLoginFilesTest()
    {
        xasWriteFile(ORDER, "LOCAL=1\n");
        xasWriteFile("/etc/krb5.conf", "use_ldap = 0\n");
        xasWriteFile("/etc/tacplus.conf", "");
        dir.write("system-auth", "old pam\n");
        dir.write("nsswitch", "passwd: old\n");
    }

    /** The list of these TYPEs, each with the file of its name. */
    [[nodiscard]] XasCfgFileList listOf(const std::vector<std::string> &types) const
    {
        std::vector<std::pair<std::string, std::string>> cfgFiles;
        for (const std::string &type : types)
            cfgFiles.emplace_back(type, dir.path(type));
        return xasTestCfgFiles(cfgFiles);
    }

    int handle(XasUpdate handler, XasMessage msg, const std::vector<std::string> &types)
    {
        reply = {};
        log.take();
        const XasCfgFileList list = listOf(types);
        return handler(&msg, &list, &reply);
    }

    void expectReply(std::uint32_t rcode, std::string_view reason) const
    {
        EXPECT_EQ(reply.rcode, rcode);
        EXPECT_EQ(reply.rstr, reason);
    }

    /** What the PAM file and the name-service file are, made from LOCAL=1. */
    void expectDerivedFiles() const
    {
        EXPECT_EQ(dir.read("system-auth"), LOCAL_PAM);
        EXPECT_EQ(dir.read("nsswitch"), "passwd:     files\n");
    }

    static constexpr const char *ORDER = "/etc/sysconfig/r58authconfig";
    static constexpr const char *LOCAL_PAM =
        "#%PAM-1.0 system-auth file\n"
        "auth      required\t/lib/security/pam_env.so readenv=0\n"
        "auth      sufficient\t/lib/security/pam_sp_user.so\n"
        "auth      sufficient\t/lib/security/pam_unix.so  use_first_pass\n"
        "auth      required      /lib/security/pam_deny.so\n"
        "account   optional      /lib/security/pam_unix.so\n"
        "password  sufficient\t/lib/security/pam_unix.so retry=3 nullok md5 shadow nis\n"
        "session   required      /lib/security/pam_limits.so\n"
        "session   sufficient\t/lib/security/pam_unix.so\n";

    XasLogCapture log;
    XasReplyStatus reply;
};

#endif
