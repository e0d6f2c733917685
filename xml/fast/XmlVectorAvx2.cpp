#include "platform/compiler.h"
#include "xml/fast/XmlPlainTag.h"
#include "xml/fast/XmlTagEnds.h"

#include <immintrin.h>

namespace
{
/// A block, or marks of one: all ones for each unit that is meant.
struct Quarters
{
    __m256i first, second, third, fourth;
};

VELTRANO_TARGET_AVX2 inline __m256i LoadUnits(const WCHAR* pUnits)
{
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pUnits));
}

VELTRANO_TARGET_AVX2 inline Quarters LoadBlock(const WCHAR* pUnits)
{
    return {LoadUnits(pUnits), LoadUnits(pUnits + 16), LoadUnits(pUnits + 32), LoadUnits(pUnits + 48)};
}

VELTRANO_TARGET_AVX2 inline Quarters Compare(const Quarters& block, __m256i wanted)
{
    return {_mm256_cmpeq_epi16(block.first, wanted), _mm256_cmpeq_epi16(block.second, wanted),
            _mm256_cmpeq_epi16(block.third, wanted), _mm256_cmpeq_epi16(block.fourth, wanted)};
}

VELTRANO_TARGET_AVX2 inline Quarters Either(const Quarters& left, const Quarters& right)
{
    return {_mm256_or_si256(left.first, right.first), _mm256_or_si256(left.second, right.second),
            _mm256_or_si256(left.third, right.third), _mm256_or_si256(left.fourth, right.fourth)};
}

VELTRANO_TARGET_AVX2 inline bool IsAny(__m256i marks)
{
    return _mm256_testz_si256(marks, marks) == 0;
}

VELTRANO_TARGET_AVX2 inline __m256i AnyOf(const Quarters& marks)
{
    return _mm256_or_si256(_mm256_or_si256(marks.first, marks.second), _mm256_or_si256(marks.third, marks.fourth));
}

VELTRANO_TARGET_AVX2 inline __m256i NulsOf(const Quarters& block)
{
    const __m256i least =
        _mm256_min_epu16(_mm256_min_epu16(block.first, block.second), _mm256_min_epu16(block.third, block.fourth));
    return _mm256_cmpeq_epi16(least, _mm256_setzero_si256());
}

/// The half of a block as bytes; those that no byte can hold become 0 or 0xFF. Packing goes by lanes, so these are put
/// in order again.
VELTRANO_TARGET_AVX2 inline __m256i Pack(__m256i first, __m256i second)
{
    return _mm256_permute4x64_epi64(_mm256_packus_epi16(first, second), 0xD8);
}

VELTRANO_TARGET_AVX2 inline uint64_t Bits(__m256i low, __m256i high)
{
    return static_cast<uint32_t>(_mm256_movemask_epi8(low)) |
           static_cast<uint64_t>(static_cast<uint32_t>(_mm256_movemask_epi8(high))) << 32;
}

VELTRANO_TARGET_AVX2 inline void StoreBlock(WCHAR* pUnits, const Quarters& block)
{
    auto* const pQuarters = reinterpret_cast<__m256i*>(pUnits);
    _mm256_storeu_si256(pQuarters, block.first);
    _mm256_storeu_si256(pQuarters + 1, block.second);
    _mm256_storeu_si256(pQuarters + 2, block.third);
    _mm256_storeu_si256(pQuarters + 3, block.fourth);
}

VELTRANO_TARGET_AVX2 inline uint64_t BitsOf(__m256i low, __m256i high, char unit)
{
    const __m256i wanted = _mm256_set1_epi8(unit);
    return Bits(_mm256_cmpeq_epi8(low, wanted), _mm256_cmpeq_epi8(high, wanted));
}

/// As PrefixXor: the product with all ones where nothing is carried.
VELTRANO_TARGET_AVX2 inline uint64_t QuickPrefixXor(uint64_t bits)
{
    const __m128i factor = _mm_cvtsi64_si128(static_cast<long long>(bits));
    return static_cast<uint64_t>(_mm_cvtsi128_si64(_mm_clmulepi64_si128(factor, _mm_set1_epi8(-1), 0)));
}

/// Whether such a byte stands in the block, or one that may be a NUL.
VELTRANO_TARGET_AVX2 inline bool MayHold(__m256i low, __m256i high, char unit)
{
    const __m256i wanted = _mm256_set1_epi8(unit);
    const __m256i found = _mm256_or_si256(_mm256_cmpeq_epi8(low, wanted), _mm256_cmpeq_epi8(high, wanted));
    return IsAny(_mm256_or_si256(found, _mm256_cmpeq_epi8(_mm256_min_epu8(low, high), _mm256_setzero_si256())));
}

VELTRANO_TARGET_AVX2 int FindUnitAvx2(const WCHAR* pText, int from, int length, WCHAR unit)
{
    const __m256i wanted = _mm256_set1_epi16(static_cast<short>(unit));
    for (; length - from >= UnitsPerBlock; from += UnitsPerBlock)
    {
        FetchAhead(pText + from);
        const Quarters block = LoadBlock(pText + from);
        const Quarters found = Compare(block, wanted);
        if (!IsAny(_mm256_or_si256(AnyOf(found), NulsOf(block))))
            continue;
        const Quarters marks = Either(found, Compare(block, _mm256_setzero_si256()));
        const __m256i low = _mm256_packs_epi16(marks.first, marks.second);
        const __m256i high = _mm256_packs_epi16(marks.third, marks.fourth);
        return from + std::countr_zero(Bits(_mm256_permute4x64_epi64(low, 0xD8), _mm256_permute4x64_epi64(high, 0xD8)));
    }
    while (from < length && pText[from] != unit && pText[from] != 0)
        ++from;
    return from;
}

VELTRANO_TARGET_AVX2 void ReadBlocksAvx2(const WCHAR* pBlocks, int count, KnownBlocks& known)
{
    CBlockCollector collector(known);
    for (int i = 0; i < count; ++i, pBlocks += UnitsPerBlock)
    {
        FetchAhead(pBlocks);
        const Quarters block = LoadBlock(pBlocks);
        const __m256i low = Pack(block.first, block.second);
        const __m256i high = Pack(block.third, block.fourth);
        uint64_t singles = 0;
        if (MayHold(low, high, '\'')) [[unlikely]] // one look will do for both, which are rare
        {
            if (IsAny(NulsOf(block)))
                break;
            singles = BitsOf(low, high, '\'');
        }
        const uint64_t doubles = BitsOf(low, high, '"');
        collector.Add({doubles, QuickPrefixXor(doubles), singles, BitsOf(low, high, '>')});
    }
    collector.Finish();
}

/// The bytes that the table holds at the place of their low half.
VELTRANO_TARGET_AVX2 inline __m256i InTable(__m256i bytes, __m256i table)
{
    return _mm256_cmpeq_epi8(_mm256_shuffle_epi8(table, bytes), bytes);
}

VELTRANO_TARGET_AVX2 bool MarkTagAvx2(const WCHAR* pBlock, WCHAR first, WCHAR last, TagMarks& marks)
{
    const Quarters block = LoadBlock(pBlock);
    const __m256i low = Pack(block.first, block.second);
    const __m256i high = Pack(block.third, block.fourth);
    const __m256i stops =
        _mm256_broadcastsi128_si256(_mm_setr_epi8(-1, -1, -1, -1, -1, -1, -1, '\'', -1, -1, -1, -1, -1, -1, '>', '/'));
    marks.stops = Bits(InTable(low, stops), InTable(high, stops));
    if (MayHold(low, high, '?')) [[unlikely]] // which has the table's place of /
    {
        if (IsAny(NulsOf(block)))
            return false;
        marks.stops |= BitsOf(low, high, '?');
    }
    marks.doubles = BitsOf(low, high, '"');
    marks.inside = QuickPrefixXor(marks.doubles);
    marks.equals = BitsOf(low, high, '=');
    marks.firsts = BitsOf(low, high, static_cast<char>(first));
    marks.lasts = BitsOf(low, high, static_cast<char>(last));
    return true;
}

VELTRANO_TARGET_AVX2 PlainAttribute FindAttributeAvx2(const WCHAR* pText, int length, int tagName, const WCHAR* pName)
{
    return FindInPlainTag<MarkTagAvx2>(pText, length, tagName, pName);
}

VELTRANO_TARGET_AVX2 int CopyValueAvx2(const WCHAR* pFrom, int length, WCHAR* pTo)
{
    int count = 0;
    for (; length - count >= UnitsPerBlock; count += UnitsPerBlock)
    {
        FetchAhead(pFrom + count);
        const Quarters block = LoadBlock(pFrom + count);
        const Quarters found = Either(Compare(block, _mm256_set1_epi16('"')), Compare(block, _mm256_set1_epi16('&')));
        if (IsAny(_mm256_or_si256(AnyOf(found), NulsOf(block))))
            break;
        StoreBlock(pTo + count, block);
    }
    return CopyValueUnits(pFrom, count, length, pTo);
}
} // namespace

const XmlVectorSteps s_avx2Steps{FindUnitAvx2, ReadBlocksAvx2, FindAttributeAvx2, CopyValueAvx2};
