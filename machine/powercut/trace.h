/** What the emulator traces of a flash. */
#ifndef XAS_POWERCUT_TRACE_H
#define XAS_POWERCUT_TRACE_H

#include <iosfwd>
#include <string>

/**
 * Brings a trace, a line for each byte that is programmed and each block that is erased, into the form of a
 * log of writes whose sectors are the flash's pages: bytes that are programmed one after the other in a page
 * are one write of the page as it is then; an erase is a discard. `flash` is the content before. Throws
 * std::runtime_error for an erase of another size than a block's.
 */
std::string xasPackTrace(std::istream &trace, std::string flash);

#endif
