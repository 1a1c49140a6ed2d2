/**
 * A record of any type, with any bytes, through the whole dispatcher on a whole machine (world/machine.h).
 *
 * An input: the type (70 and above: of any number), how the next commands exit (a count, then wait statuses),
 * one of the files and another content for it, the listing of the filter, the payload, the list of users.
 * Besides what the machine requires:
 *  - a message that is refused for a text changes no file and runs nothing;
 *  - a message that was applied leaves no temporary, and the same once more changes no file where that is so;
 *  - files that hold secrets are their owner's alone.
 */
#include "core/utils.h"
#include "support/fuzz.h"
#include "support/root.h"
#include "world/machine.h"

#include "auth/nfs_message.h"
#include "auth/user_message.h"
#include "config/ntp_message.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <sys/stat.h>

namespace {

constexpr std::array FILES = {
    "/etc/hosts",
    "/etc/sysconfig/network",
    "/etc/sysconfig/r58authconfig",
    "/etc/nsswitch.conf",
    "/etc/krb5.conf",
    "/etc/tacplus.conf",
    "/etc/ntp.conf",
    "/etc/syslog.conf",
    "/etc/fstab",
    "/etc/snmp/snmpd.conf",
    "/etc/ipsec.secrets",
    "/etc/.lusers",
    "/etc/qvtx/info",
    "/www/xml/network.xml",
    "/tmp/.save/ipfilter-timer.txt",
    "/var/run/smbd.pid",
    "/etc/ipsec.conf",
    "/etc/samba/smbpasswd",
    "/etc/krb5.conf.template",
    "/r58/store/XMSG_ETH",
    "/r58/store/XMSG_FIREWALL",
    "/tmp/.save/fips_mode",
};

constexpr std::array SECRETS = {"/etc/snmp/snmpd.conf", "/etc/ipsec.secrets", "/etc/raddb/server",
                                "/etc/ldap.conf",       "/etc/tacplus.conf",  "/etc/samba/smbpasswd"};

struct Input {
    XasMessage msg{};
    std::string users;
};

Input prepare(XasMachine &machine, XasFuzzInput &in)
{
    Input input;
    const std::uint8_t number = in.byte();
    const std::uint32_t msgtype = number < 70 ? number : number * 0x01010101U;
    for (std::uint8_t count = in.byte() % 8; count > 0; --count) {
        const std::uint8_t how = in.byte(); // ended by a signal, or with this status
        machine.exits.push_back(how >= 240 ? how - 230 : how << 8);
    }
    const std::uint8_t file = in.byte();
    const std::string text{in.text()};
    if (file < FILES.size())
        XasMachine::write(FILES[file], text);
    machine.listing = in.text();
    input.msg = in.record(msgtype);
    input.msg.xH.id = 77;
    if (msgtype == XMSG_LOCALUSERS) {
        const auto count = xasReadPayload<XasLocalUsersPayload>(input.msg).num_users;
        input.users = in.rest();
        if (count <= 16) // the right size of a list; another one is refused
            input.users.resize(120 + std::size_t{count} * 224);
    }
    return input;
}

/** The files, but for the backups. */
XasFiles liveFiles()
{
    XasFiles files = XasMachine::files();
    std::erase_if(files, [](const auto &file) { return file.first.ends_with(".old"); });
    return files;
}

bool isKnownServer(const XasHostAddr &server)
{
    return !xasHostToStr(server).empty() && xasHostToStr(server) != "127.127.1.0";
}

/** Whether the same message once more changes nothing. */
bool settles(const XasMessage &msg)
{
    switch (msg.xH.msgtype) {
    case XMSG_LOCALUSERS: // accounts are removed and made
    case XMSG_USER:
        return false;
    case XMSG_NTP: { // a server line that is not known again as one
        const auto ntp = xasReadPayload<XasNtpPayload>(msg);
        return isKnownServer(ntp.single) && std::ranges::all_of(ntp.servers, isKnownServer);
    }
    default:
        return true;
    }
}

/** Of those that were written. */
void requireSecrecy(const XasFiles &before, const XasFiles &after)
{
    for (const char *path : SECRETS) {
        struct stat status {};
        const auto old = before.find(path);
        const auto written = after.find(path);
        if (written == after.end() || (old != before.end() && old->second == written->second))
            continue;
        if (::stat(path, &status) == 0)
            xasFuzzRequire((status.st_mode & 0077) == 0, "a secret is its owner's", path);
    }
}

std::string difference(const XasFiles &before, const XasFiles &after)
{
    for (const auto &[path, content] : after) {
        const auto found = before.find(path);
        if (found == before.end() || found->second != content)
            return path + "\n" + (found == before.end() ? "(none)" : found->second) + "\n--> " + content;
    }
    return after.size() == before.size() ? "" : "a file is gone";
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    if (const auto status = xasEnterPrivateRoot(*argc, *argv))
        std::exit(*status);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    xasSetStackBase(__builtin_frame_address(0));
    XasMachine &machine = xasTheMachine();
    machine.reset();
    XasFuzzInput in{data, size};
    const Input input = prepare(machine, in);
    const bool isOrdinary = size > 2 && data[2] >= FILES.size(); // the files are as they were shipped
    const XasFiles before = liveFiles();
    const std::string outcome = machine.process(input.msg, input.users);
    const XasFiles after = liveFiles();
    if (outcome.starts_with("0 5 Invalid character"))
        xasFuzzRequire(before == after && machine.ran.empty(), "a refused message changes nothing",
                       difference(before, after));
    if (outcome.starts_with("1 ")) {
        for (const auto &[path, content] : after)
            xasFuzzRequire(!path.ends_with(".tmp"), "no temporary stays", path);
        requireSecrecy(before, after);
    }
    if (outcome.starts_with("1 ") && isOrdinary && settles(input.msg)) {
        machine.exits.clear();
        machine.process(input.msg, input.users);
        const XasFiles again = liveFiles();
        xasFuzzRequire(after == again, "once more changes nothing", difference(after, again));
    }
    machine.requireOrder();
    return 0;
}
