#include "core/pages.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <link.h>
#include <string_view>
#include <sys/mman.h>
#include <unistd.h>
#include <vector>

namespace {

/** A library's segment that is only read comes from its file. What the linker has written to is in others. */
int releaseLibrary(dl_phdr_info *library, std::size_t /*size*/, void * /*unused*/)
{
    const std::string_view path{library->dlpi_name};
    if (path.empty() || path.find("/libc.") != std::string_view::npos)
        return 0;
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    // One of the segments holds the table of them: a look at it afterwards would bring it back, and its
    // neighbours.
    const std::vector<ElfW(Phdr)> segments(library->dlpi_phdr, library->dlpi_phdr + library->dlpi_phnum);
    for (const ElfW(Phdr) & segment : segments) {
        if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W) != 0)
            continue;
        const std::uintptr_t start = (library->dlpi_addr + segment.p_vaddr) & ~(page - 1);
        const std::uintptr_t end = library->dlpi_addr + segment.p_vaddr + segment.p_memsz;
        ::madvise(std::bit_cast<void *>(start), end - start, MADV_DONTNEED);
    }
    return 0;
}

} // namespace

void xasReleaseStartPages()
{
    ::dl_iterate_phdr(releaseLibrary, nullptr);
}
