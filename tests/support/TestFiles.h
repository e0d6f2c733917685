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

/// A file with exactly these bytes, removed by the destructor. On Windows the removal fails if someone still has the
/// file open.
class CTestFile
{
public:
    explicit CTestFile(const std::string& bytes, const WString& path) : m_path(path)
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
