#include "tests/endurance/Endurance.h"

#include <fstream>
#include <malloc.h>
#include <unistd.h>

size_t HeapBytesInUse()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

size_t ResidentBytes()
{
    size_t pages = 0;
    size_t resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return resident * static_cast<size_t>(sysconf(_SC_PAGESIZE));
}
