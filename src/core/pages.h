/** The daemon's memory: pages that only the start needed. */
#ifndef XAS_CORE_PAGES_H
#define XAS_CORE_PAGES_H

/**
 * Gives back the pages of the shared libraries but the C library: of the XML parser, which reads the
 * application list once, and of the dynamic linker. Only what can be read from their files again is given
 * back, so that they still work; the memory of the program itself and of the C library stays, where a
 * debugger may have put its breakpoints.
 */
void xasReleaseStartPages();

#endif
