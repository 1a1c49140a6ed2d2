#include "core/sysapp_parser.h"

#include "support/apps.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"

namespace {

class SysappParser : public XasFilesTest {
  protected:
    /** Loads a list with this text. */
    int load(const std::string &text) { return xasLoadAppList(dir.write("sysapp.xml", text).c_str(), apps); }

    /** Loads the inside of one application and gives it. */
    const XasApp &loadApp(const std::string &inside)
    {
        EXPECT_EQ(load("<S><APP>" + inside + "</APP></S>"), 0);
        EXPECT_EQ(apps.size(), 1U);
        return apps.front();
    }

    /** Loads a list while one block of at least `size` bytes, after `skip` of them, is not to be had. */
    int loadWithoutMemory(const std::string &text, std::size_t size, unsigned skip)
    {
        const std::string path = dir.write("sysapp.xml", text);
        const XasFailingNew failing{size, skip, 1};
        return xasLoadAppList(path.c_str(), apps);
    }

    XasLogCapture log;
    XasAppList apps;
};

std::vector<std::string> namesOf(const XasAppList &apps)
{
    std::vector<std::string> names;
    for (const XasApp &app : apps)
        names.push_back(app.name.value_or("(none)"));
    return names;
}

} // namespace

TEST_F(SysappParser, FailsWhenTheListCannotBeOpened)
{
    apps.emplace_back().name = "kept";
    EXPECT_EQ(xasLoadAppList(dir.path("missing").c_str(), apps), -1);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Error opening XML document (No such file or directory)\n")));
    EXPECT_THAT(namesOf(apps), ElementsAre("kept"));
}

TEST_F(SysappParser, FailsWhenTheParserCannotBeMade)
{
    const XasFault fault{"XML_ParserCreate", ENOMEM};
    EXPECT_EQ(load("<S/>"), -1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error getting XML document handle\n")));
}

TEST_F(SysappParser, FailsWhenTheListCannotBeRead)
{
    EXPECT_EQ(xasLoadAppList(dir.path().c_str(), apps), -1);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error reading XML document\n")));
}

TEST_F(SysappParser, SkipsAnApplicationForWhichThereIsNoMemory)
{
    EXPECT_EQ(
        loadWithoutMemory("<S><APP><NAME>a</NAME></APP><APP><NAME>b</NAME></APP></S>", sizeof(XasApp), 0), 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error allocating memory for app structure\n"),
                                         xasErrorLine("Error determining current application\n")));
    EXPECT_THAT(namesOf(apps), ElementsAre("b"));
}

TEST_F(SysappParser, SkipsAFileForWhichThereIsNoMemory)
{
    EXPECT_EQ(loadWithoutMemory("<S><APP><NAME>a</NAME><CFGFILE><TYPE>t</TYPE></CFGFILE></APP></S>",
                                sizeof(XasCfgFileEntry), 1),
              0);
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("Error allocating entry for cfg file list\n"),
                                         xasInfoLine("Error determining cfg file\n")));
    ASSERT_THAT(namesOf(apps), ElementsAre("a"));
    EXPECT_THAT(apps.front().cfgFiles, IsEmpty());
}

TEST_F(SysappParser, SkipsADaemonForWhichThereIsNoMemory)
{
    const std::string text = "<S><APP><EXE>/a</EXE><EXE>/b</EXE></APP></S>";
    EXPECT_EQ(loadWithoutMemory(text, sizeof(XasDaemon), 1), 0);
    EXPECT_THAT(log.take(), ElementsAre(xasErrorLine("Error allocating memory for daemon list\n")));
    ASSERT_EQ(apps.front().daemons.size(), 1U);
    EXPECT_EQ(apps.front().daemons.front().exe, "/b");

    EXPECT_EQ(loadWithoutMemory(text, sizeof(XasDaemon), 2), 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error allocating exe list member\n")));
    ASSERT_EQ(apps.front().daemons.size(), 1U);
    EXPECT_EQ(apps.front().daemons.front().exe, "/a");
}

TEST_F(SysappParser, SkipsATextForWhichThereIsNoMemory)
{
    const std::string name(300, 'n');
    EXPECT_EQ(loadWithoutMemory("<S><APP><NAME>" + name + "</NAME></APP></S>", name.size(), 0), 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error allocating memory\n")));
    EXPECT_THAT(namesOf(apps), ElementsAre("(none)"));
}

TEST_F(SysappParser, FailsForWhatIsNoDocumentNamesTheLineAndReturnsNothingOfIt)
{
    for (const auto &[text, complaint] : {std::pair{"<S>\n  <APP>\n  </S>\n", "3: mismatched tag"},
                                          {"", "1: no element found"},
                                          {"<S><APP><NAME>a</NAME></APP>\n", "2: no element found"},
                                          {"<S/>\n<S/>\n", "2: junk after document element"}}) {
        EXPECT_EQ(load(text), -1);
        EXPECT_THAT(log.take(),
                    ElementsAre(xasErrorLine("XML Parse error at line " + std::string{complaint} + "\n")));
        EXPECT_THAT(apps, IsEmpty());
    }
}

TEST_F(SysappParser, LoadsApplicationsInDocumentOrderWithAllTheirValues)
{
    EXPECT_EQ(load("<?xml version=\"1.0\"?>\n"
                   "<SYSAPP>\n"
                   "  <APP>\n"
                   "    <NAME>ntp</NAME>\n"
                   "    <EXE>/bin/ntpd -n</EXE>\n"
                   "    <EXE>/bin/second</EXE>\n"
                   "    <STARTSCRIPT>/s/start 0 0 0</STARTSCRIPT>\n"
                   "    <STOPSCRIPT>/s/stop</STOPSCRIPT>\n"
                   "    <CFGFILE>\n"
                   "      <TYPE>stepTickers</TYPE>\n"
                   "      <PATH>/etc/ntp/step-tickers</PATH>\n"
                   "    </CFGFILE>\n"
                   "    <CFGFILE>\n"
                   "      <TYPE>ntp</TYPE>\n"
                   "      <PATH>/etc/ntp.conf</PATH>\n"
                   "    </CFGFILE>\n"
                   "  </APP>\n"
                   "  <APP>\n"
                   "    <NAME>dns</NAME>\n"
                   "  </APP>\n"
                   "</SYSAPP>\n"),
              0);
    ASSERT_THAT(namesOf(apps), ElementsAre("ntp", "dns"));
    const XasApp &ntp = apps.front();
    EXPECT_EQ(ntp.startScript, "/s/start 0 0 0");
    EXPECT_EQ(ntp.stopScript, "/s/stop");
    EXPECT_EQ(ntp.running, 0);
    EXPECT_TRUE(ntp.auxList.empty());
    ASSERT_EQ(ntp.daemons.size(), 2U);
    EXPECT_EQ(ntp.daemons[0].exe, "/bin/ntpd -n");
    EXPECT_EQ(ntp.daemons[1].exe, "/bin/second");
    EXPECT_EQ(ntp.daemons[0].pid, 0);
    EXPECT_EQ(ntp.daemons[0].running, 0);
    EXPECT_EQ(ntp.daemons[0].stopping, 0);
    EXPECT_EQ(ntp.daemons[0].restarts, 0);
    ASSERT_EQ(ntp.cfgFiles.size(), 2U);
    EXPECT_EQ(ntp.cfgFiles[0].type, "stepTickers");
    EXPECT_EQ(ntp.cfgFiles[0].path, "/etc/ntp/step-tickers");
    EXPECT_STREQ(xasGetCfgFilePath("ntp", ntp.cfgFiles), "/etc/ntp.conf");
    const XasApp &dns = apps.back();
    EXPECT_EQ(dns.startScript, std::nullopt);
    EXPECT_EQ(dns.stopScript, std::nullopt);
    EXPECT_TRUE(dns.daemons.empty());
    EXPECT_TRUE(dns.cfgFiles.empty());
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(SysappParser, AcceptsAnyDocumentAndNoNameOfAnApplication)
{
    EXPECT_EQ(load("<S/>"), 0);
    EXPECT_THAT(apps, IsEmpty());
    EXPECT_EQ(load("<anything><APP><EXE>/bin/x</EXE></APP></anything>"), 0);
    EXPECT_THAT(namesOf(apps), ElementsAre("(none)"));
    EXPECT_EQ(load("<APP><NAME>only</NAME></APP>"), 0);
    EXPECT_THAT(namesOf(apps), ElementsAre("only"));
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(SysappParser, ReadsANameFromTheTextOfItsElement)
{
    const std::string longText(2048, 'x');
    const std::pair<std::string, std::string> cases[] = {
        {"<NAME name=\"b\">a</NAME>", "a"},          // attributes are never read
        {"<NAME>a</NAME><COMMENT>b</COMMENT>", "b"}, // an unknown element's text is the last known one's
        {"stray<NAME>a</NAME>", "a"},
        {"<NAME>a</NAME>stray", "stray"}, // behind its end a text is the element's once more
        {"<NAME> ntp</NAME>", " ntp"},
        {"<NAME>\n  \nntp</NAME>", "ntp"}, // the XML parser delivers a line feed as a piece of its own
        {"<NAME>a<!-- x -->b</NAME>", "ab"},
        {"<NAME>a</NAME><NAME>b</NAME>", "b"},
        {"<NAME>" + longText + "</NAME>", longText},
    };
    for (const auto &[inside, name] : cases) {
        EXPECT_EQ(loadApp(inside).name, name) << inside;
        EXPECT_THAT(log.lines(), IsEmpty());
    }
}

TEST_F(SysappParser, KnowsItsElementsByTheirExactCaseOnly)
{
    const XasApp &app = loadApp("<NAME>a</NAME><Exe>b</Exe>");
    EXPECT_EQ(app.name, "b") << "an unknown element's text belongs to the last known element";
    EXPECT_TRUE(app.daemons.empty());
}

TEST_F(SysappParser, AppendsADaemonForTextOfAnUnknownElementBehindAnExe)
{
    const XasApp &app = loadApp("<EXE>/bin/a</EXE><NOTE>/bin/b</NOTE>");
    ASSERT_EQ(app.daemons.size(), 2U);
    EXPECT_EQ(app.daemons[1].exe, "/bin/b");
}

TEST_F(SysappParser, MakesAnApplicationAnewForAnUnknownElementBehindItsBeginning)
{
    // The unknown element inherits "application", and a beginning application drops the one that is open.
    EXPECT_EQ(load("<S><APP><X/><NAME>a</NAME></APP></S>"), 0);
    EXPECT_THAT(namesOf(apps), ElementsAre("a"));
}

TEST_F(SysappParser, MakesAnEntryForAnUnknownElementBehindTheBeginningOfAConfigurationFile)
{
    const XasApp &app = loadApp("<NAME>a</NAME><CFGFILE><X/><TYPE>t</TYPE><PATH>/p</PATH></CFGFILE>");
    ASSERT_EQ(app.cfgFiles.size(), 2U);
    EXPECT_EQ(app.cfgFiles[0].type, std::nullopt);
    EXPECT_EQ(app.cfgFiles[1].type, "t");
    EXPECT_EQ(app.cfgFiles[1].path, "/p");
}

TEST_F(SysappParser, IgnoresCommentsAndBlankLines)
{
    const XasApp &app = loadApp("\n\n<!-- NAME -->\n\t<NAME>a</NAME>\n\n<!-- x --><EXE>b</EXE>\n");
    EXPECT_EQ(app.name, "a");
    ASSERT_EQ(app.daemons.size(), 1U);
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(SysappParser, KeepsTrailingWhiteSpaceOfAValue)
{
    EXPECT_EQ(loadApp("<NAME>ntp </NAME>").name, "ntp ");
    EXPECT_EQ(xasFindApp("ntp", apps), nullptr);
}

TEST_F(SysappParser, JoinsTheTextPiecesOfAnElement)
{
    EXPECT_EQ(loadApp("<STARTSCRIPT>/s/a &amp; &lt;b&gt;\nc</STARTSCRIPT>").startScript, "/s/a & <b>\nc");
}

TEST_F(SysappParser, ReplacesTheLastDaemonByTheJoinedPiecesOfItsText)
{
    const XasApp &app = loadApp("<EXE>/bin/a &amp; b</EXE><EXE>/bin/c</EXE>");
    ASSERT_EQ(app.daemons.size(), 2U);
    EXPECT_EQ(app.daemons[0].exe, "/bin/a & b");
    EXPECT_EQ(app.daemons[1].exe, "/bin/c");
}

TEST_F(SysappParser, SetsNoValueForAnElementOfWhiteSpace)
{
    const XasApp &app = loadApp("<NAME> \t\n </NAME><EXE>  </EXE>");
    EXPECT_EQ(app.name, std::nullopt);
    EXPECT_TRUE(app.daemons.empty());
}

TEST_F(SysappParser, KeepsTheTextOfAChunkBoundaryWhole)
{
    for (std::size_t before = 2000; before < 2060; ++before) {
        apps.clear();
        ASSERT_EQ(load("<S><!--" + std::string(before, 'x') + "--><APP><NAME>abcdefghij</NAME></APP></S>"),
                  0);
        ASSERT_THAT(namesOf(apps), ElementsAre("abcdefghij")) << before;
    }
}

TEST_F(SysappParser, KeepsBothEntriesOfOneTypeInOrder)
{
    const XasApp &app = loadApp("<CFGFILE><TYPE>t</TYPE><PATH>/1</PATH></CFGFILE>"
                                "<CFGFILE><TYPE>t</TYPE><PATH>/2</PATH></CFGFILE>");
    EXPECT_EQ(app.cfgFiles.size(), 2U);
    EXPECT_STREQ(xasGetCfgFilePath("t", app.cfgFiles), "/1");
}

TEST_F(SysappParser, LogsAConfigurationFileOutsideAnyApplication)
{
    EXPECT_EQ(load("<S><CFGFILE></CFGFILE></S>"), 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error determining current application\n")));
    EXPECT_THAT(apps, IsEmpty());
}

TEST_F(SysappParser, LogsATypeAndAPathOutsideAnyApplication)
{
    EXPECT_EQ(load("<S><CFGFILE><TYPE>t</TYPE><PATH>/p</PATH></CFGFILE></S>"), 0);
    const auto line = xasErrorLine("Error determining current application\n");
    EXPECT_THAT(log.lines(), ElementsAre(line, line, line));
}

TEST_F(SysappParser, LogsATypeOutsideAnyConfigurationFileAtInformationLevel)
{
    EXPECT_EQ(loadApp("<TYPE>t</TYPE>").cfgFiles.size(), 0U);
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("Error determining cfg file\n")));
}

TEST_F(SysappParser, LogsAPathBehindTheEndOfItsConfigurationFile)
{
    const XasApp &app = loadApp("<CFGFILE><TYPE>t</TYPE></CFGFILE><PATH>/p</PATH>");
    EXPECT_EQ(app.cfgFiles.front().path, std::nullopt);
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine("Error determining cfg file\n")));
}

TEST_F(SysappParser, LogsTextBeforeTheFirstApplication)
{
    EXPECT_EQ(load("<S>stray<APP><NAME>a</NAME></APP></S>"), 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error determining current application\n")));
    EXPECT_THAT(namesOf(apps), ElementsAre("a"));
}

TEST_F(SysappParser, AppendsTheInnerOfTwoNestedApplicationsAtItsEnd)
{
    EXPECT_EQ(
        load("<S><APP><NAME>outer</NAME><APP><NAME>inner</NAME></APP></APP><APP><NAME>z</NAME></APP></S>"),
        0);
    EXPECT_THAT(namesOf(apps), ElementsAre("inner", "z"));
}

TEST_F(SysappParser, LogsWhatStandsBetweenTheEndsOfNestedApplications)
{
    EXPECT_EQ(load("<S><APP><APP><NAME>inner</NAME></APP><EXE>/bin/x</EXE></APP></S>"), 0);
    EXPECT_THAT(namesOf(apps), ElementsAre("inner"));
    EXPECT_TRUE(apps.front().daemons.empty());
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error determining current application\n")));
}

TEST_F(SysappParser, ReplacesTheListThatWasThere)
{
    apps.emplace_back().name = "before";
    EXPECT_EQ(load("<S><APP><NAME>a</NAME></APP></S>"), 0);
    EXPECT_THAT(namesOf(apps), ElementsAre("a"));
}

TEST_F(SysappParser, ReadsBackTheListThatTestsWrite)
{
    EXPECT_EQ(load(xasSysappText({{.name = "a<&b", .exes = {"/bin/x"}, .cfgFiles = {{"t", "/p"}}}})), 0);
    EXPECT_THAT(namesOf(apps), ElementsAre("a<&b"));
}
