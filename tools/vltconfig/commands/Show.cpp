#include <afxstr.h> // the framework before the Windows headers

#include "platform/win32/utf8.h"
#include "tools/vltconfig/Definitions.h"
#include "tools/vltconfig/Json.h"
#include "tools/vltconfig/Progress.h"
#include "tools/vltconfig/StorageReader.h"

#include <limits>
#include <optional>

namespace
{
constexpr size_t s_previewUnits = 60;

/// Opens a file; false, after a message, if it cannot be read.
bool Open(CStorageReader& reader, const WString& path)
{
    if (reader.Open(path))
        return true;
    Complain(path, ViewOf(reader.GetFault().message));
    return false;
}

/// The exit code after all records of a file were read, with a message for a faulty one.
int Finish(const CStorageReader& reader, const WString& path)
{
    if (reader.IsFaultless())
        return ExitFine;
    return Complain(path, WString(reader.GetFault().message) +
                              TEXT("; shown is what can be read, 'vltconfig check' tells more"));
}

/// The first record of that identifier, as GetConfigurationById finds it.
int FindRecord(const WString& path, const WString& id, std::optional<CString>& cfg)
{
    CStorageReader reader;
    if (!Open(reader, path))
        return ExitFault;
    reader.ReadRecords(
        [&](const CString& recordId, const CString& recordCfg)
        {
            if (!cfg && recordId == id.c_str())
                cfg = recordCfg;
        });
    const int result = Finish(reader, path);
    if (!cfg && result == ExitFine)
        return Complain(path, TEXT("holds no record '") + id + TEXT("'; 'vltconfig show' lists them"));
    return result;
}

bool HasLoneSurrogate(const CString& text)
{
    return FromUtf8(ToUtf8(ViewOf(text))) != ViewOf(text);
}

void PrintRecordText(const WString& id, const CString& cfg, bool asJson)
{
    CProgress::GiveWayToOutput();
    const CProgress progress("writing");
    if (asJson)
        WriteStandardOutput(CJsonObject().Add("id", id).Add("cfg", ViewOf(cfg)).GetText() + "\n");
    else if (IsTerminal(stdout))
        PrintLines("", ViewOf(cfg));
    else
        WriteStandardOutput(ToUtf8(ViewOf(cfg)));
}
} // namespace

int ShowRecords(const WString& path, bool asJson, bool isLong)
{
    CStorageReader reader;
    if (!Open(reader, path))
        return ExitFault;
    if (asJson)
    {
        CJsonArray records;
        CProgress::GiveWayToOutput();
        reader.ReadRecords([&](const CString& id, const CString& cfg)
                           { records.Print(CJsonObject().Add("id", ViewOf(id)).Add("cfg", ViewOf(cfg)).GetText()); });
        records.End();
        return Finish(reader, path);
    }
    CTable table({"identifier", "characters", "text"});
    const size_t all = std::numeric_limits<size_t>::max();
    const size_t idUnits = isLong ? all : s_previewUnits;
    const size_t width = static_cast<size_t>(GetTerminalWidth());
    const size_t cfgUnits = isLong ? all : width == 0 ? s_previewUnits : width;
    reader.ReadRecords(
        [&](const CString& id, const CString& cfg) {
            table.AddRow(
                {ToOneLine(ViewOf(id), idUnits), std::to_string(cfg.GetLength()), ToOneLine(ViewOf(cfg), cfgUnits)});
        });
    table.Print(isLong);
    return Finish(reader, path);
}

int GetRecord(const WString& path, const WString& id, bool asJson)
{
    std::optional<CString> cfg;
    const int result = FindRecord(path, id, cfg);
    if (!cfg)
        return result;
    PrintRecordText(id, *cfg, asJson);
    if (!asJson && HasLoneSurrogate(*cfg))
        Complain(path, TEXT("the text holds lone surrogates, which UTF-8 has not; --json keeps them"));
    return result;
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
    if (asJson)
    {
        CJsonArray list;
        for (const auto& pDefinition : registry.m_definitions)
        {
            CJsonObject object;
            for (const DefinitionField& field : s_definitionFields)
                if (field.pText != nullptr)
                    object.Add(field.pName, ViewOf((*pDefinition).*field.pText));
                else
                    object.Add(field.pName, (*pDefinition).*field.pNumber);
            list.Print(object.GetText());
        }
        list.End();
        return result;
    }
    CTable table({"name", "LS", "CS", "editor", "layer", "entity", "active"});
    for (const auto& pDefinition : registry.m_definitions)
    {
        std::vector<std::string> cells;
        for (const DefinitionField& field : s_definitionFields)
            cells.push_back(field.pText != nullptr ? ToOneLine(ViewOf((*pDefinition).*field.pText), s_previewUnits)
                                                   : std::to_string((*pDefinition).*field.pNumber));
        table.AddRow(std::move(cells));
    }
    table.Print();
    return result;
}

int CheckFile(const WString& path, bool asJson)
{
    CStorageReader reader;
    if (!Open(reader, path))
        return ExitFault;
    const int records = reader.ReadRecords([](const CString&, const CString&) {});
    const StorageFault& fault = reader.GetFault();
    if (asJson)
    {
        CJsonObject report;
        report.Add("file", path).Add("faultless", reader.IsFaultless()).Add("records", records);
        if (!reader.IsFaultless())
            report.AddRaw("fault", CJsonObject()
                                       .Add("message", ViewOf(fault.message))
                                       .Add("line", fault.line)
                                       .Add("column", fault.column)
                                       .Add("offset", fault.offset)
                                       .GetText());
        std::printf("%s\n", report.GetText().c_str());
    }
    else if (reader.IsFaultless())
    {
        std::printf("%s: faultless, %s\n", Printable(path).c_str(), Count(records, "record").c_str());
    }
    else
    {
        std::printf("%s:%d:%d: %s; %s can be read\n", Printable(path).c_str(), fault.line, fault.column,
                    Printable(ViewOf(fault.message)).c_str(), Count(records, "record").c_str());
    }
    return reader.IsFaultless() ? ExitFine : ExitFault;
}

int ExportRecords(const WString& path)
{
    return ShowRecords(path, true, true);
}
