#pragma once
#include "trialhost/log/CallLog.h"

#include <memory>

/// Records every call of the host by the module, with arguments and result, while this object lives. One at a time.
class CHostCallRecorder
{
public:
    explicit CHostCallRecorder(CCallLog& log);
    ~CHostCallRecorder();
    CHostCallRecorder(const CHostCallRecorder&) = delete;
    CHostCallRecorder& operator=(const CHostCallRecorder&) = delete;

private:
    void End(const WString& result);

    CCallLog& m_log;
    std::vector<std::unique_ptr<CCallScope>> m_running; ///< innermost last
};
