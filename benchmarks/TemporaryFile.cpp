#include "benchmarks/TemporaryFile.h"

#include <fstream>
#include <stdexcept>
#include <unistd.h>

CTemporaryFile::CTemporaryFile()
{
    // In memory if possible, so that no disk is measured.
    const char* const pFolder = std::filesystem::exists("/dev/shm") ? "/dev/shm" : "/tmp";
    m_path = std::string(pFolder) + "/bench-XXXXXX";
    const int descriptor = mkstemp(m_path.data());
    if (descriptor < 0)
        throw std::runtime_error("cannot make a file in " + std::string(pFolder));
    close(descriptor);
    m_widePath.assign(m_path.begin(), m_path.end());
}

CTemporaryFile::~CTemporaryFile()
{
    unlink(m_path.c_str());
}

void CTemporaryFile::Write(const std::string& bytes) const
{
    std::ofstream file(m_path, std::ios::binary);
    if (!file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush())
        throw std::runtime_error("cannot write " + m_path);
}

std::string CTemporaryFile::TakeContent() const
{
    std::ifstream file(m_path, std::ios::binary | std::ios::ate);
    std::string bytes(file ? static_cast<size_t>(file.tellg()) : 0, 0);
    file.seekg(0).read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    unlink(m_path.c_str());
    return bytes;
}
