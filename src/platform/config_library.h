/**
 * The configuration library of the appliance: reads the stored configuration that XMS owns and turns
 * address records into text. On the appliance it is a closed shared library; the implementation beside this
 * header stands in for it everywhere else and is linked by default (CMake option XAS_CONFIG_LIBRARY).
 *
 * The embedded store is a directory, "/r58/store" or what the environment variable XMS_STORE names. It holds
 * one file per record, exactly 2488 bytes (one XasMessage), named by its message type ("XMSG_ETH"); two types
 * append their request keys: "XMSG_IPFILTER_ASSIGN-<iface_type>-<iface_id>" and "XMSG_IPFILTER_SET-<id>".
 */
#ifndef XAS_PLATFORM_CONFIG_LIBRARY_H
#define XAS_PLATFORM_CONFIG_LIBRARY_H

#include <cstdio>
#include <netinet/in.h>

struct XasMessage;
struct XasHostAddr;
struct XasIpAddr;

extern "C" {

/** Fills `msg` with the stored record of `msgtype`. Request keys (filter set number, interface of an
 * assignment) are read from `msg` first. Returns 0; or non-zero when nothing is stored, `msg` then being
 * unchanged. A record of a wrong size counts as nothing stored and is reported on `diag`. */
int xmlGetMsg(FILE *diag, unsigned msgtype, XasMessage *msg);

/** The address as text; empty for the all-zero record. The text lives until the next call. */
const char *xmlIPv4Or6ToStr(const XasIpAddr *address);

/** The name, the dotted IPv4 text ("0.0.0.0" for all zero) or the IPv6 text; lives until the next call. */
const char *xmlNameOrIpToStr(const XasHostAddr *host);

/** The address of an IPv6 socket address as text; lives until the next call. */
const char *xmlSockAddr6ToStr(const sockaddr_in6 *address);
}

#endif
