#pragma once
/// Shared by the fuzz targets. A target is one LLVMFuzzerTestOneInput. Without libFuzzer, ReplayMain.cpp is the program
/// and runs files through the target.
#include "platform/text.h"
#include <afxstr.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t size);

/// Aborts if the property does not hold; the fuzzer reports that as a finding.
inline void Require(bool holds, const char* pProperty)
{
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", pProperty);
    std::abort();
}

/// UTF-16LE input as text in a block of exactly its size, with a NUL after the last unit, so that a sanitizer sees a
/// read one unit too far. An odd last byte is dropped.
class CExactText
{
public:
    CExactText(const uint8_t* pData, size_t size) : m_length(size / 2), m_pUnits(new WCHAR[m_length + 1])
    {
        if (m_length != 0)
            std::memcpy(m_pUnits.get(), pData, m_length * sizeof(WCHAR));
        m_pUnits[m_length] = 0;
    }
    const WCHAR* Get() const { return m_pUnits.get(); }
    /// In units, including NULs in the text.
    int GetLength() const { return static_cast<int>(m_length); }

private:
    size_t m_length;
    std::unique_ptr<WCHAR[]> m_pUnits;
};

inline WString Units(const CString& text)
{
    return WString(text.GetString(), static_cast<size_t>(text.GetLength()));
}

/// A file of this process for code that reads by path. It is left in place after a finding.
class CInputFile
{
public:
    CInputFile() = default;
    ~CInputFile() { std::filesystem::remove(m_path); }
    CInputFile(const CInputFile&) = delete;
    CInputFile& operator=(const CInputFile&) = delete;

    void Write(const uint8_t* pData, size_t size) const
    {
        std::ofstream file(m_path, std::ios::binary);
        file.write(reinterpret_cast<const char*>(pData), static_cast<std::streamsize>(size));
        Require(file.flush().good(), "the input file can be written");
    }
    WString GetPath() const
    {
        const std::u16string path = m_path.u16string();
        return WString(path.begin(), path.end());
    }

private:
    const std::filesystem::path m_path = (std::filesystem::temp_directory_path() / "veltrano_fuzz_") +=
        std::to_string(std::random_device()());
};
