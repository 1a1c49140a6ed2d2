// Files expanded from templates: reading, writing, failures.
#include "files/template.h"

#include "support/files.h"
#include "support/log.h"
#include "support/reply.h"

#include <array>
#include <csignal>
#include <sys/resource.h>
namespace {

/** What is written: the tail, if any. */
struct Values {
    std::function<std::string()> tail;
};

constexpr XasTemplateEditor<Values> EDITOR{
    .argument = "values",
    .texts = {.templateReason = "no template",
              .file = {.openReason = "no file", .saveReason = "not written"}},
    .expand = [](std::string text, const Values & /*values*/) { return "<" + std::move(text) + ">"; },
    .tail =
        [](const Values &values) {
            return values.tail ? values.tail() : std::string{};
        }};

class Template : public XasFilesTest {
  protected:
    int generate(const std::string &templateFile, const std::string &file,
                 const std::function<std::string()> &makeTail = nullptr)
    {
        const Values values{makeTail};
        return EDITOR(templateFile.c_str(), file.c_str(), &values, &reply);
    }

    void TearDown() override { EXPECT_THAT(log.lines(), IsEmpty()) << "the callers log"; }

    XasLogCapture log;
    XasReplyStatus reply;
};

} // namespace

TEST_F(Template, MustExist)
{
    EXPECT_EQ(generate(dir.path("template"), dir.write("file", "old")), 1);
    EXPECT_EQ(xasReplyText(reply), "2 no template");
    EXPECT_EQ(dir.read("file"), "old");
}

TEST_F(Template, WithNothingInItFailsWithoutReason)
{
    EXPECT_EQ(generate(dir.write("template", ""), dir.write("file", "old")), 1);
    EXPECT_EQ(generate(dir.path(), dir.path("file")), 1) << "a directory reads as nothing";
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_EQ(dir.read("file"), "old");
}

TEST_F(Template, FailsWhenItsFileCannotBeOpened)
{
    ASSERT_EQ(::mkfifo(dir.path("pipe").c_str(), 0600), 0);
    EXPECT_EQ(generate(dir.write("template", "t"), dir.path("pipe")), 1) << "a pipe is no place for a file";
    EXPECT_EQ(xasReplyText(reply), "2 no file");
    reply = {};
    EXPECT_EQ(generate(dir.write("template", "t"), dir.path("missing/file")), 1);
    EXPECT_EQ(xasReplyText(reply), "2 no file");
}

TEST_F(Template, FailsWhenItsFileCannotBeWrittenAndMakesNoTail)
{
    const std::string templateFile = dir.write("template", "t");
    const std::string file = dir.write("file", "old");
    ::rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const ::rlimit noByte{.rlim_cur = 0, .rlim_max = before.rlim_max};
    ::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &noByte), 0);
    const int result = generate(templateFile, file, [] {
        ADD_FAILURE() << "nothing goes behind a text that is not there";
        return std::string{};
    });
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(result, 1);
    EXPECT_EQ(xasReplyText(reply), "3 not written");
    EXPECT_EQ(dir.read("file"), "old");
}

TEST_F(Template, IsExpandedIntoTheFileAndLeavesNoOther)
{
    EXPECT_EQ(generate(dir.write("template", "t\n"), dir.write("file", std::string(9999, 'x'))), 0);
    EXPECT_EQ(dir.read("file"), "<t\n>");
    EXPECT_THAT(dir.names(), ElementsAre("file", "template"));
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
}

TEST_F(Template, HasItsTailMadeWhenItIsWrittenAndBehindIt)
{
    const std::string file = dir.path("file");
    EXPECT_EQ(generate(dir.write("template", "t"), file, [&] { return dir.read("file.tmp") + "!"; }), 0);
    EXPECT_EQ(dir.read("file"), "<t><t>!");
}

TEST_F(Template, IsUsedUpToItsByte5000)
{
    const std::string fits = std::string(4999, 'a') + "b";
    EXPECT_EQ(generate(dir.write("template", fits), dir.path("file")), 0);
    EXPECT_EQ(dir.read("file"), "<" + fits + ">");
    EXPECT_EQ(generate(dir.write("template", fits + "c"), dir.path("file")), 0);
    EXPECT_EQ(dir.read("file"), "<" + fits + ">");
}

TEST_F(Template, EndsAtANulAsTextsDo)
{
    EXPECT_EQ(generate(dir.write("template", std::string_view{"ab\0cd", 5}), dir.path("file")), 0);
    EXPECT_EQ(dir.read("file"), "<ab>");
    EXPECT_EQ(generate(dir.write("template", std::string_view{"\0cd", 3}), dir.path("file")), 0);
    EXPECT_EQ(dir.read("file"), "<>") << "something was read";
}

TEST_F(Template, HasItsPlaceholdersReplacedOneAfterTheOther)
{
    const std::array replacements = {XasReplacement{"$(A)", "$(B)"}, XasReplacement{"$(B)", "b"},
                                     XasReplacement{"$(C)", ""}};
    EXPECT_EQ(xasExpandPlaceholders("$(A) $(B) [$(C)] $(a) $(A", replacements), "b b [] $(a) $(A");
}
