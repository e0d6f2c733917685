#include "tools/vltconfig/Progress.h"

#include <cstdio>

CProgress::~CProgress()
{
    if (m_hasShown)
        std::fputs("\n", stderr);
}

void CProgress::Show(long long done, long long total)
{
    if (Clock::now() < m_next)
        return;
    m_next = Clock::now() + std::chrono::milliseconds(250);
    std::fprintf(stderr, "\rvltconfig: %s %lld %%", m_pWork, total > 0 ? done * 100 / total : 100);
    std::fflush(stderr);
    m_hasShown = true;
}

void CProgress::Announce(const char* pWork, size_t size, const char* pUnit)
{
    if (size > 16'000'000)
        std::fprintf(stderr, "vltconfig: %s %zu million %s ...\n", pWork, size / 1'000'000, pUnit);
}
