// operator new that fails on request (support/faults.h) and is counted (support/growth.h).
#include "support/faults.h"
#include "support/growth.h"

#include <cstdlib>
#include <new>

namespace {

struct FailingNew {
    std::size_t size = 0;
    unsigned skip = 0;
    unsigned times = 0; /**< 0: none fails */
    unsigned calls = 0;
};

FailingNew failing;
XasAllocated allocated;

bool fails(std::size_t size)
{
    if (failing.times == 0 || size < failing.size)
        return false;
    const unsigned number = failing.calls++;
    return number >= failing.skip && number - failing.skip < failing.times;
}

void *allocate(std::size_t size)
{
    ++allocated.blocks;
    allocated.bytes += size;
    return fails(size) ? nullptr : std::malloc(size);
}

} // namespace

XasAllocated xasAllocatedSoFar()
{
    return allocated;
}

XasFailingNew::XasFailingNew(std::size_t size, unsigned skip, unsigned times)
{
    failing = {size, skip, times};
}

bool XasFailingNew::hasFailed()
{
    return failing.calls > failing.skip;
}

XasFailingNew::~XasFailingNew()
{
    failing = {};
}

void *operator new(std::size_t size)
{
    if (void *const block = allocate(size))
        return block;
    throw std::bad_alloc{};
}

void *operator new[](std::size_t size)
{
    return operator new(size);
}

void *operator new(std::size_t size, const std::nothrow_t & /*tag*/) noexcept
{
    return allocate(size);
}

void *operator new[](std::size_t size, const std::nothrow_t & /*tag*/) noexcept
{
    return allocate(size);
}

void operator delete(void *block) noexcept
{
    std::free(block);
}

void operator delete[](void *block) noexcept
{
    std::free(block);
}

void operator delete(void *block, std::size_t /*size*/) noexcept
{
    std::free(block);
}

void operator delete[](void *block, std::size_t /*size*/) noexcept
{
    std::free(block);
}

void operator delete(void *block, const std::nothrow_t & /*tag*/) noexcept
{
    std::free(block);
}

void operator delete[](void *block, const std::nothrow_t & /*tag*/) noexcept
{
    std::free(block);
}
