// Native only: under Wine the superuser writes to a protected file.
#include "tests/sdk/HandlerTest.h"

#include <unistd.h>

namespace
{
/// Takes the rights of the superuser away meanwhile, to whom no file is protected.
class COrdinaryUser
{
public:
    COrdinaryUser() : m_isChanged(geteuid() == 0 && seteuid(65534) == 0) {}
    ~COrdinaryUser() { EXPECT_TRUE(!m_isChanged || seteuid(0) == 0); }

private:
    const bool m_isChanged;
};
} // namespace

TEST_F(Handler, NamesWhatIsProtected)
{
    using std::filesystem::perms;
    const struct
    {
        perms ofFolder;
        perms ofFile;
        const WCHAR* pReport;
    } rows[] = {{perms(0777), perms(0444), TEXT("storage.xml: cannot be opened for writing (error 5")},
                {perms(0777), perms(0000), TEXT("storage.xml: cannot be opened (error 5")},
                {perms(0555), perms(0644), TEXT("could not be put beside it either")}};
    m_folder.Write(u"storage.xml", "<storage></storage>");
    for (const auto& row : rows)
    {
        std::filesystem::remove(m_folder.m_path / "storage.xml.lock");
        permissions(m_folder.m_path / "storage.xml", row.ofFile);
        permissions(m_folder.m_path, row.ofFolder);
        m_report.clear();
        {
            const COrdinaryUser user;
            m_handler.OpenStorage();
            EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("new")), 0);
        }
        EXPECT_TRUE(HasReported(row.pReport));
        permissions(m_folder.m_path, perms(0755));
        permissions(m_folder.m_path / "storage.xml", perms(0644));
        EXPECT_EQ(BytesOf(m_folder.m_path / "storage.xml"), "<storage></storage>");
    }
}
