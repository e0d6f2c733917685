// Long and non-ASCII paths, paths that are not files, and files that open but cannot be read, in all functions that
// open files.
#include "configuration/Storage.h"
#include "tests/support/Readable.h"
#include "tests/support/TestFolder.h"
#include "uistrings/TextFile.h"
#include "xml/XmlFile.h"

#include <boost/make_shared.hpp>
#include <cstdio>

namespace
{
bool s_failsRead = false;
}

#pragma GCC visibility push(default) // the linker option --wrap replaces fread in this program
extern "C" size_t __real_fread(void* pBytes, size_t size, size_t count, FILE* pFile);
extern "C" size_t __wrap_fread(void* pBytes, size_t size, size_t count, FILE* pFile)
{
    if (!s_failsRead)
        return __real_fread(pBytes, size, count, pFile);
    std::fputc(0, pFile); // fails too, as the file is open for reading; the error stays with it
    return 0;
}
#pragma GCC visibility pop

TEST(Paths, AreTakenByAllReadersAndWriters)
{
    const CTestFolder folder;
    const std::u16string longName(150, u'n');
    std::filesystem::create_directory(folder.m_path / longName);
    std::filesystem::create_directory(folder.m_path / u"folder");
    const WString longPath = WString(longName.begin(), longName.end()) + TEXT("\\") + WString(150, TEXT('f'));
    const struct
    {
        WString name;
        bool works;
    } rows[] = {
        {TEXT("\u0159\u00ED\u0161e \u03A9 \u4E2D \xD83D\xDE00.xml"), true},
        {longPath, true},                 // of more than 300 units
        {WString(300, TEXT('x')), false}, // no file system takes such a name
        {TEXT("folder"), false},
        {TEXT("missing\\file"), false},
    };
    for (const auto& row : rows)
    {
        SCOPED_TRACE(&row - rows);
        const CString path = folder.Path(row.name).c_str();
        CString text, result;
        EXPECT_EQ(WriteTextFile(path, TEXT("12 text\n"), &result), row.works);
        EXPECT_EQ(ReadTextFile(path, text, &result), row.works);
        EXPECT_FALSE(result.IsEmpty());
        EXPECT_EQ(text, row.works ? TEXT("12 text\n") : TEXT(""));
        TextFile file;
        EXPECT_EQ(file.Open(path) == 0, row.works);
        file.Close();

        VLT::CStorage storage;
        storage.AddConfiguration(boost::make_shared<VLT::CConfiguration>());
        EXPECT_EQ(storage.Save(path), row.works ? 1 : 0);
        EXPECT_EQ(storage.Load(path), row.works ? 1 : 0);
        EXPECT_EQ(storage.GetConfigurationVector()->size(), 1U); // the loaded record, or the record before
    }
}

TEST(Paths, AFileThatOpensMayFailToBeRead)
{
    const CTestFolder folder;
    folder.Write(u"file", "text");
    CString text, result;
    s_failsRead = true;
    EXPECT_FALSE(ReadTextFile(folder.Path(TEXT("file")).c_str(), text, &result));
    s_failsRead = false;
    EXPECT_EQ(result, TEXT("Bad file descriptor"));
    if constexpr (OnWindows)
        return;
    // A file of the Linux kernel that cannot be read at its start.
    TextFile file;
    EXPECT_NE(file.Open(TEXT("/proc/self/mem")), 0);
    EXPECT_TRUE(WString(GetLastErrorText()).starts_with(TEXT("Error 30 reading file:\n\n/proc/self/mem\n\n(")));
    file.Close();
}
