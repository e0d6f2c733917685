#include "trialhost/log/LogFile.h"

#include "platform/console/console.h"
#include "platform/win32/win32.h"

CLogFile::CLogFile(const WString& path, CCallLog& log)
    : m_log(log), m_pFile(path.empty() ? nullptr : ::_wfopen(path.c_str(), TEXT("wb")))
{
    if (m_pFile != nullptr)
        m_log.AddObserver(this);
}

CLogFile::~CLogFile()
{
    if (m_pFile == nullptr)
        return;
    m_log.RemoveObserver(this);
    std::fclose(m_pFile);
}

void CLogFile::OnCall(size_t index)
{
    const CLoggedCall& call = m_log.GetCalls()[index];
    const bool hasEnded = call.state == CLoggedCall::eState::Ended;
    // Calls are nested: what ends while a line is open is the call that opened it.
    if (hasEnded && m_isLineOpen)
        PrintText(m_pFile, FormatResult(call));
    else
        PrintText(m_pFile, (m_isLineOpen ? TEXT("\n") : TEXT("")) + (hasEnded ? FormatEnd(call) : FormatBegin(call)));
    m_isLineOpen = call.state == CLoggedCall::eState::Running;
    if (!m_isLineOpen)
        PrintText(m_pFile, TEXT("\n"));
    std::fflush(m_pFile);
}
