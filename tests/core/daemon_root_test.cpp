// The file servers, whose pid and lock files have fixed places.
#include "core/daemon.h"

#include "support/named_process.h"
#include "support/supervision.h"

namespace {

class FileServer : public XasSupervisionTest {
  protected:
    FileServer()
    {
        for (const char *path :
             {"/var/run/nmbd.pid", "/var/run/smbd.pid", "/var/lock/nmbd.pid", "/var/lock/smbd.pid"})
            std::remove(path);
    }

    /** A server of this name that puts itself in the background at once. */
    XasDaemon &serverThatGoesToTheBackground(const std::string &name)
    {
        XasDaemon &daemon = supervise("samba", stubs.make(name));
        clock.at(100ms, xasAwaitAnyExit);
        first = start();
        log.take();
        return daemon;
    }

    pid_t first = 0;
};

using ServerStop = FileServer;

} // namespace

TEST_F(FileServer, IsRestartedWhenItLeftNoPidFile)
{
    const XasDaemon &daemon = serverThatGoesToTheBackground("nmbd");
    xasWriteFile("/var/run/smbd.pid", "4242\n");
    xasWriteFile(stubs.path("nmbd"), "", 0644);
    xasWait(0ms);
    EXPECT_EQ(clock.now(), 200ms + 200ms + 1000ms);
    EXPECT_EQ(daemon.restarts, 1);
    EXPECT_EQ(daemon.pid, -1);
}

TEST_F(FileServer, IsRestartedWhenItsPidFileIsEmpty)
{
    const XasDaemon &daemon = serverThatGoesToTheBackground("smbd");
    xasWriteFile("/var/run/smbd.pid", "");
    xasWriteFile(stubs.path("smbd"), "", 0644);
    xasWait(0ms);
    EXPECT_EQ(daemon.restarts, 1);
}

TEST_F(FileServer, IsRestartedWhenItsPidFileNamesAnotherProcess)
{
    const XasNamedProcess other{"sshd"};
    const XasDaemon &daemon = serverThatGoesToTheBackground("smbd");
    xasWriteFile("/var/run/smbd.pid", std::to_string(other.pid()) + "\n");
    xasWriteFile(stubs.path("smbd"), "", 0644);
    xasWait(0ms);
    EXPECT_EQ(daemon.restarts, 1);
    EXPECT_EQ(daemon.pid, -1) << "nobody else is ever stopped in its place";
}

TEST_F(FileServer, RunsOnUnderThePidOfItsPidFile)
{
    XasDaemon &daemon = serverThatGoesToTheBackground("nmbd");
    const XasNamedProcess server{"nmbd"};
    clock.at(clock.now() + 150ms,
             [&] { xasWriteFile("/var/run/nmbd.pid", std::to_string(server.pid()) + "\n17\n"); });
    xasWait(0ms);
    EXPECT_EQ(clock.now(), 200ms + 200ms);
    EXPECT_EQ(daemon.pid, server.pid());
    EXPECT_EQ(daemon.running, 1);
    EXPECT_EQ(daemon.restarts, 0);
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine(xasEndedText(first, "WIFEXITED"))));
    daemon.pid = 0;
}

TEST_F(FileServer, IsSmbdUnlessItsCommandLineNamesNmbd)
{
    const XasNamedProcess server{"smbd"};
    xasWriteFile("/var/run/smbd.pid", std::to_string(server.pid()));
    XasDaemon &daemon = serverThatGoesToTheBackground("smbd");
    xasWait(0ms);
    EXPECT_EQ(daemon.pid, server.pid());
    daemon.pid = 0;
}

TEST_F(FileServer, IsNotAdoptedWhileItIsBeingStopped)
{
    xasWriteFile("/var/run/smbd.pid", "4243");
    XasDaemon &daemon = serverThatGoesToTheBackground("smbd");
    daemon.stopping = 1;
    xasWait(0ms);
    EXPECT_EQ(daemon.pid, -1);
    EXPECT_EQ(daemon.running, 0);
    EXPECT_EQ(clock.now(), 200ms);
}

TEST_F(ServerStop, GoesByTheLockFile)
{
    XasDaemon &daemon = supervise("samba", stubs.make("samba-nmbd", 0, "exec sleep 1000"));
    const pid_t pid = startAndAwait();
    log.take();
    // Not seen as ended by a child's exit: the pid is held by its server's successor.
    EXPECT_EQ(daemon.running, 1);
    xasWriteFile("/var/lock/smbd.pid", std::to_string(pid));
    clock.at(clock.now() + 50ms, [pid] { xasAwaitExit(pid); });
    EXPECT_EQ(xasStopDaemon(&daemon), 0);
    EXPECT_EQ(daemon.running, 0);
    EXPECT_EQ(clock.now(), 200ms + 100ms) << "the lock file of the other server does not count";
}

TEST_F(ServerStop, KillsAServerWhoseLockFileStaysAndFailsWhenItStillDoes)
{
    ASSERT_EQ(::system(("sleep 1000 > /dev/null & echo $! > " + stubs.path("pid")).c_str()), 0);
    XasDaemon &daemon = supervise("samba", "/usr/samba/smbd -D");
    daemon.pid = std::stoi(xasReadFile(stubs.path("pid")));
    const pid_t pid = daemon.pid;
    daemon.running = 1;
    xasWriteFile("/var/lock/smbd.pid", "1");
    EXPECT_EQ(xasStopDaemon(&daemon), 1);
    EXPECT_EQ(clock.now(), 1100ms);
    EXPECT_THAT(log.lines(),
                ElementsAre(xasErrorLine("Failed to kill process: " + std::to_string(pid) + "\n")));
    EXPECT_EQ(daemon.stopping, 1);
    EXPECT_EQ(daemon.running, 1);
    daemon.pid = 0;
}

TEST_F(ServerStop, SucceedsWhenTheLockFileGoesBetweenBothSignals)
{
    ASSERT_EQ(::system(("sleep 1000 > /dev/null & echo $! > " + stubs.path("pid")).c_str()), 0);
    XasDaemon &daemon = supervise("samba", "/usr/samba/nmbd -D");
    daemon.pid = std::stoi(xasReadFile(stubs.path("pid")));
    daemon.running = 1;
    xasWriteFile("/var/lock/nmbd.pid", "1");
    clock.at(500ms, [] { std::remove("/var/lock/nmbd.pid"); });
    EXPECT_EQ(xasStopDaemon(&daemon), 0);
    EXPECT_EQ(clock.now(), 1100ms);
    EXPECT_EQ(daemon.stopping, 0);
    EXPECT_EQ(daemon.running, 0);
    EXPECT_THAT(log.lines(), IsEmpty());
    daemon.pid = 0;
}

TEST_F(ServerStop, SendsNoSignalOnceTheReaperHasClearedThePid)
{
    XasDaemon &daemon = supervise("samba", stubs.make("samba-smbd", 0, "exec sleep 1000"));
    const pid_t pid = startAndAwait();
    log.take();
    xasWriteFile("/var/lock/smbd.pid", std::to_string(pid)); // stays behind
    clock.at(clock.now() + 50ms, [pid] { xasAwaitExit(pid); });
    EXPECT_EQ(xasStopDaemon(&daemon), 0);
    EXPECT_EQ(daemon.pid, -1);
    EXPECT_EQ(daemon.stopping, 0);
    EXPECT_EQ(clock.now(), 200ms + 100ms);
    EXPECT_THAT(log.lines(), ElementsAre(xasInfoLine(xasEndedText(pid, "WIFSIGNALED"))));
}
