#pragma once
/// The hot loops over a block type, CSse2Block or CAvx2Block. A block is 64 units in vector registers; it has
///     uint64_t Bits(units...)            a bit for each unit that is one of these ASCII units
///     uint64_t BitsByTable<units...>()   the same, faster; the units differ in their low four bits
///     bool MayContain(units...)          false: none of these ASCII units and no NUL is in the block
///     uint64_t NulBits()
///     void CopyTo(pTo)                   writes the units
///     uint64_t PrefixXor(uint64_t bits)  of each bit, the exclusive or of all bits up to it
/// In each set of bits, the lowest is the first unit's. The functions here are compiled into their callers, which are
/// compiled for the processor of the block.
#include "platform/compiler.h"
#include "xml/fast/XmlTagIndex.h"

template <typename Block>
VELTRANO_FORCE_INLINE int FindUnitInBlocks(const WCHAR* pText, int from, int length, WCHAR unit)
{
    const int distance = PrefetchDistance();
    for (; length - from >= UnitsPerBlock; from += UnitsPerBlock)
    {
        PrefetchBlock(pText + from, distance);
        const Block block(pText + from);
        if (!block.MayContain(unit)) [[likely]]
            continue;
        if (const uint64_t found = block.Bits(unit) | block.NulBits())
            return from + std::countr_zero(found);
    }
    while (from < length && pText[from] != unit && pText[from] != 0)
        ++from;
    return from;
}

/// Copies units from that offset up to the first ", & or NUL and up to end at most. Returns the offset after them.
inline int CopyShortValue(const WCHAR* pFrom, int offset, int end, WCHAR* pTo)
{
    for (; end - offset >= ShortUnits && FindValueStops(pFrom + offset) == 0; offset += ShortUnits)
        std::memcpy(pTo + offset, pFrom + offset, ShortUnits * sizeof(WCHAR));
    for (; offset < end && pFrom[offset] != TEXT('"') && pFrom[offset] != TEXT('&') && pFrom[offset] != 0; ++offset)
        pTo[offset] = pFrom[offset];
    return offset;
}

template <typename Block>
VELTRANO_FORCE_INLINE int CopyValueInBlocks(const WCHAR* pFrom, int length, WCHAR* pTo)
{
    const int distance = PrefetchDistance();
    int copied = 0;
    for (; length - copied >= UnitsPerBlock; copied += UnitsPerBlock)
    {
        PrefetchBlock(pFrom + copied, distance);
        const Block block(pFrom + copied);
        block.CopyTo(pTo + copied); // there is room for the whole block, whatever follows the value
        if (!block.MayContain('"', '&')) [[likely]]
            continue;
        if (const uint64_t stops = block.Bits('"', '&') | block.NulBits())
            return copied + std::countr_zero(stops);
    }
    return CopyShortValue(pFrom, copied, length, pTo);
}

/// Returns a bit for each unit from an opening quote to before the closing one, from the bits of the two quotes. Needed
/// when both occur, since each means nothing inside the other. openQuote: the one that is open in front of the block,
/// and on return after it.
inline uint64_t FindQuotedUnits(uint64_t doubles, uint64_t singles, WCHAR& openQuote)
{
    uint64_t inside = openQuote != 0 ? ~uint64_t{0} : 0;
    uint64_t notPassed = ~uint64_t{0};
    for (;;)
    {
        const uint64_t quotes = openQuote == 0 ? doubles | singles : openQuote == TEXT('"') ? doubles : singles;
        if ((quotes & notPassed) == 0)
            return inside;
        const int next = std::countr_zero(quotes & notPassed);
        inside ^= ~uint64_t{0} << next;
        notPassed = ~uint64_t{1} << next;
        openQuote = openQuote != 0 ? WCHAR{0} : (doubles >> next & 1) != 0 ? TEXT('"') : TEXT('\'');
    }
}

template <typename Block>
VELTRANO_FORCE_INLINE void IndexTagBlocks(const WCHAR* pBlocks, int count, XmlTagBlocks& blocks)
{
    const int distance = PrefetchDistance();
    auto offset = static_cast<unsigned>(blocks.first); // the last block can reach beyond what an int counts
    int* pTagEnd = blocks.tagEnds;
    uint64_t open = blocks.openQuote != 0 ? ~uint64_t{0} : 0; // in each bit: a quote is open in front of the block
    bool isSingle = blocks.openQuote == TEXT('\'');
    const auto openQuote = [&] { return open == 0 ? WCHAR{0} : isSingle ? TEXT('\'') : TEXT('"'); };
    for (int i = 0; i < count; ++i, pBlocks += UnitsPerBlock, offset += UnitsPerBlock)
    {
        PrefetchBlock(pBlocks, distance);
        const Block block(pBlocks);
        uint64_t singles = 0;
        if (block.MayContain('\'')) [[unlikely]] // one test for two units that are rare
        {
            if (block.NulBits() != 0)
                break;
            singles = block.Bits('\'');
        }
        const uint64_t doubles = block.Bits('"');
        uint64_t inside = Block::PrefixXor(doubles) ^ open;
        if (singles != 0 || isSingle) [[unlikely]]
        {
            WCHAR quote = openQuote();
            inside = FindQuotedUnits(doubles, singles, quote);
            isSingle = quote == TEXT('\'');
        }
        open = 0 - (inside >> (UnitsPerBlock - 1));
        blocks.inside[i] = inside;

        // A block seldom has more than one end, but whether it has one cannot be predicted.
        uint64_t ends = block.Bits('>') & ~inside;
        const auto offsetOf = [&](uint64_t bits)
        { return static_cast<int>(offset + static_cast<unsigned>(std::countr_zero(bits))); };
        *pTagEnd = offsetOf(ends);
        pTagEnd += ends != 0;
        for (ends &= ends - 1; ends != 0; ends &= ends - 1)
            *pTagEnd++ = offsetOf(ends);
    }
    *pTagEnd = XmlTagBlocks::NoEnd;
    blocks.length = offset - static_cast<unsigned>(blocks.first);
    blocks.openQuote = openQuote();
}

/// Whether an attribute's name begins at that offset, where the units of the name stand.
inline bool StartsAttribute(const WCHAR* pText, int tagName, int first, XmlName name)
{
    if (first <= tagName)
        return false;
    const WCHAR before = pText[first - 1];
    return (IsIn(before, XmlSpace) || before == TEXT('"')) && EqualUnits(pText + first, name.pUnits, name.length);
}

/// Goes over the tag a block at a time. The name is sought by its first and last unit.
template <typename Block>
VELTRANO_FORCE_INLINE PlainAttribute FindAttributeInBlocks(const WCHAR* pText, int length, int tagName, int tagEnd,
                                                           XmlName name)
{
    constexpr PlainAttribute notPlain{PlainAttribute::NotPlain};
    const WCHAR firstUnit = name.pUnits[0];
    const WCHAR lastUnit = name.pUnits[name.length - 1];
    if (name.length > UnitsPerBlock || (firstUnit | lastUnit) >= 0x80)
        return notPlain;

    const int distance = PrefetchDistance();
    // What the blocks before say about the first units of this one.
    uint64_t insideBefore = 0; // all ones: a quote is open
    uint64_t equalBefore = 0;  // bit 0: the last unit was an =
    uint64_t lastsBefore = 0;  // where a name can end that began in the block before
    for (int blockStart = tagName;;)
    {
        PrefetchBlock(pText + blockStart, distance);
        if (length - blockStart < UnitsPerBlock)
            return notPlain;
        const Block block(pText + blockStart);
        uint64_t marks = block.template BitsByTable<'>', '/', '\''>();
        if (block.MayContain('?')) [[unlikely]] // one test for two units that are rare
        {
            if (block.NulBits() != 0)
                return notPlain;
            marks |= block.Bits('?');
        }
        const uint64_t doubles = block.Bits('"');
        const uint64_t inside =
            Block::PrefixXor(doubles) ^ insideBefore; // from an opening quote to before the closing one
        const uint64_t outside = ~(inside | doubles);
        const uint64_t stops = marks & outside;
        const uint64_t upToStop = stops ^ (stops - 1);

        // A quote opens after every = and nowhere else.
        const uint64_t equals = block.Bits('=') & outside;
        const uint64_t faults = (equals << 1 | equalBefore) ^ (doubles & inside);
        if ((faults & upToStop) != 0)
            return notPlain;

        const uint64_t firsts = block.Bits(firstUnit);
        const uint64_t lasts = block.Bits(lastUnit) & (firsts << (name.length - 1) | lastsBefore);
        for (uint64_t candidates = lasts & outside & upToStop; candidates != 0; candidates &= candidates - 1)
        {
            const int nameEnd = blockStart + std::countr_zero(candidates) + 1;
            if (!StartsAttribute(pText, tagName, nameEnd - name.length, name))
                continue;
            if (pText[nameEnd] == TEXT('=') && pText[nameEnd + 1] == TEXT('"'))
                return {PlainAttribute::Found, nameEnd + 2};
            if (IsIn(pText[nameEnd], EndsAttributeName))
                return notPlain;
        }
        if (stops != 0)
            return {pText[blockStart + std::countr_zero(stops)] == TEXT('\'') ? PlainAttribute::NotPlain
                                                                              : PlainAttribute::Missing};

        insideBefore = 0 - (inside >> (UnitsPerBlock - 1));
        equalBefore = equals >> (UnitsPerBlock - 1);
        lastsBefore = firsts >> 1 >> (UnitsPerBlock - name.length);
        blockStart += UnitsPerBlock;
        if (inside == ~uint64_t{0}) // a long value
            blockStart = FindUnitInBlocks<Block>(pText, blockStart, length, TEXT('"'));
        if (blockStart >= tagEnd)
            return notPlain;
    }
}
