// Input: the bytes of a storage file. "vltconfig check" must agree with what the module reads from the file, and the
// fault that it reports must lie inside the text.
#include "configuration/Storage.h"
#include "fuzz/Fuzz.h"
#include "tools/vltconfig/Commands.h"
#include "tools/vltconfig/StorageReader.h"
#include "xml/XmlFile.h"

#include <utility>
#include <vector>

namespace
{
using Records = std::vector<std::pair<CString, CString>>;

Records RecordsOf(VLT::CStorage& storage)
{
    Records records;
    for (const auto& pRecord : *storage.GetConfigurationVector())
        records.emplace_back(pRecord->GetId(), pRecord->GetCfg());
    return records;
}

void RequirePlace(const StorageFault& fault, const CString& text)
{
    Require(!fault.message.IsEmpty(), "a fault has a message");
    Require(fault.offset >= 0 && fault.offset <= text.GetLength(), "a fault lies inside the text");
    int line = 1;
    int column = 1;
    for (int i = 0; i < fault.offset; ++i)
    {
        const bool isLineEnd = text.GetAt(i) == TEXT('\n');
        line += isLineEnd ? 1 : 0;
        column = isLineEnd ? 1 : column + 1;
    }
    Require(fault.line == line && fault.column == column, "line and column say what the offset says");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size)
{
    static const CInputFile s_input;
    s_input.Write(pData, size);
    const WString path = s_input.GetPath();
    CString text;
    CStorageReader reader;
    Require(ReadTextFile(path.c_str(), text, nullptr) && reader.Open(path), "any bytes can be read");
    Records records;
    const int count = reader.ReadRecords([&](const CString& id, const CString& cfg) { records.emplace_back(id, cfg); });
    Require(count == static_cast<int>(records.size()), "the records handed out are counted");

    VLT::CStorage loaded;
    Require((loaded.Load(path.c_str()) == 1) == reader.IsFaultless(), "what is faultless can be loaded");
    Require(!reader.IsFaultless() || RecordsOf(loaded) == records, "the module loads the same records");
    VLT::CStorage parsed;
    parsed.ParseXML(text);
    Require(RecordsOf(parsed) == records, "the module parses the same records");

    if (!reader.IsFaultless())
        RequirePlace(reader.GetFault(), text);
    const bool asJson = size % 2 == 0;
    Require((CheckFile(path, asJson) == ExitFine) == reader.IsFaultless(), "the exit code reports the fault");
    return 0;
}
