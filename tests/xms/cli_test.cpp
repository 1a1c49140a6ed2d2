#include "xms/cli.h"

#include "support/files.h"
#include "xms/markdown.h"

namespace {

/** Runs the program's main function in this process, with a socket that nobody serves. */
class XmsCli : public XasFilesTest {
  protected:
    XmsCli() { setenv("XMS_SOCKET", dir.path("none.sock").c_str(), 1); }
    ~XmsCli() override { unsetenv("XMS_SOCKET"); }

    int run(std::vector<std::string> words)
    {
        words.insert(words.begin(), "xms");
        std::vector<char *> arguments;
        for (std::string &word : words)
            arguments.push_back(word.data());
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const int status = xmsMain(static_cast<int>(arguments.size()), arguments.data());
        std::fflush(stdout);
        output = testing::internal::GetCapturedStdout();
        errors = testing::internal::GetCapturedStderr();
        return status;
    }

    std::string output;
    std::string errors;
};

} // namespace

TEST_F(XmsCli, WrongArgumentsEndWithStatusTwo)
{
    EXPECT_EQ(run({}), 2);
    EXPECT_EQ(run({"frobnicate"}), 2);
    EXPECT_EQ(run({"set"}), 2);
    EXPECT_EQ(run({"get"}), 2);
    EXPECT_EQ(errors, "xms: one type is shown or, with --all, all of them\n");
    EXPECT_EQ(run({"get", "dns", "--all"}), 2);
    EXPECT_EQ(run({"apply"}), 2);
    EXPECT_EQ(run({"apply", "--stop", "--go-on", "file"}), 2);
    EXPECT_EQ(run({"--color", "blue", "types"}), 2);
    EXPECT_EQ(run({"set", "--timeout", "-1", "dns"}), 2);
    EXPECT_EQ(run({"describe"}), 2);
}

TEST_F(XmsCli, WrongValuesAreFoundBeforeTheServerIsAsked)
{
    EXPECT_EQ(run({"set", "dns", "dns1=ns1"}), 2);
    EXPECT_EQ(errors,
              "xms: dns1: \"ns1\" will not do, expected: an IPv4 or IPv6 address such as 192.168.1.10 or "
              "fd00::1, or none\n");
    for (const char *verb : {"set", "preview"}) {
        EXPECT_EQ(run({verb, "snmp", "syscontact=me\nexec x /bin/sh"}), 2);
        EXPECT_EQ(errors, "xms: Invalid character in syscontact\n") << "the daemon's own words";
    }
    EXPECT_EQ(run({"set", "--force", "snmp", "syscontact=me\nexec x /bin/sh"}), 3)
        << "only the server is missing";
    EXPECT_EQ(run({"set", "hostname", "--raw", dir.write("raw", "783b79")}), 3) << "x;y";
    EXPECT_EQ(run({"set", "dsn"}), 2);
    EXPECT_THAT(errors, HasSubstr("did you mean dns"));
    EXPECT_EQ(run({"set", "dns", "--raw", dir.path("missing")}), 2);
    EXPECT_EQ(errors, "xms: cannot read " + dir.path("missing") + "\n");
}

TEST_F(XmsCli, APreviewChecksTheSettingAndNeedsTheApplianceToTryThingsOn)
{
    EXPECT_EQ(run({"preview", "dns", "dns1=ns1"}), 2);
    EXPECT_THAT(errors, HasSubstr("dns1: \"ns1\" will not do"));
    EXPECT_EQ(run({"preview", "dns", "dns1=10.0.0.53"}), 3);
    EXPECT_EQ(errors, "xms: no /appliance/boot here: a preview needs the appliance to try things on (./dev "
                      "shell, ./dev preview)\n");
    EXPECT_EQ(output, "");
}

TEST_F(XmsCli, WithoutAServerTheStatusIsThree)
{
    for (const std::vector<std::string> &words : {std::vector<std::string>{"set", "dns", "dns1=10.0.0.1"},
                                                  {"get", "dns"},
                                                  {"get", "--all", "--yaml"},
                                                  {"apply", dir.path("file")},
                                                  {"watch"},
                                                  {"record", dir.path("session")}}) {
        EXPECT_EQ(run(words), 3) << words.front();
        EXPECT_EQ(errors, "xms: no server at " + dir.path("none.sock") + ": start `xms serve`\n");
        EXPECT_EQ(output, "");
    }
    EXPECT_FALSE(dir.has("session"));
}

TEST_F(XmsCli, TheSocketOptionGoesBeforeTheEnvironment)
{
    EXPECT_EQ(run({"--socket", dir.path("other.sock"), "get", "dns"}), 3);
    EXPECT_THAT(errors, HasSubstr(dir.path("other.sock")));
    EXPECT_EQ(run({"get", "dns", "--socket", dir.path("other.sock")}), 3);
    EXPECT_THAT(errors, HasSubstr(dir.path("other.sock")));
}

TEST_F(XmsCli, HelpTellsTheExitStatusesAndWhereASettingStarts)
{
    EXPECT_EQ(run({"--help"}), 0);
    EXPECT_THAT(output, AllOf(HasSubstr("serve"), HasSubstr("Exit status: 0"), HasSubstr("XMS_SOCKET")));
    EXPECT_EQ(run({"set", "--help"}), 0);
    EXPECT_THAT(output, AllOf(HasSubstr("--fresh"), HasSubstr("keep the values of the stored record")));
}

TEST_F(XmsCli, QuestionsAboutTypesNeedNoServer)
{
    EXPECT_EQ(run({"types"}), 0);
    EXPECT_THAT(output, HasSubstr("  2   hostname  "));
    EXPECT_EQ(run({"describe", "XMSG_DNS"}), 0);
    EXPECT_THAT(output, HasSubstr("XMSG_DNS (3): name servers\n"));
    EXPECT_EQ(run({"describe", "dns", "--json"}), 0);
    EXPECT_THAT(output, HasSubstr(R"({"number":3,"type":"dns","name":"XMSG_DNS")"));
    EXPECT_EQ(run({"describe", "--markdown"}), 0);
    EXPECT_EQ(output, xmsMarkdown());
}

TEST_F(XmsCli, ColourIsForTerminalsUnlessAskedFor)
{
    EXPECT_EQ(run({"describe", "dns"}), 0);
    EXPECT_EQ(output.find('\033'), std::string::npos);
    EXPECT_EQ(run({"describe", "dns", "--color=always"}), 0);
    EXPECT_THAT(output, HasSubstr("\033[1mXMSG_DNS\033[0m"));
}

TEST_F(XmsCli, TheVersionIsThatOfTheProject)
{
    EXPECT_EQ(run({"--version"}), 0);
    EXPECT_EQ(output, "xms " XAS_PROJECT_VERSION "\n");
}

TEST_F(XmsCli, AWatchTakesKnownTypesAndFilters)
{
    EXPECT_EQ(run({"watch", "--type", "dsn"}), 2);
    EXPECT_THAT(errors, HasSubstr("did you mean dns"));
    EXPECT_EQ(run({"watch", "--only", "applied"}), 2);
    EXPECT_EQ(run({"watch", "--type", "dns", "--type", "XMSG_NTP", "--only", "refused", "--json"}), 3)
        << "only the server is missing";
}

TEST_F(XmsCli, ACheckNeedsNoServer)
{
    EXPECT_EQ(run({"check", dir.write("list.xml", "<SYSAPP x=\"\"/>")}), 1);
    EXPECT_THAT(output, HasSubstr("list.xml:1: warning: "));
    EXPECT_EQ(run({"check", "--json", dir.write("list.xml", "<SYSAPP")}), 1);
    EXPECT_THAT(output, StartsWith("{\"line\":1,\"worry\":\"error\",\"kind\":\"xml\""));
    EXPECT_EQ(run({"check", "--root", dir.path("none")}), 2);
    EXPECT_EQ(errors, "xms: cannot read " + dir.path("none/r58/sysapp.xml") + "\n");
    EXPECT_EQ(run({"check", "--root", XAS_APPLIANCE_ROOT}), 0);
}

TEST_F(XmsCli, AnOptionThatMayBeRepeatedTakesOneWord)
{
    EXPECT_EQ(run({"set", "--log", "/dev/null", "--log", "/dev/zero", "dns", "dns1=ns1"}), 2);
    EXPECT_THAT(errors, HasSubstr("dns1: \"ns1\" will not do"));
}
