/**
 * Assertions: programming errors end the process, never bad input. The text printed is the condition as this
 * system's documents quote it.
 */
#ifndef XAS_CORE_XAS_ASSERT_H
#define XAS_CORE_XAS_ASSERT_H

#include <source_location>
#include <string>

/** Says on standard error which assertion failed and where, and ends the process through abort(). */
[[noreturn]] void xasAssertionFailed(const char *text, const std::source_location &where);

/** Ends the process unless `holds`. */
inline void xasAssert(bool holds, const char *text,
                      std::source_location where = std::source_location::current())
{
    if (!holds)
        xasAssertionFailed(text, where);
}

/** Asserts that a pointer argument is given; the text reads "<name> != ((void *)0)". */
inline void xasAssertGiven(const void *argument, const char *name,
                           std::source_location where = std::source_location::current())
{
    if (argument == nullptr)
        xasAssert(false, (std::string{name} + " != ((void *)0)").c_str(), where);
}

#endif
