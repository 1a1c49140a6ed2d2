#include "core/assert.h"

#include <cstdio>
#include <cstdlib>

void xasAssertionFailed(const char *text, const XasCodePlace &where)
{
    std::fprintf(stderr, "xasd: %s:%u: %s: Assertion `%s' failed.\n", where.file, where.line, where.function,
                 text);
    std::abort();
}
