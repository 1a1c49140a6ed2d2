/**
 * The reader of the application list, sysapp.xml.
 *
 * Eight element names are known (APP, NAME, EXE, STARTSCRIPT, STOPSCRIPT, CFGFILE, TYPE, PATH); attributes
 * are never read, every value is element text, comments are ignored. An element of another name is not a new
 * context: its text belongs to the last known element that began. Leading white space that the XML parser
 * delivers apart from the text is dropped, trailing white space is part of the value.
 */
#ifndef XAS_CORE_SYSAPP_PARSER_H
#define XAS_CORE_SYSAPP_PARSER_H

#include "core/appmgr.h"

/** Reads the list at `path` into `apps`. Returns 0; or -1 after logging why, `apps` then being unchanged. */
[[nodiscard]] int xasLoadAppList(const char *path, XasAppList &apps);

#endif
