#include "trialhost/Exceptions.h"

#include "platform/host/NOI_AppException.h"

#include <afx.h>

#include <exception>
#include <filesystem>
#include <memory>

WString DescribeCurrentException()
{
    try
    {
        throw;
    }
    catch (const std::exception& error)
    {
        return TEXT("an exception: ") + std::filesystem::path(error.what()).string<WCHAR>();
    }
    catch (CNOI_AppException* pException)
    {
        return TEXT("an exception of the host: ") + std::unique_ptr<CNOI_AppException>(pException)->PrintReport();
    }
    catch (CException* pException)
    {
        pException->Delete();
        return TEXT("a CException");
    }
    catch (...)
    {
        return TEXT("an exception of unknown type");
    }
}
