#pragma once
#include "tools/vltconfig/RecordList.h"

#include "sdk/StorageFile.h"

#include <functional>

/// Save with CStorageFile::Update or CStorageFile::Overwrite. They print why the file was not saved, or the warning of
/// a save, and return the exit code.
int SaveChange(VLT::CStorageFile& file, const std::function<bool(VLT::CStorage&)>& change);
int SaveAll(VLT::CStorageFile& file, VLT::CStorage& storage);
/// The records as a storage, in their order.
void FillStorage(const std::vector<Record>& records, VLT::CStorage& storage);
