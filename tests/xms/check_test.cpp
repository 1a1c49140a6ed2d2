#include "xms/check.h"

#include "core/sysapp_parser.h"
#include "dispatch/settings.h"
#include "support/files.h"
#include "support/mutated.h"
#include "xms/error.h"

namespace {

/** An application without files, which nothing is wrong with; each stands in a line of its own. */
constexpr const char *USER =
    "<APP><NAME>user</NAME><STARTSCRIPT>/r58/bin/service start user</STARTSCRIPT></APP>\n";
constexpr const char *ROUTER = "<APP><NAME>router</NAME>"
                               "<CFGFILE><TYPE>zebra</TYPE><PATH>/etc/zebra.conf</PATH></CFGFILE>"
                               "<CFGFILE><TYPE>ripd</TYPE><PATH>/etc/ripd.conf</PATH></CFGFILE></APP>\n";

std::string file(std::string_view type, std::string_view path)
{
    return "<CFGFILE><TYPE>" + std::string{type} + "</TYPE><PATH>" + std::string{path} + "</PATH></CFGFILE>";
}

std::string start(std::string_view name, std::string_view commandLine)
{
    return "<APP><NAME>" + std::string{name} + "</NAME><STARTSCRIPT>" + std::string{commandLine} +
           "</STARTSCRIPT></APP>\n";
}

class XmsCheck : public XasFilesTest {
  protected:
    /** What is found in a list whose applications begin in line 2, but for the applications it has not. */
    std::vector<std::string> found(const std::string &apps, const std::string &root = {})
    {
        std::vector<std::string> texts;
        const std::string path = dir.write("sysapp.xml", "<SYSAPP>\n" + apps + "</SYSAPP>\n");
        for (const XmsFinding &finding : xmsCheckList(path, root)) {
            if (finding.kind != "application" || finding.worry != XmsWorry::hint)
                texts.push_back(xmsFindingText(finding, XmsPaint::plain));
        }
        return texts;
    }

    /** What is found of the application ntp with these files below a root of the test. */
    std::vector<std::string> foundBelow()
    {
        return found("<APP><NAME>ntp</NAME>\n<EXE>/sbin/ntpd -n</EXE>\n" + file("stepTickers", "/etc/ticks") +
                         "\n" + file("ntp", "/etc/ntp.conf") + "</APP>\n",
                     dir.path("root"));
    }

    void makeNtp() const
    {
        dir.write("root/sbin/ntpd", "", 0755);
        dir.write("root/etc/ticks", "");
        dir.write("root/etc/ntp.conf", "");
    }

    /** Runs the command and keeps what it prints. */
    XmsExit run(const XmsOptions &options, const std::string &path, const std::string &root)
    {
        testing::internal::CaptureStdout();
        const XmsExit status = xmsCheckCommand(options, path, root);
        std::fflush(stdout);
        output = testing::internal::GetCapturedStdout();
        return status;
    }

    std::string output;
};

bool isClean(const XmsFindings &findings)
{
    return std::ranges::all_of(findings,
                               [](const XmsFinding &finding) { return finding.worry == XmsWorry::hint; });
}

/** The first setting that would fail for what the list lacks; empty when there is none. */
std::string firstLack(XasAppList &apps)
{
    for (const XasSetting &setting : xasSettings()) {
        const XasApp *app = xasFindApp(setting.application, apps);
        if (app == nullptr || setting.update.files == nullptr)
            continue;
        for (const XasFileRow &row : setting.update.files->files) {
            if (row.missingLog != nullptr && xasGetCfgFilePath(row.type, app->cfgFiles) == nullptr)
                return std::string{setting.application} + " lacks " + std::string{row.type};
        }
    }
    return {};
}

} // namespace

TEST_F(XmsCheck, AgreesWithTheDaemonAboutListsThatWereTamperedWith)
{
    const std::string shipped = xasReadFile(XAS_APPLIANCE_ROOT "/r58/sysapp.xml");
    std::mt19937 random{1};
    int loaded = 0;
    int clean = 0;
    for (int i = 0; i < 1000; ++i) {
        const std::string text = xasMutatedList(shipped, random);
        const std::string path = dir.write("mutated.xml", text);
        const XmsFindings findings = xmsCheckList(path, "");
        XasAppList apps;
        const bool isLoaded = xasLoadAppList(path.c_str(), apps) == 0;
        const bool isXml = findings.empty() || findings.front().kind != "xml";
        ASSERT_EQ(isXml, isLoaded) << i;
        loaded += isLoaded ? 1 : 0;
        if (!isLoaded || !isClean(findings))
            continue;
        ++clean;
        ASSERT_EQ(firstLack(apps), "") << i;
    }
    EXPECT_GT(loaded, 100);
    EXPECT_GT(clean, 20);
    EXPECT_GT(loaded, clean);
}

TEST_F(XmsCheck, NothingIsFoundInTheShippedList)
{
    const std::string list = XAS_APPLIANCE_ROOT "/r58/sysapp.xml";
    std::vector<std::string> texts;
    for (const XmsFinding &finding : xmsCheckList(list, ""))
        texts.push_back(xmsFindingText(finding, XmsPaint::plain));
    EXPECT_THAT(texts, IsEmpty());
    for (const XmsFinding &finding : xmsCheckList(list, XAS_APPLIANCE_ROOT))
        EXPECT_EQ(finding.worry, XmsWorry::hint) << finding.text;
}

TEST_F(XmsCheck, AnApplicationThatNothingIsWrongWithIsNotNamed)
{
    EXPECT_THAT(found(USER), IsEmpty());
}

TEST_F(XmsCheck, WhatIsNoXmlIsToldWithItsLine)
{
    EXPECT_THAT(found("<APP>\n</APPS>\n"),
                ElementsAre("3: error: the daemon ends at once: mismatched tag [xml]"));
    XasAppList apps;
    EXPECT_EQ(xasLoadAppList(dir.path("sysapp.xml").c_str(), apps), -1);
}

TEST_F(XmsCheck, AListThatCannotBeReadIsNoList)
{
    EXPECT_THROW(xmsCheckList(dir.path("none"), ""), XmsError);
}

TEST_F(XmsCheck, AnUnknownElementAndItsTextAreFound)
{
    EXPECT_THAT(
        found("<APP><NAME>user</NAME>\n<OWNER/>\n<NOTE>\nxpb</NOTE></APP>\n"),
        ElementsAre("3: warning: the daemon knows no element OWNER, and ignores it [element]",
                    "4: warning: the daemon knows no element NOTE, and ignores it [element]",
                    "4: error: text in NOTE that replaces the one of the known element before it [text]"));
    XasAppList apps;
    ASSERT_EQ(xasLoadAppList(dir.path("sysapp.xml").c_str(), apps), 0);
    EXPECT_EQ(apps.front().name, "xpb") << "it does replace it";
}

TEST_F(XmsCheck, AnElementInAWrongPlaceIsFound)
{
    EXPECT_THAT(
        found(std::string{USER} + "<NAME>dns</NAME>\n<APP><NAME>user2</NAME><PATH>/etc/x</PATH></APP>\n"),
        ElementsAre("3: error: NAME outside of every APP, it belongs into APP [place]",
                    "4: error: PATH inside APP, it belongs into CFGFILE [place]",
                    "4: warning: no message concerns an application user2 (did you mean user?) [name]"));
    EXPECT_THAT(found("<APP><NAME>user</NAME>\n<APP><NAME>nat</NAME></APP></APP>\n"),
                ElementsAre("3: error: APP inside APP, applications cannot hold each other [place]"));
}

TEST_F(XmsCheck, AttributesAreFound)
{
    EXPECT_THAT(found("<APP since=\"1\"><NAME>user</NAME></APP>\n"),
                ElementsAre("2: warning: attributes are never read, those of APP neither [attribute]"));
}

TEST_F(XmsCheck, EmptyTextsAndWhiteSpaceAroundTextsAreFound)
{
    EXPECT_THAT(
        found(
            "<APP><NAME>user</NAME>\n<STARTSCRIPT> </STARTSCRIPT>\n<STOPSCRIPT>/bin/x </STOPSCRIPT></APP>\n"),
        ElementsAre("3: warning: STARTSCRIPT without a text counts as absent [empty]",
                    "4: warning: white space in front of or behind the text of STOPSCRIPT becomes a part of "
                    "it [space]"));
}

TEST_F(XmsCheck, ATextThatIsGivenTwiceIsFound)
{
    EXPECT_THAT(found("<APP><NAME>nat</NAME>\n<NAME>user</NAME></APP>\n"),
                ElementsAre("2: warning: NAME is given again in line 3, the last one counts [repeated]"));
}

TEST_F(XmsCheck, NamesThatNoMessageUsesAreFound)
{
    EXPECT_THAT(
        found(start("hostnames", "/bin/x")),
        ElementsAre("2: warning: no message concerns an application hostnames (did you mean hostname?) "
                    "[name]"));
    EXPECT_THAT(found("<APP><EXE>/bin/x</EXE></APP>\n"),
                ElementsAre("2: error: an application without a NAME is never found [name]"));
    EXPECT_THAT(found(std::string{USER} + USER),
                ElementsAre("3: warning: there is an application user before this "
                            "one, which is never found [name]"));
    EXPECT_THAT(found(start("xpb", "/bin/x")), IsEmpty()) << "a message names it by number";
}

TEST_F(XmsCheck, ApplicationsThatAreMissingAreHints)
{
    const auto findings = xmsCheckList(dir.write("empty.xml", "<SYSAPP/>"), "");
    std::vector<std::string> texts;
    for (const XmsFinding &finding : findings)
        texts.push_back(xmsFindingText(finding, XmsPaint::plain));
    EXPECT_THAT(
        texts, AllOf(Contains("1: hint: there is no application dns: its settings are refused [application]"),
                     Contains("1: hint: there is no application portmap: its settings are refused "
                              "[application]")));
}

TEST_F(XmsCheck, ATypeThatASettingNeedsIsFoundMissing)
{
    EXPECT_THAT(
        found("<APP><NAME>dns</NAME>" + file("resolv", "/etc/resolv") + "</APP>\n"),
        ElementsAre("2: error: dns has no file of TYPE dnsprec for the setting dns, which fails without it "
                    "[type]"));
}

TEST_F(XmsCheck, ATypeThatASettingCanDoWithoutIsAHint)
{
    std::string eth = "<APP><NAME>eth</NAME>";
    for (const char *type : {"gatewayprec", "kernel", "modprobe", "bond0", "eth0", "eth1", "network"})
        eth += file(type, std::string{"/etc/"} + type);
    EXPECT_THAT(
        found(eth + "</APP>\n" + ROUTER),
        ElementsAre("2: hint: eth has no file of TYPE altgateway for the setting eth, which can do without "
                    "it [type]"));
}

TEST_F(XmsCheck, FilesThatAreNeverUsedAreFound)
{
    const std::string begin = "<APP><NAME>snmp</NAME>" + file("snmp", "/etc/snmp") + "\n";
    EXPECT_THAT(found(begin + "<CFGFILE><TYPE>x</TYPE></CFGFILE></APP>\n"),
                ElementsAre("3: error: a CFGFILE without a PATH is never used [cfgfile]"));
    EXPECT_THAT(found(begin + "<CFGFILE><PATH>/x</PATH></CFGFILE></APP>\n"),
                ElementsAre("3: error: a CFGFILE without a TYPE is never used [cfgfile]"));
    EXPECT_THAT(found(begin + file("snmp", "/etc/other") + "</APP>\n"),
                ElementsAre("3: warning: snmp has a file of TYPE snmp before this one, which is never used "
                            "[cfgfile]"));
    EXPECT_THAT(found(begin + file("traps", "/etc/traps") + "</APP>\n"),
                ElementsAre("3: hint: no setting of snmp changes a file of TYPE traps [unused]"));
}

TEST_F(XmsCheck, OnePathUnderTwoTypesIsFound)
{
    EXPECT_THAT(found("<APP><NAME>dns</NAME>" + file("resolv", "/etc/ns") + "\n" +
                      file("dnsprec", "/etc/ns") + "</APP>\n"),
                ElementsAre("3: warning: /etc/ns is of TYPE dnsprec here and of TYPE resolv before [path]"));
}

TEST_F(XmsCheck, ARelativePathIsFound)
{
    EXPECT_THAT(found("<APP><NAME>snmp</NAME>\n" + file("snmp", "etc/snmp") + "</APP>\n"),
                ElementsAre("3: error: etc/snmp is no absolute path [path]"));
    EXPECT_THAT(
        found(start("user", "service start")),
        ElementsAre("2: error: the STARTSCRIPT of user does not begin with an absolute path [command]"));
}

TEST_F(XmsCheck, CommandLinesOverTheLimitsAreFound)
{
    EXPECT_THAT(found(start("user", "/" + std::string(254, 'x'))), IsEmpty()) << "255 characters";
    EXPECT_THAT(found(start("user", "/" + std::string(255, 'x'))),
                ElementsAre("2: error: the STARTSCRIPT of user has more than 255 characters and is never run "
                            "[command]"));
    EXPECT_THAT(found(start("user", "/bin/ntpd" + std::string(244, 'x'))),
                ElementsAre("2: error: the STARTSCRIPT of user has more than 252 characters and is never run "
                            "[command]"))
        << "-g may be appended";
    std::string words = "/x";
    for (int i = 0; i < 19; ++i)
        words += " a";
    EXPECT_THAT(found(start("user", words)), IsEmpty()) << "20 words";
    EXPECT_THAT(
        found(start("user", words + " a")),
        ElementsAre("2: warning: the STARTSCRIPT of user has more than 20 words, the last ones are dropped "
                    "[command]"));
}

TEST_F(XmsCheck, WhatOnlyAShellWouldUnderstandIsFound)
{
    EXPECT_THAT(
        found(start("user", "/bin/x &amp;")),
        ElementsAre("2: warning: the STARTSCRIPT of user has characters for a shell, but none reads it "
                    "[shell]"));
    EXPECT_THAT(
        found(start("user", "/bin/x\ty")),
        ElementsAre("2: warning: the STARTSCRIPT of user has a tab or a line end, which is part of a word "
                    "[command]"));
}

TEST_F(XmsCheck, AScriptThatWouldNeverEndIsFound)
{
    EXPECT_THAT(
        found("<APP><NAME>user</NAME><EXE>/bin/d -n</EXE>\n<STARTSCRIPT>/bin/d start</STARTSCRIPT></APP>\n"),
        ElementsAre("3: warning: the STARTSCRIPT of user runs a daemon and is waited for: no setting is "
                    "taken until it ends [hang]"));
}

TEST_F(XmsCheck, ParametersThatAreOverwrittenMustBeThere)
{
    EXPECT_THAT(
        found(ROUTER + start("nat", "/bin/nat add 0 0.0.0.0") + start("netlink", "/bin/l linkup 0 0")),
        Each(HasSubstr("[type]")))
        << "netlink needs its files, no more";
    EXPECT_THAT(
        found(ROUTER + start("nat", "/bin/nat add")),
        ElementsAre("3: error: the STARTSCRIPT of nat must have three parameters, which are overwritten, as "
                    "in \"/bin/nat add 0 0.0.0.0\" [parameters]"));
    EXPECT_THAT(
        found(start("netlink", "/bin/l")),
        Contains("2: error: the STARTSCRIPT of netlink must have three parameters, which are overwritten, as "
                 "in \"/bin/l linkup 0 0\" [parameters]"));
}

TEST_F(XmsCheck, TheScriptsOfEthMustEndInThreeDigits)
{
    const auto eth = [&](const std::string &scripts) {
        auto texts = found("<APP><NAME>eth</NAME>" + scripts + "</APP>\n" + ROUTER);
        std::erase_if(texts, [](const std::string &text) { return text.ends_with("[type]"); });
        return texts;
    };
    const std::string stop = "<STOPSCRIPT>/bin/eth stop 0 0 0</STOPSCRIPT>";
    EXPECT_THAT(eth("<STARTSCRIPT>/bin/eth start 0 0 0</STARTSCRIPT>" + stop), IsEmpty());
    EXPECT_THAT(
        eth("<STARTSCRIPT>/bin/eth start 0 0</STARTSCRIPT>" + stop),
        ElementsAre("2: error: the STARTSCRIPT of eth must end in three digits for the port codes, as in "
                    "\"/bin/eth start 0 0 0\" [parameters]"));
    EXPECT_THAT(eth(stop),
                ElementsAre("2: warning: eth has no STARTSCRIPT, so the port codes of the other script "
                            "are never set [parameters]"));
}

TEST_F(XmsCheck, NatNeedsTheRoutingApplication)
{
    EXPECT_THAT(
        found(start("nat", "/bin/nat add 0 0.0.0.0")),
        ElementsAre("2: error: the settings of nat fail without an application router [application]"));
}

TEST_F(XmsCheck, ProgramsBelowTheRootMustBeThereAndExecutable)
{
    makeNtp();
    EXPECT_THAT(foundBelow(), IsEmpty());
    dir.write("root/sbin/ntpd", "", 0644);
    EXPECT_THAT(foundBelow(), ElementsAre("3: error: /sbin/ntpd is no program that can be run [program]"));
    std::filesystem::remove(dir.path("root/sbin/ntpd"));
    EXPECT_THAT(foundBelow(), ElementsAre("3: error: /sbin/ntpd is not there [program]"));
    std::filesystem::remove(dir.path("root/sbin"));
    EXPECT_THAT(foundBelow(), ElementsAre("3: hint: /sbin/ntpd is not there, nor is its directory, in " +
                                          dir.path("root") + " [program]"))
        << "a part of an appliance need not have it";
}

TEST_F(XmsCheck, LinksLeadWhereTheyLeadOnTheAppliance)
{
    makeNtp();
    std::filesystem::remove(dir.path("root/sbin/ntpd"));
    dir.write("root/opt/real", "", 0755);
    std::filesystem::create_symlink("/opt/real", dir.path("root/sbin/ntpd"));
    EXPECT_THAT(foundBelow(), IsEmpty());
    std::filesystem::remove(dir.path("root/sbin/ntpd"));
    std::filesystem::create_symlink("ntpd", dir.path("root/sbin/ntpd"));
    EXPECT_THAT(foundBelow(), ElementsAre("3: error: /sbin/ntpd is not there [program]")) << "in a circle";
}

TEST_F(XmsCheck, FilesThatAreEditedMustBeThere)
{
    makeNtp();
    std::filesystem::remove(dir.path("root/etc/ntp.conf"));
    EXPECT_THAT(foundBelow(), ElementsAre("5: error: /etc/ntp.conf is not there [file]"));
    std::filesystem::create_directory(dir.path("root/etc/ntp.conf"));
    EXPECT_THAT(foundBelow(), ElementsAre("5: error: /etc/ntp.conf is no file [file]"));
}

TEST_F(XmsCheck, FilesThatAreWrittenAnewNeedNotBeThere)
{
    dir.write("root/etc/ns", "");
    const std::string dns =
        "<APP><NAME>dns</NAME>" + file("resolv", "/etc/ns") + file("dnsprec", "/etc/prec") + "</APP>\n";
    EXPECT_THAT(found(dns, dir.path("root")), IsEmpty());
    const std::string zone = "<APP><NAME>timezone</NAME>" + file("tzpathbase", "/etc/ns") +
                             file("cfglink", "/etc/localtime") + "</APP>\n";
    EXPECT_THAT(found(zone, dir.path("root")), ElementsAre("2: error: /etc/ns is no directory [file]"));
}

TEST_F(XmsCheck, TheStatusTellsWhetherThereIsMoreThanHints)
{
    const std::string hints = dir.write("hints.xml", "<SYSAPP/>");
    EXPECT_EQ(run({}, hints, ""), XmsExit::applied);
    EXPECT_THAT(output, HasSubstr(hints + ": 0 errors, 0 warnings, "));
    const std::string worse = dir.write("worse.xml", "<SYSAPP x=\"\"/>");
    EXPECT_EQ(run({}, worse, ""), XmsExit::refused);
    EXPECT_THAT(output,
                StartsWith(worse + ":1: warning: attributes are never read, those of SYSAPP neither "));
    EXPECT_THAT(output, HasSubstr(worse + ": 0 errors, 1 warning, "));
}

TEST_F(XmsCheck, JsonIsOneObjectALineWithoutASummary)
{
    dir.write("root/r58/sysapp.xml", "<SYSAPP>\n<APP/>");
    EXPECT_EQ(run({.socket = {}, .json = true}, "", dir.path("root")), XmsExit::refused);
    EXPECT_EQ(output,
              "{\"line\":2,\"worry\":\"error\",\"kind\":\"xml\",\"text\":\"the daemon ends at once: no "
              "element found\"}\n");
}
