// Which states a flash is cut into.
#include "powercut/states.h"

#include "support/test.h"

namespace {

struct Seen {
    std::string how;
    std::size_t acknowledged;
    std::string content;
};

constexpr XasEntry BEGIN{XasEntryKind::markBegin, 0, {}, 1};
constexpr XasEntry END{XasEntryKind::markEnd, 0, {}, 1};

std::vector<Seen> statesOf(const std::string &content, const std::vector<XasEntry> &entries)
{
    std::vector<Seen> seen;
    const auto groups = xasGroupEntries(entries, FLASH);
    xasForEachState(
        content, FLASH, groups, [](std::size_t) { return true; },
        [&](const XasState &state, const std::string &cut) {
            seen.push_back({state.how, state.group->acknowledged, cut});
        });
    return seen;
}

std::string page(std::string_view text)
{
    std::string content{text};
    content.resize(FLASH_PAGE, '\xff');
    return content;
}

XasEntry program(std::string_view data)
{
    return {XasEntryKind::write, 0, data, 0};
}

} // namespace

TEST(PowercutStates, AProgramIsDoneByHalfInSomeBitsOrWhole)
{
    const std::string made = page("abcd");
    const auto seen = statesOf(page(""), {BEGIN, program(made)});
    ASSERT_EQ(seen.size(), 4U);
    EXPECT_EQ(seen[0].how, "0");
    EXPECT_EQ(seen[0].content, page(""));
    EXPECT_EQ(seen[1].how, "h");
    EXPECT_EQ(seen[1].content, page("ab"));
    EXPECT_EQ(seen[2].how, "r");
    EXPECT_EQ(seen[3].how, "1");
    EXPECT_EQ(seen[3].content, made);
}

TEST(PowercutStates, ProgrammingInPartClearsNoOtherBits)
{
    const std::string made = page(std::string(200, '\0'));
    const auto seen = statesOf(page(std::string(200, '\x0f')), {BEGIN, program(made)});
    ASSERT_EQ(seen[2].how, "r");
    const std::string_view torn = std::string_view{seen[2].content}.substr(0, 200);
    EXPECT_THAT(torn, Each(testing::Truly([](char byte) { return (byte & '\xf0') == 0; })));
    EXPECT_THAT(torn, AllOf(Contains(testing::Ne('\0')), Contains(testing::Ne('\x0f'))));
}

TEST(PowercutStates, AnEraseIsDoneByEitherHalfOrHasFirstProgrammedAll)
{
    const std::string old(FLASH_BLOCK, 'o');
    const std::string half(FLASH_BLOCK / 2, 'o');
    const std::string blank(FLASH_BLOCK / 2, '\xff');
    const auto seen = statesOf(old, {BEGIN, {XasEntryKind::erase, 0, {}, 0}});
    ASSERT_EQ(seen.size(), 5U);
    EXPECT_EQ(seen[1].content, blank + half);
    EXPECT_EQ(seen[2].content, half + blank);
    EXPECT_EQ(seen[3].content, std::string(FLASH_BLOCK, '\0'));
    EXPECT_EQ(seen[4].content, blank + blank);
}

TEST(PowercutStates, WhatIsAcknowledgedIsPromisedBeforeTheNextProgram)
{
    const std::string first = page("one");
    const std::string second = page("one, two");
    const auto seen = statesOf(page(""), {BEGIN, program(first), END, program(second)});
    ASSERT_EQ(seen.size(), 8U);
    EXPECT_EQ(seen[3].acknowledged, 0U);
    EXPECT_EQ(seen[3].content, first);
    EXPECT_EQ(seen[4].how, "0");
    EXPECT_EQ(seen[4].acknowledged, 1U);
    EXPECT_EQ(seen[4].content, first);
    EXPECT_EQ(seen[7].content, second);
}

TEST(PowercutStates, AtTheEndAllThatWasAcknowledgedIsThere)
{
    const std::string made = page("one");
    const auto seen = statesOf(page(""), {BEGIN, program(made), END});
    ASSERT_EQ(seen.size(), 5U);
    EXPECT_EQ(seen[4].acknowledged, 1U);
    EXPECT_EQ(seen[4].content, made);
}

TEST(PowercutStates, NobodyIsPromisedAnythingBeforeTheFirstMessage)
{
    const std::string made = page("one");
    EXPECT_THAT(statesOf(page(""), {program(made)}), IsEmpty());
}
