#include "platform/config_store.h"

#include "platform/config_library.h"
#include "support/files.h"
#include "support/message.h"

#include <cstdlib>
#include <sys/stat.h>
namespace {

/** A store of its own, and what the library says on its diagnostics stream. */
class ConfigStore : public XasFilesTest {
  protected:
    ConfigStore() { ::setenv("XMS_STORE", dir.path().c_str(), 1); }
    ~ConfigStore() override { ::unsetenv("XMS_STORE"); }

    int get(unsigned msgtype)
    {
        char *text = nullptr;
        std::size_t size = 0;
        FILE *const diag = ::open_memstream(&text, &size);
        const int result = xmlGetMsg(diag, msgtype, &msg);
        std::fclose(diag);
        said = text;
        std::free(text);
        return result;
    }

    void store(std::string_view name, const XasMessage &record) const
    {
        dir.write(name, xasMessageBytes(record));
    }

    XasMessage msg = XasMessageBuilder{XMSG_SSH}.id(99);
    std::string said;
};

} // namespace

TEST_F(ConfigStore, HasNothingStoredForAMissingFileAndLeavesTheRecordAsItWas)
{
    const XasMessage before = msg;
    EXPECT_NE(get(XMSG_ETH), 0);
    EXPECT_EQ(std::memcmp(&msg, &before, sizeof msg), 0);
    EXPECT_EQ(said, "");
}

TEST_F(ConfigStore, RefusesAFileOfAnotherSizeAndReportsIt)
{
    for (const std::size_t size : {0U, 1U, 2487U, 2489U, 8000U}) {
        dir.write("XMSG_ETH", std::string(size, 'x'));
        const XasMessage before = msg;
        EXPECT_NE(get(XMSG_ETH), 0) << size;
        EXPECT_EQ(std::memcmp(&msg, &before, sizeof msg), 0) << size;
        EXPECT_NE(said.find(dir.path("XMSG_ETH")), std::string::npos) << size;
    }
}

TEST_F(ConfigStore, WaitsForNobodyWhereAPipeStandsInARecordsPlace)
{
    ASSERT_EQ(::mkfifo(dir.path("XMSG_ETH").c_str(), 0644), 0);
    EXPECT_NE(get(XMSG_ETH), 0);
    EXPECT_NE(said.find(dir.path("XMSG_ETH")), std::string::npos);
}

TEST_F(ConfigStore, RefusesADirectoryWhereARecordShouldBe)
{
    ASSERT_EQ(::system(("mkdir " + dir.path("XMSG_ETH")).c_str()), 0);
    EXPECT_NE(get(XMSG_ETH), 0);
}

TEST_F(ConfigStore, HasNothingStoredForATypeWithoutAName)
{
    for (const unsigned type : {0U, 66U, 69U, 0xFFFFFFFFU})
        EXPECT_NE(get(type), 0) << type;
}

TEST_F(ConfigStore, GivesTheStoredRecordWhole)
{
    const XasMessage stored = XasMessageBuilder{XMSG_ETH}.id(7).set("eth1.enabled", 1).bytes(2484, "last");
    store("XMSG_ETH", stored);
    EXPECT_EQ(get(XMSG_ETH), 0);
    EXPECT_EQ(std::memcmp(&msg, &stored, sizeof msg), 0);
    EXPECT_EQ(said, "");
}

TEST_F(ConfigStore, FindsAnAssignmentByTheInterfaceThatTheRecordAsksFor)
{
    const XasMessage stored = XasMessageBuilder{XMSG_IPFILTER_ASSIGN}.id(5);
    store("XMSG_IPFILTER_ASSIGN-1-200", stored);
    msg = XasMessageBuilder{XMSG_IPFILTER_ASSIGN}.set("iface_type", 1).set("iface_id", 200);
    EXPECT_EQ(get(XMSG_IPFILTER_ASSIGN), 0);
    EXPECT_EQ(msg.xH.id, 5U);
    msg = XasMessageBuilder{XMSG_IPFILTER_ASSIGN}.set("iface_type", 1).set("iface_id", 201);
    EXPECT_NE(get(XMSG_IPFILTER_ASSIGN), 0);
}

TEST_F(ConfigStore, FindsAFilterSetByItsNumber)
{
    store("XMSG_IPFILTER_SET-255", XasMessageBuilder{XMSG_IPFILTER_SET}.id(6));
    msg = XasMessageBuilder{XMSG_IPFILTER_SET}.set("id", 255);
    EXPECT_EQ(get(XMSG_IPFILTER_SET), 0);
    EXPECT_EQ(msg.xH.id, 6U);
}

TEST(ConfigStoreNames, AreTheTypesNames)
{
    EXPECT_EQ(xasStoreRecordName(XMSG_ETH, {}), "XMSG_ETH");
    EXPECT_EQ(xasStoreRecordName(XMSG_SSH, {}), "XMSG_SSH");
    EXPECT_EQ(xasStoreRecordName(66, {}), "");
}

TEST(ConfigStoreDirectory, IsTheOneOfTheEnvironmentElseTheAppliances)
{
    ::unsetenv("XMS_STORE");
    EXPECT_EQ(xasStoreDirectory(), "/r58/store");
    ::setenv("XMS_STORE", "", 1);
    EXPECT_EQ(xasStoreDirectory(), "/r58/store");
    ::setenv("XMS_STORE", "/tmp/elsewhere", 1);
    EXPECT_EQ(xasStoreDirectory(), "/tmp/elsewhere");
    ::unsetenv("XMS_STORE");
}
