// Where the fields of every message stand: the one place with their offsets and widths as literals. Offsets
// count from the start of the record. A text whose end is not told ends where the next field begins.
#include "auth/user_message.h"
#include "msg/fields.h"
#include "support/test.h"
#include "wire/message_names.h"

#include <ostream>

namespace {

constexpr std::size_t END = 2488;

struct Place {
    std::string name;
    std::size_t offset;
    std::size_t width;

    bool operator==(const Place &) const = default;
};

std::ostream &operator<<(std::ostream &out, const Place &place)
{
    return out << place.name << ' ' << place.offset << ' ' << place.width;
}

using Fields = std::vector<Place>;

struct Layout {
    std::uint32_t msgtype;
    Fields fields;
};

std::ostream &operator<<(std::ostream &out, const Layout &layout)
{
    return out << layout.msgtype;
}

/** The fields as they are described, groups spread out, in the order of the record. */
Fields described(const XasMsgFields &fields)
{
    Fields places;
    for (const XasMsgFieldAt &where : xasListFields(fields))
        places.push_back({where.name, where.place.offset, where.place.width});
    return places;
}

/** The fields of `count` elements of a group, given those of the first. */
Fields repeated(std::string_view group, std::size_t count, std::size_t stride, const Fields &fields)
{
    Fields all;
    for (std::size_t element = 0; element < count; ++element) {
        for (const auto &[name, offset, width] : fields)
            all.push_back({std::string{group} + std::to_string(element + 1) + "." + name,
                           offset + element * stride, width});
    }
    return all;
}

Fields operator+(Fields fields, const Fields &more)
{
    fields.insert(fields.end(), more.begin(), more.end());
    return fields;
}

/** A user as XMSG_USER carries it; in the list of users, too, it stands behind 120 bytes of header. */
const Fields USER = {{"login", 120, 33},
                     {"password", 120 + 33, 67},
                     {"uid", 120 + 100, 4},
                     {"listen", 120 + 104, 8},
                     {"data", 120 + 112, 8},
                     {"clear", 120 + 120, 8},
                     {"outlets", 120 + 128, 1},
                     {"escseq", 120 + 129, 11},
                     {"brkseq", 120 + 140, 11},
                     {"menu", 120 + 151, 21},
                     {"dialback", 120 + 172, 4},
                     {"dialback_num", 120 + 176, 20},
                     {"perm", 120 + 196, 4},
                     {"cli", 120 + 200, 2},
                     {"pwd_change", 120 + 204, 4},
                     {"pwd_expires", 120 + 208, 4},
                     {"pwd_login_change", 120 + 212, 4},
                     {"login_attempts", 120 + 216, 4}};

const Layout LAYOUTS[] = {
    {XMSG_ETH, repeated("eth", 2, 48,
                        {{"marker", 120 + 0, 4},
                         {"enabled", 120 + 4, 4},
                         {"source", 120 + 8, 4},
                         {"ip", 120 + 12, 4},
                         {"mask", 120 + 16, 4},
                         {"ipv6", 120 + 20, 16},
                         {"maskv6", 120 + 36, 4},
                         {"mode", 120 + 40, 4},
                         {"mtu", 120 + 44, 4}}) +
                   Fields{{"ipv6_enabled", 216, 4},
                          {"gateway", 220, 4},
                          {"gateway_ipv6", 224, 28},
                          {"bonding", 252, 4},
                          {"gw_precedence", 256, 4},
                          {"alt_gateway", 260, 4},
                          {"ping_ip", 264, 4},
                          {"ping_ifc", 268, 1},
                          {"ping_delay", 269, 1},
                          {"ping_failed", 270, 1},
                          {"timer", 272, 4},
                          {"probes", 276, 2},
                          {"interval", 278, 2},
                          {"ip_forwarding", 280, 4}}},
    {XMSG_HOSTNAME, {{"hostname", 120, 65}, {"domain", 185, END - 185}}},
    {XMSG_DNS, {{"dns1", 120, 20}, {"dns2", 140, 20}, {"dns3", 160, 20}, {"prefer_ipv4", 180, 4}}},
    {XMSG_FIREWALL,
     {{"enabled", 120, 4},
      {"test_time", 124, 4},
      {"reject_method", 128, 4},
      {"invisible", 132, 4},
      {"ssh", 136, 4},
      {"telnet", 140, 4},
      {"www", 144, 4},
      {"https", 148, 4},
      {"smb", 152, 4}}},
    {XMSG_IPFILTER_SET, Fields{{"id", 120, 1}, {"name", 121, 16}, {"action", 140, 4}, {"num_rules", 144, 4}} +
                            repeated("rule", 65, 36,
                                     {{"ip", 148 + 0, 4},
                                      {"range_end", 148 + 4, 4},
                                      {"masklength", 148 + 8, 4},
                                      {"protocol", 148 + 12, 4},
                                      {"portrange", 148 + 16, 16},
                                      {"target", 148 + 32, 4}})},
    {XMSG_IPFILTER_ASSIGN, {{"iface_type", 120, 4}, {"iface_id", 124, 1}, {"filterName", 125, END - 125}}},
    {XMSG_ROUTING,
     Fields{{"start", 120, 4},
            {"static_enabled", 124, 4},
            {"rip_enabled", 128, 4},
            {"rip_version", 132, 4},
            {"num_routes", 136, 4}} +
         repeated("route", 64, 12,
                  {{"destination", 140 + 0, 4}, {"mask", 140 + 4, 4}, {"gateway", 140 + 8, 4}})},
    {XMSG_VPN,
     {{"tunnel", 120 + 0, 4},
      {"name", 120 + 4, 24 - 4},
      {"ifac", 120 + 24, 4},
      {"auth", 120 + 28, 4},
      {"auth_key", 120 + 32, 548 - 32},
      {"remote_host", 120 + 548, 76},
      {"remote_id", 120 + 624, 644 - 624},
      {"remote_hop", 120 + 644, 4},
      {"remote_subnet", 120 + 648, 728 - 648},
      {"local_id", 120 + 728, 748 - 728},
      {"local_hop", 120 + 748, 4},
      {"local_subnet", 120 + 752, 832 - 752},
      {"aggressive", 120 + 832, 4},
      {"ike_enc", 120 + 836, 4},
      {"ike_hash", 120 + 840, 4},
      {"ike_dhgroup", 120 + 844, 4},
      {"esp_enc", 120 + 848, 4},
      {"esp_hash", 120 + 852, 4},
      {"esp_dhgroup", 120 + 856, 4},
      {"pfs", 120 + 860, 4},
      {"modecfg", 120 + 864, 4},
      {"xauth", 120 + 868, 4},
      {"xauth_login", 120 + 872, 905 - 872},
      {"xauth_passwd", 120 + 905, END - 120 - 905}}},
    {XMSG_TIMEZONE, {{"zone", 120, END - 120}}},
    {XMSG_NTP,
     {{"enabled", 120, 4},
      {"sync", 124, 4},
      {"poll", 128, 4},
      {"server1", 132, 76},
      {"server2", 208, 76},
      {"server3", 284, 76},
      {"single", 360, 76}}},
    {XMSG_SYSLOG,
     {{"local0", 120, 4},
      {"local1", 124, 4},
      {"authpriv", 128, 4},
      {"local3", 132, 4},
      {"local4", 136, 4},
      {"local5", 140, 4},
      {"remote1", 144, 76},
      {"remote2", 220, 76},
      {"nut_size", 296, 2},
      {"log_size", 298, 2}}},
    {XMSG_SNMP,
     {{"enabled", 120, 4},
      {"alarm_delay", 124, 4},
      {"trap1", 128, 76},
      {"trap2", 204, 76},
      {"syslocation", 280, 21},
      {"syscontact", 301, 21},
      {"v3user", 322, 21},
      {"v3pass", 343, 21},
      {"v3phrase", 364, 21},
      {"v3rwuser", 385, 21},
      {"v3rwpass", 406, 21},
      {"v3rwphrase", 427, 21},
      {"v3security", 448, 4},
      {"v3auth", 452, 4},
      {"v3encrypt", 456, 4},
      {"ro_community", 460, 21},
      {"rw_community", 481, 21},
      {"trap_community", 502, 21},
      {"community_mode", 532, 4}}},
    {XMSG_NFS, repeated("mount", 3, 268,
                        {{"rem_dir", 120 + 0, 129},
                         {"local_dir", 120 + 129, 131},
                         {"read_write", 120 + 260, 4},
                         {"mount", 120 + 264, 4}})},
    {XMSG_CIFS,
     {{"enabled", 120, 4},
      {"eth1", 124, 4},
      {"eth2", 128, 4},
      {"lanman_pwd", 132, 33},
      {"nt_pwd", 165, 33},
      {"lct_field", 198, 17},
      {"workgroup", 215, END - 215}}},
    {XMSG_AUTH,
     {{"local", 120, 1},
      {"nis", 121, 1},
      {"ldap", 122, 1},
      {"radius", 123, 1},
      {"securid", 124, 1},
      {"kerberos", 125, 1},
      {"tacacs", 126, 1},
      {"first_responding", 128, 4},
      {"start_nis", 132, 4}}},
    {XMSG_LOCALUSERS,
     {{"enabled", 120, 4},
      {"order", 124, 1},
      {"first_responding", 128, 4},
      {"complex_passwords", 132, 4},
      {"allow_reuse", 136, 4},
      {"reuse_history", 140, 1},
      {"pwd_lifetime", 142, 2},
      {"warning_period", 144, 1},
      {"max_attempts", 145, 1},
      {"lockout_period", 146, 1},
      {"users_included", 156, 4},
      {"num_users", 160, 2}}},
    {XMSG_NIS,
     {{"enabled", 120, 4},
      {"order", 124, 1},
      {"domain", 125, 228 - 125},
      {"broadcast", 228, 4},
      {"master", 232, 76},
      {"slave1", 308, 76},
      {"slave2", 384, 76},
      {"slave3", 460, 76},
      {"slave4", 536, 76},
      {"slave5", 612, 76}}},
    {XMSG_LDAP,
     {{"enabled", 120, 4},
      {"order", 124, 1},
      {"server", 128, 76},
      {"server2", 204, 76},
      {"base", 280, 257},
      {"bind_name", 537, 257},
      {"bind_passwd", 794, 130},
      {"bind_with_login", 924, 4},
      {"port", 932, 4},
      {"ad_support", 936, 4},
      {"encrypt", 940, 4},
      {"map_uid", 944, 31},
      {"map_posix_group", 975, 31},
      {"map_member", 1006, 34},
      {"map_member_type", 1040, 4}}},
    {XMSG_RADIUS,
     {{"enabled", 120, 4},
      {"order", 124, 1},
      {"server1", 128, 76},
      {"secret1", 204, 130},
      {"port1", 334, 2},
      {"server2", 336, 76},
      {"secret2", 412, 130},
      {"port2", 542, 2},
      {"timeout", 544, 1}}},
    {XMSG_KERBEROS,
     {{"enabled", 120, 4},
      {"order", 124, 1},
      {"realm", 125, 257},
      {"kdc", 382, 258},
      {"kdc_ip", 640, 20},
      {"kdc_port", 660, 2},
      {"use_ldap", 664, 4}}},
    {XMSG_TACACS,
     {{"enabled", 120, 4},
      {"order", 124, 1},
      {"server1", 128, 76},
      {"server2", 204, 76},
      {"server3", 280, 76},
      {"server1_secret", 356, 128},
      {"encrypt", 484, 4},
      {"service", 488, 4}}},
    {XMSG_APPLICATION, {{"application", 120, 4}, {"start", 124, 4}}},
    {XMSG_USER, USER + Fields{{"valid_user", 344, 4}, {"remote_user", 348, 4}, {"action", 352, 4}}},
    {XMSG_USERLIST, {}},
    {XMSG_NAT_NOTIFY, {{"add", 120, 4}, {"address", 124, 4}}},
    {XMSG_NOTIFY, {{"code", 120, 4}, {"text", 136, END - 136}}},
    {XMSG_ACKNAK, {{"success", 120, 4}, {"complete", 124, 4}, {"rcode", 128, 4}, {"rstr", 132, 500}}},
};

class MessageLayout : public testing::TestWithParam<Layout> {};

} // namespace

TEST_P(MessageLayout, HasItsFieldsInTheirPlacesAndNoOther)
{
    EXPECT_EQ(described(*msgFieldsOf(GetParam().msgtype)), GetParam().fields);
}

INSTANTIATE_TEST_SUITE_P(Of, MessageLayout, testing::ValuesIn(LAYOUTS), [](const auto &layout) {
    return std::string{xasMsgTypeName(layout.param.msgtype)};
});

TEST(MessageLayouts, AreThoseOfAllMessagesThatAreDescribed)
{
    std::vector<std::uint32_t> tested;
    for (const Layout &layout : LAYOUTS)
        tested.push_back(layout.msgtype);
    std::vector<std::uint32_t> known;
    for (std::uint32_t msgtype = 0; msgtype <= 100; ++msgtype) {
        if (msgFieldsOf(msgtype) != nullptr)
            known.push_back(msgtype);
    }
    EXPECT_EQ(tested, known);
}

TEST(MessageLayouts, AUserOfTheListStandsAsInAMessageOfItsOwn)
{
    EXPECT_EQ(described(XAS_LISTED_USER_MESSAGE), USER);
    EXPECT_EQ(sizeof(XasUserRecord), 224U);
}

TEST(MessageLayouts, ThePlaceOfTheListOfUsersFollowsTheirNumber)
{
    EXPECT_EQ(XAS_USER_COUNT_OFFSET, 160U);
    EXPECT_EQ(XAS_USER_REFERENCE_OFFSET, 164U);
    EXPECT_EQ((XAS_PLACE(XasLocalUsersPayload, users)).offset, 164U);
}
