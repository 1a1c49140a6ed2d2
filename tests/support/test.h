/** What nearly every test needs: the test library with its matchers by their short names, and common headers.
 */
#ifndef XAS_TEST_SUPPORT_TEST_H
#define XAS_TEST_SUPPORT_TEST_H

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAre;
using namespace std::chrono_literals;

/** A text that was made, the one that is due, and what the case shows. */
struct XasTextCase {
    const char *shows;
    std::string found;
    std::string expected;
};

inline void xasExpectTexts(const std::vector<XasTextCase> &cases)
{
    for (const XasTextCase &c : cases)
        EXPECT_EQ(c.found, c.expected) << c.shows;
}

#endif
