#include "configuration/Storage.h"

#include "configuration/ConfigurationElement.h"
#include "projection/StoredAttribute.h"
#include "xml/XmlDocument.h"
#include "xml/XmlFile.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <climits>
#include <utility>

namespace VLT
{
CStorage::CStorage() = default;
CStorage::CStorage(const CStorage& other) = default;
CStorage::~CStorage() = default;

CStorage& CStorage::operator=(const CStorage& other)
{
    // Vector and map change together, also when an allocation fails on the way.
    CStorage copy(other);
    m_configurationVector.swap(copy.m_configurationVector);
    m_configurationMapById.swap(copy.m_configurationMapById);
    return *this;
}

void CStorage::MakeDeepCopy(CStorage& target)
{
    if (&target == this)
        return;
    target.Clear();
    for (const auto& pConfiguration : m_configurationVector)
        if (pConfiguration)
            target.AddConfiguration(boost::make_shared<CConfiguration>(*pConfiguration));
}

CString CStorage::GetXML()
{
    size_t length = wcslen(TEXT("<storage></storage>"));
    for (const auto& pConfiguration : m_configurationVector)
        if (pConfiguration)
            length += LengthOfConfigurationElement(pConfiguration->m_id, pConfiguration->m_cfg);
    CString text;
    text.GetBufferBehind(static_cast<int>(std::min<size_t>(length, INT_MAX)));
    text += TEXT("<storage>");
    for (const auto& pConfiguration : m_configurationVector)
        if (pConfiguration)
            AppendConfigurationElement(pConfiguration->m_id, pConfiguration->m_cfg, text);
    text += TEXT("</storage>");
    return text;
}

int CStorage::ParseXML(const WCHAR* pXml)
{
    // Empty from here on, but released at the end: the text may stand in a key of the map.
    const auto earlierRecords = std::exchange(m_configurationVector, {});
    const auto earlierMap = std::exchange(m_configurationMapById, {});
    CXmlDocument document;
    document.SetText(pXml); // a fault in the text is no reason to leave out what can be read
    if (!document.FindElement(TEXT("storage")))
        return 0;
    document.EnterElement();
    while (document.FindElement(TEXT("configuration")))
    {
        const auto pConfiguration = boost::make_shared<CConfiguration>();
        pConfiguration->m_id = GetTextAttribute(document, TEXT("id"));
        pConfiguration->m_cfg = GetTextAttribute(document, TEXT("cfg"));
        AddConfiguration(pConfiguration);
    }
    return 1;
}

std::vector<boost::shared_ptr<CConfiguration>>* CStorage::GetConfigurationVector()
{
    return &m_configurationVector;
}

std::map<CString, boost::shared_ptr<CConfiguration>>* CStorage::GetConfigurationMapById()
{
    return &m_configurationMapById;
}

boost::shared_ptr<CConfiguration> CStorage::GetConfigurationById(const WCHAR* pId)
{
    const auto entry = m_configurationMapById.find(pId);
    return entry == m_configurationMapById.end() ? boost::shared_ptr<CConfiguration>() : entry->second;
}

void CStorage::AddConfiguration(boost::shared_ptr<CConfiguration> pConfiguration)
{
    if (!pConfiguration)
        return;
    m_configurationVector.push_back(pConfiguration);
    m_configurationMapById.try_emplace(pConfiguration->GetId(), pConfiguration);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the exported signature
void CStorage::RemoveConfiguration(boost::shared_ptr<CConfiguration> pConfiguration)
{
    if (!pConfiguration)
        return;
    const auto found = std::find(m_configurationVector.begin(), m_configurationVector.end(), pConfiguration);
    if (found != m_configurationVector.end())
        m_configurationVector.erase(found);
    m_configurationMapById.erase(pConfiguration->GetId());
}

void CStorage::Clear()
{
    m_configurationVector.clear();
    m_configurationMapById.clear();
}

int CStorage::Load(const WCHAR* pPath)
{
    CXmlDocument document;
    if (!ReadTextFile(CString(pPath), document.m_text, &document.m_result) || !document.Parse())
        return 0;
    const CString text = document.m_text;
    return ParseXML(text);
}

int CStorage::Save(const WCHAR* pPath)
{
    CXmlDocument document;
    if (!document.SetText(GetXML()))
        return 0;
    return WriteTextFile(CString(pPath), document.m_text, &document.m_result) ? 1 : 0;
}
} // namespace VLT
