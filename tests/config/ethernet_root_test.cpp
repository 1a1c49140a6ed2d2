// The network editors on a full disk: a line that cannot be written, and what is then logged.
#include "config/dns.h"
#include "config/gateway.h"
#include "config/hostname.h"
#include "config/interface_file.h"
#include "config/kernel.h"
#include "config/modprobe.h"
#include "config/network_file.h"
#include "support/eth.h"
#include "support/files.h"
#include "support/log.h"
#include "support/reply.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <gmock/gmock.h>
#include <sys/mount.h>
#include <unistd.h>

using testing::ElementsAre;

namespace {

/** An editor, and what it logs for a line that it cannot write. */
struct Editor {
    const char *name;
    const char *writeLog;
    std::function<int(const char *cfgFileName, XasReplyStatus *reply)> edit;
};

void PrintTo(const Editor &editor, std::ostream *out)
{
    *out << editor.name;
}

class NetworkFullDisk : public XasFilesTest, public testing::WithParamInterface<Editor> {
  protected:
    NetworkFullDisk()
    {
        if (::mount("tmpfs", dir.path().c_str(), "tmpfs", 0, "size=8k") != 0)
            throw std::runtime_error{std::string{"no file system of a fixed size: "} + std::strerror(errno)};
        dir.write("file", OLD_TEXT);
        const int fd = ::open(dir.path("filler").c_str(), O_WRONLY | O_CREAT, 0600);
        const std::string block(512, 'x');
        while (::write(fd, block.data(), block.size()) > 0)
            ;
        ::close(fd);
    }

    ~NetworkFullDisk() override { ::umount2(dir.path().c_str(), MNT_DETACH); }

    static constexpr const char *OLD_TEXT = "DEVICE=eth0\n";
};

const std::vector<Editor> EDITORS = {
    {"precedence", "Error printing line to dhcp gateway precedence config file\n",
     [](const char *path, XasReplyStatus *reply) {
         return xasEditGWPrecFile(path, 1, reply);
     }},
    {"kernel", "Error printing line to Ethernet config file\n",
     [](const char *path, XasReplyStatus *reply) {
         const XasKernCfg kernCfg{};
         return xasEditKernelCfgFile(path, &kernCfg, reply);
     }},
    {"modprobe", "Error printing line to modprobe config file\n",
     [](const char *path, XasReplyStatus *reply) {
         return xasEditModProbeCfgFile(path, 1, true, reply);
     }},
    {"ethernet", "Error printing line to Ethernet config file\n",
     [](const char *path, XasReplyStatus *reply) {
         const XasEthPort port = xasTestEth().ports[0];
         return xasEditEthCfgFile(path, &port, "eth0", false, 0, reply);
     }},
    {"enable", "Error printing line to Ethernet config file\n",
     [](const char *path, XasReplyStatus *reply) {
         return xasEditEthEnableCfgFile(path, true, reply);
     }},
    {"network", "Error printing line to network config file\n",
     [](const char *path, XasReplyStatus *reply) {
         const XasNetInfo netInfo;
         return xasEditNetCfgFile(path, &netInfo, reply);
     }},
    {"alternate", "Error printing line to Alternate Gateway config file\n",
     [](const char *path, XasReplyStatus *reply) {
         return xasEditAltGWFile(path, {}, reply);
     }},
    {"hosts", "Error printing line to hosts file\n",
     [](const char *path, XasReplyStatus *reply) {
         return xasEditHostsFile(path, "console1.example.org", reply);
     }},
    {"hostname", "Error printing line to hostname config file\n",
     [](const char *path, XasReplyStatus *reply) {
         return xasEditHostnameFile(path, "console1.example.org", reply);
     }},
    {"domain", "Error printing line to dns static domain config file\n",
     [](const char *path, XasReplyStatus *reply) {
         return xasEditDomainCfgFile(path, "console1.example.org", reply);
     }},
    {"dns", "Error printing line to DNS config file\n",
     [](const char *path, XasReplyStatus *reply) {
         XasDnsPayload dnsInfo{};
         dnsInfo.dns1.address[0] = 10;
         return xasEditDNSCfgFile(path, &dnsInfo, reply);
     }},
    {"dnsPrecedence", "Error printing line to DNS precedence config file\n",
     [](const char *path, XasReplyStatus *reply) {
         return xasEditDnsPrecCfgFile(path, true, reply);
     }},
};

} // namespace

TEST_P(NetworkFullDisk, LeavesTheFileAloneAndTheReplyEmpty)
{
    const XasLogCapture log;
    XasReplyStatus reply;
    EXPECT_EQ(GetParam().edit(dir.path("file").c_str(), &reply), 1);
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    EXPECT_THAT(log.lines(), ElementsAre(xasErrorLine("Error printing line to file\n"),
                                         xasErrorLine(GetParam().writeLog)));
    EXPECT_EQ(dir.read("file"), OLD_TEXT);
    EXPECT_EQ(dir.read("file.tmp"), "");
    EXPECT_FALSE(dir.has("file.old"));
}

INSTANTIATE_TEST_SUITE_P(Editors, NetworkFullDisk, testing::ValuesIn(EDITORS),
                         [](const auto &test) { return std::string{test.param.name}; });
