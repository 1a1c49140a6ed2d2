// Every type that the daemon acts upon can be described, set, watched and, where it is kept, got again.
#include "dispatch/settings.h"
#include "msg/fields.h"
#include "msg/type_names.h"
#include "support/serve_fixture.h"

#include <regex>

namespace {

class XmsHandledTypes : public XmsServeTest {
  protected:
    /** Sends the type with its defaults; whatever is answered at all is answered with success. */
    void set(std::uint32_t msgtype)
    {
        const std::string type = msgShortName(msgtype);
        const bool isAnswered = msgtype != XMSG_NOTIFY && msgtype != XMSG_NAT_NOTIFY;
        if (isAnswered)
            EXPECT_EQ(setAndAnswer({"set", type}, true), 0) << type;
        else
            EXPECT_EQ(run({"set", type}), 0) << type;
        if (!isAnswered)
            received = receive().value_or(XasMessage{});
        EXPECT_EQ(received.xH.msgtype, msgtype);
        EXPECT_TRUE(xasEventually([&] {
            return dir.read("watched").find("-> XMS  Set     " + type + " ") != std::string::npos;
        })) << type;
    }

    void get(std::uint32_t msgtype)
    {
        const std::string type = msgShortName(msgtype);
        const bool isStored = msgFieldsOf(msgtype)->stored;
        EXPECT_EQ(run({"get", type}), isStored ? 0 : 1) << type;
        for (const XasMsgFieldAt &where : xasListFields(*msgFieldsOf(msgtype))) {
            const bool isShown = isStored && where.field->group->fixed;
            const std::regex line{"(^|\n)  " + where.name + "( |\n)"};
            EXPECT_EQ(std::regex_search(dir.read("out"), line), isShown) << type << " " << where.name;
        }
    }
};

} // namespace

TEST_F(XmsHandledTypes, CanBeDescribedSetWatchedAndGot)
{
    serve({"--quiet"});
    const pid_t watcher = startProgram({"watch"}, "watched");
    ASSERT_TRUE(xasEventually([&] {
        EXPECT_EQ(run({"set", "notify"}), 0);
        EXPECT_TRUE(receive());
        return !dir.read("watched").empty();
    }));
    EXPECT_EQ(xasSettings().size(), 26U);
    for (const XasSetting &row : xasSettings()) {
        const std::string type = msgShortName(row.msgtype);
        ASSERT_NE(msgFieldsOf(row.msgtype), nullptr) << type;
        EXPECT_EQ(run({"describe", type}), 0) << type;
        EXPECT_THAT(dir.read("out"), Not(HasSubstr("not described"))) << type;
        set(row.msgtype);
        get(row.msgtype);
    }
    EXPECT_EQ(stop(), 0);
    EXPECT_EQ(statusOf(watcher), 3);
}
