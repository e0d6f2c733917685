#pragma once
#include "tools/vltconfig/RecordList.h"

#include "sdk/StorageFile.h"

/// Prints why a file was not saved, or the warning of a save. Returns the exit code.
int ReportSave(const VLT::CStorageFile& file, bool isSaved);
/// The records as a storage, in their order.
void FillStorage(const std::vector<Record>& records, VLT::CStorage& storage);
