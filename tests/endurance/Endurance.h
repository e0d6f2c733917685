#pragma once
#include <cstddef>
#include <cstdio>

/// The allocated bytes of the process's heaps.
size_t HeapBytesInUse();

/// Prints a line after every tenth of the work.
inline void ShowProgress(int done, int all, const char* pWhat)
{
    if (done % (all / 10) != 0)
        return;
    std::printf("%d of %d %s, heap %zu bytes\n", done, all, pWhat, HeapBytesInUse());
    std::fflush(stdout);
}
