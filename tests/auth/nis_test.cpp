// NIS: the client's file and the domain in the network settings.
#include "auth/nis.h"

#include "support/faults.h"
#include "support/files.h"
#include "support/hosts.h"
#include "support/reply.h"

namespace {

XasNisPayload settings(std::string_view domain)
{
    XasNisPayload cfgNIS{};
    cfgNIS.enabled = 1;
    xasSetFieldText(cfgNIS.domain, domain);
    cfgNIS.master = xasHostWithAddress("10.0.0.40");
    for (XasHostAddr &slave : cfgNIS.slaves)
        slave = xasNamedHost("");
    return cfgNIS;
}

class NisFiles : public XasFilesTest {
  protected:
    XasReplyStatus reply;
};

} // namespace

TEST_F(NisFiles, NetworkSettingsStayWhenTheyCannotBeSavedButTheDomainIsSet)
{
    const std::string path = dir.write("network", "A=1\n");
    const XasNisPayload cfgNIS = settings("eng");
    const XasFault noChild{"fork", EAGAIN};
    const XasFault fault{"rename", EIO, 1};
    EXPECT_EQ(xasEditNetworkCfgFile(path.c_str(), &cfgNIS, &reply), 1);
    EXPECT_EQ(xasReplyText(reply), "3 Error saving new firewall config file");
    EXPECT_EQ(dir.read("network"), "A=1\n");
    EXPECT_EQ(noChild.calls(), 1U);
}

TEST_F(NisFiles, NetworkSettingsKeepOneDomainHoweverOftenTheyAreSaved)
{
    const std::string path = dir.write("network", "A=1\nNISDOMAIN=old\nB=2\n");
    const XasNisPayload cfgNIS = settings("eng");
    const XasFault noChild{"fork", EAGAIN};
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(xasEditNetworkCfgFile(path.c_str(), &cfgNIS, &reply), 0);
        EXPECT_EQ(dir.read("network"), "A=1\nB=2\nNISDOMAIN=eng");
    }
}

TEST_F(NisFiles, NetworkSettingsLoseTheirDomainWithAnEmptyOneAndNoneIsSet)
{
    const std::string path = dir.write("network", "A=1\nNISDOMAIN=old");
    const XasNisPayload cfgNIS = settings("");
    const XasFault noChild{"fork", EAGAIN};
    EXPECT_EQ(xasEditNetworkCfgFile(path.c_str(), &cfgNIS, &reply), 0);
    EXPECT_EQ(dir.read("network"), "A=1\n");
    EXPECT_EQ(noChild.calls(), 0U);
}

TEST(YpText, HasTheMasterAlwaysAndSlavesUnlessTheyAreEmptyNames)
{
    XasNisPayload cfgNIS = settings("eng.example");
    cfgNIS.master = xasNamedHost("");
    cfgNIS.broadcast = 1;
    cfgNIS.slaves[0] = xasNamedHost("nis1.example");
    cfgNIS.slaves[2] = xasHostWithAddress("0.0.0.0");
    cfgNIS.slaves[3] = xasHostWithAddress("10.0.0.44");
    cfgNIS.slaves[4] = xasNamedHost("nis5");
    EXPECT_EQ(xasYpText(cfgNIS), "# /etc/yp.conf - ypbind configuration file\n"
                                 "domain eng.example server  \n"
                                 "domain eng.example broadcast\n"
                                 "ypserver nis1.example \n"
                                 "ypserver 0.0.0.0 \n"
                                 "ypserver 10.0.0.44 \n"
                                 "ypserver nis5 \n");
}

TEST(YpText, AllowsBroadcastForAnyNumberButZero)
{
    XasNisPayload cfgNIS = settings("eng");
    cfgNIS.broadcast = 0x80000000U;
    EXPECT_EQ(xasYpText(cfgNIS), "# /etc/yp.conf - ypbind configuration file\n"
                                 "domain eng server 10.0.0.40 \n"
                                 "domain eng broadcast\n");
}

TEST(YpText, OfAnEmptyMessageNamesTheZeroAddressSixTimes)
{
    EXPECT_EQ(xasYpText({}), "# /etc/yp.conf - ypbind configuration file\n"
                             "domain  server 0.0.0.0 \n"
                             "ypserver 0.0.0.0 \nypserver 0.0.0.0 \nypserver 0.0.0.0 \nypserver 0.0.0.0 \n"
                             "ypserver 0.0.0.0 \n");
}

TEST(YpText, ReadsADomainWithoutEndUpToTheWidthOfItsField)
{
    XasNisPayload cfgNIS = settings("");
    std::string(103, 'd').copy(cfgNIS.domain, 103);
    EXPECT_EQ(xasYpText(cfgNIS), "# /etc/yp.conf - ypbind configuration file\ndomain " +
                                     std::string(103, 'd') + " server 10.0.0.40 \n");
}

TEST(NisNetworkText, DropsLinesWhoseFirstWordBeginsWithTheKey)
{
    EXPECT_EQ(xasNisNetworkText("# NISDOMAIN=comment\nNISDOMAIN=a\n NISDOMAIN = b\nNISDOMAINX=c\nNISDOMAIN\n"
                                "==NISDOMAIN=d\nXNISDOMAIN=e\nNIS=f\n\nHOSTNAME=NISDOMAIN\n",
                                "new"),
              "# NISDOMAIN=comment\nXNISDOMAIN=e\nNIS=f\n\nHOSTNAME=NISDOMAIN\nNISDOMAIN=new");
}

TEST(NisNetworkText, JoinsTheDomainToALastLineWithoutLineFeed)
{
    EXPECT_EQ(xasNisNetworkText("A=1", "eng"), "A=1NISDOMAIN=eng");
    EXPECT_EQ(xasNisNetworkText("", "eng"), "NISDOMAIN=eng");
    EXPECT_EQ(xasNisNetworkText("", ""), "");
}
