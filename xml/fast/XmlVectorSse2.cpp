#include "xml/fast/XmlPlainTag.h"
#include "xml/fast/XmlTagEnds.h"

namespace
{
/// A block, its units packed to bytes as PackUnits has it.
struct PackedBlock
{
    explicit PackedBlock(const WCHAR* pUnits)
        : parts{PackUnits(pUnits), PackUnits(pUnits + 16), PackUnits(pUnits + 32), PackUnits(pUnits + 48)}
    {
    }

    uint64_t Marks(WCHAR unit) const
    {
        const __m128i wanted = _mm_set1_epi8(static_cast<char>(unit));
        uint64_t marks = 0;
        for (int i = 3; i >= 0; --i)
            marks = marks << 16 | MarksOf(_mm_cmpeq_epi8(parts[i], wanted));
        return marks;
    }

    /// Whether a unit of that value stands in it, or anything that may be a NUL.
    bool MayHold(WCHAR unit) const
    {
        const __m128i wanted = _mm_set1_epi8(static_cast<char>(unit));
        const __m128i found =
            _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(parts[0], wanted), _mm_cmpeq_epi8(parts[1], wanted)),
                         _mm_or_si128(_mm_cmpeq_epi8(parts[2], wanted), _mm_cmpeq_epi8(parts[3], wanted)));
        const __m128i least = _mm_min_epu8(_mm_min_epu8(parts[0], parts[1]), _mm_min_epu8(parts[2], parts[3]));
        return MarksOf(_mm_or_si128(found, _mm_cmpeq_epi8(least, _mm_setzero_si128()))) != 0;
    }

    __m128i parts[4];
};

int FindUnitSse2(const WCHAR* pText, int from, int length, WCHAR unit)
{
    for (; length - from >= UnitsPerBlock; from += UnitsPerBlock)
    {
        FetchAhead(pText + from);
        const PackedBlock block(pText + from);
        if (!block.MayHold(unit))
            continue;
        for (uint64_t marks = block.Marks(unit) | block.Marks(0); marks != 0; marks &= marks - 1)
        {
            const int at = from + std::countr_zero(marks);
            if (pText[at] == unit || pText[at] == 0)
                return at;
        }
    }
    while (from < length && pText[from] != unit && pText[from] != 0)
        ++from;
    return from;
}

bool HasNul(const WCHAR* pUnits, uint64_t mayBe)
{
    for (; mayBe != 0; mayBe &= mayBe - 1)
        if (pUnits[std::countr_zero(mayBe)] == 0)
            return true;
    return false;
}

void ReadBlocksSse2(const WCHAR* pBlocks, int count, KnownBlocks& known)
{
    CBlockCollector collector(known);
    for (int i = 0; i < count; ++i, pBlocks += UnitsPerBlock)
    {
        FetchAhead(pBlocks);
        const PackedBlock block(pBlocks);
        uint64_t singles = 0;
        if (block.MayHold(TEXT('\''))) // one look will do for both, which are rare
        {
            if (HasNul(pBlocks, block.Marks(0)))
                break;
            singles = block.Marks(TEXT('\''));
        }
        const uint64_t doubles = block.Marks(TEXT('"'));
        collector.Add({doubles, PrefixXor(doubles), singles, block.Marks(TEXT('>'))});
    }
    collector.Finish();
}

bool MarkTagSse2(const WCHAR* pBlock, WCHAR first, WCHAR last, TagMarks& marks)
{
    const PackedBlock block(pBlock);
    if (block.MayHold(0))
        return false;
    marks.doubles = block.Marks(TEXT('"'));
    marks.inside = PrefixXor(marks.doubles);
    marks.equals = block.Marks(TEXT('='));
    marks.stops = block.Marks(TEXT('>')) | block.Marks(TEXT('/')) | block.Marks(TEXT('?')) | block.Marks(TEXT('\''));
    marks.firsts = block.Marks(first);
    marks.lasts = block.Marks(last);
    return true;
}

PlainAttribute FindAttributeSse2(const WCHAR* pText, int length, int tagName, const WCHAR* pName)
{
    return FindInPlainTag<MarkTagSse2>(pText, length, tagName, pName);
}

int CopyValueSse2(const WCHAR* pFrom, int length, WCHAR* pTo)
{
    int count = 0;
    for (; length - count >= UnitsPerBlock; count += UnitsPerBlock)
    {
        FetchAhead(pFrom + count);
        const PackedBlock block(pFrom + count);
        const int end = count + UnitsPerBlock;
        if (!block.MayHold(TEXT('"')) && !block.MayHold(TEXT('&')))
            std::memcpy(pTo + count, pFrom + count, UnitsPerBlock * sizeof(WCHAR));
        else if (const int stop = CopyValueUnits(pFrom, count, end, pTo); stop < end)
            return stop;
    }
    return CopyValueUnits(pFrom, count, length, pTo);
}
} // namespace

const XmlVectorSteps s_sse2Steps{FindUnitSse2, ReadBlocksSse2, FindAttributeSse2, CopyValueSse2};
