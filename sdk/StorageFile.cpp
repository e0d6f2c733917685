#include "sdk/StorageFile.h"

#include "platform/win32/win32.h"

namespace VLT
{
namespace
{
constexpr int s_attempts = 100;
constexpr DWORD s_pause = 50; // milliseconds: five seconds in all

bool IsFileInUse(DWORD error)
{
    return error == ERROR_LOCK_VIOLATION || error == ERROR_SHARING_VIOLATION;
}

/// Tries until it is done, fails for another reason than that somebody else uses the file, or the time is over. False
/// then, with GetLastError telling why.
template <typename Attempt>
bool WaitFor(Attempt attempt, bool (*isInUse)(DWORD) = IsFileInUse)
{
    for (int i = 1; !attempt(); ++i)
    {
        if (!isInUse(::GetLastError()) || i == s_attempts)
            return false;
        ::Sleep(s_pause);
    }
    return true;
}

/// A file that others may read and write meanwhile; closed with the object.
class CFileHandle
{
public:
    CFileHandle(const CString& path, DWORD access, DWORD disposition)
    {
        WaitFor(
            [&]
            {
                m_handle = ::CreateFileW(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, disposition,
                                         FILE_ATTRIBUTE_NORMAL, nullptr);
                return IsOpen();
            });
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
    HANDLE m_handle = INVALID_HANDLE_VALUE;
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

bool IsFolder(const CString& path)
{
    const DWORD attributes = ::GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool Lock(const CFileHandle& file)
{
    OVERLAPPED range{};
    return ::LockFileEx(file.Get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &range) != FALSE;
}

bool Copy(const CString& from, const CString& to)
{
    return WaitFor([&] { return ::CopyFileW(from, to, FALSE) != FALSE; });
}

bool Flush(const CString& path)
{
    const CFileHandle file(path, GENERIC_READ | GENERIC_WRITE, OPEN_EXISTING);
    return file.IsOpen() && ::FlushFileBuffers(file.Get());
}

/// Gives the file the other's name, in the place of the file that has it.
bool Replace(const CString& from, const CString& to)
{
    // A file that somebody reads refuses to be replaced with this error for a moment, a folder for ever.
    const auto isInUse = [](DWORD error) { return IsFileInUse(error) || error == ERROR_ACCESS_DENIED; };
    const auto move = [&] { return ::MoveFileExW(from, to, MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0; };
    return IsFolder(to) ? move() : WaitFor(move, isInUse);
}

void Remove(const CString& path)
{
    WaitFor([&] { return ::DeleteFileW(path) != FALSE; });
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
    return Load(storage, GENERIC_READ);
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
    // Opened for writing, since a file that is protected from it could still be replaced.
    if (!Load(storage, GENERIC_READ | GENERIC_WRITE) || !change(storage))
        return false;
    const CString newPath = m_path + TEXT(".new");
    if (!Save(storage, newPath, OPEN_ALWAYS))
        return false;
    if (!KeepBackup())
    {
        Remove(newPath);
        return false;
    }
    if (!Replace(newPath, m_path))
        return Fail(m_path, TEXT("cannot be replaced; the new content stands in the .new file beside it"),
                    ::GetLastError());
    return true;
}

CString CStorageFile::SaveBeside(const WCHAR* pId, const WCHAR* pCfg)
{
    CStorage storage;
    SetConfigurationText(storage, pId, pCfg);
    CString path;
    int number = 0;
    bool isSaved = false;
    do
    {
        path.Format(TEXT("%s.unsaved-%d"), m_path.GetString(), ++number);
        isSaved = Save(storage, path, CREATE_NEW); // another program may want the same number at the same time
    } while (!isSaved && Exists(path));
    return isSaved ? path : CString();
}

bool CStorageFile::Fail(const CString& path, const WCHAR* pWhat, unsigned int systemError)
{
    m_errorText.Format(TEXT("%s: %s (error %u: %s)"), path.GetString(), pWhat, systemError,
                       SystemText(systemError).GetString());
    return false;
}

bool CStorageFile::Load(CStorage& storage, unsigned int access)
{
    m_errorText.Empty();
    // Stays open while the text is read: Windows does not let a file that is open be replaced.
    const CFileHandle file(m_path, access, OPEN_EXISTING);
    const DWORD error = file.IsOpen() ? ERROR_SUCCESS : ::GetLastError();
    if (error == ERROR_FILE_NOT_FOUND)
    {
        storage.Clear();
        return true;
    }
    if (error != ERROR_SUCCESS)
        return Fail(m_path, access == GENERIC_READ ? TEXT("cannot be opened") : TEXT("cannot be opened for writing"),
                    error);
    if (storage.Load(m_path) != 0)
        return true;
    m_errorText.Format(
        TEXT("%s: holds no readable <storage> text and is left as it is. 'vltconfig check' names the fault; ")
            TEXT("a good copy may stand in %s.bak."),
        m_path.GetString(), m_path.GetString());
    return false;
}

bool CStorageFile::Save(CStorage& storage, const CString& path, unsigned int disposition)
{
    {
        // Held open while the module writes it: opening tells why a file cannot be written, and flushing takes a
        // handle.
        const CFileHandle file(path, GENERIC_READ | GENERIC_WRITE, disposition);
        if (!file.IsOpen())
            return Fail(path, TEXT("cannot be written; the storage is as it was"), ::GetLastError());
        if (storage.Save(path) != 0 && ::FlushFileBuffers(file.Get()))
            return true;
    }
    m_errorText = path + TEXT(": cannot be written whole, the disk may be full; the storage is as it was");
    Remove(path);
    return false;
}

bool CStorageFile::KeepBackup()
{
    if (!Exists(m_path))
        return true;
    // The copy gets its name only when it is whole, so that the backup, too, is always a complete generation.
    const CString backup = m_path + TEXT(".bak");
    const CString copy = backup + TEXT(".new");
    if (Copy(m_path, copy) && Flush(copy) && Replace(copy, backup))
        return true;
    Fail(backup, TEXT("cannot be written; the storage is as it was"), ::GetLastError());
    Remove(copy);
    return false;
}
} // namespace VLT
