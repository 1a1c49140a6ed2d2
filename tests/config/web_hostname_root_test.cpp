// The name that a port asks a DHCP server with: read from the web front end's settings at their fixed place.
#include "config/interface_file.h"
#include "config/web_hostname.h"
#include "support/eth.h"
#include "support/files.h"
#include "support/log.h"
#include "support/reply.h"

namespace {

constexpr const char *SETTINGS = "/www/xml/network.xml";
const XasLogLine CANNOT_OPEN = xasErrorLine("cannot open network.xml file\n");

void writeSettings(const std::string &name)
{
    xasWriteFile(SETTINGS, "<?xml version=\"1.0\"?>\n<NETWORK>\n  <HOSTNAME>" + name +
                               "</HOSTNAME>\n  <DOMAIN>example.net</DOMAIN>\n</NETWORK>\n");
}

class DhcpHostname : public XasFilesTest {
  protected:
    DhcpHostname() { ::unlink(SETTINGS); }

    /** Writes the file of a port with this source; returns its DHCP_HOSTNAME line. */
    std::string hostnameLine(std::uint32_t source, std::string_view device = "eth0", bool isSlave = false)
    {
        XasEthPort port = xasTestEth().ports[0];
        port.source = source;
        const std::string path = dir.path("ifcfg");
        const XasEthInterface interface {
            port, device, isSlave, 1
        };
        EXPECT_EQ(xasEditEthCfgFile(path.c_str(), &interface, &reply), 0);
        const std::string text = dir.read("ifcfg");
        const std::size_t begin = text.find("DHCP_HOSTNAME=");
        return begin == std::string::npos ? "" : text.substr(begin, text.find('\n', begin) - begin);
    }

    XasLogCapture log;
    XasReplyStatus reply;
    std::string name = "untouched";
};

} // namespace

TEST_F(DhcpHostname, CannotBeHadWithoutTheSettings)
{
    EXPECT_EQ(xasGetXmlHostname(name), 1);
    EXPECT_EQ(name, "untouched");
    EXPECT_THAT(log.lines(), ElementsAre(CANNOT_OPEN));
}

TEST_F(DhcpHostname, CannotBeHadWhenTheSettingsHaveNone)
{
    writeSettings("");
    EXPECT_EQ(xasGetXmlHostname(name), 1);
    writeSettings(std::string(64, 'a'));
    EXPECT_EQ(xasGetXmlHostname(name), 1);
    EXPECT_EQ(name, "untouched");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(DhcpHostname, IsReadFromTheSettings)
{
    writeSettings("console1");
    EXPECT_EQ(xasGetXmlHostname(name), 0);
    EXPECT_EQ(name, "console1");
    EXPECT_THAT(log.lines(), IsEmpty());
}

TEST_F(DhcpHostname, IsEmptyForAPortThatAsksWhenThereIsNone)
{
    EXPECT_EQ(hostnameLine(XAS_SOURCE_DHCP), "DHCP_HOSTNAME=");
    EXPECT_THAT(log.take(), ElementsAre(CANNOT_OPEN));
    EXPECT_EQ(xasReplyText(reply), XAS_NO_REPLY);
    writeSettings(std::string(64, 'a'));
    EXPECT_EQ(hostnameLine(XAS_SOURCE_DHCP), "DHCP_HOSTNAME=");
    EXPECT_THAT(log.take(), IsEmpty());
}

TEST_F(DhcpHostname, StandsInTheFileOfAPortThatAsks)
{
    writeSettings("console1");
    EXPECT_EQ(hostnameLine(XAS_SOURCE_DHCP), "DHCP_HOSTNAME=console1");
    EXPECT_EQ(hostnameLine(XAS_SOURCE_DHCP, "bond0"), "DHCP_HOSTNAME=console1");
    EXPECT_THAT(dir.read("ifcfg"), HasSubstr("\nBOOTPROTO=dhcp\n"));
}

TEST_F(DhcpHostname, IsNotEvenReadForAPortThatDoesNotAsk)
{
    EXPECT_EQ(hostnameLine(XAS_SOURCE_STATIC), "DHCP_HOSTNAME=");
    EXPECT_EQ(hostnameLine(XAS_SOURCE_BOOTP), "DHCP_HOSTNAME=");
    EXPECT_EQ(hostnameLine(XAS_SOURCE_DHCP, "eth0", true), "");
    EXPECT_THAT(log.lines(), IsEmpty()) << "the settings are not there, which would have been told";
}
