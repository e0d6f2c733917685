#pragma once
/// A file of the benchmark's own, which goes with the object.
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
    /// The file's bytes; the file is gone then.
    std::string TakeContent() const;

private:
    std::string m_path;
    WString m_widePath;
};
