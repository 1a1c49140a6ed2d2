#include "xms/asking.h"

#include "support/files.h"
#include "support/message.h"
#include "xms/clients.h"
#include "xms/error.h"

namespace {

/** Asks a server that is in this process for a host name to be set. */
class XmsAsking : public XasFilesTest {
  protected:
    XmsAsking() { xmsAcceptClients(clients, listener); }

    void answer() { answerWith(R"({"result":"sent","id":4})"); }

    void answerWith(std::string_view line)
    {
        xmsTell(clients, 1, line);
        xmsFlushClients(clients);
    }

    XmsOutcome ask(const XmsPatience &patience) const
    {
        return xmsAskToSet(server, XasMessageBuilder{XMSG_HOSTNAME}, {}, 30, patience);
    }

    std::string path = dir.path("xms.sock");
    XmsDescriptor listener = xmsListen(path);
    XmsDescriptor server = xmsConnect(path);
    XmsClients clients;
    int told = 0;
};

} // namespace

TEST_F(XmsAsking, AnAnswerWhosePartsAreOfAnotherKindIsAComplaint)
{
    for (const char *line :
         {R"({"result":7})", R"({"result":"error","problem":7})", R"({"result":"sent","id":-1})",
          R"({"result":"sent","id":1e300})", R"({"result":"answered","record":[]})",
          R"({"result":"timeout","id":1,"problem":{}})"}) {
        answerWith(line);
        EXPECT_THROW(ask({}), XmsError) << line;
    }
}

TEST_F(XmsAsking, TrafficWhosePartsAreOfAnotherKindIsAComplaint)
{
    for (const char *line :
         {R"({"time_ms":"now"})", R"({"time_ms":1e300})", R"({"to_daemon":1})", R"({"bytes":0})"})
        EXPECT_THROW(xmsTrafficFrom(XmsJson::parse(line)), XmsError) << line;
}

TEST_F(XmsAsking, AWaitThatTriesThePatienceIsToldOnce)
{
    const auto tell = [&] {
        ++told;
        answer();
    };
    EXPECT_EQ(ask({.tell = tell, .limit = 0ms}).id, 4U);
    EXPECT_EQ(told, 1);
}

TEST_F(XmsAsking, AnAnswerInTimeIsNotPrecededByAnything)
{
    answer();
    EXPECT_EQ(ask({.tell =
                       [&] {
                           ++told;
                       }})
                  .result,
              "sent");
    EXPECT_EQ(told, 0);
}

TEST_F(XmsAsking, PeopleAreToldAfterASecond)
{
    EXPECT_EQ(XmsPatience{}.limit, 1000ms);
}
