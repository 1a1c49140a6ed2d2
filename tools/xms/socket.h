/**
 * The Unix socket between `xms serve` and the other commands: lines of JSON, one object a line.
 *
 *   {"do": "set", "record": HEX, "users": HEX, "timeout_ms": N} -> {"result": "answered", "id": N, "record":
 * HEX, "ms": N.N, "stored": true or false, "problem": TEXT} or {"result": "sent", "id": N} or {"result":
 * "timeout", "id": N, "problem": TEXT}
 *   {"do": "get", "record": HEX}                    -> {"result": "stored", "record": HEX or null}
 *   {"do": "get_all"}                               -> {"result": "stored", "records": [HEX...]}
 *   {"do": "watch"}                                 -> {"result": "watching"}, then {"time_ms": N,
 * "to_daemon": true or false, "bytes": HEX} for every record that passes, until one side ends
 *
 * A line that cannot be understood is answered {"result": "error", "problem": TEXT}.
 */
#ifndef XAS_XMS_SOCKET_H
#define XAS_XMS_SOCKET_H

#include <optional>
#include <string>

/** Where the socket is unless the user says otherwise. */
inline constexpr const char *XMS_DEFAULT_SOCKET = "/run/xms.sock";

/** A file descriptor that closes itself. */
class XmsDescriptor {
  public:
    explicit XmsDescriptor(int descriptor = -1) : number{descriptor} {}
    XmsDescriptor(XmsDescriptor &&other) noexcept;
    XmsDescriptor &operator=(XmsDescriptor &&other) noexcept;
    XmsDescriptor(const XmsDescriptor &) = delete;
    XmsDescriptor &operator=(const XmsDescriptor &) = delete;
    ~XmsDescriptor();
    int get() const { return number; }

  private:
    int number;
};

/** Connects to the server at `path`; throws XmsError (noServer) when there is none. */
XmsDescriptor xmsConnect(const std::string &path);

/**
 * Listens at `path`, for the owner only, without blocking. A socket that nobody serves any more is replaced;
 * one that is served is refused. Throws XmsError.
 */
XmsDescriptor xmsListen(const std::string &path);

/** Blocks SIGINT and SIGTERM and makes them readable; an output that goes away is no reason to end. */
XmsDescriptor xmsCatchEnd();

/** Sends `line` and a line end; throws XmsError when the server has gone. */
void xmsSendLine(const XmsDescriptor &socket, const std::string &line);

/** The next line, read so far into `buffer`; none when the server has ended the connection. */
std::optional<std::string> xmsReadLine(const XmsDescriptor &socket, std::string &buffer);

/** Takes the first whole line out of `buffer`, without its line end. */
std::optional<std::string> xmsTakeLine(std::string &buffer);

#endif
