#include "configuration/Storage.h"

#include "configuration/ConfigurationElement.h"
#include "projection/base64/StoredAttribute.h"
#include "xml/XmlAttributeReader.h"
#include "xml/XmlFile.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <climits>
#include <string_view>
#include <utility>

namespace VLT
{
namespace
{
std::basic_string_view<WCHAR> UnitsOf(const CString& text)
{
    return {text.GetString(), static_cast<size_t>(text.GetLength())};
}

using RecordVector = std::vector<boost::shared_ptr<CConfiguration>>;
using RecordMap = std::map<CString, boost::shared_ptr<CConfiguration>>;

/// Sorts records by identifier. The first four units of an identifier nearly always decide.
class CRecordOrder
{
public:
    void Add(const CString& id)
    {
        uint64_t head = 0;
        for (int i = 0; i < 4; ++i)
            head = head << 16 | (i < id.GetLength() ? id.GetAt(i) : WCHAR{0});
        m_entries.push_back({head, m_entries.size()});
    }
    /// The map of the records. Each goes to the end of the map: with many records, a descent from the root for each
    /// would take as long as all the rest.
    RecordMap MakeMap(const RecordVector& records)
    {
        const auto idOf = [&](size_t index) -> const CString& { return ConfigurationFields::Id(*records[index]); };
        std::sort(m_entries.begin(), m_entries.end(),
                  [&](const Entry& left, const Entry& right)
                  {
                      if (left.head != right.head)
                          return left.head < right.head;
                      const int order = idOf(left.index).Compare(idOf(right.index));
                      return order != 0 ? order < 0 : left.index < right.index;
                  });
        RecordMap map;
        for (const Entry& entry : m_entries)
            map.try_emplace(map.end(), idOf(entry.index), records[entry.index]);
        return map;
    }

private:
    struct Entry
    {
        uint64_t head;
        size_t index;
    };
    std::vector<Entry> m_entries;
};

/// ParseXML without its check for null. When memory runs out, the storage stays empty.
int ReplaceRecords(CStorage& storage, std::basic_string_view<WCHAR> xml)
{
    // The storage is empty from here on, but its content lives until the end: xml may be part of it.
    const auto earlierRecords = std::exchange(*storage.GetConfigurationVector(), {});
    const auto earlierMap = std::exchange(*storage.GetConfigurationMapById(), {});
    CXmlDocument document(xml); // what can be read of a faulty text is kept
    if (!document.FindElement(TEXT("storage")))
        return 0;
    document.EnterElement();
    RecordVector records;
    CRecordOrder order;
    while (document.FindElement(TEXT("configuration")))
    {
        auto pConfiguration = boost::make_shared<CConfiguration>();
        CXmlAttributeReader attributes(document);
        ConfigurationFields::Id(*pConfiguration) = ReadTextAttribute(attributes, TEXT("id"));
        ConfigurationFields::Cfg(*pConfiguration) = ReadTextAttribute(attributes, TEXT("cfg"));
        order.Add(ConfigurationFields::Id(*pConfiguration));
        records.push_back(std::move(pConfiguration));
    }
    RecordMap map = order.MakeMap(records);
    storage.GetConfigurationVector()->swap(records);
    storage.GetConfigurationMapById()->swap(map);
    return 1;
}
} // namespace

CStorage::CStorage() = default;
CStorage::CStorage(const CStorage& other) = default;
CStorage::~CStorage() = default;

CStorage& CStorage::operator=(const CStorage& other)
{
    // If an allocation fails, neither vector nor map has changed.
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
            length += LengthOfConfigurationElement(*pConfiguration);
    CString text;
    text.GetBuffer(static_cast<int>(std::min<size_t>(length, INT_MAX)));
    text += TEXT("<storage>");
    for (const auto& pConfiguration : m_configurationVector)
        if (pConfiguration)
            AppendConfigurationElement(*pConfiguration, text);
    text += TEXT("</storage>");
    return text;
}

int CStorage::ParseXML(const WCHAR* pXml)
{
    if (pXml == nullptr)
        pXml = TEXT("");
    return ReplaceRecords(*this, {pXml, wcslen(pXml)});
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
    // Vector and map change together: only the allocations before merge can fail, and merge relinks the node.
    RecordMap entry;
    entry.try_emplace(pConfiguration->GetId(), pConfiguration);
    m_configurationVector.push_back(std::move(pConfiguration));
    m_configurationMapById.merge(entry);
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
    return ReplaceRecords(*this, UnitsOf(document.m_text));
}

int CStorage::Save(const WCHAR* pPath)
{
    const CString text = GetXML();
    CXmlDocument document;
    if (!document.ParseInPlace(UnitsOf(text)))
        return 0;
    return WriteTextFile(CString(pPath), text, &document.m_result) ? 1 : 0;
}
} // namespace VLT
