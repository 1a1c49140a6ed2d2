#include "auth/nfs.h"

#include "auth/auth_steps.h"
#include "core/assert.h"
#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"
#include "files/editor.h"

#include <algorithm>
#include <array>

namespace {

constexpr const char *MOUNT_ROOT = "/var/nfsmounts";

constexpr XasEditTexts SERVERS_TEXTS{
    .openReason = "Error opening NFS servers file",
    .writeLog = "Error printing line to NFS servers file\n",
    .saveReason = "Error saving new NFS servers file",
    .writeReason = "Error writing to NFS servers file",
};

constexpr XasEditTexts FSTAB_TEXTS{
    .openReason = "Error opening NFS config file",
    .writeLog = "Error printing line to NFS config file\n",
    .saveReason = "Error saving new NFS config file",
};

constexpr std::array NEEDED_FILES = {
    XasNeededFile{"nfsServers", "Error determining NFS servers file\n"},
    XasNeededFile{"fstab", "Error determining NFS fstab config file\n"},
};

/** The address of the host before the first ":"; none, with a warning, when there is no such. */
std::uint32_t serverAddress(std::string_view remote)
{
    const std::string host{remote.substr(0, remote.find(':'))};
    if (host.empty()) {
        xasLogWarning("Error extracting host from NFS remote path\n");
        return XAS_NO_IPV4;
    }
    const std::uint32_t address = xasHostByName(host);
    if (address == XAS_NO_IPV4)
        xasLogWarning("Error determining NFS server network address\n");
    return address;
}

bool isNfsLine(std::string_view line)
{
    std::string_view rest = xasWithoutLineEnd(line);
    xasNextToken(rest, " \t");
    xasNextToken(rest, " \t");
    return xasNextToken(rest, " \t") == "nfs";
}

std::string shareLine(const XasNfsShare &share)
{
    const std::string options =
        std::string{"defaults,nodev,soft,intr,nolock"} + (share.readWrite ? "" : ",ro");
    return xasFormat("%s\t %s\t %s\t %s %s\n", share.remote.c_str(), share.local.c_str(), "nfs",
                     options.c_str(), "0 0");
}

/** False, with log and reply, for a line that is too long. */
bool fits(const std::string &line, XasReplyStatus *reply)
{
    if (line.size() <= XAS_NFS_LINE_MAX)
        return true;
    xasLogError("NFS entry exceeds memory limits");
    xasSetReply(*reply, XAS_RCODE_TOO_LONG, "NFS entry exceeds memory limmits");
    return false;
}

XasNfsShare readShare(const XasNfsMount &mount)
{
    return {.remote = xasFieldString(mount.rem_dir),
            .local = MOUNT_ROOT + xasFieldString(mount.local_dir),
            .readWrite = mount.read_write != 0,
            .used = mount.mount != 0};
}

/** Finds the share's server and makes its mount point. Returns 0, or 1 after logging. */
int prepareShare(const XasNfsShare &share, std::uint32_t &server)
{
    server = XAS_NO_IPV4;
    if (!share.used)
        return 0;
    server = serverAddress(share.remote);
    if (xasMakeDirPath(share.local.c_str()) == 0)
        return 0;
    xasLogError("Error creating local mount point %s\n", share.local.c_str());
    return 1;
}

} // namespace

std::string xasNfsServersText(const XasNfsServers &servers)
{
    std::string list;
    for (const auto *server = servers.begin(); server != servers.end(); ++server) {
        const bool isRepeated = std::find(servers.begin(), server, *server) != server;
        if (*server != XAS_NO_IPV4 && !isRepeated)
            list.append(list.empty() ? "" : " ").append(xasIPv4ToStr(*server));
    }
    return xasFormatLine("%s=\"%s\"\n", "NFS_SERVERS", list.c_str());
}

std::string xasFstabText(std::string_view oldText, const XasNfsShares &shares, XasReplyStatus *reply)
{
    std::string newText;
    xasForEachLine(oldText, [&](std::string_view line) {
        if (line.starts_with('#') || !isNfsLine(line))
            newText += line;
    });
    for (const XasNfsShare &share : shares) {
        if (!share.used)
            continue;
        if (share.remote.empty() || share.local.empty()) {
            xasLogWarning("Ignoring NFS mount with empty path\n");
            break; // and the shares behind it with it
        }
        const std::string line = shareLine(share);
        if (fits(line, reply))
            newText += line;
    }
    return newText;
}

int xasEditNFSServersFile(const char *cfgFileName, const XasNfsServers &servers, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    return xasEditFile(cfgFileName, SERVERS_TEXTS, reply,
                       [&](std::string_view /*oldText*/) { return xasNfsServersText(servers); });
}

int xasEditNFSCfgFile(const char *cfgFileName, const XasNfsShares &shares, XasReplyStatus *reply)
{
    xasAssertGiven(cfgFileName, "cfgFileName");
    return xasEditFile(cfgFileName, FSTAB_TEXTS, reply,
                       [&](std::string_view oldText) { return xasFstabText(oldText, shares, reply); });
}

int xasUpdateNFSCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    xasAssertGiven(msg, "msg");
    xasAssert(XMSG_NFS == msg->xH.msgtype, "XMSG_NFS == msg->xH.msgtype");
    xasAssertGiven(cfgFiles, "cfgFiles");
    std::array<const char *, NEEDED_FILES.size()> paths{};
    if (!xasFindNeededFiles(*cfgFiles, NEEDED_FILES, paths))
        return 1;
    const auto [serversFile, fstab] = paths;

    const auto payload = xasReadPayload<XasNfsPayload>(*msg);
    XasNfsShares shares;
    XasNfsServers servers{};
    std::ranges::transform(payload.mounts, shares.begin(), readShare);
    for (std::size_t i = 0; i < shares.size(); ++i) {
        if (prepareShare(shares[i], servers[i]) != 0)
            return 1;
    }
    if (xasLogFailure(xasEditNFSServersFile(serversFile, servers, reply),
                      "Error editing NFS servers file\n") != 0)
        return 1;
    return xasLogFailure(xasEditNFSCfgFile(fstab, shares, reply), "Error editing NFS fstab config file\n");
}
