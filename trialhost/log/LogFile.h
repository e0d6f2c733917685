#pragma once
#include "trialhost/log/CallLog.h"

#include <cstdio>

/// Writes the log to a text file while it grows, in UTF-8: a line when a call begins, completed with its result if no
/// other call came in between, and else a second line when it ends. What ran when the program died is the last line.
class CLogFile : private ILogObserver
{
public:
    /// Replaces the file at path; an empty path is not opened. The log outlives this object.
    CLogFile(const WString& path, CCallLog& log);
    ~CLogFile();
    CLogFile(const CLogFile&) = delete;
    CLogFile& operator=(const CLogFile&) = delete;

    bool IsOpen() const { return m_pFile != nullptr; }

private:
    void OnCall(size_t index) override;

    CCallLog& m_log;
    FILE* m_pFile;
    bool m_isLineOpen = false; ///< the last line is the beginning of a call, without its result
};
