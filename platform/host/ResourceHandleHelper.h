#pragma once
#include "platform/host/Export.h"
#include "platform/text.h"

namespace Allplan::IFW::Resources
{
/// Makes the named library's resources current for its lifetime; the destructor restores the previous ones.
class HOST_API ResourceHandleHelper
{
public:
    explicit ResourceHandleHelper(const WCHAR* pLibrary);
    ResourceHandleHelper(const ResourceHandleHelper&) = delete;
    ResourceHandleHelper& operator=(const ResourceHandleHelper&) = delete;
    ~ResourceHandleHelper();

private:
    WString m_previousLibrary;
};
} // namespace Allplan::IFW::Resources
