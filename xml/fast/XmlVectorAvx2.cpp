#include "xml/fast/XmlVectorLoops.h"

#include <immintrin.h>

namespace
{
/// Each unit is at the index of its low four bits. The other bytes are not ASCII, so no unit equals them.
template <char... units>
struct CUnitTable
{
    constexpr CUnitTable()
    {
        for (char& byte : bytes)
            byte = -1;
        ((bytes[units & 0xF] = units), ...);
    }
    alignas(16) char bytes[16];
};
template <char... units>
constexpr CUnitTable<units...> s_unitTable;

class CAvx2Block
{
public:
    VELTRANO_TARGET_AVX2 explicit CAvx2Block(const WCHAR* pUnits)
        : m_pUnits(pUnits),
          m_packed{_mm256_packus_epi16(Load(0), Load(1)), _mm256_packus_epi16(Load(2), Load(3))},
          m_low(InOrder(m_packed[0])),
          m_high(InOrder(m_packed[1]))
    {
    }

    template <typename... Units>
    VELTRANO_TARGET_AVX2 uint64_t Bits(Units... units) const
    {
        return Join(Equals(m_low, units...), Equals(m_high, units...));
    }
    template <char... units>
    VELTRANO_TARGET_AVX2 uint64_t BitsByTable() const
    {
        const __m256i table =
            _mm256_broadcastsi128_si256(_mm_load_si128(reinterpret_cast<const __m128i*>(s_unitTable<units...>.bytes)));
        const auto inTable = [&](__m256i bytes) VELTRANO_TARGET_AVX2
        { return _mm256_cmpeq_epi8(_mm256_shuffle_epi8(table, bytes), bytes); };
        return Join(inTable(m_low), inTable(m_high));
    }
    VELTRANO_TARGET_AVX2 uint64_t NulBits() const
    {
        const __m256i zero = _mm256_setzero_si256();
        const __m256i least = _mm256_min_epu16(_mm256_min_epu16(Load(0), Load(1)), _mm256_min_epu16(Load(2), Load(3)));
        const __m256i found = _mm256_cmpeq_epi16(least, zero);
        if (_mm256_testz_si256(found, found) != 0)
            return 0;
        // Compared, a unit is 0 or -1, which the other instruction keeps.
        const auto compareAndPack = [&](int quarter) VELTRANO_TARGET_AVX2
        {
            return InOrder(_mm256_packs_epi16(_mm256_cmpeq_epi16(Load(quarter), zero),
                                              _mm256_cmpeq_epi16(Load(quarter + 1), zero)));
        };
        return Join(compareAndPack(0), compareAndPack(2));
    }

    template <typename... Units>
    VELTRANO_TARGET_AVX2 bool MayContain(Units... units) const
    {
        const __m256i zeros = Equals(_mm256_min_epu8(m_packed[0], m_packed[1]), 0);
        const __m256i found =
            _mm256_or_si256(zeros, _mm256_or_si256(Equals(m_packed[0], units...), Equals(m_packed[1], units...)));
        return _mm256_testz_si256(found, found) == 0;
    }

    VELTRANO_TARGET_AVX2 void CopyTo(WCHAR* pTo) const
    {
        for (int quarter = 0; quarter < 4; ++quarter)
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(pTo) + quarter, Load(quarter));
    }

    /// The product with all ones, where nothing is carried.
    VELTRANO_TARGET_AVX2 static uint64_t PrefixXor(uint64_t bits)
    {
        const __m128i factor = _mm_cvtsi64_si128(static_cast<long long>(bits));
        return static_cast<uint64_t>(_mm_cvtsi128_si64(_mm_clmulepi64_si128(factor, _mm_set1_epi8(-1), 0)));
    }

private:
    VELTRANO_TARGET_AVX2 __m256i Load(int quarter) const
    {
        return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(m_pUnits) + quarter);
    }
    /// Packing works on each half of its operands alone; this puts the result in order.
    VELTRANO_TARGET_AVX2 static __m256i InOrder(__m256i packed) { return _mm256_permute4x64_epi64(packed, 0xD8); }
    VELTRANO_TARGET_AVX2 static uint64_t Join(__m256i low, __m256i high)
    {
        return static_cast<uint32_t>(_mm256_movemask_epi8(low)) |
               static_cast<uint64_t>(static_cast<uint32_t>(_mm256_movemask_epi8(high))) << 32;
    }
    template <typename... Units>
    VELTRANO_TARGET_AVX2 static __m256i Equals([[maybe_unused]] __m256i bytes, Units... units)
    {
        __m256i found = _mm256_setzero_si256();
        ((found = _mm256_or_si256(found, _mm256_cmpeq_epi8(bytes, _mm256_set1_epi8(static_cast<char>(units))))), ...);
        return found;
    }

    const WCHAR* m_pUnits;
    __m256i m_packed[2];   ///< as PackUnits, but not in order
    __m256i m_low, m_high; ///< in order
};

VELTRANO_TARGET_AVX2 int FindUnitAvx2(const WCHAR* pText, int from, int length, WCHAR unit)
{
    return FindUnitInBlocks<CAvx2Block>(pText, from, length, unit);
}

VELTRANO_TARGET_AVX2 void IndexTagBlocksAvx2(const WCHAR* pBlocks, int count, XmlTagBlocks& blocks)
{
    IndexTagBlocks<CAvx2Block>(pBlocks, count, blocks);
}

VELTRANO_TARGET_AVX2 PlainAttribute FindAttributeAvx2(const WCHAR* pText, int length, int tagName, int tagEnd,
                                                      XmlName name)
{
    return FindAttributeInBlocks<CAvx2Block>(pText, length, tagName, tagEnd, name);
}

VELTRANO_TARGET_AVX2 int CopyValueAvx2(const WCHAR* pFrom, int length, WCHAR* pTo)
{
    return CopyValueInBlocks<CAvx2Block>(pFrom, length, pTo);
}
} // namespace

const XmlVectorLoops s_avx2Loops{FindUnitAvx2, IndexTagBlocksAvx2, FindAttributeAvx2, CopyValueAvx2};
