/** Showing what a setting would change, without changing it. */
#ifndef XAS_XMS_PREVIEW_H
#define XAS_XMS_PREVIEW_H

#include "xms/error.h"
#include "xms/setting.h"

/**
 * Checks the setting and becomes the program that boots a second appliance from a copy of the files of this
 * one, applies the setting there and shows the difference. Throws XmsError when the setting is wrong, and
 * when that program is not there: it belongs to the appliance to try things on.
 */
XmsExit xmsPreviewCommand(const XmsSetOptions &set);

#endif
