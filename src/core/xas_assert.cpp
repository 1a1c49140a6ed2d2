#include "core/xas_assert.h"

#include <cstdio>
#include <cstdlib>

void xasAssertionFailed(const char *text, const std::source_location &where)
{
    std::fprintf(stderr, "xasd: %s:%u: %s: Assertion `%s' failed.\n", where.file_name(),
                 static_cast<unsigned>(where.line()), where.function_name(), text);
    std::abort();
}
