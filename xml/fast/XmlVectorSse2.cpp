#include "xml/fast/XmlVectorLoops.h"

namespace
{
class CSse2Block
{
public:
    explicit CSse2Block(const WCHAR* pUnits)
        : m_pUnits(pUnits),
          m_bytes{PackUnits(pUnits), PackUnits(pUnits + 16), PackUnits(pUnits + 32), PackUnits(pUnits + 48)}
    {
    }

    template <typename... Units>
    uint64_t Bits(Units... units) const
    {
        return Join([=, this](int quarter) { return Equals(m_bytes[quarter], units...); });
    }
    template <char... units>
    uint64_t BitsByTable() const
    {
        return Bits(units...);
    }
    uint64_t NulBits() const
    {
        const auto nuls = [this](int half) {
            return _mm_cmpeq_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(m_pUnits) + half),
                                   _mm_setzero_si128());
        };
        return Join([&](int i) { return _mm_packs_epi16(nuls(2 * i), nuls(2 * i + 1)); });
    }

    template <typename... Units>
    bool MayContain(Units... units) const
    {
        const __m128i least = _mm_min_epu8(_mm_min_epu8(m_bytes[0], m_bytes[1]), _mm_min_epu8(m_bytes[2], m_bytes[3]));
        __m128i found = _mm_cmpeq_epi8(least, _mm_setzero_si128());
        for (const __m128i bytes : m_bytes)
            found = _mm_or_si128(found, Equals(bytes, units...));
        return BitsOf(found) != 0;
    }

    void CopyTo(WCHAR* pTo) const { std::memcpy(pTo, m_pUnits, UnitsPerBlock * sizeof(WCHAR)); }

    static uint64_t PrefixXor(uint64_t bits)
    {
        for (int shift = 1; shift < UnitsPerBlock; shift *= 2)
            bits ^= bits << shift;
        return bits;
    }

private:
    template <typename... Units>
    static __m128i Equals([[maybe_unused]] __m128i bytes, Units... units)
    {
        __m128i found = _mm_setzero_si128();
        ((found = _mm_or_si128(found, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(units))))), ...);
        return found;
    }
    template <typename QuarterOf>
    static uint64_t Join(QuarterOf quarterOf)
    {
        return BitsOf(quarterOf(0)) | BitsOf(quarterOf(1)) << 16 |
               static_cast<uint64_t>(BitsOf(quarterOf(2)) | BitsOf(quarterOf(3)) << 16) << 32;
    }

    const WCHAR* m_pUnits;
    __m128i m_bytes[4]; ///< as PackUnits
};
} // namespace

const XmlVectorLoops s_sse2Loops{FindUnitInBlocks<CSse2Block>, IndexTagBlocks<CSse2Block>,
                                 FindAttributeInBlocks<CSse2Block>, CopyValueInBlocks<CSse2Block>};
