#pragma once
#include "configuration/IConfigurationHandler.h"
#include "sdk/StorageFile.h"

#include <functional>
#include <map>

namespace VLT
{
/// Keeps configuration texts in one <storage> file, ready to be given to CConfigurationStorage::RegisterHandler.
///
/// A text is never lost: the file changes as CStorageFile tells; other records that another program has stored
/// meanwhile stay; and where a text cannot go into the file (it was changed there since it was loaded, the file cannot
/// be read, the storage is not open), it is put beside it, the save gives 0, and the report says where it is.
class CFileConfigurationHandler : public IConfigurationHandler
{
public:
    /// Gets every failure in words. The module's dialog shows none, so a plug-in should.
    using Report = std::function<void(const CString&)>;

    /// pPath: copied. The file need not exist. report may be empty.
    explicit CFileConfigurationHandler(const WCHAR* pPath, Report report = {});
    virtual ~CFileConfigurationHandler();

    /// Reads the file anew. 0, with a report, if it cannot be read; it is then never written either.
    int OpenStorage() override;
    void CloseStorage() override;
    /// The text as it stood when the storage was opened or last saved; empty if unknown or not open.
    CString LoadConfigurationById(const WCHAR* pId) override;
    int SaveConfiguration(const WCHAR* pId, const WCHAR* pCfg) override;

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
