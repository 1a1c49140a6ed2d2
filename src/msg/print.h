/**
 * Messages as readable text, for people who read a trace. The dumps show everything in clear, secrets
 * included. Types whose lines are not laid down here are shown field by field, in the same manner.
 */
#ifndef XAS_MSG_PRINT_H
#define XAS_MSG_PRINT_H

#include "wire/address.h"
#include "wire/message.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

/** An IPv4 address or or "address:port". */
std::string msgIPv4Text(XasIPv4 address);
std::string msgIPv4PortText(XasIPv4 address, std::uint16_t port);

/** Three values as "a,b,c"; an empty one reads "none". */
std::string msgThreeText(const std::string &first, const std::string &second, const std::string &third);

/** The header's two lines; "msgPrintBasic: p is NULL" for no message. */
std::string msgBasicText(const XasMessage *msg);

/** The payload's lines. `users`: the records that accompany XMSG_LOCALUSERS, as many as there really are. */
std::string msgAllText(const XasMessage &msg, std::span<const std::byte> users = {});

/** The same on standard output. */
void msgPrintBasic(const XasMessage *msg);
void msgPrintAll(const XasMessage &msg, std::span<const std::byte> users = {});

#endif
