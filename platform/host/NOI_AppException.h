#pragma once
#include "platform/host/Export.h"
#include "platform/text.h"
#include "platform/win32/win32.h"

#include <boost/exception/exception.hpp>

#include <exception>

class CException;

/// Base of the host's exceptions. Thrown by pointer; whoever handles one deletes it.
class HOST_API CNOI_AppException
{
public:
    explicit CNOI_AppException(const WString& message);
    CNOI_AppException(const CNOI_AppException&) = delete;
    CNOI_AppException& operator=(const CNOI_AppException&) = delete;
    virtual ~CNOI_AppException();

    /// Set the place that the report names, and its line if the place does not contain it.
    virtual void Source(const WString& source);
    virtual void SourceLine(int line);
    /// Returns what happened and where, in lines of text.
    virtual WString PrintReport() const;

private:
    WString m_message;
    WString m_source;
    int m_sourceLine = 0; ///< 0: not set
};

class HOST_API CNOI_NullReferenceException : public CNOI_AppException
{
public:
    explicit CNOI_NullReferenceException(const WString& className);
};

/// Wraps an exception that is not the host's, so that it can be reported like one.
class HOST_API CNOI_AppForeignException : public CNOI_AppException
{
public:
    /// Takes ownership: the destructor calls Delete on the exception.
    explicit CNOI_AppForeignException(CException* pException);
    explicit CNOI_AppForeignException(const _com_error& error);
    explicit CNOI_AppForeignException(boost::exception& exception);
    explicit CNOI_AppForeignException(const std::exception& exception);
    CNOI_AppForeignException();
    ~CNOI_AppForeignException() override;

private:
    CException* m_pException = nullptr;
};
