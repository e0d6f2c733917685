#pragma once
#include "configuration/Storage.h"

#include <functional>

namespace VLT
{
/// Sets the text of the record of that identifier, or adds a record.
void SetConfigurationText(CStorage& storage, const WCHAR* pId, const WCHAR* pCfg);

/// One <storage> file that is never left half-written: read whole, written beside and swapped in.
///
/// Update writes FILE.new and flushes it to disk, keeps the present content as FILE.bak, and renames FILE.new to FILE,
/// so that whoever reads the file, or finds it after a crash, sees the old content or the new. FILE.lock, which stays,
/// keeps a second program out from the reading to the renaming.
///
/// A file that another program has open without sharing it, as a virus scanner does for a moment, is tried again for
/// five seconds, and so is the lock; an operation takes that long at each file that stays in use.
class CStorageFile
{
public:
    /// pPath: NUL-terminated UTF-16, copied.
    explicit CStorageFile(const WCHAR* pPath);

    /// Replaces the storage's content with the file's. A file that does not exist counts as an empty storage.
    /// False, with the reason in GetErrorText, for a file that cannot be read or that holds no faultless storage text.
    bool Read(CStorage& storage);

    /// Reads the file, lets change work on it, and writes the result unless change gives false. All of it under the
    /// lock. False, with the file as it was: the file cannot be read, change gave false (the text is then what it set
    /// with SetErrorText), it is protected from writing, the disk is full, another program keeps a file in use.
    bool Update(const std::function<bool(CStorage&)>& change);

    /// Puts one record into a file of its own beside this one, FILE.unsaved-1 or the next free number: for a text that
    /// cannot go into the file and must not be lost. Returns that file's path, empty if it could not be written.
    CString SaveBeside(const WCHAR* pId, const WCHAR* pCfg);

    /// Why the last operation gave false: names the file, the reason and what one can do.
    const CString& GetErrorText() const { return m_errorText; }
    void SetErrorText(const CString& text) { m_errorText = text; }
    const CString& GetPath() const { return m_path; }

private:
    bool Fail(const CString& path, const WCHAR* pWhat, unsigned int systemError);
    bool Load(CStorage& storage, unsigned int access);
    bool Save(CStorage& storage, const CString& path, unsigned int disposition);
    bool KeepBackup();

    CString m_path;
    CString m_errorText;
};
} // namespace VLT
