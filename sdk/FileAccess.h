#pragma once
/// The steps of a save, each a short run of system calls with one outcome. Errors are returned as Windows codes,
/// ERROR_SUCCESS (0) for success, so that no later call can change them.
#include <afxstr.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace VLT
{
/// Whether the error says that another program has the file open or locked.
bool IsFileInUse(DWORD error);

/// The access rights of a file, for a file that is made next to it.
class CFileSecurity
{
public:
    /// Reads the rights of the file. If it does not exist or has no rights of its own, Get gives the system's default.
    DWORD Read(const CString& path);
    /// For CreateFileW; null for the default.
    SECURITY_ATTRIBUTES* Get();

private:
    std::vector<std::byte> m_descriptor;
    SECURITY_ATTRIBUTES m_attributes{};
};

/// An open file, which others may read and write meanwhile; closed with the object. A file that another program keeps
/// to itself is tried for five seconds.
class CFileHandle
{
public:
    CFileHandle(const CString& path, DWORD access, DWORD disposition, DWORD flags = 0,
                SECURITY_ATTRIBUTES* pSecurity = nullptr);
    ~CFileHandle() { Close(); }
    CFileHandle(CFileHandle&& other) noexcept
        : m_handle(std::exchange(other.m_handle, INVALID_HANDLE_VALUE)), m_error(other.m_error)
    {
    }
    CFileHandle& operator=(CFileHandle&&) = delete;

    /// Why the file did not open; ERROR_SUCCESS if it did.
    DWORD GetError() const { return m_error; }
    HANDLE Get() const { return m_handle; }
    void Close();

private:
    HANDLE m_handle;
    DWORD m_error;
};

/// The file that a symbolic link stands for; the path itself if it is no link. Fails for a link whose target cannot be
/// opened.
DWORD ResolveLink(const CString& path, CString& target);

/// Opens the lock file, or makes one with those access rights. A lock needs no right to write, and is no link.
CFileHandle OpenLock(const CString& path, CFileSecurity& security);
/// Keeps everybody else out until the handle closes. ERROR_LOCK_VIOLATION: another program did so for five seconds.
DWORD Lock(const CFileHandle& file);

/// Appends the file's bytes from the current position to the end.
DWORD ReadAll(const CFileHandle& file, std::string& bytes);

/// Makes a file that must not exist yet. It is on the disk, whole, when the call succeeds; else it is removed again, if
/// the system lets it be.
DWORD WriteNewFile(const CString& path, std::string_view bytes, CFileSecurity& security);
DWORD CopyToNewFile(const CString& from, const CString& to, CFileSecurity& security);

/// ERROR_SUCCESS too if there is no such file. A link is removed itself.
DWORD RemoveFile(const CString& path);
/// True also if the system does not say.
bool Exists(const CString& path);
bool IsFolder(const CString& path);

/// Renames the file, in place of the file or link that has the name.
DWORD MoveOnto(const CString& from, const CString& to);
/// Renames the file to a name that must be free.
DWORD MoveToNewName(const CString& from, const CString& to);
/// Makes `from` the content of `to`, which exists and keeps its access rights and attributes.
/// Fails with `to` as it was or, on Windows, with `to` gone and `from` complete.
DWORD ReplaceContent(const CString& from, const CString& to);

/// Waits until the names in the file's folder are on the disk. A file system that has no such operation succeeds.
DWORD FlushFolderOf(const CString& path);
} // namespace VLT
