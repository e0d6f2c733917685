#include "tests/endurance/Endurance.h"

#include "platform/win32/win32.h"

size_t HeapBytesInUse()
{
    HANDLE heaps[64];
    const DWORD count = ::GetProcessHeaps(64, heaps);
    size_t bytes = 0;
    for (DWORD i = 0; i < count; ++i)
    {
        PROCESS_HEAP_ENTRY entry{};
        while (::HeapWalk(heaps[i], &entry))
            if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0)
                bytes += entry.cbData;
    }
    return bytes;
}
