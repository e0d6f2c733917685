// Access rights, links and other kinds of files. Native only: Wine shows a link as its target, and lets the superuser
// write to a protected file.
#include "tests/sdk/HandlerTest.h"

#include <sys/stat.h>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

/// Runs as an ordinary user while it lives: no file is protected from the superuser.
class COrdinaryUser
{
public:
    explicit COrdinaryUser(uid_t user = 65534) : m_isChanged(geteuid() == 0 && seteuid(user) == 0) {}
    ~COrdinaryUser() { EXPECT_TRUE(!m_isChanged || seteuid(0) == 0); }

private:
    const bool m_isChanged;
};

unsigned ModeOf(const fs::path& path)
{
    return static_cast<unsigned>(fs::status(path).permissions());
}
} // namespace

TEST_F(Handler, NamesWhatIsProtected)
{
    const struct
    {
        unsigned ofFolder;
        unsigned ofFile;
        const WCHAR* pReport;
    } rows[] = {{0777, 0444, TEXT("storage.xml: cannot be opened for writing (error 5")},
                {0777, 0000, TEXT("storage.xml: cannot be opened (error 5")},
                {0555, 0644, TEXT("not saved anywhere")}};
    for (const auto& row : rows)
    {
        m_folder.Write(u"storage.xml", "<storage></storage>");
        fs::remove(m_folder.m_path / "storage.xml.lock");
        permissions(m_folder.m_path / "storage.xml", fs::perms(row.ofFile));
        permissions(m_folder.m_path, fs::perms(row.ofFolder));
        m_report.clear();
        {
            const COrdinaryUser user;
            m_handler.OpenStorage();
            EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("new")), 0);
        }
        EXPECT_TRUE(HasReported(row.pReport));
        permissions(m_folder.m_path, fs::perms(0755));
        permissions(m_folder.m_path / "storage.xml", fs::perms(0644));
        EXPECT_EQ(BytesOf(m_folder.m_path / "storage.xml"), "<storage></storage>");
    }
}

TEST_F(Handler, KeepsEverybodyOutWhoMayNotReadTheStorage)
{
    for (const unsigned mode : {0600U, 0640U, 0664U})
    {
        for (const auto& entry : fs::directory_iterator(m_folder.m_path))
            fs::remove(entry);
        m_folder.Write(u"storage.xml", "<storage></storage>");
        permissions(m_folder.m_path / "storage.xml", fs::perms(mode));
        m_handler.OpenStorage();
        m_other.OpenStorage();
        EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("1")), 1);
        EXPECT_EQ(m_other.SaveConfiguration(TEXT("A"), TEXT("2")), 0); // goes next to it
        for (const char* pEnd : {"", ".lock", ".bak", ".unsaved-1"})
            EXPECT_EQ(ModeOf(m_folder.m_path / (std::string("storage.xml") + pEnd)), mode) << pEnd;
    }
}

// Two users of one group in a folder of that group. What the second saves belongs to them, and stays open to the group.
TEST_F(Handler, LetsEverybodySaveWhoMayWriteTheStorage)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can be two users";
    constexpr gid_t group = 65533;
    const fs::path file = m_folder.m_path / "storage.xml";
    m_folder.Write(u"storage.xml", "<storage></storage>");
    permissions(m_folder.m_path, fs::perms(0770));
    permissions(file, fs::perms(0664));
    ASSERT_EQ(chown(m_folder.m_path.c_str(), 65534, group) + chown(file.c_str(), 65534, group), 0);
    ASSERT_EQ(setegid(group), 0);
    int saved = 0;
    for (const uid_t user : {65534U, 65532U, 65534U})
    {
        const COrdinaryUser member(user);
        m_handler.OpenStorage();
        saved += m_handler.SaveConfiguration(TEXT("A"), WString(saved + 1U, TEXT('x')).c_str());
    }
    ASSERT_EQ(setegid(0), 0);
    EXPECT_EQ(saved, 3) << testing::PrintToString(m_report);
    struct stat status;
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_gid, group);
    EXPECT_EQ(ModeOf(file), 0664U);
    {
        const COrdinaryUser user(65534); // gives the file to a group that is not the user's own
        ASSERT_EQ(seteuid(0) + chown(file.c_str(), 65534, 65500) + seteuid(65534), 0);
        m_handler.SaveConfiguration(TEXT("A"), TEXT("other group"));
    }
    EXPECT_EQ(ModeOf(file), 0644U) << "the rights of a group went to another";
}

// Whatever stands under the names that a save uses, only the storage, or the file that it links to, gets the text.
TEST_F(Handler, WritesThroughNoLinkButTheStorage)
{
    const fs::path file = m_folder.m_path / "storage.xml";
    const auto at = [&](const char* pEnd) { return fs::path(file) += pEnd; };
    const fs::path victim = m_folder.m_path / "victim";
    const struct
    {
        const char* pName;
        std::function<void()> plant;
        int saved;
        const WCHAR* pReport;
    } rows[] = {
        {"a link to another file", [&] { create_symlink(victim, at(".new")); }, 1, TEXT("")},
        {"a link to another file for the backup", [&] { create_symlink(victim, at(".bak.new")); }, 1, TEXT("")},
        {"a link in place of the backup", [&] { create_symlink(victim, at(".bak")); }, 1, TEXT("")},
        {"a link to the storage", [&] { create_symlink(file, at(".new")); }, 1, TEXT("")},
        {"a hard link of the storage", [&] { create_hard_link(file, at(".new")); }, 1, TEXT("")},
        {"a hard link of the storage for the backup", [&] { create_hard_link(file, at(".bak.new")); }, 1, TEXT("")},
        {"a pipe", [&] { ASSERT_EQ(mkfifo(at(".new").c_str(), 0600), 0); }, 1, TEXT("")},
        {"a link in place of the lock", [&] { create_symlink(m_folder.m_path / "made", at(".lock")); }, 0,
         TEXT("storage.xml.lock: cannot be made or opened")}};
    const WString text(100'000, TEXT('n'));
    for (const auto& row : rows)
    {
        SCOPED_TRACE(row.pName);
        for (const auto& entry : fs::directory_iterator(m_folder.m_path))
            fs::remove(entry);
        m_folder.Write(u"victim", "victim");
        m_folder.Write(u"storage.xml", "<storage></storage>");
        m_report.clear();
        m_handler.OpenStorage();
        row.plant();
        EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), text.c_str()), row.saved);
        EXPECT_TRUE(HasReported(row.pReport));
        EXPECT_EQ(TextIn(TEXT("storage.xml"), TEXT("A")) == text.c_str(), row.saved != 0);
        EXPECT_TRUE(is_regular_file(symlink_status(file)));
        EXPECT_EQ(BytesOf(victim), "victim");
        EXPECT_FALSE(exists(m_folder.m_path / "made"));
        EXPECT_TRUE(row.saved == 0 || BytesOf(at(".bak")) == "<storage></storage>");
        EXPECT_FALSE(exists(symlink_status(at(".new"))) || exists(symlink_status(at(".bak.new"))));
    }
}

TEST_F(Handler, FollowsTheStoragesOwnLink)
{
    const fs::path inner = m_folder.m_path / "inner";
    create_directory(inner);
    create_symlink(inner / "target.xml", m_folder.m_path / "storage.xml");
    EXPECT_EQ(m_handler.OpenStorage(), 0); // nothing there yet
    EXPECT_TRUE(HasReported(TEXT("storage.xml: is a link to a file that cannot be opened")));
    std::ofstream(inner / "target.xml") << "<storage></storage>";
    EXPECT_EQ(m_handler.OpenStorage(), 1);
    EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("text")), 1);
    EXPECT_TRUE(is_symlink(m_folder.m_path / "storage.xml"));
    EXPECT_EQ(TextIn(TEXT("inner\\target.xml"), TEXT("A")), TEXT("text"));
    EXPECT_TRUE(exists(inner / "target.xml.bak") && exists(inner / "target.xml.lock"));
    EXPECT_FALSE(exists(m_folder.m_path / "storage.xml.bak") || exists(m_folder.m_path / "storage.xml.lock"));
}
