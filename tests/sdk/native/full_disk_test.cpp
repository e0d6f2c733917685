// Native only: Windows has no limit on a file's size that would stand for a full disk.
#include "sdk/FileConfigurationHandler.h"
#include "tests/platform/TestFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

namespace
{
/// No file grows beyond this many bytes.
class CFileSizeLimit
{
public:
    explicit CFileSizeLimit(rlim_t bytes) : m_before(Set(bytes)) {}
    ~CFileSizeLimit() { Set(m_before); }

private:
    static rlim_t Set(rlim_t bytes)
    {
        signal(SIGXFSZ, SIG_IGN); // writing then fails in the ordinary way
        rlimit limit;
        getrlimit(RLIMIT_FSIZE, &limit);
        const rlim_t before = limit.rlim_cur;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
        return before;
    }
    const rlim_t m_before;
};
} // namespace

// The new text does not fit, or it does but the backup of the old one does not.
TEST(FullDisk, LeavesTheFileAndItsBackupAsTheyWere)
{
    for (const size_t newLength : {size_t(90'000), size_t(10)})
    {
        const CTestFolder folder;
        const WString path = folder.Path(TEXT("storage.xml"));
        CString report;
        VLT::CFileConfigurationHandler handler(path.c_str(), [&](const CString& text) { report = text; });
        const WString before(80'000, TEXT('b'));
        handler.OpenStorage();
        handler.SaveConfiguration(TEXT("A"), TEXT("first"));
        ASSERT_EQ(handler.SaveConfiguration(TEXT("A"), before.c_str()), 1);
        {
            const CFileSizeLimit limit(40'000);
            EXPECT_EQ(handler.SaveConfiguration(TEXT("A"), WString(newLength, TEXT('c')).c_str()), 0);
        }
        EXPECT_NE(WString(report).find(TEXT("the storage is as it was")), WString::npos);
        EXPECT_NE(WString(report).find(newLength > 40'000 ? TEXT("could not be put beside it") : TEXT(".unsaved-1.")),
                  WString::npos);
        VLT::CStorage storage;
        ASSERT_EQ(storage.Load(path.c_str()), 1);
        EXPECT_EQ(storage.GetConfigurationById(TEXT("A"))->GetCfg(), before.c_str());
        ASSERT_EQ(storage.Load((path + TEXT(".bak")).c_str()), 1);
        EXPECT_EQ(storage.GetConfigurationById(TEXT("A"))->GetCfg(), TEXT("first"));
        EXPECT_EQ(handler.SaveConfiguration(TEXT("A"), TEXT("with room again")), 1);
    }
}
