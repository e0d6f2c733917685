#include "tools/vltconfig/Difference.h"
#include "tools/vltconfig/Progress.h"
#include "tools/vltconfig/StorageReader.h"

int PrintAsText(const WString& path)
{
    CStorageReader reader;
    if (!reader.Open(path))
        return Complain(path, ViewOf(reader.GetFault().message));
    CProgress::GiveWayToOutput();
    reader.ReadRecords([](const CString& id, const CString& cfg) { PrintRecord({ViewOf(id), ViewOf(cfg)}, ""); });
    // Part of the text, with exit code 0: git refuses to compare what a conversion fails for.
    const StorageFault& fault = reader.GetFault();
    if (!reader.IsFaultless())
        std::printf("fault %d:%d: %s\n", fault.line, fault.column, Printable(ViewOf(fault.message)).c_str());
    return ExitFine;
}

int DiffFiles(const WString& left, const WString& right)
{
    CRecordList leftRecords;
    CRecordList rightRecords;
    if (!leftRecords.Read(left) || !rightRecords.Read(right))
        return ExitWrongUse;
    return PrintDifference(leftRecords.Get(), rightRecords.Get()) ? ExitFault : ExitFine;
}
