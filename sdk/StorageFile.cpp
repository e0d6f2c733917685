#include "sdk/StorageFile.h"

#include "platform/win32/win32.h"

namespace VLT
{
namespace
{
constexpr int s_attempts = 100;
constexpr DWORD s_pause = 50; // milliseconds: five seconds in all

/// Closes its handle.
class CFileHandle
{
public:
    CFileHandle(const CString& path, DWORD access, DWORD disposition)
        : m_handle(::CreateFileW(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, disposition,
                                 FILE_ATTRIBUTE_NORMAL, nullptr))
    {
    }
    ~CFileHandle()
    {
        if (IsOpen())
            ::CloseHandle(m_handle);
    }
    CFileHandle(const CFileHandle&) = delete;
    CFileHandle& operator=(const CFileHandle&) = delete;

    bool IsOpen() const { return m_handle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const { return m_handle; }

private:
    HANDLE m_handle;
};

CString SystemText(DWORD code)
{
    LPWSTR pText = nullptr;
    ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, 0,
                     reinterpret_cast<LPWSTR>(&pText), 1, nullptr);
    CString text(pText);
    ::LocalFree(pText);
    while (!text.IsEmpty() && text.GetAt(text.GetLength() - 1) <= TEXT(' '))
        text = text.Left(text.GetLength() - 1);
    return text;
}

bool Exists(const CString& path)
{
    return ::GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

/// Tries until it is done, fails for another reason than that somebody else uses the file, or the time is over. False
/// then, with GetLastError telling why.
template <typename Attempt>
bool WaitFor(Attempt attempt)
{
    for (int i = 1; !attempt(); ++i)
    {
        const DWORD error = ::GetLastError();
        // A file that somebody reads refuses to be replaced with one of the last two.
        const bool isInUse =
            error == ERROR_LOCK_VIOLATION || error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
        if (!isInUse || i == s_attempts)
            return false;
        ::Sleep(s_pause);
    }
    return true;
}

bool Lock(const CFileHandle& file)
{
    OVERLAPPED range{};
    return ::LockFileEx(file.Get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &range) != FALSE;
}

/// Gives the file the other's name, in the place of the file that has it.
bool Replace(const CString& from, const CString& to)
{
    return ::MoveFileExW(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
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
    m_errorText.Empty();
    // Stays open while the text is read: Windows does not let a file that is open be replaced.
    const CFileHandle file(m_path, GENERIC_READ, OPEN_EXISTING);
    const DWORD error = file.IsOpen() ? ERROR_SUCCESS : ::GetLastError();
    if (error == ERROR_FILE_NOT_FOUND)
    {
        storage.Clear();
        return true;
    }
    if (error != ERROR_SUCCESS)
        return Fail(m_path, TEXT("cannot be opened"), error);
    if (storage.Load(m_path) != 0)
        return true;
    m_errorText.Format(
        TEXT("%s: holds no readable <storage> text and is left as it is. 'vltconfig check' names the fault; ")
            TEXT("a good copy may stand in %s.bak."),
        m_path.GetString(), m_path.GetString());
    return false;
}

bool CStorageFile::Update(const std::function<bool(CStorage&)>& change)
{
    m_errorText.Empty();
    const CString lockPath = m_path + TEXT(".lock");
    const CFileHandle lock(lockPath, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS);
    if (!lock.IsOpen())
        return Fail(lockPath, TEXT("cannot be made, so the storage beside it is not written"), ::GetLastError());
    if (!WaitFor([&] { return Lock(lock); }))
        return Fail(m_path, TEXT("is in use by another program; try again"), ::GetLastError());

    CStorage storage;
    if (!Read(storage) || !change(storage))
        return false;
    return Write(storage);
}

CString CStorageFile::SaveBeside(const WCHAR* pId, const WCHAR* pCfg)
{
    CStorage storage;
    SetConfigurationText(storage, pId, pCfg);
    CString path;
    int number = 0;
    do
        path.Format(TEXT("%s.unsaved-%d"), m_path.GetString(), ++number);
    while (Exists(path));
    if (storage.Save(path) == 0)
        path.Empty();
    return path;
}

bool CStorageFile::Fail(const CString& path, const WCHAR* pWhat, unsigned int systemError)
{
    m_errorText.Format(TEXT("%s: %s (error %u: %s)"), path.GetString(), pWhat, systemError,
                       SystemText(systemError).GetString());
    return false;
}

bool CStorageFile::Write(CStorage& storage)
{
    const CString newPath = m_path + TEXT(".new");
    if (storage.Save(newPath) == 0)
    {
        const DWORD error = Exists(newPath) ? ERROR_DISK_FULL : ERROR_ACCESS_DENIED;
        ::DeleteFileW(newPath);
        return Fail(newPath, TEXT("cannot be written; the storage is as it was"), error);
    }
    if (!Flush(newPath) || !KeepBackup())
    {
        ::DeleteFileW(newPath);
        return false;
    }
    if (!WaitFor([&] { return Replace(newPath, m_path); }))
        return Fail(m_path, TEXT("cannot be replaced; the new content stands in the .new file beside it"),
                    ::GetLastError());
    return true;
}

bool CStorageFile::Flush(const CString& path)
{
    const CFileHandle file(path, GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING);
    if (!file.IsOpen() || !::FlushFileBuffers(file.Get()))
        return Fail(path, TEXT("cannot be flushed to the disk; the storage is as it was"), ::GetLastError());
    return true;
}

bool CStorageFile::KeepBackup()
{
    if (!Exists(m_path))
        return true;
    // The copy gets its name only when it is whole, so that the backup, too, is always a complete generation.
    const CString backup = m_path + TEXT(".bak");
    const CString copy = backup + TEXT(".new");
    if (!::CopyFileW(m_path, copy, FALSE))
        return Fail(copy, TEXT("cannot be written; the storage is as it was"), ::GetLastError());
    if (!Flush(copy))
        return false;
    if (!WaitFor([&] { return Replace(copy, backup); }))
        return Fail(backup, TEXT("cannot be replaced; the storage is as it was"), ::GetLastError());
    return true;
}
} // namespace VLT
