#include "configuration/Configuration.h"

#include "projection/Base64.h"

namespace VLT
{
// Defined here, not in the class: the module exports each of them once, and nothing is instantiated at the caller's.
CConfiguration::CConfiguration() = default;
CConfiguration::CConfiguration(const CConfiguration& other) = default;
CConfiguration& CConfiguration::operator=(const CConfiguration& other) = default;
CConfiguration::~CConfiguration() = default;

void CConfiguration::MakeDeepCopy(CConfiguration& target)
{
    target = *this;
}

void CConfiguration::SetId(const WCHAR* pId)
{
    m_id = pId;
}

CString CConfiguration::GetId() const
{
    return m_id;
}

void CConfiguration::SetCfg(const WCHAR* pCfg)
{
    m_cfg = pCfg;
}

CString CConfiguration::GetCfg() const
{
    return m_cfg;
}

CString CConfiguration::GetXML()
{
    // As formatting with "<configuration id=\"%s\" cfg=\"%s\" />" would, without reading the long value again.
    CString element = TEXT("<configuration id=\"");
    element += EncodeTextValue(m_id);
    element += TEXT("\" cfg=\"");
    element += EncodeTextValue(m_cfg);
    element += TEXT("\" />");
    return element;
}

void CConfiguration::GetXML(WStringStream& stream)
{
    const CString element = GetXML();
    stream.write(element, element.GetLength());
}
} // namespace VLT
