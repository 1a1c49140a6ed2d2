// Kernel parameters in the file that sysctl reads.
#include "config/kernel.h"

#include "support/faults.h"
#include "support/files.h"
#include "support/log.h"
#include "support/reply.h"

#include <cerrno>
#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

constexpr XasKernCfg VALUES{
    .ipForwarding = 1, .keepaliveTime = 7200, .keepaliveProbes = 9, .keepaliveInterval = 75};

class KernelFile : public XasFilesTest {
  protected:
    XasLogCapture log;
    XasReplyStatus reply;
};

using KernelFileDeathTest = KernelFile;

} // namespace

TEST_F(KernelFileDeathTest, NeedsItsPathAndItsValues)
{
    EXPECT_DEATH(xasEditKernelCfgFile(nullptr, &VALUES, &reply), "cfgFileName != \\(\\(void \\*\\)0\\)");
    EXPECT_DEATH(xasEditKernelCfgFile("/tmp/none", nullptr, &reply), "kernCfg != \\(\\(void \\*\\)0\\)");
}

TEST_F(KernelFile, MustExist)
{
    const std::string path = dir.path("sysctl.conf");
    EXPECT_EQ(xasEditKernelCfgFile(path.c_str(), &VALUES, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), "2 Error opening kernel config file");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error opening config file \"" + path + "\"\n")));
    EXPECT_TRUE(dir.names().empty());
}

TEST_F(KernelFile, StaysAsItIsWhenTheNewOneCannotBePutInPlace)
{
    const std::string path = dir.write("sysctl.conf", "net.ipv4.ip_forward = 0\n");
    const XasFault fault{"rename", EIO, 1};
    EXPECT_EQ(xasEditKernelCfgFile(path.c_str(), &VALUES, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new kernel config file");
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error renaming new config file \"" + path + "\"\n")));
    EXPECT_EQ(dir.read("sysctl.conf"), "net.ipv4.ip_forward = 0\n");
}

TEST_F(KernelFile, IsReplacedAndItsOldContentKept)
{
    const std::string path = dir.write("sysctl.conf", "net.ipv4.ip_forward = 0\n");
    EXPECT_EQ(xasEditKernelCfgFile(path.c_str(), &VALUES, &reply), 0);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_EQ(dir.read("sysctl.conf"), "net.ipv4.ip_forward = 1\n");
    EXPECT_EQ(dir.read("sysctl.conf.old"), "net.ipv4.ip_forward = 0\n");
    EXPECT_TRUE(log.lines().empty());
}

TEST(KernelText, OfAnEmptyFileStaysEmpty)
{
    EXPECT_EQ(xasKernelCfgText("", VALUES), "");
}

TEST(KernelText, KeepsCommentsBlankLinesAndOtherParameters)
{
    constexpr std::string_view TEXT = "# parameters\n\n; net.ipv4.ip_forward = 0\n#net.ipv4.ip_forward=0\n"
                                      "net.ipv4.ip_forwarding = 0\nnet.ipv4.conf.all.rp_filter = 1\n \n";
    EXPECT_EQ(xasKernelCfgText(TEXT, VALUES), TEXT);
}

TEST(KernelText, ReplacesAllFourWithBlanksRoundTheEqualsSign)
{
    EXPECT_EQ(xasKernelCfgText("# parameters\n"
                               "net.ipv4.ip_forward = 0\n"
                               "kernel.panic = 10\n"
                               "net.ipv4.tcp_keepalive_time = 1\n"
                               "net.ipv4.tcp_keepalive_probes = 2\n"
                               "net.ipv4.tcp_keepalive_intvl = 3\n",
                               VALUES),
              "# parameters\n"
              "net.ipv4.ip_forward = 1\n"
              "kernel.panic = 10\n"
              "net.ipv4.tcp_keepalive_time = 7200\n"
              "net.ipv4.tcp_keepalive_probes = 9\n"
              "net.ipv4.tcp_keepalive_intvl = 75\n");
}

TEST(KernelText, ReplacesAllFourWithoutBlanks)
{
    EXPECT_EQ(xasKernelCfgText("net.ipv4.tcp_keepalive_intvl=3\n"
                               "net.ipv4.tcp_keepalive_probes=2\n"
                               "net.ipv4.tcp_keepalive_time=1\n"
                               "net.ipv4.ip_forward=0",
                               VALUES),
              "net.ipv4.tcp_keepalive_intvl = 75\n"
              "net.ipv4.tcp_keepalive_probes = 9\n"
              "net.ipv4.tcp_keepalive_time = 7200\n"
              "net.ipv4.ip_forward = 1\n");
}

TEST(KernelText, ReplacesAnIndentedParameterAndOneOfAnotherSystemsLineEnds)
{
    EXPECT_EQ(xasKernelCfgText("  net.ipv4.ip_forward = 0\r\nkernel.panic=10\r\n", VALUES),
              "net.ipv4.ip_forward = 1\nkernel.panic=10\r\n");
}

TEST(KernelText, TakesATabForAPartOfTheKey)
{
    EXPECT_EQ(xasKernelCfgText("net.ipv4.ip_forward\t= 0\n", VALUES), "net.ipv4.ip_forward\t= 0\n");
}

TEST(KernelText, WritesWordsAsSignedAndHalfWordsAsUnsigned)
{
    const XasKernCfg extremes{.ipForwarding = 0x80000000U,
                              .keepaliveTime = 0xFFFFFFFFU,
                              .keepaliveProbes = 0xFFFF,
                              .keepaliveInterval = 0x8000};
    EXPECT_EQ(xasKernelCfgText("net.ipv4.ip_forward\nnet.ipv4.tcp_keepalive_time\n"
                               "net.ipv4.tcp_keepalive_probes\nnet.ipv4.tcp_keepalive_intvl\n",
                               extremes),
              "net.ipv4.ip_forward = -2147483648\nnet.ipv4.tcp_keepalive_time = -1\n"
              "net.ipv4.tcp_keepalive_probes = 65535\nnet.ipv4.tcp_keepalive_intvl = 32768\n");
}
