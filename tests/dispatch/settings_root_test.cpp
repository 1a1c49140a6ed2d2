// Which models of the appliance have the device of "xpb": the description at its fixed path decides.
#include "support/dispatcher_fixture.h"

#include <set>

namespace {

constexpr const char *DESCRIPTION = "/etc/qvtx/info";

class XpbModel : public XasDispatcherTest {
  protected:
    XpbModel()
    {
        apps = xasTestAppList({{.name = "xpb", .startScript = "/bin/true", .stopScript = "/bin/true"}});
    }

    /** Whether the application runs after a message that wants it on. */
    bool isStarted()
    {
        app("xpb").running = 0;
        EXPECT_EQ(outcome(XasMessageBuilder{XMSG_APPLICATION}.set("application=xpb start=yes")), XAS_APPLIED);
        return app("xpb").running != 0;
    }

    bool isStartedWith(const std::string &description)
    {
        xasWriteFile(DESCRIPTION, description);
        return isStarted();
    }
};

} // namespace

TEST_F(XpbModel, IsNoneWithoutADescription)
{
    EXPECT_FALSE(isStarted());
}

TEST_F(XpbModel, IsNoneInADescriptionWithoutAModelLine)
{
    EXPECT_FALSE(isStartedWith(""));
    EXPECT_FALSE(isStartedWith("name=13\nMODEL=13\nmodel 13\n"));
}

TEST_F(XpbModel, IsNoneWithoutANumber)
{
    EXPECT_FALSE(isStartedWith("model=\n"));
    EXPECT_FALSE(isStartedWith("model=x13\n"));
}

TEST_F(XpbModel, StopsButDoesNotStartWithAModelWithoutTheDevice)
{
    app("xpb").stopScript = script("stop");
    app("xpb").startScript = script("start");
    app("xpb").running = 1;
    xasWriteFile(DESCRIPTION, "model=12\n");
    EXPECT_EQ(outcome(XasMessageBuilder{XMSG_APPLICATION}.set("application=xpb start=yes")), XAS_APPLIED);
    EXPECT_THAT(stubs.lines(), ElementsAre(stubs.path("stop")));
    EXPECT_EQ(app("xpb").running, 0);
}

TEST_F(XpbModel, IsNotStartedWhenTheMessageDoesNotWantIt)
{
    xasWriteFile(DESCRIPTION, "model=13\n");
    EXPECT_EQ(outcome(XasMessageBuilder{XMSG_APPLICATION}.set("application=xpb")), XAS_APPLIED);
    EXPECT_EQ(app("xpb").running, 0);
}

TEST_F(XpbModel, HasTheDeviceInSixRangesOfModels)
{
    std::set<int> having;
    for (const auto &[first, last] : {std::pair{13, 16}, {29, 32}, {45, 48}, {61, 64}, {77, 80}, {93, 97}}) {
        for (int model = first; model <= last; ++model)
            having.insert(model);
    }
    for (int model = 0; model <= 255; ++model)
        EXPECT_EQ(isStartedWith("model=" + std::to_string(model) + "\n"), having.contains(model)) << model;
}

TEST_F(XpbModel, IsAnUnsignedEightBitNumber)
{
    EXPECT_TRUE(isStartedWith("model=269\n")) << "256 + 13";
    EXPECT_FALSE(isStartedWith("model=256\n"));
    EXPECT_TRUE(isStartedWith("model=-243\n")) << "13 - 256";
}

TEST_F(XpbModel, StandsAnywhereInTheFirstLineThatHasIt)
{
    EXPECT_TRUE(isStartedWith("serial=7\n# the model= 29 rack\nmodel=12\n"));
    EXPECT_FALSE(isStartedWith("serial=7\nmodel=12\nmodel=13\n"));
}

TEST_F(XpbModel, IsLookedForInPiecesOfALongLine)
{
    EXPECT_TRUE(isStartedWith(std::string(99, 'x') + "model=13\n"));
    EXPECT_FALSE(isStartedWith(std::string(96, 'x') + "model=13\n")) << "cut in two: \"mod\" and \"el=13\"";
}

TEST_F(XpbModel, IsNoneWhenADirectoryStandsInTheDescriptionsPlace)
{
    std::filesystem::create_directories(DESCRIPTION);
    EXPECT_FALSE(isStarted());
}
