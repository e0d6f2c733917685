#include "platform/host/HostState.h"
#include <afx.h>
#include <afxstr.h>

#include <boost/exception/exception.hpp>

namespace
{
WString DescribeComError(const _com_error& error)
{
    CString text;
    text.Format(TEXT("_com_error 0x%x"), static_cast<unsigned int>(error.Error()));
    return text.GetString();
}

WString DescribeStdException(const std::exception& exception)
{
    CString what;
    what = exception.what();
    return WString(TEXT("std::exception: ")) + what.GetString();
}
} // namespace

CNOI_AppException::CNOI_AppException(const WString& message) : m_message(message)
{
    ++s_liveExceptions;
}

CNOI_AppException::~CNOI_AppException()
{
    --s_liveExceptions;
    RecordHostCall(eHostCall::DestroyException);
}

void CNOI_AppException::Source(const WString& source)
{
    const CHostCall call(eHostCall::SetSource, {source});
    m_source = source;
}

void CNOI_AppException::SourceLine(int line)
{
    m_sourceLine = line;
}

WString CNOI_AppException::PrintReport() const
{
    CHostCall call(eHostCall::PrintReport);
    if (m_source.empty())
        return call.Return(m_message);
    CString line;
    if (m_sourceLine != 0)
        line.Format(TEXT("(%d)"), m_sourceLine);
    return call.Return(m_message + TEXT("\nSource: ") + m_source + line.GetString());
}

CNOI_NullReferenceException::CNOI_NullReferenceException(const WString& className)
    : CNOI_AppException(TEXT("Null reference: ") + className)
{
}

CNOI_AppForeignException::CNOI_AppForeignException(CException* pException)
    : CNOI_AppException(TEXT("CException")), m_pException(pException)
{
}

CNOI_AppForeignException::CNOI_AppForeignException(const _com_error& error) : CNOI_AppException(DescribeComError(error))
{
}

CNOI_AppForeignException::CNOI_AppForeignException(boost::exception&) : CNOI_AppException(TEXT("boost::exception"))
{
}

CNOI_AppForeignException::CNOI_AppForeignException(const std::exception& exception)
    : CNOI_AppException(DescribeStdException(exception))
{
}

CNOI_AppForeignException::CNOI_AppForeignException() : CNOI_AppException(TEXT("Unknown exception"))
{
}

CNOI_AppForeignException::~CNOI_AppForeignException()
{
    if (m_pException != nullptr)
        m_pException->Delete();
}
