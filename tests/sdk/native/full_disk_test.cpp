// Native only: Windows has no limit on a file's size that would stand for a full disk.
#include "tests/sdk/HandlerTest.h"

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
TEST_F(Handler, LeavesFileAndBackupAsTheyWereOnAFullDisk)
{
    const WString before(80'000, TEXT('b'));
    m_handler.OpenStorage();
    m_handler.SaveConfiguration(TEXT("A"), TEXT("first"));
    ASSERT_EQ(m_handler.SaveConfiguration(TEXT("A"), before.c_str()), 1);
    for (const auto& [length, pBeside] :
         {std::pair(90'000, TEXT("could not be put beside it")), {10, TEXT("storage.xml.unsaved-1.")}})
    {
        m_report.clear();
        {
            const CFileSizeLimit limit(40'000);
            EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), WString(length, TEXT('c')).c_str()), 0);
        }
        EXPECT_TRUE(HasReported(TEXT("the storage is as it was")));
        EXPECT_TRUE(HasReported(pBeside));
        EXPECT_EQ(TextIn(TEXT("storage.xml"), TEXT("A")), before.c_str());
        EXPECT_EQ(TextIn(TEXT("storage.xml.bak"), TEXT("A")), TEXT("first"));
    }
    EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("with room again")), 1);
}
