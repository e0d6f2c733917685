#pragma once
#include "platform/text.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

inline std::string BytesOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// A temporary folder, removed by the destructor. Its name has a non-ASCII letter.
class CTestFolder
{
public:
    CTestFolder() { std::filesystem::create_directories(m_path); }
    ~CTestFolder() { std::filesystem::remove_all(m_path); }
    CTestFolder(const CTestFolder&) = delete;
    CTestFolder& operator=(const CTestFolder&) = delete;

    void Write(const std::u16string& name, const char* pBytes) const
    {
        std::ofstream(m_path / name, std::ios::binary) << pBytes;
    }
    /// The Windows path of a name in the folder, or of the folder itself.
    WString Path(const WString& name = WString()) const
    {
        const std::u16string path = m_path.u16string();
        const WString folder(path.begin(), path.end());
        return name.empty() ? folder : folder + TEXT("\\") + name;
    }

    const std::filesystem::path m_path = (std::filesystem::temp_directory_path() / u"veltrano_\u00FC_") +=
        std::to_string(std::random_device()());
};
