#include "tools/vltconfig/Progress.h"

#include "platform/console/console.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>

namespace
{
std::mutex s_mutex; // of what follows, and of the line on standard error
bool s_isEnabled = false;
bool s_hasLine = false;
const CProgress* s_pLatest = nullptr;

void EndLine()
{
    if (s_hasLine)
        std::fputs("\n", stderr);
    s_hasLine = false;
}
} // namespace

CProgress::CProgress(const char* pWork) : m_pWork(pWork)
{
    const std::scoped_lock lock(s_mutex);
    if (!s_isEnabled)
        return;
    EndLine();
    m_pOuter = s_pLatest;
    s_pLatest = this;
    m_thread = std::jthread([this](const std::stop_token& stop) { Run(stop); });
}

CProgress::~CProgress()
{
    if (!m_thread.joinable())
        return;
    m_thread.request_stop();
    m_thread.join();
    const std::scoped_lock lock(s_mutex);
    s_pLatest = m_pOuter;
    EndLine();
}

void CProgress::Enable(bool isEnabled)
{
    s_isEnabled = isEnabled;
}

void CProgress::GiveWayToOutput()
{
    const std::scoped_lock lock(s_mutex);
    if (!IsTerminal(stdout) || !IsTerminal(stderr))
        return;
    s_isEnabled = false;
    EndLine();
}

void CProgress::Run(const std::stop_token& stop) const
{
    std::condition_variable_any wake;
    std::unique_lock lock(s_mutex);
    for (int seconds = 1;; ++seconds)
    {
        wake.wait_for(lock, stop, std::chrono::seconds(1), [] { return false; });
        if (stop.stop_requested())
            return;
        if (!s_isEnabled || s_pLatest != this)
            continue;
        std::fprintf(stderr, "\rvltconfig: %s, %d s", m_pWork, seconds);
        if (m_percent > 0)
            std::fprintf(stderr, ", %d %%", m_percent.load());
        std::fflush(stderr);
        s_hasLine = true;
    }
}
