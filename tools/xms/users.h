/**
 * The users of XMSG_LOCALUSERS, which travel in a queue entry of their own behind the message: 120 bytes that
 * nobody reads, then 224 bytes for each user. They are named "user<n>.<field>", n from 1.
 */
#ifndef XAS_XMS_USERS_H
#define XAS_XMS_USERS_H

#include "xms/record.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

/** A second queue entry without its type; empty: there is none. */
using XmsUserEntry = std::vector<std::byte>;

/** How many users an entry of `size` bytes has; none when it cannot be a list of users. */
std::optional<std::size_t> xmsUserCount(std::size_t size);

/** The bytes of a list in which a user, from 0, stands where the fields' description has the first one. */
std::span<std::byte> xmsUserBlock(std::span<std::byte> entry, std::size_t user);

/**
 * Takes those of `assignments` out that name users, and returns the entry of the list that they make. Without
 * `check` being anyThatFits, every user up to the last one named needs a login. Throws XmsError.
 */
XmsUserEntry xmsTakeUsers(std::vector<XmsAssignment> &assignments, XasValueCheck check);

/** Makes a message announce the list that goes with it, or none. Other messages are left alone. */
void xmsAnnounceUsers(XasMessage &record, const XmsUserEntry &users);

/** Refuses a message whose count of users is not that of its list: the daemon would wait for another one. */
void xmsRequireMatchingCount(const XasMessage &record, const XmsUserEntry &users);

/** "2 users: alice, bob"; passwords are not shown. */
std::string xmsUsersText(std::span<const std::byte> users);

#endif
