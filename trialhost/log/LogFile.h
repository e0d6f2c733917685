#pragma once
#include "trialhost/log/CallLog.h"

#include <cstdio>

/// Writes the log to a text file while it grows, in UTF-8: a line when a call begins, completed with its result if no
/// other call came in between, and else a second line when it ends. What ran when the program died is the last line.
class CLogFile
{
public:
    /// Replaces the file at path. Observes the log, which must not notify after this object is gone.
    CLogFile(const WString& path, CCallLog& log);
    ~CLogFile();
    CLogFile(const CLogFile&) = delete;
    CLogFile& operator=(const CLogFile&) = delete;

    bool IsOpen() const { return m_pFile != nullptr; }

private:
    void Write(const CLoggedCall& call);

    FILE* m_pFile;
    bool m_isLineOpen = false; ///< the last line is the beginning of a call, without its result
};
