#include "platform/text.h"
#include "platform/win32/win32.h"
#include "platform/win32/wine.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
WIN32_FIND_DATAW s_found;

HANDLE FindFirst(const WString& pattern)
{
    return FindFirstFileW(pattern.c_str(), &s_found);
}

/// The names that match; "/" behind those of folders.
std::vector<WString> FindAll(const WString& pattern)
{
    std::vector<WString> names;
    const HANDLE find = FindFirst(pattern);
    for (BOOL found = find != INVALID_HANDLE_VALUE; found; found = FindNextFileW(find, &s_found))
        names.push_back(s_found.cFileName +
                        WString((s_found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? TEXT("/") : TEXT("")));
    EXPECT_EQ(GetLastError(), names.empty() ? ERROR_FILE_NOT_FOUND : static_cast<DWORD>(ERROR_NO_MORE_FILES));
    EXPECT_TRUE(names.empty() || FindClose(find));
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
        {TEXT("?_*.dat"), {TEXT("A_de.DAT"), TEXT("b_EN.dat"), TEXT("d_folder.dat/")}},
        {TEXT("?_EN.DAT"), {TEXT("b_EN.dat")}},
        {TEXT("C[1]*"), {TEXT("c[1].txt")}},
        {TEXT("\u00FC*"), {TEXT("\u00DCbung.dat")}},
        {TEXT("PLAIN"), {TEXT("plain")}},
        {TEXT("*l*n*"), {TEXT("plain")}},
        {TEXT("*.*"),
         {TEXT("./"), TEXT("../"), TEXT("A_de.DAT"), TEXT("b_EN.dat"), TEXT("c[1].txt"), TEXT("d_folder.dat/"),
          TEXT("plain"), TEXT("\u00DCbung.dat")}},
        {TEXT("*_fr.dat"), {}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(FindAll(folder.Path(row.pattern)), row.names) << &row - rows;
}

TEST(Kernel, FailuresTellTheReason)
{
    const CTestFolder folder;
    std::filesystem::create_directory(folder.m_path / "inner");
    const struct
    {
        HANDLE (*pCall)(const WString&);
        WString path;
        DWORD code;
    } rows[] = {
        {OpenForReading, folder.Path(TEXT("missing")), ERROR_FILE_NOT_FOUND},
        {OpenForReading, folder.Path(TEXT("missing\\file")), ERROR_PATH_NOT_FOUND},
        {OpenForReading, folder.Path(TEXT("inner")), ERROR_ACCESS_DENIED},
        {OpenForReading, TEXT(""), ERROR_PATH_NOT_FOUND},
        {FindFirst, folder.Path(TEXT("*.dat")), ERROR_FILE_NOT_FOUND},
        {FindFirst, folder.Path(TEXT("missing\\*.dat")), ERROR_PATH_NOT_FOUND},
    };
    for (const auto& row : rows)
    {
        SetLastError(ERROR_SUCCESS);
        EXPECT_EQ(row.pCall(row.path), INVALID_HANDLE_VALUE) << &row - rows;
        EXPECT_EQ(GetLastError(), row.code) << &row - rows;
    }
    EXPECT_FALSE(FindNextFileW(INVALID_HANDLE_VALUE, &s_found));
    EXPECT_FALSE(FindClose(INVALID_HANDLE_VALUE));
    EXPECT_EQ(GetModuleHandleW(TEXT("no_such_module.dll")), nullptr);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_MOD_NOT_FOUND));
}

// Callers cut the last two units off without looking.
TEST(Kernel, SystemTextsEndInALineEnd)
{
    const DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM;
    for (const DWORD code : {ERROR_SUCCESS, ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_DISK_FULL})
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
        {"\x80z", TEXT("\uFFFDz")},
        {"\xC3", TEXT("\uFFFD")},
        {"\xC3z", TEXT("\uFFFDz")},
        {"\xE2\x82z", TEXT("\uFFFDz")},
        {"\xE2\x82\xE2\x82\xAC", TEXT("\uFFFD\u20AC")},
        {"\xF0\x9F\x98", TEXT("\uFFFD")},
        {"\xF0\x9F\x98z", TEXT("\uFFFDz")},
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
    const WString text = TEXT("\xDE00z\xD83D\xD83D\xDE00\u00FC\u20AC\xD83D");
    const std::string expected = "\xEF\xBF\xBDz\xEF\xBF\xBD\xF0\x9F\x98\x80\xC3\xBC\xE2\x82\xAC\xEF\xBF\xBD";
    const int length = static_cast<int>(text.size());
    const int size = static_cast<int>(expected.size());
    std::string bytes(expected.size(), '#');
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr), size);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr), size);
    EXPECT_EQ(bytes, expected);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size - 1, nullptr, nullptr), 0);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER));
}

// ASCII is taken in blocks, up to the first other unit and as far as there is room.
TEST(Kernel, Utf8BehindAnyAmountOfAscii)
{
    for (int length = 2; length < 70; ++length)
        for (int at = 0; at <= length; ++at) // of a unit of two bytes; none in the last turn
        {
            WString text(static_cast<size_t>(length), TEXT('a'));
            if (at < length)
                text[static_cast<size_t>(at)] = 0xFC;
            std::string bytes(200, '#');
            const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), 200, nullptr, nullptr);
            ASSERT_EQ(size, at < length ? length + 1 : length);
            WString back(static_cast<size_t>(length), 0);
            ASSERT_EQ(MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, nullptr, 0), length);
            ASSERT_EQ(MultiByteToWideChar(CP_UTF8, 0, bytes.data(), size, back.data(), length), length);
            ASSERT_TRUE(back == text) << length << ' ' << at;
            ASSERT_EQ(WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size - 1, nullptr, nullptr),
                      0);
        }
}

TEST(Kernel, WideningTakesWhatFits)
{
    WCHAR text[4];
    for (const UINT codePage : {CP_UTF8, CP_ACP})
    {
        EXPECT_EQ(MultiByteToWideChar(codePage, 0, "abc", -1, text, 4), 4) << codePage;
        EXPECT_EQ(MultiByteToWideChar(codePage, 0, "abc", -1, text, 3), 0) << codePage;
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INSUFFICIENT_BUFFER)) << codePage;
    }
}

TEST(Kernel, AnsiTextAndLowerCase)
{
    WString text(8, TEXT('#'));
    text.resize(static_cast<size_t>(MultiByteToWideChar(CP_ACP, 0, "\x80\xFC\x81z", 4, text.data(), 8)));
    EXPECT_TRUE(text == TEXT("\u20AC\u00FC\x0081z"));
    WCHAR upper[] = TEXT("UIStrings_\u00C4\u0416\u03A3\u00DF1\xD83D\xDE00");
    EXPECT_TRUE(WString(CharLowerW(upper)) == TEXT("uistrings_\u00E4\u0436\u03C3\u00DF1\xD83D\xDE00"));
}
