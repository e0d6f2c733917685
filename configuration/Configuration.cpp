#include "configuration/Configuration.h"

#include "configuration/ConfigurationElement.h"
#include "projection/base64/Base64.h"

#include <string_view>

namespace
{
// The parts of the element around its two values.
constexpr std::basic_string_view<WCHAR> BeforeId = TEXT("<configuration id=\"");
constexpr std::basic_string_view<WCHAR> BeforeCfg = TEXT("\" cfg=\"");
constexpr std::basic_string_view<WCHAR> End = TEXT("\" />");

void Append(std::basic_string_view<WCHAR> text, CString& target)
{
    target.Append(text.data(), static_cast<int>(text.size()));
}
} // namespace

namespace VLT
{
void AppendConfigurationElement(CConfiguration& configuration, CString& target)
{
    Append(BeforeId, target);
    AppendTextValue(ConfigurationFields::Id(configuration), target);
    Append(BeforeCfg, target);
    AppendTextValue(ConfigurationFields::Cfg(configuration), target);
    Append(End, target);
}

size_t LengthOfConfigurationElement(CConfiguration& configuration)
{
    return BeforeId.size() + LengthOfAsciiValue(ConfigurationFields::Id(configuration)) + BeforeCfg.size() +
           LengthOfAsciiValue(ConfigurationFields::Cfg(configuration)) + End.size();
}

// Defined out of line because they are exported.
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
    CString element;
    AppendConfigurationElement(*this, element);
    return element;
}

void CConfiguration::GetXML(WStringStream& stream)
{
    const CString element = GetXML();
    stream.write(element, element.GetLength());
}
} // namespace VLT
