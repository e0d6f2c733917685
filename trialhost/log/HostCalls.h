#pragma once
#include "trialhost/log/CallLog.h"

/// Records every call of the host by the module, with its arguments, while this object lives. One at a time.
class CHostCallRecorder
{
public:
    explicit CHostCallRecorder(CCallLog& log);
    ~CHostCallRecorder();
    CHostCallRecorder(const CHostCallRecorder&) = delete;
    CHostCallRecorder& operator=(const CHostCallRecorder&) = delete;
};
