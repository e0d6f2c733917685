#pragma once
#include <cstddef>
#include <cstdio>

/// What the C++ heap has given out and not got back, in bytes.
size_t HeapBytesInUse();
/// The process's memory that is in the machine's, in bytes.
size_t ResidentBytes();

/// A line for every tenth of the way.
inline void ShowProgress(int done, int all, const char* pWhat)
{
    if (done % (all / 10) != 0)
        return;
    std::printf("%d of %d %s, heap %zu bytes, resident %zu KiB\n", done, all, pWhat, HeapBytesInUse(),
                ResidentBytes() / 1024);
    std::fflush(stdout);
}
