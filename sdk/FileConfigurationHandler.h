#pragma once
#include "configuration/IConfigurationHandler.h"
#include "sdk/StorageFile.h"

#include <functional>
#include <map>

namespace VLT
{
/// Keeps configuration texts in one `<storage>` file, ready to be given to CConfigurationStorage::RegisterHandler.
///
/// The file changes as CStorageFile tells. Records that another program has stored meanwhile stay. A text that cannot
/// go into the file, because it was changed there since it was loaded, the file cannot be read or the storage is not
/// open, is put into a file next to it: the save gives 0, and the report says where the text is.
class CFileConfigurationHandler : public IConfigurationHandler
{
public:
    /// Receives every failure in words, and the warnings of a save that gives 1. The module's dialog shows none, so a
    /// plug-in should.
    using Report = std::function<void(const CString&)>;

    /// Names the file, which need not exist, without touching it. pPath: copied. report may be empty.
    explicit CFileConfigurationHandler(const WCHAR* pPath, Report report = {});
    virtual ~CFileConfigurationHandler();

    /// Reads the file anew. 0, with a report, if it cannot be read; it is then never written either.
    int OpenStorage() override;
    /// Forgets what was read; the file is not held open.
    void CloseStorage() override;
    /// Returns the text as it stood when the storage was opened or last saved; empty if unknown or not open.
    CString LoadConfigurationById(const WCHAR* pId) override;
    /// Saves one text at once. 1 when it is in the file; 0, with a report, when it is not.
    int SaveConfiguration(const WCHAR* pId, const WCHAR* pCfg) override;

    /// Returns whether OpenStorage has read the file and CloseStorage was not called since.
    bool IsOpen() const { return m_isOpen; }

private:
    int Refuse(const WCHAR* pId, const WCHAR* pCfg);
    void Tell(const CString& text) const;

    CStorageFile m_file;
    Report m_report;
    CStorage m_storage;
    bool m_isOpen = false;
};
} // namespace VLT
