/** A process of a name, which lives as long as this object. */
#ifndef XAS_TEST_SUPPORT_NAMED_PROCESS_H
#define XAS_TEST_SUPPORT_NAMED_PROCESS_H

#include "support/files.h"
#include "support/stub.h"

#include <csignal>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

class XasNamedProcess {
  public:
    explicit XasNamedProcess(const std::string &name) : child{::fork()}
    {
        if (child == 0) {
            ::prctl(PR_SET_NAME, name.c_str());
            for (;;)
                ::pause();
        }
        const std::string comm = "/proc/" + std::to_string(child) + "/comm";
        EXPECT_TRUE(xasEventually([&] { return xasReadFile(comm) == name + "\n"; }));
    }
    ~XasNamedProcess()
    {
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    }
    XasNamedProcess(const XasNamedProcess &) = delete;
    XasNamedProcess &operator=(const XasNamedProcess &) = delete;

    [[nodiscard]] pid_t pid() const { return child; }

  private:
    pid_t child;
};

#endif
