#include "platform/text.h"
#include "platform/win32/win32.h"
#include "platform/win32/wine.h"
#include "tests/platform/TestFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
std::vector<WString> Find(const WString& pattern)
{
    std::vector<WString> names;
    WIN32_FIND_DATAW data = {};
    const HANDLE find = FindFirstFileW(pattern.c_str(), &data);
    if (find == INVALID_HANDLE_VALUE)
        return names;
    do
        names.emplace_back(data.cFileName);
    while (FindNextFileW(find, &data));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_NO_MORE_FILES));
    EXPECT_TRUE(FindClose(find));
    return names;
}

HANDLE OpenForReading(const WString& path)
{
    return CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                       nullptr);
}
} // namespace

TEST(Kernel, FindsByPatternInAnyCase)
{
    const CTestFolder folder;
    for (const auto* pName : {u"b_EN.dat", u"A_de.DAT", u"c[1].txt", u"plain", u"\u00DCbung.dat"})
        folder.Write(pName, "");
    std::filesystem::create_directory(folder.m_path / "d_folder.dat");
    const struct
    {
        WString pattern;
        std::vector<WString> names;
    } rows[] = {
        {TEXT("?_*.dat"), {TEXT("A_de.DAT"), TEXT("b_EN.dat"), TEXT("d_folder.dat")}},
        {TEXT("?_EN.DAT"), {TEXT("b_EN.dat")}},
        {TEXT("C[1]*"), {TEXT("c[1].txt")}},
        {TEXT("\u00FC*"), {TEXT("\u00DCbung.dat")}},
        {TEXT("PLAIN"), {TEXT("plain")}},
        {TEXT("*l*n*"), {TEXT("plain")}},
        {TEXT("*.*"),
         {TEXT("."), TEXT(".."), TEXT("A_de.DAT"), TEXT("b_EN.dat"), TEXT("c[1].txt"), TEXT("d_folder.dat"),
          TEXT("plain"), TEXT("\u00DCbung.dat")}},
        {TEXT("*_fr.dat"), {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Find(folder.Path(row.pattern)), row.names) << &row - rows;
}

TEST(Kernel, FindTellsFoldersAndFailures)
{
    const CTestFolder folder;
    std::filesystem::create_directory(folder.m_path / "inner");
    folder.Write(u"file", "");
    WIN32_FIND_DATAW data = {};
    FindClose(FindFirstFileW(folder.Path(TEXT("inner")).c_str(), &data));
    EXPECT_NE(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY, 0u);
    FindClose(FindFirstFileW(folder.Path(TEXT("file")).c_str(), &data));
    EXPECT_EQ(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY, 0u);

    EXPECT_EQ(FindFirstFileW(folder.Path(TEXT("*.dat")).c_str(), &data), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(FindFirstFileW(folder.Path(TEXT("missing\\*.dat")).c_str(), &data), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_PATH_NOT_FOUND));
    EXPECT_FALSE(FindNextFileW(INVALID_HANDLE_VALUE, &data));
    EXPECT_FALSE(FindClose(INVALID_HANDLE_VALUE));
}

TEST(Kernel, OpeningFailsWithTheReason)
{
    const CTestFolder folder;
    std::filesystem::create_directory(folder.m_path / "inner");
    const struct
    {
        WString path;
        DWORD code;
    } rows[] = {
        {folder.Path(TEXT("missing")), ERROR_FILE_NOT_FOUND},
        {folder.Path(TEXT("missing\\file")), ERROR_PATH_NOT_FOUND},
        {folder.Path(TEXT("inner")), ERROR_ACCESS_DENIED},
        {TEXT(""), ERROR_PATH_NOT_FOUND},
    };
    for (const auto& row : rows)
    {
        SetLastError(ERROR_SUCCESS);
        EXPECT_EQ(OpenForReading(row.path), INVALID_HANDLE_VALUE) << &row - rows;
        EXPECT_EQ(GetLastError(), row.code) << &row - rows;
    }
}

TEST(Kernel, ReadsInPiecesAndFromTheStartAgain)
{
    const CTestFolder folder;
    folder.Write(u"\u00FC", "abc");
    const HANDLE file = OpenForReading(folder.Path(TEXT("\u00FC")));
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    char bytes[4] = {};
    DWORD read = 9;
    for (const DWORD expected : {2u, 1u, 0u, 0u})
    {
        EXPECT_TRUE(ReadFile(file, bytes, 2, &read, nullptr)); // the end of the file is no failure
        EXPECT_EQ(read, expected);
    }
    EXPECT_EQ(SetFilePointer(file, 0, nullptr, FILE_BEGIN), 0u);
    EXPECT_TRUE(ReadFile(file, bytes, 4, &read, nullptr));
    EXPECT_EQ(std::string(bytes, read), "abc");
    EXPECT_TRUE(CloseHandle(file));
    EXPECT_FALSE(ReadFile(file, bytes, 4, &read, nullptr));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
}

// Callers cut the last two units off without looking.
TEST(Kernel, SystemTextsEndInALineEnd)
{
    const DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM;
    for (const DWORD code : {ERROR_SUCCESS, ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_ACCESS_DENIED,
                             ERROR_INVALID_HANDLE, ERROR_DISK_FULL})
    {
        LPWSTR pText = nullptr;
        const DWORD units = FormatMessageW(flags, nullptr, code, 0, reinterpret_cast<LPWSTR>(&pText), 1, nullptr);
        ASSERT_GT(units, 3u) << code;
        EXPECT_TRUE(WString(pText).substr(units - 3) == TEXT(".\r\n")) << code;
        EXPECT_EQ(LocalFree(pText), nullptr);
    }
    LPWSTR pText = nullptr;
    EXPECT_EQ(FormatMessageW(flags, nullptr, 0x2FFFFFFF, 0, reinterpret_cast<LPWSTR>(&pText), 1, nullptr), 0u);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MR_MID_NOT_FOUND));
}

// One U+FFFD for each maximal ill-formed part: any other rule shifts what follows.
TEST(Kernel, IllFormedUtf8IsReplaced)
{
    const struct
    {
        std::string bytes;
        WString text;
        size_t unitsUnderWine = WString::npos; // for these, in place of the text's own
    } rows[] = {
        {"a\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80", TEXT("a\u00FC\u20AC\xD83D\xDE00")},
        {"\x80"
         "a",
         TEXT("\uFFFDa")},
        {"\xC3", TEXT("\uFFFD")},
        {"\xC3"
         "a",
         TEXT("\uFFFDa")},
        {"\xE2\x82"
         "a",
         TEXT("\uFFFDa")},
        {"\xE2\x82\xE2\x82\xAC", TEXT("\uFFFD\u20AC")},
        {"\xF0\x9F\x98", TEXT("\uFFFD")},
        {"\xF0\x9F\x98"
         "a",
         TEXT("\uFFFDa")},
        {"\xC0\xAF", TEXT("\uFFFD\uFFFD")},
        {"\xE0\x80\xAF", TEXT("\uFFFD\uFFFD\uFFFD"), 2},
        {"\xED\xA0\x80", TEXT("\uFFFD\uFFFD\uFFFD"), 2},
        {"\xF4\x90\x80\x80", TEXT("\uFFFD\uFFFD\uFFFD\uFFFD"), 3},
        {"\xFF\xFE", TEXT("\uFFFD\uFFFD")},
        {std::string("\0b", 2), WString(TEXT("\0b"), 2)},
    };
    for (const auto& row : rows)
    {
        // Wine takes a second byte that the first one rules out into the same part.
        const WString expected = IsWine() ? row.text.substr(0, row.unitsUnderWine) : row.text;
        const int length = static_cast<int>(row.bytes.size());
        const int needed = MultiByteToWideChar(CP_UTF8, 0, row.bytes.data(), length, nullptr, 0);
        EXPECT_EQ(needed, static_cast<int>(expected.size())) << &row - rows;
        WString text(16, TEXT('#'));
        text.resize(static_cast<size_t>(MultiByteToWideChar(CP_UTF8, 0, row.bytes.data(), length, text.data(), 16)));
        EXPECT_TRUE(text == expected) << &row - rows;
    }
}

TEST(Kernel, LoneSurrogatesBecomeTheReplacementInUtf8)
{
    const struct
    {
        WString text;
        std::string bytes;
    } rows[] = {
        {TEXT("a\u00FC\u20AC\xD83D\xDE00"), "a\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80"},
        {TEXT("\xD83D"), "\xEF\xBF\xBD"},
        {TEXT("\xDE00z"), "\xEF\xBF\xBDz"},
        {TEXT("\xD83D\xD83D\xDE00"), "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
    };
    for (const auto& row : rows)
    {
        std::string bytes(32, '#');
        const int length = static_cast<int>(row.text.size());
        EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, row.text.data(), length, nullptr, 0, nullptr, nullptr),
                  static_cast<int>(row.bytes.size()));
        bytes.resize(static_cast<size_t>(
            WideCharToMultiByte(CP_UTF8, 0, row.text.data(), length, bytes.data(), 32, nullptr, nullptr)));
        EXPECT_EQ(bytes, row.bytes) << &row - rows;
    }
}

TEST(Kernel, ConversionsRefuseWhatDoesNotFit)
{
    const struct
    {
        UINT codePage;
        const char* pBytes;
        int length;
        int room;
        int result;
        DWORD code;
    } rows[] = {
        {CP_UTF8, "abc", -1, 4, 4, ERROR_SUCCESS},
        {CP_UTF8, "abc", 3, 3, 3, ERROR_SUCCESS},
        {CP_UTF8, "abc", -1, 3, 0, ERROR_INSUFFICIENT_BUFFER},
        {CP_ACP, "abc", 3, 2, 0, ERROR_INSUFFICIENT_BUFFER},
        {CP_UTF8, "abc", 0, 4, 0, ERROR_INVALID_PARAMETER},
        {CP_UTF8, nullptr, 1, 4, 0, ERROR_INVALID_PARAMETER},
        {64999, "abc", 3, 4, 0, ERROR_INVALID_PARAMETER},
    };
    for (const auto& row : rows)
    {
        WCHAR text[8];
        SetLastError(ERROR_SUCCESS);
        EXPECT_EQ(MultiByteToWideChar(row.codePage, 0, row.pBytes, row.length, text, row.room), row.result)
            << &row - rows;
        EXPECT_EQ(GetLastError(), row.code) << &row - rows;
    }
    char bytes[4];
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, TEXT("\u20AC"), 1, bytes, 2, nullptr, nullptr), 0);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, TEXT("\u20AC"), 1, bytes, 3, nullptr, nullptr), 3);
}

TEST(Kernel, AnsiTextIsWindows1252)
{
    WString text(8, TEXT('#'));
    text.resize(static_cast<size_t>(MultiByteToWideChar(CP_ACP, 0, "\x80\xFC\x81z", 4, text.data(), 8)));
    EXPECT_TRUE(text == TEXT("\u20AC\u00FC\x0081z"));
}

TEST(Kernel, LowerCaseIsOfEveryScript)
{
    WCHAR text[] = TEXT("UIStrings_\u00C4\u0416\u03A3\u00DF1\xD83D\xDE00");
    EXPECT_EQ(CharLowerW(text), text);
    EXPECT_TRUE(WString(text) == TEXT("uistrings_\u00E4\u0436\u03C3\u00DF1\xD83D\xDE00"));
}

TEST(Kernel, ExecutablesPath)
{
    WCHAR path[MAX_PATH];
    const DWORD units = GetModuleFileNameW(nullptr, path, MAX_PATH);
    ASSERT_GT(units, 4u);
    EXPECT_TRUE(WString(path).find(TEXT("\\platform_test")) != WString::npos);
    WCHAR samePath[MAX_PATH];
    EXPECT_EQ(GetModuleFileNameW(GetModuleHandleW(nullptr), samePath, MAX_PATH), units);
    EXPECT_TRUE(WString(path) == samePath);

    WCHAR cut[] = TEXT("######");
    EXPECT_EQ(GetModuleFileNameW(nullptr, cut, 4), 4u);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
    EXPECT_TRUE(WString(cut, 3) == WString(path, 3));
    EXPECT_EQ(cut[3], IsWine() ? path[3] : 0); // Wine leaves the NUL away, as Windows did up to XP
    EXPECT_EQ(cut[4], TEXT('#'));
    EXPECT_EQ(GetModuleHandleW(TEXT("no_such_module.dll")), nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
}
