/** The lines of the dump, type by type; print.h is what others call. */
#ifndef XAS_MSG_DUMPS_H
#define XAS_MSG_DUMPS_H

#include "wire/message.h"

#include <cstddef>
#include <span>
#include <string>

std::string msgDumpHostname(const XasMessage &msg);
std::string msgDumpDns(const XasMessage &msg);
std::string msgDumpNtp(const XasMessage &msg);
std::string msgDumpTimezone(const XasMessage &msg);
std::string msgDumpRouting(const XasMessage &msg);
std::string msgDumpReply(const XasMessage &msg);

std::string msgDumpAuth(const XasMessage &msg);
std::string msgDumpNis(const XasMessage &msg);
std::string msgDumpLdap(const XasMessage &msg);
std::string msgDumpRadius(const XasMessage &msg);
std::string msgDumpKerberos(const XasMessage &msg);

/** Shows as many users as the message counts and `users` really holds. */
std::string msgDumpLocalUsers(const XasMessage &msg, std::span<const std::byte> users);
std::string msgDumpUser(const XasMessage &msg);

std::string msgDumpSnmp(const XasMessage &msg);
std::string msgDumpNfs(const XasMessage &msg);
std::string msgDumpCifs(const XasMessage &msg);

/** A type without lines of its own: its fields in one line, each element of a group in a line of its own. The
 * empty text for a type whose fields are not described. */
std::string msgDumpFields(const XasMessage &msg);

#endif
