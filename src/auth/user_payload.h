/** A local user's record, and the payloads of XMSG_LOCALUSERS and XMSG_USER. */
#ifndef XAS_AUTH_USER_PAYLOAD_H
#define XAS_AUTH_USER_PAYLOAD_H

#include "core/msgqueue.h"
#include "wire/message.h"

struct XasUserRecord {
    char login[33];
    char password[67]; /**< encrypted, as adduser takes it; empty: none */
    std::uint32_t uid;
    std::uint64_t listen; /**< ports that the user may listen to, one bit each */
    std::uint64_t data;   /**< ports that the user may connect to directly */
    std::uint64_t clear;  /**< ports that the user may clear */
    std::uint8_t outlets; /**< this and what follows behind brkseq is for others */
    char escseq[11];      /**< escape sequence */
    char brkseq[11];      /**< break sequence */
    char menu[21];
    std::uint32_t dialback;
    char dialback_num[20];
    std::uint32_t perm;
    std::uint16_t cli;
    std::uint32_t pwd_change;
    std::int32_t pwd_expires;
    std::uint32_t pwd_login_change;
    std::int32_t login_attempts;
    std::uint32_t reserved;
};

static_assert(offsetof(XasUserRecord, login) == 0);
static_assert(offsetof(XasUserRecord, password) == 33);
static_assert(offsetof(XasUserRecord, uid) == 100);
static_assert(offsetof(XasUserRecord, listen) == 104);
static_assert(offsetof(XasUserRecord, data) == 112);
static_assert(offsetof(XasUserRecord, clear) == 120);
static_assert(offsetof(XasUserRecord, outlets) == 128);
static_assert(offsetof(XasUserRecord, escseq) == 129);
static_assert(offsetof(XasUserRecord, brkseq) == 140);
static_assert(offsetof(XasUserRecord, menu) == 151);
static_assert(offsetof(XasUserRecord, dialback) == 172);
static_assert(offsetof(XasUserRecord, dialback_num) == 176);
static_assert(offsetof(XasUserRecord, perm) == 196);
static_assert(offsetof(XasUserRecord, cli) == 200);
static_assert(offsetof(XasUserRecord, pwd_change) == 204);
static_assert(offsetof(XasUserRecord, pwd_expires) == 208);
static_assert(offsetof(XasUserRecord, pwd_login_change) == 212);
static_assert(offsetof(XasUserRecord, login_attempts) == 216);
static_assert(offsetof(XasUserRecord, reserved) == 220);
static_assert(sizeof(XasUserRecord) == XAS_USER_RECORD_SIZE);

/** The settings of local accounts. The records themselves accompany the message. */
struct XasLocalUsersPayload {
    std::uint32_t enabled; /**< the fields before users_included are for others */
    std::uint8_t order;
    std::uint32_t first_responding;
    std::uint32_t complex_passwords;
    std::uint32_t allow_reuse;
    std::uint8_t reuse_history;
    std::uint16_t pwd_lifetime;
    std::uint8_t warning_period;
    std::uint8_t max_attempts;
    std::uint8_t lockout_period;
    std::uint8_t unused1[9];
    std::uint32_t users_included; /**< non-zero: the accounts are made anew from the records */
    std::uint16_t num_users;
    std::uint16_t unused2;
    unsigned char users[sizeof(void *)]; /**< where the records are: a pointer that is not aligned, or null */
};

static_assert(offsetof(XasLocalUsersPayload, enabled) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasLocalUsersPayload, order) + XAS_PAYLOAD_OFFSET == 124);
static_assert(offsetof(XasLocalUsersPayload, first_responding) + XAS_PAYLOAD_OFFSET == 128);
static_assert(offsetof(XasLocalUsersPayload, complex_passwords) + XAS_PAYLOAD_OFFSET == 132);
static_assert(offsetof(XasLocalUsersPayload, allow_reuse) + XAS_PAYLOAD_OFFSET == 136);
static_assert(offsetof(XasLocalUsersPayload, reuse_history) + XAS_PAYLOAD_OFFSET == 140);
static_assert(offsetof(XasLocalUsersPayload, pwd_lifetime) + XAS_PAYLOAD_OFFSET == 142);
static_assert(offsetof(XasLocalUsersPayload, warning_period) + XAS_PAYLOAD_OFFSET == 144);
static_assert(offsetof(XasLocalUsersPayload, max_attempts) + XAS_PAYLOAD_OFFSET == 145);
static_assert(offsetof(XasLocalUsersPayload, lockout_period) + XAS_PAYLOAD_OFFSET == 146);
static_assert(offsetof(XasLocalUsersPayload, users_included) + XAS_PAYLOAD_OFFSET == 156);
static_assert(offsetof(XasLocalUsersPayload, num_users) + XAS_PAYLOAD_OFFSET == XAS_USER_COUNT_OFFSET);

static_assert(offsetof(XasLocalUsersPayload, users) + XAS_PAYLOAD_OFFSET == XAS_USER_REFERENCE_OFFSET);

/** What is done with a single user (`XasUserPayload::action`); other values are refused. */
enum XasUserAction : std::uint32_t {
    XAS_USER_ADD = 0,
    XAS_USER_EDIT = 1,
    XAS_USER_DELETE = 2,
    XAS_USER_PASSWORD = 3,
    XAS_USER_EDIT_CLI = 5 /**< refused here */
};

struct XasUserPayload {
    XasUserRecord user;
    std::uint32_t valid_user;  /**< for others */
    std::uint32_t remote_user; /**< for others */
    std::uint32_t action;      /**< XasUserAction */
};

static_assert(offsetof(XasUserPayload, user) + XAS_PAYLOAD_OFFSET == 120);
static_assert(offsetof(XasUserPayload, user.password) + XAS_PAYLOAD_OFFSET == 153);
static_assert(offsetof(XasUserPayload, user.uid) + XAS_PAYLOAD_OFFSET == 220);
static_assert(offsetof(XasUserPayload, valid_user) + XAS_PAYLOAD_OFFSET == 344);
static_assert(offsetof(XasUserPayload, remote_user) + XAS_PAYLOAD_OFFSET == 348);
static_assert(offsetof(XasUserPayload, action) + XAS_PAYLOAD_OFFSET == 352);

#endif
