/**
 * The authentication order on disk: "/etc/sysconfig/r58authconfig", one KEY=number a line. It is the one
 * source from which the PAM file and the name-service switch are derived, whatever message is handled.
 *
 * Two forms exist. An XMSG_AUTH writes FIRSTRSP first and no blanks; the direct writer writes no FIRSTRSP and
 * a blank before four of the line feeds. The reader takes both.
 */
#ifndef XAS_AUTH_AUTH_ORDER_H
#define XAS_AUTH_AUTH_ORDER_H

#include "auth/auth_message.h"
#include "files/editor.h"

#include <string>
#include <string_view>

/** The order as read back; what the file does not name stays as the caller cleared it. */
struct XasAuthOrder {
    std::uint32_t local;
    std::uint32_t nis;
    std::uint32_t ldap;
    std::uint32_t radius;
    std::uint32_t securid;
    std::uint32_t kerberos;
    std::uint32_t tacacs;
    std::uint32_t firstResponding;
};

/** Sets positions that do not exist to 0. */
void xasClampAuthPositions(XasAuthPayload &auth);

/** The file's text for an XMSG_AUTH. */
std::string xasAuthOrderCfgText(const XasAuthPayload &auth);

/** The file's text as the direct writer has it. */
std::string xasAuthOrderText(const XasAuthOrder &order);

/** Reads the numbers in `text` into `order`. A key is compared over its own length; given twice, the last
 * counts. */
void xasParseAuthOrder(std::string_view text, XasAuthOrder &order);

/** What that says when it fails. */
inline constexpr XasEditTexts XAS_AUTH_ORDER_TEXTS{
    .openReason = "Error opening sysconfig/r58authconfig config file",
    .saveReason = "Error saving new r58authconfig config file"};

/** Rewrites the file, which must exist; `auth` is clamped. Returns 0, or 1 with the failure in `reply`. */
[[nodiscard]] int xasEditAuthenOrderCfgFile(const char *cfgFileName, XasAuthPayload *auth,
                                            XasReplyStatus *reply);

/** There is an order, but nobody knows it: nothing must be derived from it. */
inline constexpr int XAS_ORDER_UNKNOWN = 2;

/** Reads the file. Returns 0; 1 after logging that it cannot be opened, no method has a position then;
 * XAS_ORDER_UNKNOWN after logging that it cannot be read to its end. */
[[nodiscard]] int xasReadAuthenOrder(XasAuthOrder &order);

/** Writes the file directly. Returns 0, or 1 after logging that it cannot be opened or written. */
[[nodiscard]] int xasWriteAuthenOrder(const XasAuthOrder &order);

#endif
