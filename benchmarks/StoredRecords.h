#pragma once
/// The peers' result for a large storage: the two 16-bit strings of each record.
#include "benchmarks/Decoders.h"

#include <string>
#include <string_view>
#include <vector>

struct StoredRecord
{
    std::u16string id;
    std::u16string cfg;
};
using StoredRecords = std::vector<StoredRecord>;

class CStoredTexts
{
public:
    std::u16string Decode(std::string_view value)
    {
        const std::string_view bytes = m_decode(value);
        const auto* const pBytes = reinterpret_cast<const unsigned char*>(bytes.data());
        return {pBytes, pBytes + bytes.size()};
    }
    std::u16string Decode(std::u16string_view value)
    {
        m_narrow.assign(value.begin(), value.end());
        return Decode(std::string_view(m_narrow));
    }

private:
    COpenSslDecoder m_decode;
    std::string m_narrow;
};
