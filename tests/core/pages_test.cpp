// What the start alone needed is not kept in memory, and works again when it is needed.
#include "core/pages.h"

#include "core/sysapp_parser.h"
#include "support/files.h"

#include <fstream>

namespace {

/** The kB in memory of a library's pages that nobody may write to. */
long residentOf(std::string_view library)
{
    long sum = 0;
    bool isCounted = false;
    std::ifstream lines{"/proc/self/smaps"};
    for (std::string line; std::getline(lines, line);) {
        const auto has = [&line](std::string_view part) {
            return line.find(part) != std::string::npos;
        };
        if (line.find('-') < line.find(' '))
            isCounted = has(library) && (has(" r--p ") || has(" r-xp "));
        else if (isCounted && line.starts_with("Rss:"))
            sum += std::stol(line.substr(4));
    }
    return sum;
}

} // namespace

TEST(StartPages, AreGivenBackAndComeAgainWhenNeeded)
{
    constexpr const char *PARSER = "/libexpat.";
    constexpr long RELOCATED = 16; // kB that the linker has written to stay
    const XasTestDir dir;
    const std::string list = dir.write("sysapp.xml", "<S><APP><NAME>dns</NAME></APP></S>");
    XasAppList apps;
    ASSERT_EQ(xasLoadAppList(list.c_str(), apps), 0);
    const long before = residentOf(PARSER);
    const long library = residentOf("/libc.");
    ASSERT_GT(before, RELOCATED);
    xasReleaseStartPages();
    EXPECT_LE(residentOf(PARSER), RELOCATED);
    EXPECT_GE(residentOf("/libc."), library);
    EXPECT_EQ(xasLoadAppList(list.c_str(), apps), 0);
    EXPECT_EQ(apps.size(), 1U);
}
