#pragma once
#include "platform/text.h"

#include <chrono>
#include <vector>

/// A call that crossed the module's border.
struct CLoggedCall
{
    /// Remark: a call of which only the beginning is known, or a note.
    enum class eState
    {
        Running,
        Ended,
        Remark
    };

    eState state;
    double start;    ///< milliseconds since the log was made
    double duration; ///< milliseconds, of a call that has ended
    int depth;       ///< number of recorded calls that it ran in
    WString call;    ///< the operation with its arguments
    WString result;  ///< empty while the call runs, and after a call without a result
};

/// Follows a log.
class ILogObserver
{
public:
    /// The call at index has begun or ended, or is a remark.
    virtual void OnCall(size_t index) = 0;

protected:
    ~ILogObserver() = default;
};

/// The order in which host, plug-ins and module called each other, oldest call first. One thread.
class CCallLog
{
public:
    CCallLog();

    /// Returns the new call's index. Calls end in the reverse order of their beginning.
    size_t Begin(const WString& call);
    void End(size_t index, const WString& result);
    void AddRemark(const WString& text);
    /// Forgets all calls, also those that run.
    void Clear();

    /// The observer is removed before it is gone.
    void AddObserver(ILogObserver* pObserver);
    void RemoveObserver(ILogObserver* pObserver);
    const std::vector<CLoggedCall>& GetCalls() const { return m_calls; }

private:
    double GetTime() const;
    void Notify(size_t index) const;

    const std::chrono::steady_clock::time_point m_start;
    std::vector<CLoggedCall> m_calls;
    std::vector<ILogObserver*> m_observers;
    int m_depth = 0;
    size_t m_firstIndex = 0; ///< of m_calls[0]; indices stay unique across Clear
};

/// Records a call from construction to destruction.
class CCallScope
{
public:
    CCallScope(CCallLog& log, const WString& call);
    /// Without a Return the call had no result or was left by an exception; the log then tells which.
    ~CCallScope();
    CCallScope(const CCallScope&) = delete;
    CCallScope& operator=(const CCallScope&) = delete;

    /// Records the result of the call.
    void Return(const WString& result) { m_result = result; }

private:
    CCallLog& m_log;
    const size_t m_index;
    const int m_exceptions;
    WString m_result;
};

// Parts of a line of text, without a line end.
/// Time of the beginning, indentation by depth, the operation with its arguments.
WString FormatBegin(const CLoggedCall& call);
/// " = RESULT  (DURATION ms)", as far as there are such.
WString FormatResult(const CLoggedCall& call);
/// A line of its own for the end of a call after which others were written: the time of its end and the result.
WString FormatEnd(const CLoggedCall& call);
