// Access rights, links and other kinds of files. Native only: Wine shows a link as its target, and lets the superuser
// write to a protected file.
#include "tests/sdk/HandlerTest.h"

#include <sys/stat.h>
#include <unistd.h>

namespace
{
namespace fs = std::filesystem;

/// Runs as an ordinary user while it lives: no file is protected from the superuser.
struct COrdinaryUser
{
    explicit COrdinaryUser(uid_t user = 65534) : isChanged(geteuid() == 0 && seteuid(user) == 0) {}
    ~COrdinaryUser() { EXPECT_TRUE(!isChanged || seteuid(0) == 0); }

    const bool isChanged;
};

class Protection : public Handler
{
protected:
    /// Nothing but an empty storage in the folder, with these rights.
    void StartAgain(unsigned modeOfFile = 0644, unsigned modeOfFolder = 0755)
    {
        for (const auto& entry : fs::directory_iterator(m_folder.m_path))
            fs::remove(entry);
        m_folder.Write(u"storage.xml", "<storage></storage>");
        permissions(m_file, fs::perms(modeOfFile));
        permissions(m_folder.m_path, fs::perms(modeOfFolder));
        m_report.clear();
    }
    fs::path At(const char* pEnd) const { return fs::path(m_file) += pEnd; }
    unsigned ModeOf(const char* pEnd = "") const { return static_cast<unsigned>(fs::status(At(pEnd)).permissions()); }

    const fs::path m_file = m_folder.m_path / "storage.xml";
};
} // namespace

TEST_F(Protection, IsNamedInTheReport)
{
    const std::tuple<unsigned, unsigned, const WCHAR*> rows[] = {
        {0444, 0777, TEXT("storage.xml: cannot be opened for writing (error 5")},
        {0000, 0777, TEXT("storage.xml: cannot be opened (error 5")},
        {0644, 0555, TEXT("not saved anywhere")}};
    for (const auto& [modeOfFile, modeOfFolder, pReport] : rows)
    {
        StartAgain(modeOfFile, modeOfFolder);
        {
            const COrdinaryUser user;
            m_handler.OpenStorage();
            EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("new")), 0);
        }
        EXPECT_TRUE(HasReported(pReport));
        permissions(m_folder.m_path, fs::perms(0755));
        permissions(m_file, fs::perms(0644));
        EXPECT_EQ(BytesOf(m_file), "<storage></storage>");
    }
}

TEST_F(Protection, IsTheSameForEveryFileOfASave)
{
    for (const unsigned mode : {0600U, 0640U, 0664U})
    {
        StartAgain(mode);
        m_handler.OpenStorage();
        m_other.OpenStorage();
        EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("1")), 1);
        EXPECT_EQ(m_other.SaveConfiguration(TEXT("A"), TEXT("2")), 0); // goes to .unsaved-1
        for (const char* pEnd : {"", ".lock", ".bak", ".unsaved-1"})
            EXPECT_EQ(ModeOf(pEnd), mode) << pEnd;
    }
}

// Two users of one group in a folder of that group. The file becomes that of the user who saves, and stays writable for
// the group.
TEST_F(Protection, LetsEverybodySaveWhoMayWriteTheStorage)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only the superuser can be two users";
    constexpr gid_t group = 65533;
    StartAgain(0664, 0770);
    ASSERT_EQ(chown(m_folder.m_path.c_str(), 65534, group) + chown(m_file.c_str(), 65534, group), 0);
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
    ASSERT_EQ(stat(m_file.c_str(), &status), 0);
    EXPECT_EQ(status.st_gid, group);
    EXPECT_EQ(ModeOf(), 0664U);
    {
        const COrdinaryUser user(65534); // gives the file to a group that is not the user's own
        ASSERT_EQ(seteuid(0) + chown(m_file.c_str(), 65534, 65500) + seteuid(65534), 0);
        m_handler.SaveConfiguration(TEXT("A"), TEXT("other group"));
    }
    EXPECT_EQ(ModeOf(), 0644U) << "the rights of a group went to another";
}

// Whatever has one of the names that a save uses, only the storage gets the text.
TEST_F(Protection, NoPlantedLinkIsWrittenThrough)
{
    const fs::path victim = m_folder.m_path / "victim";
    const std::pair<const char*, std::function<void(const fs::path&)>> rows[] = {
        {".new", [&](const fs::path& path) { create_symlink(victim, path); }},
        {".bak.new", [&](const fs::path& path) { create_symlink(victim, path); }},
        {".bak", [&](const fs::path& path) { create_symlink(victim, path); }},
        {".new", [&](const fs::path& path) { create_symlink(m_file, path); }},
        {".new", [&](const fs::path& path) { create_hard_link(m_file, path); }},
        {".bak.new", [&](const fs::path& path) { create_hard_link(m_file, path); }},
        {".new", [&](const fs::path& path) { ASSERT_EQ(mkfifo(path.c_str(), 0600), 0); }},
        {".lock", [&](const fs::path& path) { create_symlink(At(".made"), path); }}};
    const WString text(100'000, TEXT('n'));
    for (const auto& row : rows)
    {
        SCOPED_TRACE(&row - rows);
        const auto& [pEnd, plant] = row;
        StartAgain();
        m_folder.Write(u"victim", "victim");
        m_handler.OpenStorage();
        plant(At(pEnd));
        const bool isSaved = m_handler.SaveConfiguration(TEXT("A"), text.c_str()) != 0;
        EXPECT_EQ(isSaved, pEnd != std::string(".lock")); // a link in its place is refused
        EXPECT_TRUE(isSaved ? m_report.empty() : HasReported(TEXT("storage.xml.lock: cannot be made or opened")));
        EXPECT_EQ(TextIn(TEXT("storage.xml"), TEXT("A")) == text.c_str(), isSaved);
        EXPECT_TRUE(is_regular_file(symlink_status(m_file)));
        EXPECT_EQ(BytesOf(victim), "victim");
        EXPECT_TRUE(!isSaved || BytesOf(At(".bak")) == "<storage></storage>");
        for (const char* pLeft : {".made", ".new", ".bak.new"})
            EXPECT_FALSE(exists(symlink_status(At(pLeft)))) << pLeft;
    }
}

TEST_F(Protection, FollowsTheStoragesOwnLink)
{
    const fs::path inner = m_folder.m_path / "inner";
    create_directory(inner);
    create_symlink(inner / "target.xml", m_file);
    EXPECT_EQ(m_handler.OpenStorage(), 0); // nothing there yet
    EXPECT_TRUE(HasReported(TEXT("storage.xml: is a link to a file that cannot be opened")));
    std::ofstream(inner / "target.xml") << "<storage></storage>";
    EXPECT_EQ(m_handler.OpenStorage(), 1);
    EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("text")), 1);
    EXPECT_TRUE(is_symlink(m_file));
    EXPECT_EQ(TextIn(TEXT("inner\\target.xml"), TEXT("A")), TEXT("text"));
    EXPECT_TRUE(exists(inner / "target.xml.bak") && exists(inner / "target.xml.lock"));
    EXPECT_FALSE(exists(At(".bak")) || exists(At(".lock")));
}
