// Ethernet settings through the built daemon: files, scripts with their parameters, the router,
// notifications.
#include "support/eth_appliance.h"

namespace {

class DaemonEthernet : public XasEthAppliance {
  protected:
    /** Sends a message that is not answered, and waits until it was handled. */
    void tell(const XasMessage &msg)
    {
        daemon.queues->send(msg);
        const XasMessage next = daemon.ask(XasMessageBuilder{XMSG_SSH}.id(99));
        EXPECT_EQ(next.xH.orig_id, 99U) << "the message itself was answered";
    }
};

} // namespace

TEST_F(DaemonEthernet, StartsTheNetworkAgainThoughAFileFails)
{
    start();
    eth.ports[1].source = 3;
    EXPECT_EQ(apply(), "0 1 Invalid address source");
    EXPECT_THAT(calls(), ElementsAre("eth start 1 5 0"));
    EXPECT_EQ(files.read("eth0"), "DEVICE=eth0\nONBOOT=yes\n");
    EXPECT_EQ(files.read("kernel"), "net.ipv4.ip_forward = 0\n");
    // The bonding interface never was: it cannot be brought back.
    EXPECT_THAT(
        daemon.log.lines(),
        ElementsAre(xasInfoLine("Initializing application server\n"),
                    xasErrorLine("Error editing config file for Ethernet 1\n"),
                    xasErrorLine("Error restoring old config file \"" + files.path("modprobe") + "\"\n"),
                    xasErrorLine("Error restoring old config file \"" + files.path("bond0") + "\"\n"),
                    xasErrorLine("Error updating configuration for application: eth\n"), running("eth")));
}

TEST_F(DaemonEthernet, WritesTheFilesAndStartsTheNetworkWithItsParameters)
{
    start();
    EXPECT_EQ(apply(), XAS_APPLIED);
    EXPECT_THAT(calls(), ElementsAre("eth start 1 5 0"));
    EXPECT_EQ(files.read("gatewayprec"), "DHCP_GW_PRECEDENCE=2\n");
    EXPECT_EQ(files.read("kernel"), "net.ipv4.ip_forward = 1\n");
    EXPECT_EQ(files.read("modprobe"), "");
    EXPECT_FALSE(files.has("bond0"));
    EXPECT_EQ(files.read("eth0"), "DEVICE=eth0\nTYPE=Ethernet\nBOOTPROTO=static\nIPADDR=192.168.1.10\n"
                                  "NETMASK=255.255.255.0\nNETWORK=192.168.1.0\nBROADCAST=192.168.1.255\n"
                                  "IPV6INIT=yes\nIPV6ADDR=\nDHCP_HOSTNAME=\nONBOOT=yes\nMTU=1500\n");
    EXPECT_EQ(files.read("network"), "HOSTNAME=console\nGATEWAY=192.168.1.1\n");
    EXPECT_EQ(files.read("altgateway"), "DGD_GATEWAY=192.168.1.2\n");
    EXPECT_THAT(daemon.log.lines(),
                ElementsAre(xasInfoLine("Initializing application server\n"), running("eth")));
}

TEST_F(DaemonEthernet, SwitchesBondingOnAndOffAgain)
{
    start();
    eth.bonding = 2;
    EXPECT_EQ(apply(), XAS_APPLIED);
    EXPECT_THAT(calls(), ElementsAre("eth start 1 5 2"));
    EXPECT_EQ(files.read("eth1"),
              "DEVICE=eth1\nTYPE=Ethernet\nMASTER=bond0\nSLAVE=yes\nBOOTPROTO=none\nONBOOT=yes\n");
    EXPECT_TRUE(files.has("bond0"));
    EXPECT_EQ(files.read("modprobe"),
              "alias netdev-bond0 bonding\n"
              "options bond0 mode=802.3ad miimon=250 use_carrier=1 downdelay=2500 updelay=2500\n");
    // Bonding being on forces both ports as soon as one is in use.
    eth.ports[0].marker = 0;
    EXPECT_EQ(apply(), XAS_APPLIED);
    EXPECT_THAT(calls(), ElementsAre("eth stop 1 5 2", "eth start 1 5 2"));
    eth.bonding = 0;
    EXPECT_EQ(apply(), XAS_APPLIED);
    EXPECT_THAT(calls(), ElementsAre("eth stop 1 5 1", "eth start 1 5 1"));
    EXPECT_FALSE(files.has("bond0"));
    EXPECT_EQ(files.read("modprobe"), "");
    EXPECT_EQ(apply(), XAS_APPLIED);
    EXPECT_THAT(calls(), ElementsAre("eth stop 0 5 0", "eth start 0 5 0"));
}

TEST_F(DaemonEthernet, TellsTheLinkScriptOfAChangeAndWritesItsFile)
{
    start();
    tell(XasMessageBuilder{XMSG_NOTIFY}.set("code", 3).set("text", "Eth2 Link Down"));
    EXPECT_THAT(calls(), ElementsAre("netlink linkdn 0 5"));
    EXPECT_EQ(files.read("eth1"), "DEVICE=eth1\nONBOOT=no\n");
    EXPECT_EQ(files.read("eth0"), "DEVICE=eth0\nONBOOT=yes\n");
    tell(XasMessageBuilder{XMSG_NOTIFY}.set("code", 2).set("text", "Eth2 Link Up"));
    EXPECT_THAT(calls(), ElementsAre("netlink linkup 0 5"));
    EXPECT_EQ(files.read("eth1"), "DEVICE=eth1\nONBOOT=yes\n");
    tell(XasMessageBuilder{XMSG_NOTIFY}.set("code", 3).set("text", "Eth1 Link Down"));
    EXPECT_THAT(calls(), ElementsAre("netlink linkdn 1 0"));
    EXPECT_EQ(files.read("eth0"), "DEVICE=eth0\nONBOOT=no\n");
}

TEST_F(DaemonEthernet, RefusesANoticeOfAnotherPortWithoutAnAnswer)
{
    start();
    tell(XasMessageBuilder{XMSG_NOTIFY}.set("code", 3).set("text", "Eth3 Link Down"));
    EXPECT_THAT(calls(), IsEmpty());
    EXPECT_TRUE(daemon.log.await("sw/err-Invalid link change interface type: Eth3 Link Down\n"));
}
