// Application lists that were tampered with, and that the check finds nothing wrong in, given to the built
// daemon.
#include "xms/check.h"

#include "core/sysapp_parser.h"
#include "support/daemon.h"
#include "support/mutated.h"

namespace {

/** So many lists are tried at most, and so many of those that are clean are given to a daemon. */
constexpr int LISTS = 2000;
constexpr int CLEAN_LISTS = 12;

class DaemonCheckedList : public XasFilesTest {
  protected:
    DaemonCheckedList()
    {
        stubs.make("start");
        stubs.make("stop");
        dir.write("resolv", "");
        dir.write("dnsprec", "");
    }

    std::string whole() const
    {
        return xasSysappText(
            {{.name = "dns",
              .startScript = stubs.path("start") + " dns",
              .cfgFiles = {{"resolv", dir.path("resolv")}, {"dnsprec", dir.path("dnsprec")}}},
             {.name = "userlist",
              .startScript = stubs.path("start") + " userlist",
              .stopScript = stubs.path("stop") + " userlist"}});
    }

    bool isClean(const std::string &list) const
    {
        const XmsFindings findings = xmsCheckList(dir.write("sysapp.xml", list), "/");
        return std::ranges::all_of(findings,
                                   [](const XmsFinding &finding) { return finding.worry == XmsWorry::hint; });
    }

    /** Has a daemon serve the settings of the list: those of its applications are applied. */
    void expectServed(const std::string &list) const
    {
        XasAppList apps;
        ASSERT_EQ(xasLoadAppList(dir.path("sysapp.xml").c_str(), apps), 0) << list;
        XasTestDaemon daemon;
        daemon.startWithList(list);
        const bool hasDns = xasFindApp("dns", apps) != nullptr;
        EXPECT_EQ(daemon.outcome(XasMessageBuilder{XMSG_DNS}.id(1).set("dns1=192.0.2.53")) == XAS_APPLIED,
                  hasDns)
            << list;
        EXPECT_EQ(daemon.outcome(XasMessageBuilder{XMSG_USERLIST}.id(2)) == XAS_APPLIED,
                  xasFindApp("userlist", apps) != nullptr)
            << list;
        EXPECT_TRUE(daemon.isAlive());
        EXPECT_EQ(dir.read("resolv") == "192.0.2.53\n", hasDns);
        dir.write("resolv", "");
    }

    XasStubs stubs;
};

} // namespace

TEST_F(DaemonCheckedList, TheWholeOneIsServed)
{
    ASSERT_TRUE(isClean(whole()));
    expectServed(whole());
}

TEST_F(DaemonCheckedList, WhatWasTamperedWithAndIsCleanIsServed)
{
    std::mt19937 random{16};
    int clean = 0;
    for (int i = 0; i < LISTS && clean < CLEAN_LISTS; ++i) {
        const std::string list = xasMutatedList(whole(), random);
        if (list == whole() || !isClean(list))
            continue;
        ++clean;
        expectServed(list);
    }
    EXPECT_EQ(clean, CLEAN_LISTS);
}
