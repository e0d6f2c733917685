#include "sdk/StorageFile.h"

#include "platform/win32/errortext.h"
#include "platform/win32/utf8.h"
#include "sdk/FileAccess.h"

namespace VLT
{
namespace
{
CString NewPath(const CString& target)
{
    return target + TEXT(".new");
}

CString BackupPath(const CString& target)
{
    return target + TEXT(".bak");
}

/// The backup while it is written. It gets its name only when it is whole, so that the backup, too, is always a
/// complete generation.
CString BackupCopyPath(const CString& target)
{
    return target + TEXT(".bak.new");
}

std::string BytesOf(CStorage& storage)
{
    const CString text = storage.GetXML();
    return ToUtf8({text.GetString(), static_cast<size_t>(text.GetLength())});
}
} // namespace

void SetConfigurationText(CStorage& storage, const WCHAR* pId, const WCHAR* pCfg)
{
    if (const boost::shared_ptr<CConfiguration> pRecord = storage.GetConfigurationById(pId))
    {
        pRecord->SetCfg(pCfg);
        return;
    }
    const boost::shared_ptr<CConfiguration> pRecord(new CConfiguration);
    pRecord->SetId(pId);
    pRecord->SetCfg(pCfg);
    storage.AddConfiguration(pRecord);
}

CStorageFile::CStorageFile(const WCHAR* pPath) : m_path(pPath)
{
}

bool CStorageFile::Read(CStorage& storage)
{
    CString target;
    if (!Resolve(target))
        return false;
    // Stays open while the text is read: Windows does not let a file that is open be replaced.
    const CFileHandle file(target, GENERIC_READ, OPEN_EXISTING);
    return IsUsable(target, file, TEXT("cannot be opened")) && Load(target, file, storage);
}

bool CStorageFile::Update(const std::function<bool(CStorage&)>& change)
{
    return SaveUnderLock([&](const CString& target, const CFileHandle& present, CStorage& storage)
                         { return Load(target, present, storage) && change(storage); });
}

bool CStorageFile::Overwrite(CStorage& storage)
{
    return SaveUnderLock(
        [&](const CString&, const CFileHandle&, CStorage& saved)
        {
            saved = storage;
            return true;
        });
}

CString CStorageFile::SaveBeside(const WCHAR* pId, const WCHAR* pCfg)
{
    CStorage storage;
    SetConfigurationText(storage, pId, pCfg);
    CString target;
    CFileSecurity security;
    if (ResolveLink(m_path, target) != ERROR_SUCCESS)
        target = m_path;
    if (security.Read(target) != ERROR_SUCCESS)
        return {};
    const std::string bytes = BytesOf(storage);
    constexpr int lastNumber = 9999;
    for (int number = 1; number <= lastNumber; ++number)
    {
        CString path;
        path.Format(TEXT("%s.unsaved-%d"), target.GetString(), number);
        const DWORD error = WriteNewFile(path, bytes, security);
        if (error == ERROR_SUCCESS)
            FlushFolderOf(path); // if that fails, nothing better can be done
        if (error != ERROR_FILE_EXISTS)
            return error == ERROR_SUCCESS ? path : CString();
    }
    return {};
}

bool CStorageFile::Fail(const CString& path, const WCHAR* pWhat, unsigned int systemError)
{
    m_errorText.Format(TEXT("%s: %s (error %u: %s)"), path.GetString(), pWhat, systemError,
                       SystemErrorText(systemError).c_str());
    return false;
}

bool CStorageFile::Resolve(CString& target)
{
    m_errorText.Empty();
    m_warningText.Empty();
    if (m_path.IsEmpty())
    {
        m_errorText = TEXT("The path of the storage file is empty.");
        return false;
    }
    if (const DWORD error = ResolveLink(m_path, target))
        return Fail(m_path, TEXT("is a link to a file that cannot be opened; make that file or remove the link"),
                    error);
    if (!IsFolder(target))
        return true;
    m_errorText = m_path + TEXT(": is a folder, not a file");
    return false;
}

/// Whether the file can be read, or does not exist and can be made.
bool CStorageFile::IsUsable(const CString& target, const CFileHandle& present, const WCHAR* pPurpose)
{
    if (present.GetError() == ERROR_FILE_NOT_FOUND)
        return true;
    if (present.GetError() != ERROR_SUCCESS)
        return Fail(target, pPurpose, present.GetError());
    const DWORD type = ::GetFileType(present.Get());
    if (type == FILE_TYPE_DISK)
        return true;
    if (type == FILE_TYPE_UNKNOWN)
        return Fail(target, pPurpose, ::GetLastError());
    m_errorText = target + TEXT(": is a pipe or a device, not a file");
    return false;
}

bool CStorageFile::Load(const CString& target, const CFileHandle& present, CStorage& storage)
{
    storage.Clear();
    if (present.GetError() == ERROR_FILE_NOT_FOUND || storage.Load(target) != 0)
        return true;
    // Load gives no reason. If the file can be read, its text is at fault, unless the obstacle has gone meanwhile.
    std::string bytes;
    if (const DWORD error = ReadAll(present, bytes))
        return Fail(target, TEXT("cannot be read"), error);
    if (storage.Load(target) != 0)
        return true;
    m_errorText.Format(
        TEXT("%s: holds no readable <storage> text and is left as it is. 'vltconfig check' names the fault; ")
            TEXT("a good copy may be in %s."),
        target.GetString(), BackupPath(target).GetString());
    return false;
}

/// makeContent: fills the storage that is to be saved; false, with an error text, if nothing is to be saved.
bool CStorageFile::SaveUnderLock(const MakeContent& makeContent)
{
    CString target;
    CFileSecurity security;
    if (!Resolve(target))
        return false;
    if (const DWORD error = security.Read(target))
        return Fail(target, TEXT("has access rights that cannot be read, so the storage is not written"), error);
    const CString lockPath = target + TEXT(".lock");
    const CFileHandle lock = OpenLock(lockPath, security);
    if (lock.GetError() != ERROR_SUCCESS)
        return Fail(lockPath, TEXT("cannot be made or opened, so the storage is not written"), lock.GetError());
    if (const DWORD error = Lock(lock))
        return IsFileInUse(error)
                   ? Fail(target, TEXT("is in use by another program; try again"), error)
                   : Fail(lockPath,
                          TEXT("cannot be locked, so the storage is not written: another program could write at the ")
                              TEXT("same time; move the storage to a file system with locks"),
                          error);
    CStorage storage;
    bool isNew = false;
    {
        // Opened for writing, since a file that is protected from it could still be replaced.
        const CFileHandle present(target, GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING);
        if (!IsUsable(target, present, TEXT("cannot be opened for writing")) || !makeContent(target, present, storage))
            return false;
        isNew = present.GetError() == ERROR_FILE_NOT_FOUND;
    }
    return Save(target, isNew, storage);
}

bool CStorageFile::Save(const CString& target, bool isNew, CStorage& storage)
{
    if (!WriteAndReplace(target, isNew, storage))
    {
        CleanUp(target, isNew);
        return false;
    }
    if (const DWORD error = FlushFolderOf(target))
    {
        Fail(target, TEXT("is saved, but the change may be lost if the system fails now"), error);
        m_warningText = std::exchange(m_errorText, CString());
    }
    return true;
}

bool CStorageFile::WriteAndReplace(const CString& target, bool isNew, CStorage& storage)
{
    const CString newPath = NewPath(target);
    CFileSecurity security;
    DWORD error = security.Read(target);
    if (error == ERROR_SUCCESS)
        error = RemoveFile(newPath);
    if (error == ERROR_SUCCESS)
        error = WriteNewFile(newPath, BytesOf(storage), security);
    if (error != ERROR_SUCCESS)
        return Fail(newPath, TEXT("cannot be written; the storage is as it was"), error);
    if (!isNew && !KeepBackup(target))
        return false;
    error = isNew ? MoveToNewName(newPath, target) : ReplaceContent(newPath, target);
    return error == ERROR_SUCCESS || Fail(target, TEXT("cannot be replaced; the storage is as it was"), error);
}

bool CStorageFile::KeepBackup(const CString& target)
{
    const CString backup = BackupPath(target);
    const CString copy = BackupCopyPath(target);
    CFileSecurity security;
    DWORD error = security.Read(target);
    if (error == ERROR_SUCCESS)
        error = RemoveFile(copy);
    if (error == ERROR_SUCCESS)
        error = CopyToNewFile(target, copy, security);
    if (error == ERROR_SUCCESS)
        error = MoveOnto(copy, backup);
    return error == ERROR_SUCCESS || Fail(backup, TEXT("cannot be written; the storage is as it was"), error);
}

/// Removes what a failed save has left.
void CStorageFile::CleanUp(const CString& target, bool isNew)
{
    const CString newPath = NewPath(target);
    if (!isNew && !Exists(target)) // Windows can lose the name of a file while it replaces it
    {
        m_errorText.Format(TEXT("%s: has lost its name while it was replaced; rename %s, the new content, or %s, the ")
                               TEXT("one before"),
                           target.GetString(), newPath.GetString(), BackupPath(target).GetString());
        return;
    }
    // Where nothing can be removed, one file is left and not two.
    if (RemoveFile(BackupCopyPath(target)) != ERROR_SUCCESS)
        MoveOnto(BackupCopyPath(target), newPath);
    if (RemoveFile(newPath) != ERROR_SUCCESS)
        m_errorText += TEXT(" ") + newPath + TEXT(" could not be removed.");
}
} // namespace VLT
