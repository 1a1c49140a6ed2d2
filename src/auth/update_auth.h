/** The handler of XMSG_AUTH: the authentication order, and the two files derived from it. */
#ifndef XAS_AUTH_UPDATE_AUTH_H
#define XAS_AUTH_UPDATE_AUTH_H

#include "files/update.h"

/** Positions that do not exist become 0 in the message itself. The derived files are made from the order on
 * disk, after a failure the previous one. */
extern const XasFilesUpdate xasUpdateAuthenOrderCfg;

#endif
