#include "tests/endurance/Endurance.h"

#include <malloc.h>

size_t HeapBytesInUse()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}
