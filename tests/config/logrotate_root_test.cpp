// The log rotation reads the configuration that we write and rotates by its sizes.
#include "config/logrotate.h"

#include "support/programs.h"

namespace {

constexpr const char *OLD_TEXT = "# one old generation of each log\n"
                                 "missingok\n"
                                 "nocompress\n"
                                 "rotate 1\n"
                                 "create 0644\n"
                                 "\n"
                                 "/var/log/network /var/log/services {\n"
                                 "    size 100k\n"
                                 "    prerotate\n"
                                 "        logbytes=$(stat -c %s $1)\n"
                                 "        if [ $logbytes -gt 102400 ] ; then\n"
                                 "            tail -c 51200 $1 > /www/$1.log\n"
                                 "        fi\n"
                                 "    endscript\n"
                                 "}\n"
                                 "\n"
                                 "/var/log/nut {\n"
                                 "    size 50k\n"
                                 "}\n";

/** Sizes 64 and, for /var/log/nut, 30 kilobytes. */
class LogrotateProgram : public XasFilesTest {
  protected:
    std::string path = dir.write("logrotate.conf", OLD_TEXT);

    LogrotateProgram()
    {
        XasSyslogPayload sysLogInfo{};
        sysLogInfo.nut_size = 30;
        sysLogInfo.log_size = 64;
        XasReplyStatus reply;
        EXPECT_EQ(xasEditLogrotateCfgFile(path.c_str(), &sysLogInfo, &reply), 0);
        std::filesystem::create_directories("/www/var/log");
    }

    [[nodiscard]] XasProgramResult rotate(const std::string &options = {}) const
    {
        return xasRunShell(xasUnpackedProgram("usr/sbin/logrotate") + " -s " + dir.path("state") + options +
                           " " + path);
    }

    static void writeLog(const std::string &log, std::size_t kilobytes)
    {
        xasWriteFile(log, std::string(kilobytes * 1024, 'l'));
    }
};

} // namespace

TEST_F(LogrotateProgram, SaysWhenItCannotReadALine)
{
    xasWriteFile(path, "/var/log/network {\n    size 64q\n}\n");
    const XasProgramResult result = rotate(" -d");
    EXPECT_NE(result.exitStatus, 0);
    EXPECT_THAT(result.output, HasSubstr("error:"));
}

TEST_F(LogrotateProgram, UnderstandsEveryLineAndTheNewSizes)
{
    writeLog("/var/log/network", 1);
    writeLog("/var/log/nut", 1);
    const XasProgramResult result = rotate(" -d");
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(result.output, Not(HasSubstr("error:")));
    EXPECT_THAT(result.output, HasSubstr("/var/log/services  65536 bytes (1 rotations)"));
    EXPECT_THAT(result.output, HasSubstr("/var/log/nut  30720 bytes (1 rotations)"));
}

TEST_F(LogrotateProgram, LeavesLogsBelowTheirSizeAlone)
{
    writeLog("/var/log/network", 63);
    writeLog("/var/log/nut", 29);
    EXPECT_EQ(rotate().exitStatus, 0);
    EXPECT_FALSE(xasExists("/var/log/network.1"));
    EXPECT_FALSE(xasExists("/var/log/nut.1"));
}

TEST_F(LogrotateProgram, RotatesALogAboveItsSizeAndKeepsTheNewerHalfOfTheLimit)
{
    xasWriteFile("/var/log/network", std::string(40 * 1024, 'o') + std::string(25 * 1024, 'n'));
    writeLog("/var/log/services", 31);
    writeLog("/var/log/nut", 31);
    const XasProgramResult result = rotate();
    EXPECT_EQ(result.exitStatus, 0) << result.output;
    EXPECT_EQ(xasReadFile("/var/log/network"), "");
    EXPECT_EQ(xasReadFile("/var/log/network.1").size(), 65U * 1024);
    EXPECT_EQ(xasReadFile("/www/var/log/network.log"),
              std::string(7 * 1024, 'o') + std::string(25 * 1024, 'n'));
    EXPECT_FALSE(xasExists("/var/log/services.1"));
    EXPECT_EQ(xasReadFile("/var/log/nut.1").size(), 31U * 1024);
}
