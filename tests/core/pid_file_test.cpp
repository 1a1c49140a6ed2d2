// A pid file names a running server only when that process is the server.
#include "core/pid_file.h"

#include "support/files.h"
#include "support/named_process.h"

#include <gmock/gmock.h>

namespace {

class PidFile : public XasFilesTest {
  protected:
    [[nodiscard]] pid_t serverOf(std::string_view text, const std::string &server = "smbd") const
    {
        return xasRunningServer(dir.write("pid", text), server);
    }
};

/** The name that the system has for a process. */
std::string nameOf(pid_t pid)
{
    std::string name = xasReadFile("/proc/" + std::to_string(pid) + "/comm");
    name.pop_back();
    return name;
}

} // namespace

TEST_F(PidFile, NamesNoServerWhenItIsMissingOrHoldsNoPid)
{
    EXPECT_EQ(xasRunningServer(dir.path("missing"), "smbd"), 0);
    for (const char *text : {"", "\n", "smbd\n", "0\n", "-5\n"})
        EXPECT_EQ(serverOf(text), 0) << text;
}

TEST_F(PidFile, NeverNamesTheFirstProcess)
{
    EXPECT_EQ(serverOf("1\n", nameOf(1)), 0);
}

TEST_F(PidFile, NamesNoProcessOfAnotherName)
{
    const XasNamedProcess other{"nmbd"};
    EXPECT_EQ(serverOf(std::to_string(other.pid())), 0);
    EXPECT_EQ(serverOf(std::to_string(other.pid()), "nmb"), 0);
    EXPECT_EQ(serverOf(std::to_string(::getpid())), 0);
    EXPECT_EQ(serverOf("2147483646\n"), 0) << "there is no such process";
}

TEST_F(PidFile, NamesTheServerByItsFirstLine)
{
    const XasNamedProcess server{"smbd"};
    EXPECT_EQ(serverOf(std::to_string(server.pid()) + "\n17\n"), server.pid());
    EXPECT_EQ(serverOf(std::to_string(server.pid())), server.pid());
}
