/**
 * Assertions: programming errors end the process, never bad input. The text printed is the condition as this
 * system's documents quote it.
 */
#ifndef XAS_CORE_ASSERT_H
#define XAS_CORE_ASSERT_H

#include <string>

/** A line of the code. The standard library's own type for it is not there for every compiler that builds
 * this. */
struct XasCodePlace {
    const char *file;
    unsigned line;
    const char *function;

    /** The caller's; as a default argument, the place of the call that leaves it out. */
    static constexpr XasCodePlace current(const char *file = __builtin_FILE(),
                                          unsigned line = static_cast<unsigned>(__builtin_LINE()),
                                          const char *function = __builtin_FUNCTION())
    {
        return {file, line, function};
    }
};

/** Says on standard error which assertion failed and where, and ends the process through abort(). */
[[noreturn]] void xasAssertionFailed(const char *text, const XasCodePlace &where);

/** Ends the process unless `holds`. */
inline void xasAssert(bool holds, const char *text, XasCodePlace where = XasCodePlace::current())
{
    if (!holds)
        xasAssertionFailed(text, where);
}

/** Asserts that a pointer argument is given; the text reads "<name> != ((void *)0)". */
inline void xasAssertGiven(const void *argument, const char *name,
                           XasCodePlace where = XasCodePlace::current())
{
    if (argument == nullptr)
        xasAssert(false, std::string{name}.append(" != ((void *)0)").c_str(), where);
}

#endif
