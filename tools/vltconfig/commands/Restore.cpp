#include "sdk/FileAccess.h"
#include "tools/vltconfig/Difference.h"
#include "tools/vltconfig/Store.h"

#include <cstdio>

namespace
{
/// The present records with those of the source in place of theirs, as setting them would make it.
void ReplaceRecords(const CRecordList& present, const CRecordList& source, VLT::CStorage& storage)
{
    FillStorage(present.Get(), storage);
    for (const Record& record : source.Get())
        VLT::SetConfigurationText(storage, WString(record.id).c_str(), WString(record.cfg).c_str());
}

bool HasAgreed(bool isConfirmed)
{
    if (isConfirmed)
        return true;
    if (!IsTerminal(stdin))
    {
        std::fflush(stdout); // what would change comes first
        Complain(TEXT("nothing was changed; --yes restores without asking"));
        return false;
    }
    std::fputs("Restore this? [y/N] ", stdout);
    std::fflush(stdout);
    const int answer = std::getchar();
    return answer == 'y' || answer == 'Y';
}
} // namespace

int RestoreFile(const WString& path, const WString& source, bool isConfirmed)
{
    CString target;
    if (VLT::ResolveLink(path.c_str(), target) != ERROR_SUCCESS)
        target = path.c_str();
    const WString sourcePath = source.empty() ? WString(target) + TEXT(".bak") : source;
    const bool isOneRecord = sourcePath.find(TEXT(".unsaved-")) != WString::npos;
    CRecordList present;
    CRecordList restored;
    if (!restored.Read(sourcePath))
        return ExitFault;
    if (VLT::Exists(target) && !present.Read(path, true))
        return ExitFault;
    if (!present.IsFaultless() && isOneRecord)
        return Complain(path, TEXT("is faulty and takes no single record; restore a backup or 'vltconfig repair' it"));

    VLT::CStorage storage;
    if (isOneRecord)
        ReplaceRecords(present, restored, storage);
    else
        FillStorage(restored.Get(), storage);
    CRecordList proposed;
    for (const auto& pRecord : *storage.GetConfigurationVector())
        proposed.Add(ViewOf(pRecord->GetId()), ViewOf(pRecord->GetCfg()));
    if (!present.IsFaultless())
        Complain(path, TEXT("is faulty; compared is what can be read"));
    if (!PrintDifference(present.Get(), proposed.Get()) && present.IsFaultless())
    {
        std::puts("nothing would change");
        return ExitFine;
    }
    if (!HasAgreed(isConfirmed))
        return ExitFault;
    VLT::CStorageFile file(path.c_str());
    if (!isOneRecord)
        return SaveAll(file, storage);
    return SaveChange(file,
                      [&](VLT::CStorage& current)
                      {
                          for (const Record& record : restored.Get())
                              VLT::SetConfigurationText(current, WString(record.id).c_str(),
                                                        WString(record.cfg).c_str());
                          return true;
                      });
}
