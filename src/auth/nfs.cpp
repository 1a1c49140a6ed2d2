#include "auth/nfs.h"

#include "core/log.h"
#include "core/text.h"
#include "core/utils.h"

#include <algorithm>

namespace {

constexpr const char *MOUNT_ROOT = "/var/nfsmounts";

/** The address of the host before the first ":"; none, with a warning, when there is no such. */
XasIPv4 serverAddress(std::string_view remote)
{
    const std::string host{remote.substr(0, remote.find(':'))};
    if (host.empty()) {
        xasLogWarning("Error extracting host from NFS remote path\n");
        return XAS_NO_IPV4;
    }
    const XasIPv4 address = xasHostByName(host);
    if (address.isNone())
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

/** A path as fstab(5) wants it: blank, tab and backslash in octal, and "#" in front, which begins a comment.
 */
std::string escapedPath(std::string_view path)
{
    std::string text;
    for (const char c : path) {
        if (c == ' ' || c == '\t' || c == '\\' || (c == '#' && text.empty()))
            text += xasFormat("\\%03o", static_cast<unsigned>(c));
        else
            text += c;
    }
    return text;
}

std::string shareLine(const XasNfsShare &share)
{
    const std::string options =
        std::string{"defaults,nodev,soft,intr,nolock"} + (share.readWrite ? "" : ",ro");
    return xasFormat("%s\t %s\t %s\t %s %s\n", escapedPath(share.remote).c_str(),
                     escapedPath(share.local).c_str(), "nfs", options.c_str(), "0 0");
}

constexpr XasReason REASONS[] = {{XAS_RCODE_TOO_LONG, "NFS entry exceeds memory limmits"}};

/** False, with log and reply, for a line that is too long. */
bool fits(const std::string &line, XasReplyStatus *reply)
{
    if (line.size() <= XAS_NFS_LINE_MAX)
        return true;
    xasLogError("NFS entry exceeds memory limits");
    xasSetReply(*reply, REASONS[0]);
    return false;
}

void appendShare(std::string &text, const XasNfsShare &share, XasReplyStatus *reply)
{
    const std::string line = shareLine(share);
    if (fits(line, reply))
        text += line;
}

XasNfsShare readShare(const XasNfsMount &mount)
{
    return {.remote = xasFieldString(mount.rem_dir),
            .local = MOUNT_ROOT + xasFieldString(mount.local_dir),
            .readWrite = mount.read_write != 0,
            .used = mount.mount != 0};
}

/** Finds the share's server and makes its mount point. Returns 0, or 1 after logging. */
int prepareShare(const XasNfsShare &share, XasIPv4 &server)
{
    server = XAS_NO_IPV4;
    if (!share.used)
        return 0;
    server = serverAddress(share.remote);
    if (xasMakeDirPath(share.local.c_str()) == 0)
        return 0;
    return xasLogFailure("Error creating local mount point %s\n", share.local.c_str());
}

} // namespace

std::string xasNfsServersText(const XasNfsServers &servers)
{
    std::string list;
    for (const auto *server = servers.begin(); server != servers.end(); ++server) {
        const bool isRepeated = std::find(servers.begin(), server, *server) != server;
        if (!server->isNone() && !isRepeated)
            list.append(list.empty() ? "" : " ").append(xasIPv4ToStr(*server));
    }
    return xasFormatLine("%s=\"%s\"\n", "NFS_SERVERS", list.c_str());
}

std::string xasFstabText(std::string_view oldText, const XasNfsShares &shares, XasReplyStatus *reply)
{
    std::string newText = xasBeginNewText(oldText);
    xasForEachLine(oldText, [&](std::string_view line) {
        if (line.starts_with('#') || !isNfsLine(line))
            newText += line;
    });
    bool isEnded = false; // by an empty path, behind which no share is written
    for (const XasNfsShare &share : shares) {
        if (!share.used)
            continue;
        if (share.remote.empty() || share.local.empty()) {
            xasLogWarning("Ignoring NFS mount with empty path\n");
            isEnded = true;
        } else if (!isEnded) {
            appendShare(newText, share, reply);
        }
    }
    return newText;
}

constexpr XasEditor<XasNfsServers> xasEditNFSServersFile{
    .argument = "servers",
    .texts = {.openReason = "Error opening NFS servers file",
              .writeLog = "Error printing line to NFS servers file\n",
              .saveReason = "Error saving new NFS servers file",
              .writeReason = "Error writing to NFS servers file"},
    .text = xasMadeBy<xasNfsServersText>};

constexpr XasEditor<XasNfsShares> xasEditNFSCfgFile{
    .argument = "shares",
    .texts = {.openReason = "Error opening NFS config file",
              .writeLog = "Error printing line to NFS config file\n",
              .saveReason = "Error saving new NFS config file"},
    .text = xasMadeBy<xasFstabText>};

/** What they are written from is found out once for both, before the first. */
constexpr XasFileRow FILES[] = {
    {.type = "nfsServers",
     .edit = {nullptr, &xasEditNFSServersFile.texts},
     .missingLog = "Error determining NFS servers file\n",
     .editLog = "Error editing NFS servers file\n"},
    {.type = "fstab",
     .edit = {nullptr, &xasEditNFSCfgFile.texts},
     .missingLog = "Error determining NFS fstab config file\n",
     .editLog = "Error editing NFS fstab config file\n"},
};

constexpr XasFilesUpdate xasNfsFiles{.msgtype = XMSG_NFS,
                                     .files = FILES,
                                     .onFailure = XasOnFailure::goOn,
                                     .lookUp = XasLookUp::together,
                                     .reasons = REASONS};

int xasUpdateNFSCfg(XasMessage *msg, const XasCfgFileList *cfgFiles, XasReplyStatus *reply)
{
    if (xasNfsFiles(msg, cfgFiles, reply) != 0)
        return 1;
    const auto payload = xasReadPayload<XasNfsPayload>(*msg);
    XasNfsShares shares;
    XasNfsServers servers{};
    std::ranges::transform(payload.mounts, shares.begin(), readShare);
    for (std::size_t i = 0; i < shares.size(); ++i) {
        if (prepareShare(shares[i], servers[i]) != 0)
            return 1;
    }
    if (xasEditNFSServersFile(xasGetCfgFilePath("nfsServers", *cfgFiles), &servers, reply) != 0)
        return xasLogFailure("%s", FILES[0].editLog);
    if (xasEditNFSCfgFile(xasGetCfgFilePath("fstab", *cfgFiles), &shares, reply) != 0)
        return xasLogFailure("%s", FILES[1].editLog);
    return 0;
}
