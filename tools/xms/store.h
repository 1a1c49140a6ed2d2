/**
 * The configuration server's side of the store: one file per record, written by a temporary file and a rename
 * so that readers see the old record or the new one, whole. The layout is the configuration library's.
 */
#ifndef XAS_XMS_STORE_H
#define XAS_XMS_STORE_H

#include "wire/message.h"

#include <optional>
#include <string>
#include <vector>

/** The stored record of the type and request keys of `request`, or none. */
std::optional<XasMessage> xmsReadStored(const XasMessage &request);

/** Every stored record, by the names of their files. */
std::vector<XasMessage> xmsReadAllStored();

/**
 * Keeps an applied setting: writes its record, or deletes it when the setting removed what it describes (an
 * IP filter set). Returns the empty text, or what went wrong.
 */
std::string xmsStoreApplied(const XasMessage &setting);

#endif
