#include "trialhost/TrialSession.h"

#include "sdk/StorageFile.h"
#include "trialhost/Exceptions.h"

CTrialSession::CTrialSession(CCallLog& log, CTrialHost& host, CPlugIn::Reporter reporter)
    : m_log(log), m_host(host), m_reporter(std::move(reporter))
{
}

WString CTrialSession::Open(const WString& path)
{
    if (::GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES)
        return path + TEXT(": no such file");
    VLT::CStorageFile file(path.c_str());
    VLT::CStorage storage;
    if (!file.Read(storage))
        return file.GetErrorText().GetString();
    m_pHandler.reset(new CRecordingHandler(m_log, path, [this](const CString& text) { m_reporter(text.GetString()); }));
    m_host.UseHandler(m_pHandler);
    return WString();
}

bool CTrialSession::Run(const WString& id)
{
    const CArmedFault fault(m_fault, m_host, m_pHandler);
    if (!fault.IsInPlace())
        m_reporter(
            TEXT("The folder Plugins could not be renamed, so the command runs with it. Close the programs that ")
                TEXT("use its files, and run again."));
    m_lastId = id;
    bool hasStarted = false;
    return Guard(TEXT("RunCommand"), [&] { hasStarted = m_host.RunCommand(id); }) && hasStarted;
}

void CTrialSession::Complete()
{
    Guard(TEXT("CompleteCommand"), [this] { m_host.CompleteCommand(); });
}

void CTrialSession::SendMouse(int message, const CStdPoint2D& point)
{
    Guard(TEXT("ProcessMouseMsg"), [&] { m_host.SendMouseMessage(message, point.x, point.y); });
}

template <typename Operation>
bool CTrialSession::Guard(const WCHAR* pName, Operation operation)
{
    try
    {
        operation();
        return true;
    }
    catch (...)
    {
        m_reporter(WString(pName) + TEXT(" was left by ") + DescribeCurrentException() +
                   TEXT("\nThe command stays active until it is completed."));
        return false;
    }
}
