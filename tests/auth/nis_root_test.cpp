// A NIS client reads the file that we write.
#include "auth/nis.h"

#include "support/hosts.h"
#include "support/log.h"
#include "support/programs.h"

namespace {

class NisProgram : public XasFilesTest {
  protected:
    NisProgram()
    {
        cfgNIS.master = xasHostWithAddress("10.0.0.40");
        for (XasHostAddr &slave : cfgNIS.slaves)
            slave = xasNamedHost("");
    }

    ~NisProgram() override { EXPECT_EQ(::setdomainname("", 0), 0); }

    /** The domain of the message, which the machine then has too. */
    void setDomain(std::string_view domain)
    {
        xasSetFieldText(cfgNIS.domain, domain);
        ASSERT_EQ(::setdomainname(domain.data(), domain.size()), 0);
    }

    /** The path of the file with these settings. */
    [[nodiscard]] std::string written() const
    {
        const std::string path = dir.write("yp.conf", "old\n");
        XasReplyStatus reply;
        EXPECT_EQ(xasEditYpCfgFile(path.c_str(), &cfgNIS, &reply), 0);
        return path;
    }

    /** The client's verdict on a file. */
    [[nodiscard]] XasProgramResult check(const std::string &path) const
    {
        return xasRunShell(client + " -c -f " + path);
    }

    /** What the client understands, a line each; it ends by itself, because there is no port mapper. */
    [[nodiscard]] std::string understood(const std::string &path) const
    {
        return xasRunShell("timeout 10 " + client + " -d -f " + path + " 2>&1 | sed -n 's/^.*: parsed //p'")
            .output;
    }

    XasNisPayload cfgNIS{};
    XasLogCapture log;
    std::string client = xasUnpackedProgram("usr/sbin/ypbind");
};

} // namespace

TEST_F(NisProgram, RefusesALineThatItDoesNotKnow)
{
    const XasProgramResult result = check(dir.write("yp.conf", "domain eng sever 10.0.0.40 \n"));
    EXPECT_EQ(result.exitStatus, 1);
    EXPECT_THAT(result.output, HasSubstr("Entry \"domain eng sever 10.0.0.40 \" is not valid!"));
}

TEST_F(NisProgram, RefusesTheFileOfAnEmptyDomain)
{
    EXPECT_THAT(check(written()).output, HasSubstr("Entry \"domain  server 10.0.0.40 \" is not valid!"));
}

TEST_F(NisProgram, AcceptsTheMasterAlone)
{
    setDomain("eng");
    const std::string path = written();
    const XasProgramResult result = check(path);
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_THAT(result.output, HasSubstr("is ok."));
    EXPECT_EQ(understood(path), "domain 'eng' server '10.0.0.40'\n");
}

TEST_F(NisProgram, FindsMasterBroadcastAndSlavesInTheirOrder)
{
    setDomain("eng.example.org");
    cfgNIS.broadcast = 1;
    cfgNIS.master = xasNamedHost("nis0.example.org");
    cfgNIS.slaves[0] = xasHostWithAddress("10.0.0.41");
    cfgNIS.slaves[2] = xasHostWithAddress("2001:db8::42");
    cfgNIS.slaves[4] = xasNamedHost("nis5");
    const std::string path = written();
    EXPECT_EQ(check(path).exitStatus, 0);
    EXPECT_EQ(understood(path), "domain 'eng.example.org' server 'nis0.example.org'\n"
                                "domain 'eng.example.org' broadcast\n"
                                "ypserver 10.0.0.41\n"
                                "ypserver 2001:db8::42\n"
                                "ypserver nis5\n");
}
