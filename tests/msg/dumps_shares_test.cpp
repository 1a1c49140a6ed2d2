// The dumps of the SNMP agent and of shares, against lines worked out by hand.
#include "msg/print.h"
#include "support/message.h"
#include "support/test.h"

TEST(MsgDumpSnmp, AnEmptyRecordHasEmptyTexts)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_SNMP}),
              "ro_community:  rw_community:  trap_community:  v3user:  v3pass:  v3phrase: \n"
              "v3rwuser:  v3rwpass:  v3rwphrase:  v3security: n v3auth: n v3encrypt: n alarm_delay: 0\n");
}

TEST(MsgDumpSnmp, CommunitiesAndBothUsersAreShown)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_SNMP}
                             .set("alarm_delay=30 v3user=reader v3pass=readerauth")
                             .set("v3phrase", "reader phrase")
                             .set("v3rwuser=writer v3rwpass=writerauth v3rwphrase=writerphrase "
                                  "v3security=2 v3auth=1 v3encrypt=0 ro_community=public "
                                  "rw_community=private trap_community=traps")),
              "ro_community: public rw_community: private trap_community: traps v3user: reader v3pass: "
              "readerauth v3phrase: reader phrase\n"
              "v3rwuser: writer v3rwpass: writerauth v3rwphrase: writerphrase v3security: y v3auth: y "
              "v3encrypt: n alarm_delay: 30\n");
}

TEST(MsgDumpSnmp, TextsEndWithTheirFields)
{
    XasMessageBuilder message{XMSG_SNMP};
    char letter = 'a';
    for (const char *name : {"v3user", "v3pass", "v3phrase", "v3rwuser", "v3rwpass", "v3rwphrase",
                             "ro_community", "rw_community", "trap_community"})
        message.set(name, std::string(21, letter++));
    const auto text = [](char character) {
        return std::string(21, character);
    };
    EXPECT_EQ(msgAllText(message.set("alarm_delay", 0xFFFFFFFF)),
              "ro_community: " + text('g') + " rw_community: " + text('h') + " trap_community: " + text('i') +
                  " v3user: " + text('a') + " v3pass: " + text('b') + " v3phrase: " + text('c') +
                  "\nv3rwuser: " + text('d') + " v3rwpass: " + text('e') + " v3rwphrase: " + text('f') +
                  " v3security: n v3auth: n v3encrypt: n alarm_delay: -1\n");
}

TEST(MsgDumpNfs, AllThreeMountsAreShownUsedOrNot)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NFS}.set(
                  "mount2.rem_dir=server:/exports mount2.local_dir=/backup mount2.read_write=1 "
                  "mount2.mount=1")),
              "rem_dir:  local_dir:  read_write: n mount: n\n"
              "rem_dir: server:/exports local_dir: /backup read_write: y mount: y\n"
              "rem_dir:  local_dir:  read_write: n mount: n\n");
}

TEST(MsgDumpNfs, TextsEndWithTheirFields)
{
    XasMessageBuilder message{XMSG_NFS};
    std::string lines;
    for (const std::string mount : {"mount1", "mount2", "mount3"}) {
        message.set(mount + ".rem_dir", std::string(129, 'r'))
            .set(mount + ".local_dir", std::string(131, 'l'));
        lines += "rem_dir: " + std::string(129, 'r') + " local_dir: " + std::string(131, 'l') +
                 " read_write: n mount: n\n";
    }
    EXPECT_EQ(msgAllText(message), lines);
}

TEST(MsgDumpCifs, AnEmptyRecordHasEmptyTexts)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_CIFS}), "enabled: n eth1: n eth2: n\n"
                                                        "lanman_pwd:  lct_field: \n"
                                                        "nt_pwd:  workgroup: \n");
}

TEST(MsgDumpCifs, ThePasswordsAndTheWorkgroupAreShown)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_CIFS}.set(
                  "enabled=1 eth1=0 eth2=1 lanman_pwd=0123456789ABCDEF0123456789ABCDEF "
                  "nt_pwd=FEDCBA9876543210FEDCBA9876543210 lct_field=LCT-0123ABCD workgroup=OFFICE")),
              "enabled: y eth1: n eth2: y\n"
              "lanman_pwd: 0123456789ABCDEF0123456789ABCDEF lct_field: LCT-0123ABCD\n"
              "nt_pwd: FEDCBA9876543210FEDCBA9876543210 workgroup: OFFICE\n");
}

TEST(MsgDumpCifs, TextsEndWithTheirFieldsAndTheWorkgroupWithTheRecord)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_CIFS}
                             .set("lanman_pwd", std::string(33, 'l'))
                             .set("nt_pwd", std::string(33, 'n'))
                             .set("lct_field", std::string(17, 't'))
                             .set("workgroup", std::string(2488 - 215, 'w'))),
              "enabled: n eth1: n eth2: n\nlanman_pwd: " + std::string(33, 'l') +
                  " lct_field: " + std::string(17, 't') + "\nnt_pwd: " + std::string(33, 'n') +
                  " workgroup: " + std::string(2273, 'w') + "\n");
}
