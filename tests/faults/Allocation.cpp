#include "tests/faults/Allocation.h"

#include <atomic>
#include <cstdlib>

namespace
{
long s_untilFailure = 0;
bool s_hasFailed = false;
std::atomic<long> s_live = 0;

bool Fails()
{
    if (s_untilFailure == 0 || --s_untilFailure != 0)
        return false;
    s_hasFailed = true;
    return true;
}
} // namespace

// The linker option --wrap replaces malloc, realloc and free in this program by these, which must be visible to it.
#pragma GCC visibility push(default)
extern "C" void* __real_malloc(size_t size);
extern "C" void* __real_realloc(void* pBlock, size_t size);
extern "C" void __real_free(void* pBlock);

extern "C" void* __wrap_malloc(size_t size)
{
    void* const pBlock = Fails() ? nullptr : __real_malloc(size);
    s_live += pBlock != nullptr;
    return pBlock;
}

extern "C" void* __wrap_realloc(void* pBlock, size_t size)
{
    if (Fails())
        return nullptr;
    s_live += pBlock == nullptr;
    return __real_realloc(pBlock, size);
}

extern "C" void __wrap_free(void* pBlock)
{
    s_live -= pBlock != nullptr;
    __real_free(pBlock);
}

#pragma GCC visibility pop

void* operator new(size_t size)
{
    if (void* const pBlock = __wrap_malloc(size == 0 ? 1 : size))
        return pBlock;
    throw std::bad_alloc();
}
void operator delete(void* pBlock) noexcept
{
    __wrap_free(pBlock);
}
void operator delete(void* pBlock, size_t) noexcept
{
    __wrap_free(pBlock);
}

void Allocation::FailAt(long count)
{
    s_untilFailure = count;
    s_hasFailed = false;
}

bool Allocation::HasFailed()
{
    return s_hasFailed;
}

long Allocation::CountLive()
{
    return s_live;
}
