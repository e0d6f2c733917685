#pragma once
#include "platform/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

inline std::filesystem::path NativePathOf(WString path)
{
    if (std::filesystem::path::preferred_separator == '/')
        std::replace(path.begin(), path.end(), TEXT('\\'), TEXT('/'));
    return path;
}

/// A file that holds exactly these bytes, for as long as the object lives. That it can be removed then shows on Windows
/// that nobody has it open any longer.
class CTestFile
{
public:
    explicit CTestFile(const std::string& bytes, const WString& path = TEXT("text_file_test.txt")) : m_path(path)
    {
        std::ofstream(NativePathOf(m_path), std::ios::binary) << bytes;
    }
    CTestFile(const CTestFile&) = delete;
    CTestFile& operator=(const CTestFile&) = delete;
    ~CTestFile()
    {
        std::error_code error;
        EXPECT_TRUE(std::filesystem::remove(NativePathOf(m_path), error)) << error.message();
    }
    const WCHAR* GetPath() const { return m_path.c_str(); }

private:
    WString m_path;
};
