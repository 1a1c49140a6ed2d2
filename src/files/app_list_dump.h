/** The application list as people read it. Nothing in the daemon calls it; it is there for debugging. */
#ifndef XAS_FILES_APP_LIST_DUMP_H
#define XAS_FILES_APP_LIST_DUMP_H

#include "core/appmgr.h"

/** Appends a listing to "/tmp/outfp.txt"; does nothing when it cannot be opened. */
void xasDumpAppList(const XasAppList &apps);

#endif
