#include "xms/socket.h"

#include "support/files.h"
#include "xms/clients.h"
#include "xms/error.h"

using testing::Pair;

namespace {

class XmsSocket : public XasFilesTest {
  protected:
    std::string path() const { return dir.path("xms.sock"); }

    std::string complaintOfConnecting(const std::string &where)
    {
        try {
            xmsConnect(where);
        } catch (const XmsError &error) {
            status = error.status;
            return error.what();
        }
        return "connected";
    }

    XmsExit status = XmsExit::applied;
};

} // namespace

TEST_F(XmsSocket, NoServerIsSaidWithWhatToDo)
{
    EXPECT_EQ(complaintOfConnecting(path()), "no server at " + path() + ": start `xms serve`");
    EXPECT_EQ(status, XmsExit::noServer);
}

TEST_F(XmsSocket, ASocketThatNobodyServesAnyMoreIsNoServer)
{
    {
        const XmsDescriptor listener = xmsListen(path());
    }
    ASSERT_TRUE(dir.has("xms.sock"));
    EXPECT_THAT(complaintOfConnecting(path()), HasSubstr("start `xms serve`"));
}

TEST_F(XmsSocket, APathTooLongForASocketIsRefused)
{
    EXPECT_THAT(complaintOfConnecting("/" + std::string(108, 'a')), HasSubstr("1 to 107 characters"));
    EXPECT_EQ(status, XmsExit::usage);
}

TEST_F(XmsSocket, ASecondServerIsRefused)
{
    const XmsDescriptor first = xmsListen(path());
    EXPECT_THROW(xmsListen(path()), XmsError);
    EXPECT_EQ(complaintOfConnecting(path()), "connected");
}

TEST_F(XmsSocket, ALeftOverSocketIsReplacedAndBelongsToItsOwnerOnly)
{
    {
        const XmsDescriptor listener = xmsListen(path());
    }
    const XmsDescriptor again = xmsListen(path());
    EXPECT_EQ(complaintOfConnecting(path()), "connected");
    EXPECT_EQ(xasModeOf(path()), 0600U);
}

TEST_F(XmsSocket, LinesAreTakenOneByOne)
{
    std::string buffer = "one\ntwo\n\nhalf";
    EXPECT_EQ(xmsTakeLine(buffer), "one");
    EXPECT_EQ(xmsTakeLine(buffer), "two");
    EXPECT_EQ(xmsTakeLine(buffer), "");
    EXPECT_EQ(xmsTakeLine(buffer), std::nullopt);
    EXPECT_EQ(buffer, "half");
}

TEST_F(XmsSocket, LinesTravelBothWaysAndAClientThatGoesIsDropped)
{
    const XmsDescriptor listener = xmsListen(path());
    XmsClients clients;
    std::vector<std::pair<int, std::string>> heard;
    const auto hear = [&](int client, const std::string &line) {
        heard.emplace_back(client, line);
    };
    {
        const XmsDescriptor one = xmsConnect(path());
        const XmsDescriptor two = xmsConnect(path());
        xmsAcceptClients(clients, listener);
        xmsSendLine(two, "from two");
        xmsSendLine(one, "from one");
        xmsReadClients(clients, hear);
        EXPECT_THAT(heard, ElementsAre(Pair(1, "from one"), Pair(2, "from two")));

        xmsTell(clients, 2, "to two");
        xmsTell(clients, 9, "to nobody");
        clients.all.at(1).watches = true;
        xmsTellWatchers(clients, "to watchers");
        xmsFlushClients(clients);
        std::string buffer;
        EXPECT_EQ(xmsReadLine(two, buffer), "to two");
        EXPECT_EQ(buffer, "");
        EXPECT_EQ(xmsReadLine(one, buffer), "to watchers");
        EXPECT_TRUE(xmsDropGone(clients).empty());
    }
    xmsReadClients(clients, hear);
    EXPECT_THAT(xmsDropGone(clients), ElementsAre(1, 2));
    EXPECT_TRUE(clients.all.empty());
}

TEST_F(XmsSocket, AClientThatReadsNothingIsLetGo)
{
    const XmsDescriptor listener = xmsListen(path());
    const XmsDescriptor lazy = xmsConnect(path());
    XmsClients clients;
    xmsAcceptClients(clients, listener);
    const std::string line(1U << 20, 'x');
    for (int i = 0; i < 3; ++i)
        xmsTell(clients, 1, line);
    EXPECT_TRUE(xmsDropGone(clients).empty());
    xmsTell(clients, 1, line);
    EXPECT_THAT(xmsDropGone(clients), ElementsAre(1));
}

TEST_F(XmsSocket, TheEndOfTheServerEndsTheReading)
{
    XmsDescriptor client{-1};
    {
        const XmsDescriptor listener = xmsListen(path());
        client = xmsConnect(path());
    }
    std::string buffer;
    EXPECT_EQ(xmsReadLine(client, buffer), std::nullopt);
}
