#include "trialhost/log/CallLog.h"

#include "trialhost/Format.h"

#include <exception>

namespace
{
WString StartOfLine(double time, int depth)
{
    WString text = Fixed(time, 3);
    text.insert(0, text.size() < 10 ? 10 - text.size() : 0, TEXT(' '));
    return text + WString(2 + 2 * static_cast<size_t>(depth), TEXT(' '));
}
} // namespace

CCallLog::CCallLog() : m_start(std::chrono::steady_clock::now())
{
}

size_t CCallLog::Begin(const WString& call)
{
    m_calls.push_back({CLoggedCall::eState::Running, GetTime(), 0, m_depth++, call, WString()});
    const size_t index = m_firstIndex + m_calls.size() - 1;
    Notify(index);
    return index;
}

void CCallLog::End(size_t index, const WString& result)
{
    --m_depth;
    if (index < m_firstIndex)
        return; // cleared while it ran
    CLoggedCall& call = m_calls[index - m_firstIndex];
    call.state = CLoggedCall::eState::Ended;
    call.duration = GetTime() - call.start;
    call.result = result;
    Notify(index);
}

void CCallLog::AddRemark(const WString& text)
{
    m_calls.push_back({CLoggedCall::eState::Remark, GetTime(), 0, m_depth, text, WString()});
    Notify(m_firstIndex + m_calls.size() - 1);
}

void CCallLog::Clear()
{
    m_firstIndex += m_calls.size();
    m_calls.clear();
}

void CCallLog::AddObserver(ILogObserver* pObserver)
{
    m_observers.push_back(pObserver);
}

void CCallLog::RemoveObserver(ILogObserver* pObserver)
{
    std::erase(m_observers, pObserver);
}

double CCallLog::GetTime() const
{
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - m_start).count();
}

void CCallLog::Notify(size_t index) const
{
    for (ILogObserver* pObserver : m_observers)
        pObserver->OnCall(index - m_firstIndex);
}

CCallScope::CCallScope(CCallLog& log, const WString& call)
    : m_log(log), m_index(log.Begin(call)), m_exceptions(std::uncaught_exceptions())
{
}

CCallScope::~CCallScope()
{
    m_log.End(m_index, std::uncaught_exceptions() > m_exceptions ? TEXT("left by an exception") : m_result);
}

WString FormatBegin(const CLoggedCall& call)
{
    return StartOfLine(call.start, call.depth) + call.call;
}

WString FormatResult(const CLoggedCall& call)
{
    WString text = call.result.empty() ? WString() : TEXT(" = ") + call.result;
    if (call.state == CLoggedCall::eState::Ended)
        text += TEXT("  (") + Fixed(call.duration, 3) + TEXT(" ms)");
    return text;
}

WString FormatEnd(const CLoggedCall& call)
{
    const WString operation = call.call.substr(0, call.call.find(TEXT('(')));
    return StartOfLine(call.start + call.duration, call.depth) + TEXT("end of ") + operation + FormatResult(call);
}
