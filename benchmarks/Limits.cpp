#include "benchmarks/Limits.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <emmintrin.h>
#include <iterator>
#include <numeric>

namespace
{
class CCopyLimit : public IContestant
{
public:
    explicit CCopyLimit(const BenchDocument& document) : m_text(document.text), m_copy(document.text.size(), 0) {}

    std::string GetName() const override { return "memcpy of the text"; }
    Role GetRole() const override { return Role::Limit; }
    void Run() override { std::memcpy(m_copy.data(), m_text.data(), m_text.size() * sizeof(char16_t)); }
    bool Finish() override { return m_copy.front() == m_text.front() && m_copy.back() == m_text.back(); }

private:
    const WString& m_text;
    WString m_copy;
};

/// Reads the text and does next to nothing with it: the bandwidth of caches or memory.
class CLoadLimit : public IContestant
{
public:
    explicit CLoadLimit(const BenchDocument& document)
        : m_text(document.text), m_expected(Combine(m_text.data(), m_text.data() + m_text.size()))
    {
    }

    std::string GetName() const override { return "loads of the text"; }
    Role GetRole() const override { return Role::Limit; }
    void Run() override;
    bool Finish() override { return m_combined == m_expected; }

private:
    /// The exclusive or of all units.
    static char16_t Combine(const char16_t* pFrom, const char16_t* pTo)
    {
        return std::accumulate(pFrom, pTo, char16_t{0},
                               [](char16_t left, char16_t right) { return static_cast<char16_t>(left ^ right); });
    }

    const WString& m_text;
    char16_t m_expected;
    char16_t m_combined = 0;
};

/// 64 units a step, with 16 bytes a load.
void CLoadLimit::Run()
{
    constexpr size_t lanes = 8;
    __m128i sums[lanes] = {};
    const char16_t* pUnits = m_text.data();
    const char16_t* const pEnd = pUnits + m_text.size();
    for (; pEnd - pUnits >= static_cast<std::ptrdiff_t>(lanes * 8); pUnits += lanes * 8)
        for (size_t i = 0; i < lanes; ++i)
            sums[i] = _mm_xor_si128(sums[i], _mm_loadu_si128(reinterpret_cast<const __m128i*>(pUnits) + i));
    char16_t units[lanes * 8];
    std::memcpy(units, sums, sizeof units);
    m_combined = static_cast<char16_t>(Combine(units, std::end(units)) ^ Combine(pUnits, pEnd));
}

bool IsMark(char16_t unit)
{
    return unit == u'<' || unit == u'>' || unit == u'"';
}

class CPositionsLimit : public IContestant
{
public:
    explicit CPositionsLimit(const BenchDocument& document)
        : m_text(document.text),
          m_expected(std::count_if(m_text.begin(), m_text.end(), IsMark)),
          m_positions(static_cast<size_t>(m_expected))
    {
    }

    std::string GetName() const override { return "SSE2, positions of < > \""; }
    Role GetRole() const override { return Role::Limit; }
    void Run() override;
    bool Finish() override { return m_count == m_expected; }

private:
    const WString& m_text;
    int64_t m_expected;
    std::vector<uint32_t> m_positions;
    int64_t m_count = 0;
};

/// 16 units a step.
void CPositionsLimit::Run()
{
    const __m128i less = _mm_set1_epi16('<');
    const __m128i greater = _mm_set1_epi16('>');
    const __m128i quote = _mm_set1_epi16('"');
    const auto marksOf = [&](const char16_t* pUnits)
    {
        const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pUnits));
        return _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi16(units, less), _mm_cmpeq_epi16(units, greater)),
                            _mm_cmpeq_epi16(units, quote));
    };
    const char16_t* const pText = m_text.data();
    const size_t length = m_text.size();
    uint32_t* pOut = m_positions.data();
    size_t i = 0;
    for (; i + 16 <= length; i += 16)
    {
        const __m128i both = _mm_packs_epi16(marksOf(pText + i), marksOf(pText + i + 8));
        for (unsigned marks = static_cast<unsigned>(_mm_movemask_epi8(both)); marks != 0; marks &= marks - 1)
            *pOut++ = static_cast<uint32_t>(i + static_cast<size_t>(std::countr_zero(marks)));
    }
    for (; i < length; ++i)
        if (IsMark(pText[i]))
            *pOut++ = static_cast<uint32_t>(i);
    m_count = pOut - m_positions.data();
}
} // namespace

Contestants MakeLimits(const BenchDocument& document)
{
    Contestants limits;
    limits.push_back(std::make_unique<CCopyLimit>(document));
    limits.push_back(std::make_unique<CLoadLimit>(document));
    limits.push_back(std::make_unique<CPositionsLimit>(document));
    return limits;
}

Contestants MakeLoadLimit(const BenchDocument& document)
{
    Contestants limits;
    limits.push_back(std::make_unique<CLoadLimit>(document));
    return limits;
}
