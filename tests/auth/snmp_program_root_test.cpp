// An SNMP agent runs with the file that we write, and is asked by an SNMP client: communities, users of
// version 3 with every level, hash and cipher (the agent here still has all of them), and the traps that it
// sends.
#include "auth/snmp.h"

#include "support/hosts.h"
#include "support/snmp.h"

#include <netdb.h>
#include <sys/socket.h>
#include <sys/time.h>

using testing::Combine;
using testing::Values;

namespace {

constexpr const char *OLD_TEXT = "# the agent of the console server\n"
                                 "agentaddress udp:127.0.0.1:161,udp6:[::1]:161\n"
                                 "syscontact  nobody\n"
                                 "syslocation  nowhere\n"
                                 "rouser  oldreader auth\n"
                                 "createUser oldreader MD5 oldreaderpass DES oldreaderphrase\n"
                                 "rwuser  oldwriter auth\n"
                                 "createUser oldwriter MD5 oldwriterpass DES oldwriterphrase\n"
                                 "rocommunity  public\n"
                                 "rocommunity6  public\n"
                                 "rwcommunity  private\n"
                                 "rwcommunity6  private\n"
                                 "trapcommunity  public\n"
                                 "trapsink 192.0.2.1\n"
                                 "trap2sink 192.0.2.1\n";

constexpr const char *CONTACT = ".1.3.6.1.2.1.1.4.0";
constexpr const char *NAME = ".1.3.6.1.2.1.1.5.0";

/** What a client gets from an agent that knows its community or user. */
constexpr const char *CONTACT_ANSWER = ".1.3.6.1.2.1.1.4.0 = STRING: \"noc@example.org\"\n";
constexpr const char *NAME_ANSWER = ".1.3.6.1.2.1.1.5.0 = STRING: \"console2\"\n";

constexpr const char *IPV4 = "127.0.0.1";
constexpr const char *IPV6 = "'udp6:[::1]:161'";

class SnmpProgram : public XasFilesTest {
  protected:
    SnmpProgram()
    {
        xasRunShell("ip link set lo up");
        for (XasHostAddr &host : snmpCfg.trap_hosts)
            host = xasNamedHost("");
        xasSetFieldText(snmpCfg.syscontact, "noc@example.org");
        xasSetFieldText(snmpCfg.syslocation, "Rack 4");
        xasSetFieldText(snmpCfg.v3user, "monitor");
        xasSetFieldText(snmpCfg.v3pass, "monitor pass");
        xasSetFieldText(snmpCfg.v3phrase, "monitorphrase");
        xasSetFieldText(snmpCfg.v3rwuser, "manager");
        xasSetFieldText(snmpCfg.v3rwpass, "managerpass");
        xasSetFieldText(snmpCfg.v3rwphrase, "manager phrase");
        xasSetFieldText(snmpCfg.ro_community, "reader");
        xasSetFieldText(snmpCfg.rw_community, "writer");
        xasSetFieldText(snmpCfg.trap_community, "alarms");
    }

    /** The agent with a file of this text. */
    [[nodiscard]] XasBackgroundProgram agent(const std::string &text) const
    {
        // An agent that still keeps the users of an earlier test would know them.
        std::filesystem::remove_all("/tmp/snmp");
        return XasBackgroundProgram{
            {"/bin/sh", "-c", xasSnmpAgentCommand(dir.write("snmpd.conf", text), "-Lo")}};
    }

    /** The agent with the old file, edited. */
    [[nodiscard]] XasBackgroundProgram agent()
    {
        const std::string path = dir.write("edited", OLD_TEXT);
        XasReplyStatus reply;
        EXPECT_EQ(xasEditSNMPCfgFile(path.c_str(), &snmpCfg, &reply), 0);
        return agent(dir.read("edited"));
    }

    /** What the agent complained of before it listened. */
    static std::vector<std::string> complaints(const XasBackgroundProgram &agent)
    {
        EXPECT_TRUE(agent.await("NET-SNMP version")) << agent.output();
        std::vector<std::string> found;
        std::istringstream lines{agent.output()};
        for (std::string line; std::getline(lines, line) && !line.starts_with("NET-SNMP version");) {
            const std::size_t where = line.find("line "); // behind the name of the file
            found.push_back(where == std::string::npos ? line : line.substr(where));
        }
        return found;
    }

    /** A client's question; `seconds` are what it waits for an answer. */
    static std::string ask(const std::string &program, const std::string &options, const std::string &rest,
                           const char *seconds)
    {
        return xasRunSnmpClient(program, std::string{"-On -r 0 -t "} + seconds + " " + options + " " + rest);
    }

    static std::string get(const std::string &options, const char *host = IPV4)
    {
        return ask("snmpget", options, std::string{host} + " " + CONTACT, "5");
    }

    static std::string set(const std::string &options, const char *host = IPV4)
    {
        return ask("snmpset", options, std::string{host} + " " + NAME + " s console2", "5");
    }

    /** True when the agent answers nothing at all. */
    static bool isSilent(const std::string &options, const char *host = IPV4)
    {
        const std::string answer = ask("snmpget", options, std::string{host} + " " + CONTACT, "0.2");
        return answer.find("Timeout: No Response") != std::string::npos;
    }

    XasSnmpPayload snmpCfg{};
};

/** Level, hash and cipher of the users. */
class SnmpProgramUsers
    : public SnmpProgram,
      public testing::WithParamInterface<std::tuple<std::uint32_t, std::uint32_t, std::uint32_t>> {
  protected:
    SnmpProgramUsers()
    {
        std::tie(snmpCfg.v3security, snmpCfg.v3auth, snmpCfg.v3encrypt) = GetParam();
        snmpCfg.community_mode = 1;
    }

    /** Options of a client that does `level`, with what the user has been given. */
    [[nodiscard]] std::string options(const char *user, const char *level, const char *pass,
                                      const char *phrase) const
    {
        return std::string{"-v3 -u "} + user + " -l " + level + " -a " +
               (snmpCfg.v3auth == 1 ? "SHA" : "MD5") + " -A '" + pass + "' -x " +
               (snmpCfg.v3encrypt == 1 ? "AES" : "DES") + " -X '" + phrase + "'";
    }

    [[nodiscard]] std::string reader(const char *level) const
    {
        return options("monitor", level, "monitor pass", "monitorphrase");
    }

    [[nodiscard]] std::string writer(const char *level) const
    {
        return options("manager", level, "managerpass", "manager phrase");
    }

    /** How much a client must do, by the position of its level here. */
    static constexpr std::array LEVELS = {"noAuthNoPriv", "authNoPriv", "authPriv"};

    [[nodiscard]] std::size_t least() const { return snmpCfg.v3security; }
};

std::string nameOfUsers(const testing::TestParamInfo<SnmpProgramUsers::ParamType> &test)
{
    constexpr std::array LEVEL_NAMES = {"Noauth", "Auth", "Priv"};
    const auto [security, auth, encrypt] = test.param;
    return std::string{LEVEL_NAMES[security]} + (auth == 1 ? "Sha" : "Md5") + (encrypt == 1 ? "Aes" : "Des");
}

/** A host that traps arrive at. */
class TrapListener {
  public:
    explicit TrapListener(const char *host)
    {
        addrinfo numeric{};
        numeric.ai_flags = AI_NUMERICHOST;
        numeric.ai_socktype = SOCK_DGRAM;
        addrinfo *address = nullptr;
        if (::getaddrinfo(host, "162", &numeric, &address) != 0)
            throw std::invalid_argument{host};
        socket = ::socket(address->ai_family, SOCK_DGRAM, 0);
        EXPECT_EQ(::bind(socket, address->ai_addr, address->ai_addrlen), 0);
        ::freeaddrinfo(address);
        const timeval atMost{.tv_sec = 5, .tv_usec = 0};
        ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &atMost, sizeof atMost);
    }
    ~TrapListener() { ::close(socket); }
    TrapListener(const TrapListener &) = delete;
    TrapListener &operator=(const TrapListener &) = delete;

    /** Version and community of the next trap: "v1 alarms". */
    [[nodiscard]] std::string next() const
    {
        std::array<char, 2048> buffer{};
        const ssize_t size = ::recv(socket, buffer.data(), buffer.size(), 0);
        if (size < 16)
            return "none";
        // A sequence of a version, a community and the rest: tag, length and value each.
        std::string_view rest{buffer.data(), static_cast<std::size_t>(size)};
        const auto sequenceLength = static_cast<unsigned char>(rest[1]);
        rest.remove_prefix(sequenceLength < 128 ? 2 : 2 + (sequenceLength & 0x7FU));
        const int version = rest[2];
        rest.remove_prefix(3);
        return "v" + std::to_string(version + 1) + " " +
               std::string{rest.substr(2, static_cast<unsigned char>(rest[1]))};
    }

  private:
    int socket = -1;
};

} // namespace

TEST_F(SnmpProgram, SaysWhenItCannotReadALine)
{
    EXPECT_THAT(
        complaints(agent("rocommunity x\nrocomunity x\ncreateUser a SHB x AES y\n")),
        ElementsAre("line 2: Warning: Unknown token: rocomunity.", "line 3: Error: unknown authProtocol"));
}

TEST_F(SnmpProgram, ReadsTheWholeFileAndKnowsNoOldCommunityOrUser)
{
    const XasBackgroundProgram running = agent();
    EXPECT_THAT(complaints(running), IsEmpty());
    EXPECT_TRUE(isSilent("-v2c -c public"));
    EXPECT_TRUE(isSilent("-v2c -c public", IPV6));
    EXPECT_TRUE(isSilent("-v2c -c private"));
    EXPECT_THAT(get("-v3 -u oldreader -l authNoPriv -a MD5 -A oldreaderpass"),
                HasSubstr("Unknown user name"));
    EXPECT_THAT(get("-v3 -u oldwriter -l authNoPriv -a MD5 -A oldwriterpass"),
                HasSubstr("Unknown user name"));
}

TEST_F(SnmpProgram, LetsOneCommunityReadAndTheOtherWrite)
{
    const XasBackgroundProgram running = agent();
    EXPECT_THAT(complaints(running), IsEmpty());
    for (const char *version : {"-v1", "-v2c"}) {
        const std::string reader = std::string{version} + " -c reader";
        const std::string writer = std::string{version} + " -c writer";
        EXPECT_EQ(get(reader), CONTACT_ANSWER);
        EXPECT_EQ(get(reader, IPV6), CONTACT_ANSWER);
        EXPECT_THAT(set(reader), HasSubstr("Failed object: .1.3.6.1.2.1.1.5.0"));
        EXPECT_EQ(get(writer), CONTACT_ANSWER);
        EXPECT_EQ(set(writer), NAME_ANSWER);
    }
    EXPECT_TRUE(isSilent("-v2c -c writer", IPV6)) << "its line has become one for IPv4";
}

TEST_F(SnmpProgram, AnswersNoCommunityOnceTheyAreRemoved)
{
    snmpCfg.community_mode = 1;
    const XasBackgroundProgram running = agent();
    EXPECT_THAT(complaints(running), IsEmpty());
    for (const char *community : {"public", "private", "reader", "writer"})
        EXPECT_TRUE(isSilent(std::string{"-v2c -c "} + community)) << community;
}

TEST_F(SnmpProgram, AnswersTheOldCommunitiesWhenTheyAreKept)
{
    snmpCfg.community_mode = 2;
    const XasBackgroundProgram running = agent();
    EXPECT_THAT(complaints(running), IsEmpty());
    EXPECT_TRUE(isSilent("-v2c -c reader"));
    EXPECT_EQ(get("-v2c -c public"), CONTACT_ANSWER);
    EXPECT_EQ(set("-v2c -c private", IPV6), NAME_ANSWER);
}

TEST_P(SnmpProgramUsers, MustDoWhatTheirLevelAsksForAndNoLess)
{
    const XasBackgroundProgram running = agent();
    EXPECT_THAT(complaints(running), IsEmpty());
    for (std::size_t level = 0; level < LEVELS.size(); ++level) {
        if (level < least()) {
            EXPECT_THAT(get(reader(LEVELS[level])), HasSubstr("authorizationError")) << LEVELS[level];
            EXPECT_THAT(set(writer(LEVELS[level])), HasSubstr("authorizationError")) << LEVELS[level];
        } else {
            EXPECT_EQ(get(reader(LEVELS[level])), CONTACT_ANSWER) << LEVELS[level];
            EXPECT_THAT(set(reader(LEVELS[level])), HasSubstr("noAccess")) << LEVELS[level];
            EXPECT_EQ(set(writer(LEVELS[level])), NAME_ANSWER) << LEVELS[level];
        }
    }
}

TEST_P(SnmpProgramUsers, MustKnowTheirPassPhrases)
{
    const XasBackgroundProgram running = agent();
    EXPECT_THAT(complaints(running), IsEmpty());
    EXPECT_THAT(get(options("monitor", "authNoPriv", "monitor-pass", "monitorphrase")),
                HasSubstr("Authentication failure"));
    EXPECT_TRUE(isSilent(options("manager", "authPriv", "managerpass", "manager-phrase")));
}

INSTANTIATE_TEST_SUITE_P(LevelsHashesAndCiphers, SnmpProgramUsers,
                         Combine(Values(0U, 1U, 2U), Values(0U, 1U), Values(0U, 1U)), nameOfUsers);

TEST_F(SnmpProgram, SendsTrapsOfBothVersionsToEachHostWithTheirCommunity)
{
    const TrapListener ipv4{"127.0.0.1"};
    const TrapListener ipv6{"::1"};
    snmpCfg.trap_hosts[0] = xasHostWithAddress("127.0.0.1");
    snmpCfg.trap_hosts[1] = xasHostWithAddress("::1");
    const XasBackgroundProgram running = agent();
    EXPECT_THAT(complaints(running), IsEmpty());
    EXPECT_THAT((std::array{ipv4.next(), ipv4.next()}), UnorderedElementsAre("v1 alarms", "v2 alarms"));
    EXPECT_THAT((std::array{ipv6.next(), ipv6.next()}), UnorderedElementsAre("v1 alarms", "v2 alarms"));
}
