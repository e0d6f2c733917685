#pragma once
/// A temporary file, removed with the object.
#include "platform/text.h"

#include <filesystem>
#include <string>

class CTemporaryFile
{
public:
    CTemporaryFile();
    CTemporaryFile(const CTemporaryFile&) = delete;
    CTemporaryFile& operator=(const CTemporaryFile&) = delete;
    ~CTemporaryFile();

    const std::string& GetNativePath() const { return m_path; }
    const WCHAR* GetPath() const { return m_widePath.c_str(); }
    void Write(const std::string& bytes) const;
    /// Returns the file's bytes and removes the file.
    std::string TakeContent() const;

private:
    std::string m_path;
    WString m_widePath;
};
