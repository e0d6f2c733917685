#include "benchmarks/Jobs.h"
#include "benchmarks/TemporaryFile.h"
#include "xml/XmlFile.h"

#include <cstdio>
#include <cstring>
#include <unicode/ucnv.h>
#include <unicode/ustring.h>

namespace
{
struct CFileCloser
{
    void operator()(FILE* pFile) const { std::fclose(pFile); }
};
using CFilePointer = std::unique_ptr<FILE, CFileCloser>;

struct CConverterCloser
{
    void operator()(UConverter* pConverter) const { ucnv_close(pConverter); }
};

/// ICU's direct functions or an ICU converter.
enum class Way
{
    Direct,
    Converter
};

class CReadFile : public IContestant
{
public:
    explicit CReadFile(const BenchDocument& document) : m_document(document) { m_file.Write(document.narrowText); }

protected:
    bool IsRight(const WCHAR* pText, size_t length) const
    {
        return length == m_document.text.size() &&
               std::memcmp(pText, m_document.text.data(), length * sizeof(WCHAR)) == 0;
    }
    const BenchDocument& m_document;
    CTemporaryFile m_file;
};

class COwnReadFile : public CReadFile
{
public:
    using CReadFile::CReadFile;
    std::string GetName() const override { return "ReadTextFile"; }
    Role GetRole() const override { return Role::Ours; }
    void Run() override { ReadTextFile(m_file.GetPath(), m_text, nullptr); }
    bool Finish() override
    {
        const bool isRight = IsRight(m_text, static_cast<size_t>(m_text.GetLength()));
        m_text.Empty();
        return isRight;
    }

private:
    CString m_text;
};

/// One read, one conversion. Each unit comes from at least one byte, so the units need not be counted first.
class CIcuReadFile : public CReadFile
{
public:
    CIcuReadFile(const BenchDocument& document, Way way) : CReadFile(document), m_way(way) {}
    std::string GetName() const override
    {
        return m_way == Way::Direct ? "fread, u_strFromUTF8" : "fread, ucnv_toUChars";
    }
    Role GetRole() const override { return Role::Peer; }
    void Run() override
    {
        const CFilePointer pFile(std::fopen(m_file.GetNativePath().c_str(), "rb"));
        std::fseek(pFile.get(), 0, SEEK_END);
        const auto size = static_cast<size_t>(std::ftell(pFile.get()));
        std::fseek(pFile.get(), 0, SEEK_SET);
        const auto pBytes = std::make_unique_for_overwrite<char[]>(size);
        if (std::fread(pBytes.get(), size, 1, pFile.get()) != 1)
            return;
        m_pText = std::make_unique_for_overwrite<UChar[]>(size);
        const auto room = static_cast<int32_t>(size);
        UErrorCode status = U_ZERO_ERROR;
        if (m_way == Way::Direct)
        {
            u_strFromUTF8(m_pText.get(), room, &m_length, pBytes.get(), room, &status);
            return;
        }
        const std::unique_ptr<UConverter, CConverterCloser> pConverter(ucnv_open("UTF-8", &status));
        m_length = ucnv_toUChars(pConverter.get(), m_pText.get(), room, pBytes.get(), room, &status);
    }
    bool Finish() override
    {
        const bool isRight = m_pText != nullptr && IsRight(m_pText.get(), static_cast<size_t>(m_length));
        m_pText.reset();
        return isRight;
    }

private:
    Way m_way;
    std::unique_ptr<UChar[]> m_pText;
    int32_t m_length = 0;
};

class CWriteFile : public IContestant
{
public:
    explicit CWriteFile(const BenchDocument& document) : m_document(document) {}
    bool Finish() override { return m_file.TakeContent() == m_document.narrowText; }

protected:
    const BenchDocument& m_document;
    CTemporaryFile m_file;
};

class COwnWriteFile : public CWriteFile
{
public:
    explicit COwnWriteFile(const BenchDocument& document) : CWriteFile(document), m_text(document.text.c_str()) {}
    std::string GetName() const override { return "WriteTextFile"; }
    Role GetRole() const override { return Role::Ours; }
    void Run() override { WriteTextFile(m_file.GetPath(), m_text, nullptr); }

private:
    CString m_text;
};

/// One conversion, one write. A unit gives at most three bytes, so the bytes need not be counted first.
class CIcuWriteFile : public CWriteFile
{
public:
    CIcuWriteFile(const BenchDocument& document, Way way) : CWriteFile(document), m_way(way) {}
    std::string GetName() const override
    {
        return m_way == Way::Direct ? "u_strToUTF8, fwrite" : "ucnv_fromUChars, fwrite";
    }
    Role GetRole() const override { return Role::Peer; }
    void Run() override
    {
        const auto units = static_cast<int32_t>(m_document.text.size());
        const int32_t room = units * 3;
        const auto pBytes = std::make_unique_for_overwrite<char[]>(static_cast<size_t>(room));
        int32_t size = 0;
        UErrorCode status = U_ZERO_ERROR;
        if (m_way == Way::Direct)
            u_strToUTF8(pBytes.get(), room, &size, m_document.text.data(), units, &status);
        else
        {
            const std::unique_ptr<UConverter, CConverterCloser> pConverter(ucnv_open("UTF-8", &status));
            size = ucnv_fromUChars(pConverter.get(), pBytes.get(), room, m_document.text.data(), units, &status);
        }
        const CFilePointer pFile(std::fopen(m_file.GetNativePath().c_str(), "wb"));
        std::setvbuf(pFile.get(), nullptr, _IONBF, 0);
        std::fwrite(pBytes.get(), static_cast<size_t>(size), 1, pFile.get());
    }

private:
    Way m_way;
};

template <typename Own, typename Icu>
Contestants MakeFileContestants(const BenchDocument& document)
{
    Contestants contestants;
    contestants.push_back(std::make_unique<Own>(document));
    for (const Way way : {Way::Direct, Way::Converter})
        contestants.push_back(std::make_unique<Icu>(document, way));
    return contestants;
}
} // namespace

std::vector<Job> FileJobs()
{
    return {{"read file", 'D', MakeFileContestants<COwnReadFile, CIcuReadFile>, 0, 2},
            {"write file", 'D', MakeFileContestants<COwnWriteFile, CIcuWriteFile>, 0, 2}};
}
