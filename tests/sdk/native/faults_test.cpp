// Every system call of a save fails in turn. The calls below replace those of the C library in the program and all its
// libraries.
#include "tests/sdk/HandlerTest.h"

#include <cerrno>
#include <dlfcn.h>
#include <set>
#include <sys/stat.h>
#include <time.h>

namespace
{
enum class Extent
{
    Once,
    OnceAndEachRemoval,
    FromThenOn
};

/// Which call fails and how; what has happened meanwhile.
struct Faults
{
    int at = 0; ///< the number of the call, from 1; 0: none fails
    int error = 0;
    Extent extent = Extent::Once;
    std::string nameEnd{}; ///< only calls whose name ends so count
    int calls = 0;
    double sleptSeconds = 0;
    bool losesName = false; ///< a failing rename has removed its target, as can happen on Windows

    bool Hits(const char* pName)
    {
        if (at == 0 || !std::string(pName).ends_with(nameEnd))
            return false;
        const bool failsLater =
            extent == Extent::FromThenOn || (extent == Extent::OnceAndEachRemoval && std::string(pName) == "unlink");
        const bool isHit = ++calls == at || (calls > at && failsLater);
        if (isHit)
            errno = error;
        return isHit;
    }
};
Faults s_faults;

using Stat = struct stat;
using ConstBytes = const void*;
using Bytes = void*;
using Path = const char*;
} // namespace

#define WITH_FAULTS(name, Result, failure, parameters, arguments)                                                      \
    extern "C" __attribute__((visibility("default"))) Result name##_with_faults parameters __asm__(#name);             \
    extern "C" Result name##_with_faults parameters                                                                    \
    {                                                                                                                  \
        static const auto pReal = reinterpret_cast<Result(*) parameters>(dlsym(RTLD_NEXT, #name));                     \
        return s_faults.Hits(#name) ? failure : pReal arguments;                                                       \
    }
WITH_FAULTS(open, int, -1, (Path path, int flags, mode_t mode), (path, flags, mode))
WITH_FAULTS(read, ssize_t, -1, (int file, Bytes bytes, size_t size), (file, bytes, size))
WITH_FAULTS(write, ssize_t, -1, (int file, ConstBytes bytes, size_t size), (file, bytes, size))
WITH_FAULTS(close, int, (pReal(file), -1), (int file), (file)) // a file whose closing fails is closed as well
WITH_FAULTS(stat, int, -1, (Path path, Stat* pStat), (path, pStat))
WITH_FAULTS(lstat, int, -1, (Path path, Stat* pStat), (path, pStat))
WITH_FAULTS(fstat, int, -1, (int file, Stat* pStat), (file, pStat))
WITH_FAULTS(flock, int, -1, (int file, int operation), (file, operation))
WITH_FAULTS(fchmod, int, -1, (int file, mode_t mode), (file, mode))
WITH_FAULTS(unlink, int, -1, (Path path), (path))
WITH_FAULTS(rename, int, (s_faults.losesName ? unlink(to) : 0, -1), (Path from, Path to), (from, to))
WITH_FAULTS(fopen, FILE*, nullptr, (Path path, Path mode), (path, mode))
WITH_FAULTS(fseek, int, -1, (FILE * pFile, long offset, int from), (pFile, offset, from))
WITH_FAULTS(fread, size_t, 0, (Bytes bytes, size_t size, size_t count, FILE* pFile), (bytes, size, count, pFile))

// No test needs the data on the disk, so fsync does nothing. While calls fail, nanosleep only counts the seconds.
extern "C" __attribute__((visibility("default"))) int fsync_with_faults(int) __asm__("fsync");
extern "C" int fsync_with_faults(int)
{
    return s_faults.Hits("fsync") ? -1 : 0;
}
extern "C" __attribute__((visibility("default"))) int short_nanosleep(const timespec*, timespec*) __asm__("nanosleep");
extern "C" int short_nanosleep(const timespec* pTime, timespec* pRest)
{
    if (s_faults.at == 0)
        return clock_nanosleep(CLOCK_MONOTONIC, 0, pTime, pRest);
    s_faults.sleptSeconds += static_cast<double>(pTime->tv_sec) + static_cast<double>(pTime->tv_nsec) / 1e9;
    return 0;
}

class SaveFaults : public Handler
{
protected:
    /// Returns false if the save makes fewer calls than that.
    bool SaveWithFault(int call, int error, Extent extent)
    {
        SCOPED_TRACE("call " + std::to_string(call) + ", errno " + std::to_string(error) + ", extent " +
                     std::to_string(static_cast<int>(extent)));
        std::filesystem::remove_all(m_folder.m_path);
        std::filesystem::create_directory(m_folder.m_path);
        VLT::CFileConfigurationHandler handler(m_path.c_str(), m_reporter);
        handler.OpenStorage();
        handler.SaveConfiguration(TEXT("A"), TEXT("older"));
        EXPECT_EQ(handler.SaveConfiguration(TEXT("A"), TEXT("old")), 1);
        m_report.clear();
        s_faults = {call, error, extent};
        const bool isSaved = handler.SaveConfiguration(TEXT("A"), TEXT("new")) != 0;
        const Faults faults = std::exchange(s_faults, {});
        EXPECT_LT(faults.sleptSeconds, 10);
        CheckOutcome(isSaved, extent);
        EXPECT_EQ(handler.SaveConfiguration(TEXT("A"), TEXT("next")), 1) << testing::PrintToString(m_report);
        EXPECT_EQ(TextIn(TEXT("storage.xml"), TEXT("A")), TEXT("next"));
        return faults.calls >= call;
    }

    void CheckOutcome(bool isSaved, Extent extent)
    {
        EXPECT_EQ(TextIn(TEXT("storage.xml"), TEXT("A")), isSaved ? TEXT("new") : TEXT("old"));
        const CString backup = TextIn(TEXT("storage.xml.bak"), TEXT("A"));
        EXPECT_TRUE(backup == TEXT("old") || (!isSaved && backup == TEXT("older")));
        std::set<std::string> files;
        for (const auto& entry : std::filesystem::directory_iterator(m_folder.m_path))
            files.insert(entry.path().filename().string());
        for (const char* pExpected : {"storage.xml", "storage.xml.bak", "storage.xml.lock"})
            files.erase(pExpected);
        if (!isSaved && !HasReported(TEXT("not saved anywhere")))
        {
            EXPECT_EQ(TextIn(TEXT("storage.xml.unsaved-1"), TEXT("A")), TEXT("new"));
            files.erase("storage.xml.unsaved-1");
        }
        const bool isToldOf = HasReported(TEXT("storage.xml.new could not be removed"));
        EXPECT_TRUE(isToldOf ? extent != Extent::Once : isSaved || files.count("storage.xml.new") == 0);
        // Two files may be left if renaming fails, too.
        EXPECT_LE(files.size(), extent == Extent::FromThenOn ? 2u : 1u) << testing::PrintToString(files);
        EXPECT_TRUE(isSaved || !m_report.empty());
    }
};

TEST_F(SaveFaults, LoseNothing)
{
    int call = 1;
    for (const int error : {ENOSPC, EIO, EACCES, EROFS, EMFILE, EINTR})
        for (const Extent extent : {Extent::Once, Extent::OnceAndEachRemoval, Extent::FromThenOn})
            for (call = 1; SaveWithFault(call, error, extent); ++call)
                continue;
    EXPECT_GT(call, 30) << "the save hardly made a call that is watched";
}

TEST_F(SaveFaults, BringALostNameBackOrSayWhereTheTextIs)
{
    for (const Extent extent : {Extent::Once, Extent::FromThenOn})
    {
        m_handler.OpenStorage();
        m_handler.SaveConfiguration(TEXT("A"), TEXT("old"));
        s_faults = {2, EIO, extent, "rename"}; // the first one makes the backup
        s_faults.losesName = true;
        const bool isSaved = m_handler.SaveConfiguration(TEXT("A"), TEXT("new")) != 0;
        s_faults = {};
        EXPECT_EQ(isSaved, extent == Extent::Once);
        EXPECT_EQ(TextIn(isSaved ? TEXT("storage.xml") : TEXT("storage.xml.new"), TEXT("A")), TEXT("new"));
        EXPECT_EQ(m_report.empty(), isSaved);
    }
    EXPECT_TRUE(HasReported(TEXT("storage.xml: has lost its name")));
}

TEST_F(SaveFaults, AreReportedWithTheirReason)
{
    const std::tuple<const char*, int, int, int, const WCHAR*> rows[] = {
        // the call, from which one on it fails, how, what the save returns, the report
        {"flock", 1, ENOLCK, 0, TEXT("move the storage to a file system with locks (error 36: No locks")},
        {"open", 1, EROFS, 0, TEXT("(error 19: Read-only file system.)")},
        {"open", 1, EMFILE, 0, TEXT("(error 4: Too many open files.)")},
        {"open", 1, ELOOP, 0, TEXT("(error 1921: Too many levels of symbolic links.)")},
        {"open", 1, ENAMETOOLONG, 0, TEXT("(error 206: File name too long.)")},
        {"write", 1, ENOSPC, 0, TEXT("(error 112: No space left on device.)")},
        {"read", 1, EIO, 0, TEXT("storage.xml: cannot be read (error 30: Input/output error.)")},
        {"fsync", 3, EIO, 1, TEXT("is saved, but the change may be lost if the system fails now")},
        {"fsync", 3, EINVAL, 1, TEXT("")}}; // a file system that cannot flush a folder
    for (const auto& [pCall, number, error, result, pReport] : rows)
    {
        m_handler.OpenStorage();
        m_handler.SaveConfiguration(TEXT("A"), TEXT("old"));
        m_report.clear();
        s_faults = {number, error, Extent::FromThenOn, pCall};
        EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("new")), result) << pCall;
        s_faults = {};
        EXPECT_TRUE(HasReported(pReport));
        EXPECT_EQ(m_report.empty(), *pReport == 0);
        EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("next")), 1);
    }
}
