/**
 * A user's port permissions: "/etc/zel/<login>.conf", five lines that the console-port software reads. It is
 * replaced whole, without backup.
 */
#ifndef XAS_AUTH_USER_PORTS_H
#define XAS_AUTH_USER_PORTS_H

#include "auth/user_message.h"
#include "core/reply.h"

#include <string>

/** The file's text. */
std::string xasUserPortText(const XasUserRecord &user);

/** Writes the file. The login must be a valid one (local_users.h), so that the path stays in the
 * directory. Returns 0, or 1 after logging that it cannot be opened or written; the reply is left alone. */
[[nodiscard]] int xasLocalUserPortFiles(const XasUserRecord *pxUser, XasReplyStatus *reply);

#endif
