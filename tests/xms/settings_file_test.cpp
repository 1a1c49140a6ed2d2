#include "xms/settings_file.h"

#include "support/message.h"
#include "support/test.h"
#include "xms/setting.h"

#include <random>

namespace {

struct Read {
    std::vector<XmsFileSetting> settings;
    std::vector<std::string> complaints;
};

Read read(const std::string &text)
{
    std::istringstream file{text};
    Read result;
    result.settings = xmsReadSettings(file, "file", result.complaints);
    return result;
}

/** "type@line field=value@line ..." of each setting. */
std::vector<std::string> settingsOf(const std::string &text)
{
    const Read result = read(text);
    EXPECT_THAT(result.complaints, IsEmpty());
    std::vector<std::string> texts;
    for (const XmsFileSetting &setting : result.settings) {
        texts.push_back(setting.type + "@" + std::to_string(setting.line));
        for (const XmsFileField &field : setting.fields)
            texts.back() +=
                " " + field.assignment.name + "=" + field.assignment.value + "@" + std::to_string(field.line);
    }
    return texts;
}

/** The record that the only setting of a file makes. */
XasMessage recordIn(const std::string &text)
{
    const Read result = read(text);
    EXPECT_THAT(result.complaints, IsEmpty()) << text;
    EXPECT_EQ(result.settings.size(), 1U) << text;
    std::vector<XmsAssignment> assignments;
    for (const XmsFileField &field : result.settings.at(0).fields)
        assignments.push_back(field.assignment);
    return xmsBuildSetting(xmsTypeFromText(result.settings.at(0).type), assignments,
                           XasValueCheck::anyThatFits)
        .record;
}

} // namespace

TEST(XmsSettingsFile, WhatIsNoFileOfSettingsIsRefusedWithTheLine)
{
    EXPECT_THAT(read("").complaints, ElementsAre("file:1: no message types with their fields are here"));
    EXPECT_THAT(read("hello").complaints, ElementsAre("file:1: no message types with their fields are here"));
    EXPECT_THAT(read("a: {}\n---\nb: {}\n").complaints,
                ElementsAre("file:1: no message types with their fields are here"))
        << "one document";
    EXPECT_THAT(read("dns:\n  dns1: [1\n").complaints, ElementsAre(StartsWith("file:3: ")));
    EXPECT_THAT(read(std::string(5000000, ' ')).complaints,
                ElementsAre("file:1: this is too long for a file of settings"));
    EXPECT_THAT(read(std::string(100000, '[')).complaints, testing::SizeIs(1)) << "nested without end";
}

TEST(XmsSettingsFile, EveryMistakeIsTold)
{
    EXPECT_THAT(read("dns: none\n"
                     "hostname:\n"
                     "  hostname: [a]\n"
                     "  domain: b\n"
                     "  domain: c\n"
                     "dns: {}\n"
                     "eth:\n"
                     "  eth1:\n"
                     "    deep: {er: 1}\n"
                     "    null: 1\n"
                     "ntp:\n"
                     "  sync:\n")
                    .complaints,
                ElementsAre("file:1: dns: its fields are missing, each with its value",
                            "file:3: hostname: hostname has no value",
                            "file:5: hostname: domain is there twice",
                            "file:6: dns is there twice; several of a type are a list",
                            "file:9: eth: eth1.deep has no value", "file:10: eth: this is no name of a field",
                            "file:12: ntp: sync has no value"));
}

TEST(XmsSettingsFile, FieldsStandByThemselvesOrTogetherAndTypesAlsoInLists)
{
    EXPECT_THAT(settingsOf("# a comment\n"
                           "hostname:\n"
                           "  hostname: console1\n"
                           "eth:\n"
                           "  eth1.source: static\n"
                           "  eth2: {source: dhcp, mtu: 0x5dc}\n"
                           "ipfilter_set:\n"
                           "  - id: 1\n"
                           "    name: \"a\\tb\"\n"
                           "  - {id: 2}\n"
                           "userlist:\n"),
                ElementsAre("hostname@2 hostname=console1@3",
                            "eth@4 eth1.source=static@5 eth2.source=dhcp@6 eth2.mtu=0x5dc@6",
                            "ipfilter_set@8 id=1@8 name=a\tb@9", "ipfilter_set@10 id=2@10", "userlist@11"));
}

TEST(XmsSettingsFile, JsonIsReadToo)
{
    EXPECT_THAT(settingsOf(R"({"dns": {"dns1": "10.0.0.1", "prefer_ipv4": true},
                               "eth": {"eth1": {"mtu": 1500}}, "ipfilter_set": [{"id": 1}]})"),
                ElementsAre("dns@1 dns1=10.0.0.1@1 prefer_ipv4=true@1", "eth@2 eth1.mtu=1500@2",
                            "ipfilter_set@2 id=1@2"));
}

TEST(XmsSettingsFile, AFileIsWrittenWithTextsInQuotesAndElementsTogether)
{
    const XasMessage filter = XasMessageBuilder{XMSG_IPFILTER_SET}.set(
        "id=2 name=office num_rules=1 rule1.ip=10.9.0.7 rule1.range_end=none rule1.masklength=32 "
        "rule1.protocol=all rule1.target=drop");
    const XasMessage first = XasMessageBuilder{XMSG_IPFILTER_SET}.set("id=1 name=a");
    const XasMessage host = XasMessageBuilder{XMSG_HOSTNAME}.set("hostname", "no");
    EXPECT_EQ(xmsSettingsYaml({filter, XasMessageBuilder{XMSG_SSH}, host, first}),
              "hostname:\n"
              "  hostname: \"no\"\n"
              "  domain: \"\"\n"
              "ipfilter_set:\n"
              "  - id: 2\n"
              "    name: \"office\"\n"
              "    action: create\n"
              "    rule1:\n"
              "      ip: 10.9.0.7\n"
              "      range_end: none\n"
              "      masklength: 32\n"
              "      protocol: all\n"
              "      portrange: \"\"\n"
              "      target: drop\n"
              "  - id: 1\n"
              "    name: \"a\"\n"
              "    action: create\n"
              "# ssh is stored, but its fields are not described\n");
    EXPECT_EQ(xmsJsonLine(xmsSettingsJson({host, first, XasMessageBuilder{XMSG_IPFILTER_SET}.set("id=3")})),
              R"({"hostname":{"hostname":"no","domain":""},"ipfilter_set":[)"
              R"({"id":1,"name":"a","action":"create"},{"id":3,"name":"","action":"create"}]})");
}

TEST(XmsSettingsFile, OfUsersOnlyTheRulesAreWritten)
{
    const XasMessage record =
        XasMessageBuilder{XMSG_LOCALUSERS}.set("users_included=yes num_users=2 max_attempts=3");
    EXPECT_THAT(xmsSettingsYaml({record}),
                AllOf(HasSubstr("  max_attempts: 3\n"), Not(HasSubstr("users_included")),
                      Not(HasSubstr("num_users"))));
}

TEST(XmsSettingsFile, ACountThatDoesNotFitItsElementsIsWritten)
{
    const XasMessage record = XasMessageBuilder{XMSG_IPFILTER_SET}.set("id=1 num_rules=7 rule1.ip=10.9.0.7");
    EXPECT_THAT(xmsSettingsYaml({record}), HasSubstr("  num_rules: 7\n"));
}

TEST(XmsSettingsFile, WhatIsWrittenMakesTheSameRecordAgainWhateverItHolds)
{
    std::mt19937 random{16};
    for (std::uint32_t msgtype = 1; msgtype <= 68; ++msgtype) {
        const XasMsgFields *fields = msgFieldsOf(msgtype);
        if (fields == nullptr || msgtype == XMSG_LOCALUSERS)
            continue;
        for (int round = 0; round < 20; ++round) {
            XasMessage record = XasMessageBuilder{msgtype};
            for (std::byte &byte : record.payload)
                byte = std::byte(round == 0 || random() % 3 == 0 ? 0 : random());
            // As the tool itself would store it: any flag is 0 or 1, any address of one of its forms.
            XasMessage settable = xmsDefaultRecord(msgtype);
            for (const XasMsgFieldAt &where : xasListFields(*fields))
                msgSetValue(xasBytesOf(settable), where, msgValueText(xasBytesOf(record), where),
                            XasValueCheck::anyThatFits);
            EXPECT_EQ(xmsFieldsLine(recordIn(xmsSettingsYaml({settable}))), xmsFieldsLine(settable))
                << msgtype;
        }
    }
}

TEST(XmsSettingsFile, TextsOfAnyBytesComeBack)
{
    for (const std::string text :
         {"yes", "~", "null", " a ", "# x", "a: b", "\"'\\", "\xC3\xA4\xE2\x82\xAC", "\xFF\xFE", "a\xC3",
          "\x01\x1b[0m\x7f", "\xC2\x85\xE2\x80\xA8", "\n\r\t", "1e3"}) {
        const XasMessage record = XasMessageBuilder{XMSG_HOSTNAME}.raw("hostname", text);
        EXPECT_EQ(xasMessageBytes(recordIn(xmsSettingsYaml({record}))), xasMessageBytes(record)) << text;
    }
}
