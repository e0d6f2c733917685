// Native only: under Wine the superuser writes to a protected file.
#include "sdk/FileConfigurationHandler.h"
#include "tests/platform/TestFolder.h"

#include <gtest/gtest.h>

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

TEST(Protected, FilesStayAndTheReportNamesThem)
{
    using std::filesystem::perms;
    const struct
    {
        perms ofFolder;
        perms ofFile;
        WString report;
    } rows[] = {{perms(0755), perms(0444), TEXT("storage.xml: cannot be opened for writing (error 5")},
                {perms(0755), perms(0000), TEXT("storage.xml: cannot be opened (error 5")},
                {perms(0555), perms(0644), TEXT("storage.xml.lock: cannot be made")},
                {perms(0555), perms(0644), TEXT("could not be put beside it either")}};
    for (const auto& row : rows)
    {
        const COrdinaryUser user;
        const CTestFolder folder;
        folder.Write(u"storage.xml", "<storage></storage>");
        permissions(folder.m_path / "storage.xml", row.ofFile);
        permissions(folder.m_path, row.ofFolder);
        WString reports;
        const WString path = folder.Path(TEXT("storage.xml"));
        VLT::CFileConfigurationHandler handler(path.c_str(), [&](const CString& text) { reports += text; });
        handler.OpenStorage();
        EXPECT_EQ(handler.SaveConfiguration(TEXT("A"), TEXT("new")), 0);
        EXPECT_NE(reports.find(row.report), WString::npos) << testing::PrintToString(reports);
        permissions(folder.m_path, perms(0755));
        permissions(folder.m_path / "storage.xml", perms(0644));
        EXPECT_EQ(file_size(folder.m_path / "storage.xml"), 19u);
    }
}
