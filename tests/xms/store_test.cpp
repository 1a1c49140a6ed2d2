#include "xms/store.h"

#include "support/files.h"
#include "support/message.h"

namespace {

/** The store is the test's directory. */
class XmsStore : public XasFilesTest {
  protected:
    XmsStore() { setenv("XMS_STORE", dir.path().c_str(), 1); }
    ~XmsStore() override { unsetenv("XMS_STORE"); }
};

XasMessage hostnameRecord(std::string_view name)
{
    return XasMessageBuilder{XMSG_HOSTNAME}.id(7).set("hostname", name);
}

XasMessage filterSet(std::uint8_t number, std::uint32_t action)
{
    return XasMessageBuilder{XMSG_IPFILTER_SET}.set("id", number).set("action", action);
}

} // namespace

TEST_F(XmsStore, ATypeWithoutNameIsNotStored)
{
    EXPECT_EQ(xmsStoreApplied(XasMessageBuilder{66}), "a message type without a name cannot be stored");
    EXPECT_THAT(dir.names(), IsEmpty());
}

TEST_F(XmsStore, AStoreThatCannotBeWrittenIsNamed)
{
    setenv("XMS_STORE", dir.write("file", "no directory").c_str(), 1);
    EXPECT_THAT(xmsStoreApplied(hostnameRecord("console1")),
                HasSubstr("cannot write " + dir.path("file") + "/XMSG_HOSTNAME.tmp: "));
}

TEST_F(XmsStore, ARecordThatCannotBeReplacedStaysAndLeavesNoTemporary)
{
    ASSERT_EQ(mkdir((dir.path("XMSG_HOSTNAME")).c_str(), 0755), 0);
    dir.write("XMSG_HOSTNAME/inside", "");
    EXPECT_THAT(xmsStoreApplied(hostnameRecord("console1")), HasSubstr("cannot replace "));
    EXPECT_THAT(dir.names(), ElementsAre("XMSG_HOSTNAME"));
}

TEST_F(XmsStore, NothingStoredIsNone)
{
    EXPECT_FALSE(xmsReadStored(hostnameRecord("console1")));
}

TEST_F(XmsStore, AFileOfAnotherSizeIsNone)
{
    dir.write("XMSG_HOSTNAME", std::string(2487, 'x'));
    EXPECT_FALSE(xmsReadStored(hostnameRecord("console1")));
}

TEST_F(XmsStore, ARecordIsOneWholeFileNamedByItsType)
{
    const XasMessage record = hostnameRecord("console1");
    EXPECT_EQ(xmsStoreApplied(record), "");
    EXPECT_THAT(dir.names(), ElementsAre("XMSG_HOSTNAME"));
    EXPECT_EQ(dir.read("XMSG_HOSTNAME"), xasMessageBytes(record));
    const auto stored = xmsReadStored(XasMessageBuilder{XMSG_HOSTNAME});
    ASSERT_TRUE(stored);
    EXPECT_EQ(xasValueIn(*stored, "hostname"), "console1");
}

TEST_F(XmsStore, ALaterRecordReplacesAnEarlierOne)
{
    EXPECT_EQ(xmsStoreApplied(hostnameRecord("console1")), "");
    EXPECT_EQ(xmsStoreApplied(hostnameRecord("console2")), "");
    EXPECT_EQ(xasValueIn(*xmsReadStored(hostnameRecord("")), "hostname"), "console2");
    EXPECT_THAT(dir.names(), ElementsAre("XMSG_HOSTNAME"));
}

TEST_F(XmsStore, TheDirectoryIsMadeWhenItIsMissing)
{
    setenv("XMS_STORE", dir.path("deep/store").c_str(), 1);
    EXPECT_EQ(xmsStoreApplied(hostnameRecord("console1")), "");
    EXPECT_TRUE(dir.has("deep/store/XMSG_HOSTNAME"));
}

TEST_F(XmsStore, FilterSetsAreKeptByNumberAndARemovedSetIsForgotten)
{
    EXPECT_EQ(xmsStoreApplied(filterSet(3, 0)), "");
    EXPECT_EQ(xmsStoreApplied(filterSet(64, 1)), "");
    EXPECT_THAT(dir.names(), ElementsAre("XMSG_IPFILTER_SET-3", "XMSG_IPFILTER_SET-64"));
    EXPECT_EQ(xmsStoreApplied(filterSet(3, 2)), "");
    EXPECT_THAT(dir.names(), ElementsAre("XMSG_IPFILTER_SET-64"));
    EXPECT_EQ(xmsStoreApplied(filterSet(3, 2)), ""); // once more: nothing to forget
}

TEST_F(XmsStore, EveryRecordIsFoundByTheNameOfItsFile)
{
    EXPECT_EQ(xmsStoreApplied(filterSet(2, 0)), "");
    EXPECT_EQ(xmsStoreApplied(filterSet(1, 0)), "");
    EXPECT_EQ(xmsStoreApplied(hostnameRecord("console1")), "");
    dir.write("XMSG_DNS", "short");
    dir.write("XMSG_NTP", xasMessageBytes(hostnameRecord("elsewhere")));
    dir.write("XMSG_HOSTNAME.tmp", xasMessageBytes(hostnameRecord("left")));
    const auto records = xmsReadAllStored();
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(xasValueIn(records[0], "hostname"), "console1");
    EXPECT_EQ(xasValueIn(records[1], "id"), "1");
    EXPECT_EQ(xasValueIn(records[2], "id"), "2");
}
