#include "tests/sdk/HandlerTest.h"

#include "platform/win32/win32.h"

#include <thread>

TEST_F(Handler, KeepsTextsAndTheGenerationBefore)
{
    EXPECT_FALSE(m_handler.IsOpen());
    ASSERT_EQ(m_handler.OpenStorage(), 1); // there is no file yet
    EXPECT_TRUE(m_handler.LoadConfigurationById(TEXT("A")).IsEmpty());
    EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("first")), 1);
    EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("second")), 1);
    EXPECT_EQ(m_handler.SaveConfiguration(TEXT("B"), TEXT("")), 1);
    EXPECT_EQ(m_handler.LoadConfigurationById(TEXT("A")), TEXT("second"));
    m_handler.CloseStorage();
    EXPECT_TRUE(m_handler.LoadConfigurationById(TEXT("A")).IsEmpty());
    EXPECT_EQ(TextIn(TEXT("storage.xml.bak"), TEXT("A")), TEXT("second"));
    EXPECT_EQ(TextIn(TEXT("storage.xml.bak"), TEXT("B")), TEXT("-"));
    EXPECT_EQ(m_report, WString());
    EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("late")), 0);
    EXPECT_TRUE(HasReported(TEXT("call OpenStorage")));
    EXPECT_EQ(TextIn(TEXT("storage.xml.unsaved-1"), TEXT("A")), TEXT("late"));
}

// The expected file was made by another program from the same records, so no build is its own reference.
TEST_F(Handler, WritesAndReadsTheSameFileInEveryBuild)
{
    WString digits;
    while (digits.size() < 1500)
        digits += TEXT("0123456789");
    const std::vector<std::pair<WString, WString>> records = {
        {TEXT("A"), TEXT("<a b=\"1 & 2\"/>\r\n\t")},
        {TEXT("Gr\u00F6\u00DFe"), TEXT("M\u00FCller \u0080\u00FF?")},
        {TEXT("\u010Cesk\u00FD"), TEXT("P\u0159\u00EDli\u0161 \u017Elu\u0165ou\u010Dk\u00FD k\u016F\u0148, ")
                                      TEXT("\u0395\u03BB\u03BB\u03AC\u03C2")},
        {TEXT("PAIRS"), TEXT("\xD83D\xDE00 \xD83D,\xDE00\xD83D")},
        {TEXT("EMPTY"), TEXT("")},
        {TEXT(""), TEXT("no identifier")},
        {TEXT("LONG"), digits}};
    const std::string expected = BytesOf(SOURCE_FOLDER "/tests/sdk/expected-storage.xml");
    VLT::CStorage storage;
    ASSERT_EQ(m_handler.OpenStorage(), 1);
    for (const auto& [id, cfg] : records)
    {
        VLT::SetConfigurationText(storage, id.c_str(), cfg.c_str());
        EXPECT_EQ(m_handler.SaveConfiguration(id.c_str(), cfg.c_str()), 1);
    }
    EXPECT_EQ(storage.Save(m_folder.Path(TEXT("plain.xml")).c_str()), 1);
    EXPECT_EQ(BytesOf(m_folder.m_path / "plain.xml"), expected);
    EXPECT_EQ(BytesOf(m_folder.m_path / "storage.xml"), expected);

    m_folder.Write(u"expected.xml", expected.c_str());
    ASSERT_EQ(storage.Load(m_folder.Path(TEXT("expected.xml")).c_str()), 1);
    std::vector<std::pair<WString, WString>> read;
    for (const auto& pRecord : *storage.GetConfigurationVector())
        read.emplace_back(pRecord->GetId(), pRecord->GetCfg()); // releases the module's empty text, too
    EXPECT_EQ(read, records);
}

TEST_F(Handler, NeverWritesOverAFileThatItCannotRead)
{
    const char* const rows[] = {"", "garbage", "<storage><configuration id=\"QQ==\"", "<storage></stor>",
                                "<projectionRegistry></projectionRegistry>"};
    int number = 0;
    for (const char* pRow : rows)
    {
        m_folder.Write(u"storage.xml", "<storage></storage>");
        ASSERT_EQ(m_handler.OpenStorage(), 1);
        m_folder.Write(u"storage.xml", pRow); // damaged while it is open, and below before it is opened
        m_report.clear();
        EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("new")), 0) << pRow;
        EXPECT_TRUE(HasReported(TEXT("no readable <storage> text")));
        const WString unsaved = TEXT("storage.xml.unsaved-") + WString(1, static_cast<WCHAR>(TEXT('1') + number++));
        EXPECT_TRUE(HasReported(m_folder.Path(unsaved).c_str()));
        EXPECT_EQ(TextIn(unsaved.c_str(), TEXT("A")), TEXT("new"));
        m_report.clear();
        EXPECT_EQ(m_handler.OpenStorage(), 0) << pRow;
        EXPECT_TRUE(HasReported(m_path.c_str()));
        EXPECT_EQ(BytesOf(m_folder.m_path / "storage.xml"), pRow);
    }
}

// The report names the obstacle, the file stays as it was, and no half-written file is left.
TEST_F(Handler, ReportsWhatStandsInTheWay)
{
    const WString name = TEXT("storage.xml");
    const WString deep(100, TEXT('d'));
    const std::tuple<WString, WString, WString> rows[] = {
        // the storage's name, a folder that is there already, and the report: empty if saving succeeds
        {name, name, TEXT("storage.xml: is a folder")},
        {TEXT("missing/storage.xml"), TEXT(""), TEXT("storage.xml: cannot be opened (error 3")},
        {name, name + TEXT(".lock"), TEXT("storage.xml.lock: cannot be made")},
        {name, name + TEXT(".new"), TEXT("storage.xml.new: cannot be written")},
        {name, name + TEXT(".bak"), TEXT("storage.xml.bak: cannot be written")},
        {name, name + TEXT(".bak.new"), TEXT("storage.xml.bak: cannot be written")},
        {TEXT("P\u0159\u00EDli\u0161 \xD83D\xDE00.xml"), TEXT(""), TEXT("")},
        {deep + TEXT("/") + WString(200, TEXT('n')), deep, TEXT("")}};
    const char* const before = "<storage></storage>";
    for (const auto& [file, obstacle, report] : rows)
    {
        SCOPED_TRACE(testing::PrintToString(file + TEXT(" ") + obstacle));
        const CTestFolder folder;
        const WString path = folder.Path(file);
        if (!obstacle.empty())
            std::filesystem::create_directories(folder.m_path / obstacle);
        folder.Write(u"storage.xml", before); // does nothing if that is the folder
        m_report.clear();
        VLT::CFileConfigurationHandler handler(path.c_str(), m_reporter);
        handler.OpenStorage();
        EXPECT_EQ(handler.SaveConfiguration(TEXT("A"), TEXT("after")), report.empty());
        EXPECT_TRUE(HasReported(report.c_str()));
        EXPECT_TRUE(obstacle == name || BytesOf(folder.m_path / "storage.xml") == before);
        for (const auto& entry : std::filesystem::directory_iterator(folder.m_path))
            EXPECT_FALSE(entry.is_regular_file() && entry.path().extension() == ".new") << entry.path();
        VLT::CStorage storage;
        EXPECT_EQ(storage.Load(path.c_str()) && storage.GetConfigurationById(TEXT("A")), report.empty());
    }
}

TEST_F(Handler, KeepsWhatAnotherProgramHasStored)
{
    m_handler.OpenStorage();
    m_handler.SaveConfiguration(TEXT("A"), TEXT("common"));
    m_other.OpenStorage();
    EXPECT_EQ(m_other.SaveConfiguration(TEXT("B"), TEXT("other's")), 1);
    EXPECT_EQ(m_handler.SaveConfiguration(TEXT("C"), TEXT("mine")), 1);
    EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("mine")), 1);
    EXPECT_EQ(m_report, WString());

    EXPECT_EQ(m_other.SaveConfiguration(TEXT("A"), TEXT("other's")), 0);
    EXPECT_TRUE(HasReported(TEXT("another program has changed the record 'A'")));
    EXPECT_EQ(TextIn(TEXT("storage.xml.unsaved-1"), TEXT("A")), TEXT("other's"));
    EXPECT_EQ(m_other.SaveConfiguration(TEXT("A"), TEXT("mine")), 1); // the text that is stored
    for (const auto& [pId, pText] :
         {std::pair(TEXT("A"), TEXT("mine")), {TEXT("B"), TEXT("other's")}, {TEXT("C"), TEXT("mine")}})
        EXPECT_EQ(TextIn(TEXT("storage.xml"), pId), pText);
}

// An indexer or virus scanner has a file open for a moment: Windows then lets nobody replace it, or even read it.
// Another program that saves holds the lock.
TEST_F(Handler, WaitsFiveSecondsForAFileInUse)
{
    constexpr DWORD shared = FILE_SHARE_READ | FILE_SHARE_WRITE;
    const auto use = [&](const WString& name, DWORD shareMode)
    {
        const HANDLE file = ::CreateFileW(m_folder.Path(name).c_str(), GENERIC_READ, shareMode, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr);
        OVERLAPPED range{};
        EXPECT_TRUE(!name.ends_with(TEXT(".lock")) || ::LockFileEx(file, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &range));
        return file;
    };
    m_handler.OpenStorage();
    m_handler.SaveConfiguration(TEXT("A"), TEXT("1"));
    m_handler.SaveConfiguration(TEXT("A"), TEXT("2"));
    const std::pair<WString, DWORD> rows[] = {{TEXT("storage.xml"), shared},
                                              {TEXT("storage.xml"), 0},
                                              {TEXT("storage.xml.lock"), shared},
                                              {TEXT("storage.xml.lock"), 0},
                                              {TEXT("storage.xml.bak"), 0}};
    for (const auto& [name, shareMode] : rows)
    {
        SCOPED_TRACE(testing::PrintToString(name));
        const HANDLE file = use(name, shareMode);
        ASSERT_NE(file, INVALID_HANDLE_VALUE);
        std::thread closing(
            [&]
            {
                ::Sleep(100);
                ::CloseHandle(file);
            });
        EXPECT_EQ(m_handler.OpenStorage(), 1);
        const CString text = m_handler.LoadConfigurationById(TEXT("A")) + TEXT("+");
        EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), text), 1);
        closing.join();
    }
    EXPECT_EQ(m_report, WString());

    const HANDLE lock = use(TEXT("storage.xml.lock"), shared);
    EXPECT_EQ(m_handler.SaveConfiguration(TEXT("A"), TEXT("3")), 0);
    ::CloseHandle(lock);
    EXPECT_TRUE(HasReported(TEXT("in use by another program")));
    EXPECT_EQ(TextIn(TEXT("storage.xml.unsaved-1"), TEXT("A")), TEXT("3"));
    EXPECT_EQ(TextIn(TEXT("storage.xml"), TEXT("A")), TEXT("2+++++"));
}
