/**
 * Log maintenance, done at every alarm tick (300 s): the system logs are copied to where the web front end
 * shows them; at every twelfth tick, once an hour, logrotate runs, its errors are logged, the system logger
 * is told to reopen its files, and the restart budget of every daemon begins anew.
 */
#ifndef XAS_CORE_LOG_MAINTENANCE_H
#define XAS_CORE_LOG_MAINTENANCE_H

#include "core/appmgr.h"

/** Seconds between two ticks. */
inline constexpr unsigned XAS_ALARM_PERIOD = 300;

/** One tick; arms the next alarm at its end. The count of ticks is this unit's own. */
void xasMaintainLogs(XasAppList &apps);

#endif
