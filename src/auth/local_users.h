/**
 * The accounts that the daemon made: real system accounts, made and removed by the system's account tools,
 * and the list of them, "/etc/.lusers", one login a line in the order of adding. Only listed accounts are
 * ever removed.
 */
#ifndef XAS_AUTH_LOCAL_USERS_H
#define XAS_AUTH_LOCAL_USERS_H

#include "auth/user_message.h"
#include "core/shell.h"

#include <string_view>

/** True for a login that can be an account's and a file's name: not empty, no leading "-", no "/", ":", blank
 * or control character. */
[[nodiscard]] bool xasIsValidLogin(std::string_view login);

/** True for a password that can stand in the file of accounts: no ":" and no control character. */
[[nodiscard]] bool xasIsValidPassword(std::string_view password);

/** True for a record of a list of users that an account and a port file can be made of. */
[[nodiscard]] bool xasIsValidUser(const XasUserRecord &user);

/** The command that makes the account of an added user: administrator, with a password, or without. */
XasShellCommand xasAddUserCommand(const XasUserRecord &user);

/** The command that makes the account of an edited user anew: with or without a password. */
XasShellCommand xasEditUserCommand(const XasUserRecord &user);

/** The command that makes an account anew with a new password, an empty one included. */
XasShellCommand xasPasswordUserCommand(const XasUserRecord &user);

/** Runs an account command; one that is too long to be run whole is not run. */
XasExitStatus xasRunAccountCommand(XasShellCommand command);

/** Removes an account; logs `notRunLog` when the shell cannot be run. The command's own failure is passed
 * over. */
void xasRemoveAccount(std::string_view login, const char *notRunLog);

/** Appends a login to the list. Returns 0, or -1 when that fails. */
[[nodiscard]] int xasAddLocalUserToList(std::string_view login);

/** Removes the account of the first listed `login`, or of all listed logins when it is empty, and takes them
 * off the list; listed logins without account are dropped on the way. Returns 0; -1 when the list cannot be
 * read; 1 when the new one cannot be written, the list then staying as it was. */
[[nodiscard]] int xasDeleteLocalUsers(std::string_view login);

#endif
