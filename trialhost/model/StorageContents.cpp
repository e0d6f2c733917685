#include "trialhost/model/StorageContents.h"

#include "configuration/Storage.h"
#include "sdk/StorageFile.h"

#include <filesystem>

const CDefinitionRow s_definitionFields = {TEXT("Name"),  TEXT("Long. section"), TEXT("Cross sections"), TEXT("Editor"),
                                           TEXT("Layer"), TEXT("Entity"),        TEXT("Active")};

namespace
{
/// Changes when the file does. 0: there is no such file.
uint64_t StampOf(const WString& path)
{
    std::error_code error;
    const auto time = std::filesystem::last_write_time(path, error);
    const auto size = error ? 0 : std::filesystem::file_size(path, error);
    // The sum may wrap.
    return error ? 0 : static_cast<uint64_t>(time.time_since_epoch().count()) * 31 + size;
}

/// The text that is stored as value. The module decodes the attributes of a record, so the value is given to it as one.
WString DecodeValue(const WString& value)
{
    VLT::CStorage storage;
    storage.ParseXML((TEXT("<storage><configuration id=\"\" cfg=\"") + value + TEXT("\"/></storage>")).c_str());
    const auto* pRecords = storage.GetConfigurationVector();
    return pRecords->empty() ? WString() : WString(pRecords->front()->GetCfg().GetString());
}

/// The value of an attribute within a tag as the module writes it: values hold no quotation marks.
WString AttributeOf(const WString& tag, const WString& name)
{
    const WString start = TEXT(" ") + name + TEXT("=\"");
    const size_t at = tag.find(start);
    if (at == WString::npos)
        return WString();
    const size_t from = at + start.size();
    return tag.substr(from, tag.find(TEXT('"'), from) - from);
}

WString FlagOf(const WString& tag, const WString& name)
{
    const WString value = AttributeOf(tag, name);
    return value.empty() || value == TEXT("0") ? TEXT("no") : TEXT("yes");
}
} // namespace

bool CStorageContents::Update(bool isForced)
{
    const uint64_t stamp = StampOf(m_path);
    if (!isForced && stamp == m_stamp)
        return false;
    m_stamp = stamp;
    m_records.clear();
    m_errorText.clear();
    if (stamp == 0)
    {
        m_errorText = m_path + TEXT(": no such file");
        return true;
    }
    VLT::CStorageFile file(m_path.c_str());
    VLT::CStorage storage;
    if (!file.Read(storage))
    {
        m_errorText = file.GetErrorText().GetString();
        return true;
    }
    for (const auto& pRecord : *storage.GetConfigurationVector())
        m_records.push_back({pRecord->GetId().GetString(), pRecord->GetCfg().GetString()});
    return true;
}

std::vector<CDefinitionRow> ReadDefinitions(const WString& registryText)
{
    const WString element = TEXT("<projectionDefinition ");
    std::vector<CDefinitionRow> rows;
    for (size_t at = registryText.find(element); at != WString::npos; at = registryText.find(element, at + 1))
    {
        const WString tag = registryText.substr(at, registryText.find(TEXT('>'), at) - at);
        rows.push_back({DecodeValue(AttributeOf(tag, TEXT("name"))), FlagOf(tag, TEXT("showInLS")),
                        FlagOf(tag, TEXT("showInCS")), FlagOf(tag, TEXT("showInEditor")),
                        DecodeValue(AttributeOf(tag, TEXT("layerName"))),
                        DecodeValue(AttributeOf(tag, TEXT("entityId"))), FlagOf(tag, TEXT("isActive"))});
    }
    return rows;
}
