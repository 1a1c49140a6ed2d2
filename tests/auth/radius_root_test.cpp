// The handler of RADIUS: what is its own beside what all settings share.
#include "auth/radius.h"

#include "support/login_files.h"

namespace {

class UpdateRadius : public XasLoginFilesTest {
  protected:
    UpdateRadius() { dir.write("radius", "# c\nold 1 2\n"); }

    const std::vector<std::string> TYPES = {"radius", "nsswitch", "system-auth"};
};

} // namespace

TEST_F(UpdateRadius, WritesItsServers)
{
    const XasMessage msg = XasMessageBuilder{XMSG_RADIUS}.set(
        "enabled=1 server1=rad1 secret1=one port1=1812 server2=10.0.0.2 secret2=two port2=1645 timeout=7");
    EXPECT_EQ(handle(xasUpdateRadiusCfg, msg, TYPES), 0);
    EXPECT_EQ(dir.read("radius"), "# c\nrad1:1812   one    7\n10.0.0.2:1645    two    7\n");
    EXPECT_EQ(xasModeOf(dir.path("radius")), 0600U);
    EXPECT_THAT(log.lines(), IsEmpty());
    expectDerivedFiles();
}
