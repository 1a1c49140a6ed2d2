/**
 * What is the same for all settings, tested for each of them and each of their files against the table. The
 * program that includes this says for which of the settings (xasIsTestedHere).
 */
#ifndef XAS_TEST_SUPPORT_SETTINGS_TESTS_H
#define XAS_TEST_SUPPORT_SETTINGS_TESTS_H

#include "dispatch/settings.h"
#include "files/sync.h"
#include "msg/fields.h"
#include "support/apps.h"
#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"
#include "support/message.h"
#include "support/settings_files.h"
#include "support/settings_outcome.h"

#include <map>
#include <memory>

/** A setting and, of most tests, one of its files. */
struct XasSettingParam {
    const XasExpectedSetting *setting;
    const XasExpectedFile *file = nullptr;
};

inline void PrintTo(const XasSettingParam &param, std::ostream *out)
{
    *out << param.setting->name << (param.file != nullptr ? " " + param.file->type : "");
}

inline std::string xasSettingTestName(const testing::TestParamInfo<XasSettingParam> &info)
{
    std::string name = testing::PrintToString(info.param);
    std::ranges::replace_if(
        name, [](char c) { return c == ' ' || c == '-'; }, '_');
    return name;
}

/** The program that includes this says which of the settings it tests. */
bool xasIsTestedHere(const XasExpectedSetting &setting);

inline std::vector<XasSettingParam> xasSettingParams(bool mustHaveFiles = true)
{
    std::vector<XasSettingParam> params;
    for (const XasExpectedSetting &setting : xasExpectedSettings()) {
        if (xasIsTestedHere(setting) && !(mustHaveFiles && setting.files.empty()))
            params.push_back({.setting = &setting});
    }
    return params;
}

/** The files of these settings that `isWanted`. */
template <class Wanted>
std::vector<XasSettingParam> xasFileParams(const std::vector<XasSettingParam> &settings, Wanted isWanted)
{
    std::vector<XasSettingParam> params;
    for (const XasSettingParam &param : settings) {
        for (const XasExpectedFile &file : param.setting->files) {
            if (isWanted(file))
                params.push_back({.setting = param.setting, .file = &file});
        }
    }
    return params;
}

inline bool xasHasBackup(const XasExpectedFile &file)
{
    return file.way == XasFileWay::edited || file.way == XasFileWay::regenerated;
}

/** A setting's files as they are before its message, and the message. */
class XasSettingTest : public XasFilesTest, public testing::WithParamInterface<XasSettingParam> {
  protected:
    static constexpr mode_t OLD_MODE = XAS_SETTING_FILE_MODE;
    static constexpr mode_t SECRET_MODE = XAS_SETTING_SECRET_MODE;

    XasSettingTest() { prepare(); }

    void prepare() { xasPutSettingFiles(setting, dir); }

    void putDirectory(const std::string &name)
    {
        std::filesystem::remove(dir.path(name));
        dir.write(name + "/inside", "");
    }

    /** Takes a file away that has a backup of an earlier message. */
    void remove(const XasExpectedFile &each)
    {
        std::filesystem::remove(dir.path(XasSituation::name(each)));
        if (xasHasBackup(each))
            dir.write(XasSituation::name(each) + ".old", "earlier\n", OLD_MODE);
    }

    /** Nothing is done to a file before it is open: it may as well be one that others can read. */
    void openToOthers()
    {
        if (GetParam().file->secret)
            std::filesystem::permissions(dir.path(name()), std::filesystem::perms{OLD_MODE});
    }

    [[nodiscard]] std::string name() const { return XasSituation::name(*GetParam().file); }

    [[nodiscard]] XasFileListing listing() const
    {
        XasFileListing files;
        for (const std::string &name : dir.names()) {
            const std::filesystem::path path = dir.path(name);
            std::string &text = files[name];
            if (std::filesystem::is_symlink(path)) {
                text = "-> " + std::filesystem::read_symlink(path).string();
            } else if (std::filesystem::is_directory(path)) {
                text = "directory";
            } else {
                std::ostringstream mode;
                mode << '0' << std::oct << xasModeOf(path) << ' ';
                text = mode.str() + xasReadFile(path);
            }
        }
        return files;
    }

    XasOutcome send(const XasSituation &situation) { return send(situation, setting.message); }

    /** Sends the message; the application's list has every TYPE but those that fail by this. */
    XasOutcome send(const XasSituation &situation, XasMessage msg)
    {
        std::vector<std::pair<std::string, std::string>> list;
        for (const XasExpectedFile &each : setting.files) {
            if (!situation.fails(each, XasFailure::notInList))
                list.emplace_back(each.type, situation.path(each));
        }
        const XasCfgFileList cfgFiles = xasTestCfgFiles(list);
        XasReplyStatus reply;
        log.take();
        const int result = xasCallHandler(setting.msgtype, &msg, &cfgFiles, &reply);
        return {result == 0, reply.rcode, reply.rstr, log.take(), listing()};
    }

    /** Sends the message to files of which one fails, or all; the test has seen to that. */
    void expectOutcome(XasFailure failure, bool canRestore = true, const std::string &fullDisk = {})
    {
        const XasSituation situation{.setting = setting,
                                     .failing = GetParam().file,
                                     .failure = failure,
                                     .canRestore = canRestore,
                                     .directory = dir.path(),
                                     .fullDisk = fullDisk,
                                     .files = listing()};
        const XasOutcome expected = xasExpectedOutcome(situation);
        XasOutcome found = send(situation);
        EXPECT_EQ(found.success, expected.success);
        EXPECT_EQ(found.rcode, expected.rcode);
        EXPECT_EQ(found.rstr, expected.rstr);
        EXPECT_THAT(found.log, ElementsAreArray(expected.log));
        if (failure == XasFailure::isDirectory) { // what would have become of an empty file stays
            EXPECT_TRUE(found.files.erase(name() + ".tmp"));
        }
        EXPECT_EQ(found.files, expected.files);
    }

    const XasExpectedSetting &setting = *GetParam().setting;
    XasLogCapture log;
};

class ASetting : public XasSettingTest {};
class ASettingDeathTest : public XasSettingTest {};
class AFileOfTheList : public XasSettingTest {};
class AFile : public XasSettingTest {};
class AReplacedFile : public XasSettingTest {};
class AnEditedFile : public XasSettingTest {};
class AGeneratedFile : public XasSettingTest {};
class ATemplate : public XasSettingTest {};
class ASecretFile : public XasSettingTest {};
class ABackedUpSecret : public XasSettingTest {};
class ARollBack : public XasSettingTest {};

TEST_P(ASettingDeathTest, NeedsAMessageOfItsTypeAndAList)
{
    const XasCfgFileList list;
    XasReplyStatus reply;
    XasMessage msg = setting.message;
    const auto assertion = [](const std::string &text) {
        return HasSubstr("Assertion `" + text + "' failed.");
    };
    EXPECT_DEATH(xasCallHandler(setting.msgtype, nullptr, &list, &reply), assertion("msg != ((void *)0)"));
    EXPECT_DEATH(xasCallHandler(setting.msgtype, &msg, nullptr, &reply),
                 assertion("cfgFiles != ((void *)0)"));
    msg.xH.msgtype = XMSG_SSH;
    EXPECT_DEATH(xasCallHandler(setting.msgtype, &msg, &list, &reply),
                 assertion("XMSG_" + setting.name.substr(0, setting.name.find('_')) + " == msg->xH.msgtype"));
}

TEST_P(ASetting, ChangesEveryFileAndKeepsModesAndBackups)
{
    expectOutcome(XasFailure::none);
}

/** The fields of the setting's message that hold text. */
inline std::vector<XasMsgFieldAt> xasTextsOf(std::uint32_t msgtype)
{
    std::vector<XasMsgFieldAt> texts = xasListFields(*msgFieldsOf(msgtype));
    std::erase_if(texts, [](const XasMsgFieldAt &where) { return !xasHoldsText(*where.field); });
    return texts;
}

/** A message whose text is "x", the byte, "y"; a host record holds it as a name. */
inline XasMessage xasWithByte(XasMessage msg, const XasMsgFieldAt &where, char byte)
{
    std::string text{'x', byte, 'y', '\0'};
    if (where.field->kind == XasFieldKind::hostAddr)
        text.insert(0, std::string("\1\0\0\0\0\0\0\0", 8));
    std::memcpy(xasBytesOf(msg).data() + where.place.offset, text.data(), text.size());
    return msg;
}

/** How many lines each file has. */
inline std::map<std::string, std::ptrdiff_t> xasLineCounts(const XasFileListing &files)
{
    std::map<std::string, std::ptrdiff_t> counts;
    for (const auto &[name, text] : files)
        counts[name] = std::ranges::count(text, '\n');
    return counts;
}

TEST_P(ASetting, HasTheLinesOfAHarmlessTextWhateverByteATextHolds)
{
    const XasSituation situation{
        .setting = setting, .failing = nullptr, .directory = dir.path(), .fullDisk = {}, .files = {}};
    const auto linesOf = [&](const XasMessage &msg) {
        prepare();
        return xasLineCounts(send(situation, msg).files);
    };
    for (const XasMsgFieldAt &where : xasTextsOf(setting.message.xH.msgtype)) {
        const auto harmless = linesOf(xasWithByte(setting.message, where, 'z'));
        for (int byte = 1; byte <= 255; ++byte) {
            const XasMessage msg = xasWithByte(setting.message, where, static_cast<char>(byte));
            if (xasFindUnfitText(xasFindSetting(msg.xH.msgtype)->texts, msg).empty()) {
                ASSERT_EQ(linesOf(msg), harmless) << where.name << " with byte " << byte;
            }
        }
    }
}

TEST_P(ASetting, IsToldAndRolledBackWhicheverAllocationFails)
{
    const XasCfgFileList cfgFiles = xasTestCfgFiles(xasSettingFileList(setting, dir));
    const auto texts = [this] {
        XasFileListing files = listing();
        std::erase_if(files, [](const auto &file) {
            return file.first.ends_with(".old") || file.first.ends_with(".tmp");
        });
        return files;
    };
    const auto rolledBack =
        [this](XasFileListing files) { // but for what stands behind a file that stops nothing
            for (auto file = std::ranges::find(setting.files, true, &XasExpectedFile::goesOn);
                 file != setting.files.end(); ++file)
                files.erase(XasSituation::name(*file));
            return files;
        };
    const XasFileListing before = texts();
    EXPECT_TRUE(
        send({.setting = setting, .failing = nullptr, .directory = dir.path(), .fullDisk = {}, .files = {}})
            .success);
    const XasFileListing after = texts();
    const bool isLastAlone = rolledBack(before).size() < before.size(); // its failure is its own, too
    const bool rollsBack = std::ranges::any_of(
        setting.files, [](const XasExpectedFile &file) { return !file.restoredIfEditFails.empty(); });
    bool wasEver = true;
    for (unsigned allocation = 0; wasEver; ++allocation) {
        prepare();
        XasMessage msg = setting.message;
        XasReplyStatus reply;
        int result = -1;
        {
            const XasFailingNew fault{1, allocation, 1};
            try {
                result = xasCallHandler(setting.msgtype, &msg, &cfgFiles, &reply);
            } catch (const std::bad_alloc &) { // before any file was touched: the dispatcher tells
                EXPECT_EQ(texts(), before);
                continue;
            }
            wasEver = XasFailingNew::hasFailed();
        }
        xasSyncTouched();
        SCOPED_TRACE("allocation " + std::to_string(allocation));
        if (result != 0) {
            EXPECT_NE(reply.rcode, 0U);
            EXPECT_FALSE(log.take().empty());
        }
        if (result != 0 && rollsBack) {
            EXPECT_THAT(rolledBack(texts()),
                        AnyOf(rolledBack(before), rolledBack(isLastAlone ? after : before)));
        }
    }
}

TEST_P(ASetting, ReplacesBackupsAndTemporariesOfEarlierMessages)
{
    for (const XasExpectedFile &each : setting.files) {
        if (!xasHasBackup(each))
            continue;
        dir.write(XasSituation::name(each) + ".old", "earlier\n");
        dir.write(XasSituation::name(each) + ".tmp", "stale\n");
    }
    expectOutcome(XasFailure::none);
}

TEST_P(ASetting, TellsTheFirstOfItsFilesThatIsNotInTheList)
{
    expectOutcome(XasFailure::notInList);
}

TEST_P(ASetting, TellsEveryFileThatCannotBeOpenedUpToWhereItEnds)
{
    for (const XasExpectedFile &each : setting.files) {
        if (xasHasBackup(each))
            putDirectory(XasSituation::name(each) + ".tmp");
    }
    expectOutcome(XasFailure::notOpened);
}

TEST_P(AFileOfTheList, FailsTheMessageWhenItIsMissingUnlessThereNeedBeNone)
{
    openToOthers();
    expectOutcome(XasFailure::notInList);
}

TEST_P(AFile, ThatIsNotThereFailsTheMessageUnlessItIsMadeAnew)
{
    remove(*GetParam().file);
    expectOutcome(XasFailure::notOnDisk);
}

TEST_P(AReplacedFile, ThatCannotBeOpenedFailsTheMessage)
{
    openToOthers();
    putDirectory(name() + ".tmp");
    expectOutcome(XasFailure::notOpened);
}

TEST_P(AReplacedFile, ThatCannotBeBackedUpIsReplacedAndFailsTheMessage)
{
    putDirectory(name() + ".old");
    expectOutcome(XasFailure::notBackedUp);
}

TEST_P(AReplacedFile, ThatCannotBeRenamedStaysAsItWasAndFailsTheMessage)
{
    const XasFault fault{"rename", EIO, name() + ".tmp -> "};
    expectOutcome(XasFailure::notRenamed);
}

TEST_P(AReplacedFile, InWhosePlaceADirectoryStandsFailsTheMessage)
{
    putDirectory(name());
    expectOutcome(XasFailure::isDirectory);
}

TEST_P(AnEditedFile, ThatCannotBeReadToItsEndFailsTheMessage)
{
    remove(*GetParam().file);
    std::filesystem::create_symlink("/proc/self/mem", dir.path(name()));
    expectOutcome(XasFailure::notRead);
}

TEST_P(AGeneratedFile, ThatCannotBeOpenedFailsItsStep)
{
    expectOutcome(XasFailure::notOpened);
}

TEST_P(ATemplate, WithNothingInItFailsItsStepWithoutAReason)
{
    dir.write(name(), "", OLD_MODE);
    expectOutcome(XasFailure::isEmpty);
}

TEST_P(ASecretFile, IsItsOwnersAloneWhateverItsModeWas)
{
    for (const mode_t mode : {0644U, 0666U, 0400U}) {
        dir.write(name(), GetParam().file->oldText, mode);
        EXPECT_TRUE(send({.setting = setting,
                          .failing = nullptr,
                          .directory = dir.path(),
                          .fullDisk = {},
                          .files = {}})
                        .success);
        EXPECT_EQ(xasModeOf(dir.path(name())), SECRET_MODE);
    }
}

TEST_P(ABackedUpSecret, LeavesNoOpenBackupThoughItWasOpen)
{
    dir.write(name(), GetParam().file->oldText, 0644);
    EXPECT_TRUE(
        send({.setting = setting, .failing = nullptr, .directory = dir.path(), .fullDisk = {}, .files = {}})
            .success);
    EXPECT_EQ(xasModeOf(dir.path(name() + ".old")), SECRET_MODE);
}

TEST_P(ABackedUpSecret, IsClosedToOthersThoughTheNewOneCannotBeRenamed)
{
    dir.write(name(), GetParam().file->oldText, 0644);
    const XasFault fault{"rename", EIO, name() + ".tmp -> "};
    EXPECT_FALSE(
        send({.setting = setting, .failing = nullptr, .directory = dir.path(), .fullDisk = {}, .files = {}})
            .success);
    EXPECT_EQ(xasModeOf(dir.path(name())), SECRET_MODE);
}

TEST_P(ARollBack, GoesThroughItsFilesInOrderThoughNoneCanBeBroughtBack)
{
    const XasFault fault{"rename", EIO, ".old -> "};
    if (!GetParam().file->restoredIfMissing.empty())
        expectOutcome(XasFailure::notInList, false);
    prepare();
    putDirectory(name() + ".tmp");
    expectOutcome(XasFailure::notOpened, false);
}

#define XAS_FOR_FILES(Suite, isWanted)                                                                       \
    INSTANTIATE_TEST_SUITE_P(Of, Suite,                                                                      \
                             testing::ValuesIn(xasFileParams(                                                \
                                 xasSettingParams(), [](const XasExpectedFile &file) { return isWanted; })), \
                             xasSettingTestName)

INSTANTIATE_TEST_SUITE_P(Of, ASetting, testing::ValuesIn(xasSettingParams()), xasSettingTestName);
INSTANTIATE_TEST_SUITE_P(Of, ASettingDeathTest, testing::ValuesIn(xasSettingParams(false)),
                         xasSettingTestName);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(AGeneratedFile); // all of them are at fixed paths
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ATemplate);
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(ARollBack); // none of those is
XAS_FOR_FILES(AFileOfTheList, !file.type.empty());
XAS_FOR_FILES(AFile, file.way != XasFileWay::directory && file.way != XasFileWay::link);
XAS_FOR_FILES(AReplacedFile, xasHasBackup(file));
XAS_FOR_FILES(AnEditedFile, file.way == XasFileWay::edited);
XAS_FOR_FILES(AGeneratedFile, file.way == XasFileWay::generated);
XAS_FOR_FILES(ATemplate, file.way == XasFileWay::model);
XAS_FOR_FILES(ASecretFile, file.secret);
XAS_FOR_FILES(ABackedUpSecret, file.secret &&xasHasBackup(file));
XAS_FOR_FILES(ARollBack, !file.restoredIfEditFails.empty());

#endif
