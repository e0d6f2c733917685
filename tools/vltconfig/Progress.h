#pragma once
#include <chrono>
#include <cstddef>

/// Says on standard error how far a piece of work has come, once it takes longer than a second.
class CProgress
{
public:
    explicit CProgress(const char* pWork) : m_pWork(pWork) {}
    ~CProgress();
    CProgress(const CProgress&) = delete;
    CProgress& operator=(const CProgress&) = delete;

    /// done and total in any unit.
    void Show(long long done, long long total);

    /// Says that a large piece of work begins, if it has more than 16 million characters or bytes.
    static void Announce(const char* pWork, size_t size, const char* pUnit);

private:
    using Clock = std::chrono::steady_clock;

    const char* m_pWork;
    Clock::time_point m_next = Clock::now() + std::chrono::seconds(1);
    bool m_hasShown = false;
};
