// Kernel parameters in the file that sysctl reads.
#include "config/kernel.h"

#include "support/test.h"

namespace {

const XasEthPayload VALUES = [] {
    XasEthPayload eth{};
    eth.ip_forwarding = 1;
    eth.timer = 7200;
    eth.probes = 9;
    eth.interval = 75;
    return eth;
}();

} // namespace

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
    XasEthPayload extremes{};
    extremes.ip_forwarding = 0x80000000U;
    extremes.timer = 0xFFFFFFFFU;
    extremes.probes = 0xFFFF;
    extremes.interval = 0x8000;
    EXPECT_EQ(xasKernelCfgText("net.ipv4.ip_forward\nnet.ipv4.tcp_keepalive_time\n"
                               "net.ipv4.tcp_keepalive_probes\nnet.ipv4.tcp_keepalive_intvl\n",
                               extremes),
              "net.ipv4.ip_forward = -2147483648\nnet.ipv4.tcp_keepalive_time = -1\n"
              "net.ipv4.tcp_keepalive_probes = 65535\nnet.ipv4.tcp_keepalive_intvl = 32768\n");
}
