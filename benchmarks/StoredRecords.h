#pragma once
/// What the peers make of a storage: the same two 16-bit strings of each record that CStorage keeps.
#include "benchmarks/Documents.h"

#include <openssl/evp.h>
#include <string>
#include <string_view>
#include <vector>

struct StoredRecord
{
    std::u16string id;
    std::u16string cfg;
};
using StoredRecords = std::vector<StoredRecord>;

/// Decodes values with OpenSSL, which wants whole groups and leaves the bytes of the padding in.
class CStoredTexts
{
public:
    std::u16string Decode(std::string_view value)
    {
        m_bytes.resize(value.size());
        const int count = EVP_DecodeBlock(m_bytes.data(), reinterpret_cast<const unsigned char*>(value.data()),
                                          static_cast<int>(value.size()));
        const size_t padding = value.ends_with("==") ? 2 : value.ends_with('=') ? 1 : 0;
        return {m_bytes.begin(), m_bytes.begin() + count - static_cast<std::ptrdiff_t>(padding)};
    }
    std::u16string Decode(std::u16string_view value)
    {
        m_narrow.assign(value.begin(), value.end());
        return Decode(std::string_view(m_narrow));
    }

private:
    std::vector<unsigned char> m_bytes;
    std::string m_narrow;
};
