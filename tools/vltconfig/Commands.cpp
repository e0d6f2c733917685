#include "tools/vltconfig/Commands.h"

#include "platform/console/console.h"
#include "projection/ProjectionRegistry.h"
#include "sdk/StorageFile.h"
#include "tools/vltconfig/Output.h"
#include "tools/vltconfig/StorageReader.h"

#include <nlohmann/json.hpp>
#include <optional>

namespace
{
using Json = nlohmann::ordered_json;

constexpr int s_previewUnits = 60;

int Complain(const WString& path, const WString& what)
{
    PrintText(stderr, TEXT("vltconfig: ") + path + TEXT(": ") + what + TEXT("\n"));
    return ExitFault;
}

int Complain(const CString& text)
{
    PrintText(stderr, TEXT("vltconfig: ") + WString(text.GetString()) + TEXT("\n"));
    return ExitFault;
}

/// A text goes into JSON as it is; ToUtf8 makes it valid.
std::string Dump(const Json& json)
{
    return json.dump(4);
}

/// Reads a file for a command that prints records. A faulty file is read as far as it goes, with a word on standard
/// error, and gives the exit code for a fault at the end.
class CRecordSource
{
public:
    explicit CRecordSource(const WString& path) : m_path(path) {}

    int ForEach(const CStorageReader::RecordHandler& handler)
    {
        if (!m_reader.Open(m_path))
            return Complain(m_path, m_reader.GetFault().message.GetString());
        m_reader.ReadRecords(handler);
        if (m_reader.IsFaultless())
            return ExitFine;
        return Complain(m_path, WString(m_reader.GetFault().message.GetString()) +
                                    TEXT("; shown is what can be read, 'vltconfig check' tells more"));
    }

private:
    WString m_path;
    CStorageReader m_reader;
};

/// The first record of that identifier, as GetConfigurationById finds it.
int FindRecord(const WString& path, const WString& id, std::optional<CString>& cfg)
{
    const int result = CRecordSource(path).ForEach(
        [&](const CString& recordId, const CString& recordCfg)
        {
            if (!cfg && recordId == id.c_str())
                cfg = recordCfg;
        });
    if (!cfg && result == ExitFine)
        return Complain(path, TEXT("holds no record '") + id + TEXT("'; 'vltconfig show' lists them"));
    return result;
}

Json JsonOf(const CProjectionDefinition& definition)
{
    return {{"name", ToUtf8(definition.m_name)},
            {"showInLS", definition.m_showInLS},
            {"showInCS", definition.m_showInCS},
            {"showInEditor", definition.m_showInEditor},
            {"layerName", ToUtf8(definition.m_layerName)},
            {"entityId", ToUtf8(definition.m_entityId)},
            {"isActive", definition.m_isActive}};
}

bool Update(VLT::CStorageFile& file, const std::function<bool(VLT::CStorage&)>& change)
{
    if (file.Update(change))
        return true;
    Complain(file.GetErrorText());
    return false;
}
} // namespace

int ShowRecords(const WString& path, bool asJson)
{
    if (asJson)
    {
        // Written record by record: the whole list of a large file would stand in memory several times.
        bool isFirst = true;
        std::fputs("[", stdout);
        const int result = CRecordSource(path).ForEach(
            [&](const CString& id, const CString& cfg)
            {
                const Json record{{"id", ToUtf8(id)}, {"cfg", ToUtf8(cfg)}};
                std::printf("%s\n%s", isFirst ? "" : ",", Dump(record).c_str());
                isFirst = false;
            });
        std::fputs("\n]\n", stdout);
        return result;
    }
    CTable table({"identifier", "characters", "text"});
    const int result = CRecordSource(path).ForEach(
        [&](const CString& id, const CString& cfg) {
            table.AddRow(
                {ToOneLine(id, s_previewUnits), std::to_string(cfg.GetLength()), ToOneLine(cfg, s_previewUnits)});
        });
    table.Print();
    return result;
}

int GetRecord(const WString& path, const WString& id, bool asJson)
{
    std::optional<CString> cfg;
    const int result = FindRecord(path, id, cfg);
    if (!cfg)
        return result;
    const std::string text =
        asJson ? Dump(Json{{"id", ToUtf8(id.c_str())}, {"cfg", ToUtf8(*cfg)}}) + "\n" : ToUtf8(*cfg);
    WriteStandardOutput(text);
    return result;
}

int SetRecord(const WString& path, const WString& id)
{
    const WString text = ReadStandardInput();
    if (text.find(WCHAR{0}) != WString::npos)
        return Complain(path, TEXT("not changed: the text on standard input holds a NUL, which no record can hold"));
    VLT::CStorageFile file(path.c_str());
    const bool done = Update(file,
                             [&](VLT::CStorage& storage)
                             {
                                 VLT::SetConfigurationText(storage, id.c_str(), text.c_str());
                                 return true;
                             });
    return done ? ExitFine : ExitFault;
}

int RemoveRecord(const WString& path, const WString& id)
{
    VLT::CStorageFile file(path.c_str());
    const bool done = Update(file,
                             [&](VLT::CStorage& storage)
                             {
                                 const auto pRecord = storage.GetConfigurationById(id.c_str());
                                 if (pRecord)
                                     storage.RemoveConfiguration(pRecord);
                                 else
                                     file.SetErrorText(file.GetPath() + TEXT(": holds no record '") + id.c_str() +
                                                       TEXT("'; 'vltconfig show' lists them"));
                                 return pRecord != nullptr;
                             });
    return done ? ExitFine : ExitFault;
}

int ShowDefinitions(const WString& path, bool asJson)
{
    std::optional<CString> cfg;
    const int result = FindRecord(path, CProjectionRegistry::GetConfigurationId().GetString(), cfg);
    if (!cfg)
        return result;
    CProjectionRegistry registry;
    if (registry.ParseXML(*cfg) == 0)
        return Complain(path,
                        TEXT("the record PRJ_REGISTRY holds no projection registry; 'vltconfig get' shows its text"));

    Json list = Json::array();
    CTable table({"name", "LS", "CS", "editor", "layer", "entity", "active"});
    for (const auto& pDefinition : registry.m_definitions)
    {
        if (asJson)
            list.push_back(JsonOf(*pDefinition));
        else
            table.AddRow({ToOneLine(pDefinition->m_name, s_previewUnits), std::to_string(pDefinition->m_showInLS),
                          std::to_string(pDefinition->m_showInCS), std::to_string(pDefinition->m_showInEditor),
                          ToOneLine(pDefinition->m_layerName, s_previewUnits),
                          ToOneLine(pDefinition->m_entityId, s_previewUnits), std::to_string(pDefinition->m_isActive)});
    }
    if (asJson)
        std::printf("%s\n", Dump(list).c_str());
    else
        table.Print();
    return result;
}

int CheckFile(const WString& path, bool asJson)
{
    CStorageReader reader;
    if (!reader.Open(path))
        return Complain(path, reader.GetFault().message.GetString());
    const int records = reader.ReadRecords([](const CString&, const CString&) {});
    const StorageFault& fault = reader.GetFault();
    if (asJson)
    {
        Json report{{"file", ToUtf8(path.c_str())}, {"faultless", reader.IsFaultless()}, {"records", records}};
        if (!reader.IsFaultless())
            report["fault"] = {{"message", ToUtf8(fault.message)},
                               {"line", fault.line},
                               {"column", fault.column},
                               {"offset", fault.offset}};
        std::printf("%s\n", Dump(report).c_str());
    }
    else if (reader.IsFaultless())
        std::printf("%s: faultless, %d records\n", ToUtf8(path.c_str()).c_str(), records);
    else
        std::printf("%s:%d:%d: %s; %d records can be read\n", ToUtf8(path.c_str()).c_str(), fault.line, fault.column,
                    ToUtf8(fault.message).c_str(), records);
    return reader.IsFaultless() ? ExitFine : ExitFault;
}
