#pragma once
#include "configuration/Storage.h"

#include <functional>

namespace VLT
{
class CFileHandle;

/// Sets the text of the record of that identifier, or adds a record.
void SetConfigurationText(CStorage& storage, const WCHAR* pId, const WCHAR* pCfg);

/// One `<storage>` file that is never left half-written.
///
/// A save takes these steps. The file is whole after each: with its old content up to step 5, with the new one from
/// then on. If a step fails, what it made is removed, the file stays as it was, and GetErrorText says why.
///
///     1  follow FILE if it is a symbolic link; all other files stand next to its target
///     2  lock FILE.lock, which stays: no second program may read and write in between
///     3  read FILE
///     4  write FILE.new, copy FILE to FILE.bak.new, flush both to disk; rename the copy to FILE.bak
///     5  rename FILE.new to FILE
///     6  flush the folder to disk; if that fails, the save is done but may not outlive a crash of the system:
///        GetWarningText says so
///
/// Every file has FILE's access rights from its first moment, and FILE keeps them; its owner and group stay where the
/// system allows. Files that are written are made exclusively, after what has their name is removed, so that a planted
/// link leads nowhere. A file that has further hard links is separated from them.
///
/// A file that another program has open without sharing it, as a virus scanner does for a moment, is tried again for
/// five seconds, and so is the lock; an operation takes that long at each file that stays in use. Where the file system
/// has no locks, nothing is saved: two programs would overwrite each other's records unnoticed.
class CStorageFile
{
public:
    /// Names the file, without touching it. pPath: NUL-terminated UTF-16, copied.
    explicit CStorageFile(const WCHAR* pPath);

    /// Replaces the storage's content with the file's. A file that does not exist counts as an empty storage.
    /// False, with the reason in GetErrorText, for a file that cannot be read or that holds no faultless `<storage>`
    /// text.
    bool Read(CStorage& storage);

    /// Reads the file, lets change work on it, and saves the result unless change gives false.
    /// False, with the file as it was: a step of the save failed, or change gave false; the reason is then what it set
    /// with SetErrorText.
    bool Update(const std::function<bool(CStorage&)>& change);

    /// Saves the storage whatever the file holds, even if that cannot be read; it becomes the backup.
    /// False, with the file as it was: a step of the save failed.
    bool Overwrite(CStorage& storage);

    /// Puts one record into a file of its own next to this one, FILE.unsaved-1 or the next free number: for a text that
    /// cannot go into the file and must not be lost. Returns that file's path, empty if it could not be written.
    CString SaveBeside(const WCHAR* pId, const WCHAR* pCfg);

    /// Returns why the last operation gave false: the file, the reason, and what one can do.
    const CString& GetErrorText() const { return m_errorText; }
    /// Sets that text, for a change that gives false.
    void SetErrorText(const CString& text) { m_errorText = text; }
    /// Returns what one has to know about the last operation although it gave true; empty as a rule.
    const CString& GetWarningText() const { return m_warningText; }
    /// Returns the path as it was given.
    const CString& GetPath() const { return m_path; }

private:
    using MakeContent = std::function<bool(const CString& target, const CFileHandle& present, CStorage&)>;

    bool Fail(const CString& path, const WCHAR* pWhat, unsigned int systemError);
    bool Resolve(CString& target);
    bool IsUsable(const CString& target, const CFileHandle& present, const WCHAR* pPurpose);
    bool Load(const CString& target, const CFileHandle& present, CStorage& storage);
    bool SaveUnderLock(const MakeContent& makeContent);
    bool Save(const CString& target, bool isNew, CStorage& storage);
    bool WriteAndReplace(const CString& target, bool isNew, CStorage& storage);
    bool KeepBackup(const CString& target);
    void CleanUp(const CString& target, bool isNew);

    CString m_path;
    CString m_errorText;
    CString m_warningText;
};
} // namespace VLT
