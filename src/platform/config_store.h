/** Where the embedded store keeps a record; shared with its owner, who writes the records. */
#ifndef XAS_PLATFORM_CONFIG_STORE_H
#define XAS_PLATFORM_CONFIG_STORE_H

#include "wire/message.h"

#include <cstdint>
#include <string>

/** The store's directory: the environment variable XMS_STORE, else "/r58/store". */
std::string xasStoreDirectory();

/** The file name of the record of `msgtype`, with the request keys of `msg`; empty when it has no name. */
std::string xasStoreRecordName(std::uint32_t msgtype, const XasMessage &msg);

#endif
