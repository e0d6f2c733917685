#include "benchmarks/Caches.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <sys/mman.h>

namespace
{
constexpr size_t LineBytes = 64;
constexpr size_t DataBytes = 32 << 20;
constexpr size_t CodeBytes = 1 << 20;

/// A function that only returns in each line.
unsigned char* MakeCode()
{
    void* const pCode = mmap(nullptr, CodeBytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pCode == MAP_FAILED)
        throw std::bad_alloc();
    constexpr int ret = 0xC3; // of x86
    std::memset(pCode, ret, CodeBytes);
    mprotect(pCode, CodeBytes, PROT_READ | PROT_EXEC);
    return static_cast<unsigned char*>(pCode);
}
} // namespace

void EmptyCaches()
{
    static const auto s_pData = std::make_unique<unsigned char[]>(DataBytes);
    static unsigned char* const s_pCode = MakeCode();
    volatile unsigned char* const pData = s_pData.get();
    for (size_t i = 0; i < DataBytes; i += LineBytes)
        pData[i] = static_cast<unsigned char>(pData[i] + 1);
    for (size_t i = 0; i < CodeBytes; i += LineBytes)
        reinterpret_cast<void (*)()>(s_pCode + i)();
}
