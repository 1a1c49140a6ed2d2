// The dumps of the SNMP agent and of shares, against lines worked out by hand; offsets are those of the
// record.
#include "msg/print.h"
#include "support/message.h"

#include <gtest/gtest.h>

TEST(MsgDumpSnmp, AnEmptyRecordHasEmptyTexts)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_SNMP}.build()),
              "ro_community:  rw_community:  trap_community:  v3user:  v3pass:  v3phrase: \n"
              "v3rwuser:  v3rwpass:  v3rwphrase:  v3security: n v3auth: n v3encrypt: n alarm_delay: 0\n");
}

TEST(MsgDumpSnmp, CommunitiesAndBothUsersAreShown)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_SNMP}
                             .word(124, 30)
                             .bytes(322, "reader")
                             .bytes(343, "readerauth")
                             .bytes(364, "reader phrase")
                             .bytes(385, "writer")
                             .bytes(406, "writerauth")
                             .bytes(427, "writerphrase")
                             .word(448, 2)
                             .word(452, 1)
                             .word(456, 0)
                             .bytes(460, "public")
                             .bytes(481, "private")
                             .bytes(502, "traps")
                             .build()),
              "ro_community: public rw_community: private trap_community: traps v3user: reader v3pass: "
              "readerauth v3phrase: reader phrase\n"
              "v3rwuser: writer v3rwpass: writerauth v3rwphrase: writerphrase v3security: y v3auth: y "
              "v3encrypt: n alarm_delay: 30\n");
}

TEST(MsgDumpSnmp, TextsEndWithTheirFields)
{
    XasMessageBuilder message{XMSG_SNMP};
    char letter = 'a';
    for (const std::size_t offset : {322U, 343U, 364U, 385U, 406U, 427U, 460U, 481U, 502U})
        message.bytes(offset, std::string(21, letter++));
    const auto text = [](char character) {
        return std::string(21, character);
    };
    EXPECT_EQ(msgAllText(message.word(124, 0xFFFFFFFF).build()),
              "ro_community: " + text('g') + " rw_community: " + text('h') + " trap_community: " + text('i') +
                  " v3user: " + text('a') + " v3pass: " + text('b') + " v3phrase: " + text('c') +
                  "\nv3rwuser: " + text('d') + " v3rwpass: " + text('e') + " v3rwphrase: " + text('f') +
                  " v3security: n v3auth: n v3encrypt: n alarm_delay: -1\n");
}

TEST(MsgDumpNfs, AllThreeMountsAreShownUsedOrNot)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_NFS}
                             .bytes(388, "server:/exports")
                             .bytes(517, "/backup")
                             .word(648, 1)
                             .word(652, 1)
                             .build()),
              "rem_dir:  local_dir:  read_write: n mount: n\n"
              "rem_dir: server:/exports local_dir: /backup read_write: y mount: y\n"
              "rem_dir:  local_dir:  read_write: n mount: n\n");
}

TEST(MsgDumpNfs, TextsEndWithTheirFields)
{
    XasMessageBuilder message{XMSG_NFS};
    std::string lines;
    for (const std::size_t mount : {120U, 388U, 656U}) {
        message.bytes(mount, std::string(129, 'r')).bytes(mount + 129, std::string(131, 'l'));
        lines += "rem_dir: " + std::string(129, 'r') + " local_dir: " + std::string(131, 'l') +
                 " read_write: n mount: n\n";
    }
    EXPECT_EQ(msgAllText(message.build()), lines);
}

TEST(MsgDumpCifs, AnEmptyRecordHasEmptyTexts)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_CIFS}.build()), "enabled: n eth1: n eth2: n\n"
                                                                "lanman_pwd:  lct_field: \n"
                                                                "nt_pwd:  workgroup: \n");
}

TEST(MsgDumpCifs, ThePasswordsAndTheWorkgroupAreShown)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_CIFS}
                             .word(120, 1)
                             .word(124, 0)
                             .word(128, 1)
                             .bytes(132, "0123456789ABCDEF0123456789ABCDEF")
                             .bytes(165, "FEDCBA9876543210FEDCBA9876543210")
                             .bytes(198, "LCT-0123ABCD")
                             .bytes(215, "OFFICE")
                             .build()),
              "enabled: y eth1: n eth2: y\n"
              "lanman_pwd: 0123456789ABCDEF0123456789ABCDEF lct_field: LCT-0123ABCD\n"
              "nt_pwd: FEDCBA9876543210FEDCBA9876543210 workgroup: OFFICE\n");
}

TEST(MsgDumpCifs, TextsEndWithTheirFieldsAndTheWorkgroupWithTheRecord)
{
    EXPECT_EQ(msgAllText(XasMessageBuilder{XMSG_CIFS}
                             .bytes(132, std::string(33, 'l'))
                             .bytes(165, std::string(33, 'n'))
                             .bytes(198, std::string(17, 't'))
                             .bytes(215, std::string(2488 - 215, 'w'))
                             .build()),
              "enabled: n eth1: n eth2: n\nlanman_pwd: " + std::string(33, 'l') +
                  " lct_field: " + std::string(17, 't') + "\nnt_pwd: " + std::string(33, 'n') +
                  " workgroup: " + std::string(2273, 'w') + "\n");
}
