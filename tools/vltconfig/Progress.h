#pragma once
#include <atomic>
#include <stop_token>
#include <thread>

/// Says on standard error what the program is at, once that takes longer than a second: a line with the seconds and, if
/// known, the share that is done. A thread shows it, so that one long call does not look like a program that hangs.
class CProgress
{
public:
    /// pWork: a literal. Of two objects the later one is shown.
    explicit CProgress(const char* pWork);
    ~CProgress();
    CProgress(const CProgress&) = delete;
    CProgress& operator=(const CProgress&) = delete;

    /// done and total in any unit.
    void Show(long long done, long long total) { m_percent = total > 0 ? static_cast<int>(done * 100 / total) : 0; }

    /// Until this is called with true, nothing is shown. Call it before there is an object.
    static void Enable(bool isEnabled);
    /// Call it before output of any length: nothing more is shown where it would run into the output.
    static void GiveWayToOutput();

private:
    void Run(const std::stop_token& stop) const;

    const char* m_pWork;
    std::atomic<int> m_percent = 0;
    const CProgress* m_pOuter = nullptr;
    std::jthread m_thread;
};
