#pragma once
/// Finds the ends of start tags many at once.
#include "xml/XmlVector.h"

/// Of a block: a bit for each unit of that kind; the lowest is the first unit's.
struct BlockMarks
{
    uint64_t doubles;       ///< "
    uint64_t insideDoubles; ///< from an odd one of them to before the next
    uint64_t singles;       ///< '
    uint64_t ends;          ///< >
};

/// What is known of some blocks that follow each other.
struct KnownBlocks
{
    static constexpr int Most = 32;

    int first = 0;         ///< offset of the first of them
    unsigned length = 0;   ///< in units
    WCHAR open = 0;        ///< the quote that is open behind them; before they are read, in front of them
    int endCount = 0;      ///< of ends
    uint64_t inside[Most]; ///< of each block: a bit for each unit from an opening quote to before the closing one
    int ends[Most * UnitsPerBlock + 1]; ///< offsets of the > outside quotes
};

/// From one quote to the next, since those of one kind say nothing inside the other. open: the one that is open before
/// the block, and then behind it. Returns the bits from an opening quote to before the closing one.
uint64_t WalkQuotes(const BlockMarks& marks, WCHAR& open);

/// Makes the marks of count blocks known, which stand at known.first. Part of each vector form, for whose processor it
/// is compiled.
inline __attribute__((always_inline)) void CollectEnds(const BlockMarks* pMarks, int count, KnownBlocks& known)
{
    WCHAR open = known.open;
    uint64_t before = open != 0 ? ~uint64_t{0} : 0; // of the last unit's place in quotes a copy for each unit
    int* pEnd = known.ends;
    for (int i = 0; i < count; ++i)
    {
        uint64_t inside = 0;
        if (pMarks[i].singles == 0 && (open != TEXT('\'') || before == 0))
        {
            inside = pMarks[i].insideDoubles ^ before;
            open = TEXT('"'); // if any
        }
        else
        {
            open = before == 0 ? WCHAR{0} : open;
            inside = WalkQuotes(pMarks[i], open);
        }
        before = 0 - (inside >> (UnitsPerBlock - 1));
        known.inside[i] = inside;

        // Hardly ever more than one, but whether there is one cannot be foretold.
        uint64_t ends = pMarks[i].ends & ~inside;
        // Unsigned, as the last block of a text may reach beyond what an int counts.
        const auto first = static_cast<unsigned>(known.first + i * UnitsPerBlock);
        const auto offsetOf = [first](uint64_t bits)
        { return static_cast<int>(first + static_cast<unsigned>(std::countr_zero(bits))); };
        *pEnd = offsetOf(ends | uint64_t{1} << (UnitsPerBlock - 1));
        pEnd += ends != 0;
        for (ends &= ends - 1; ends != 0; ends &= ends - 1)
            *pEnd++ = offsetOf(ends);
    }
    known.length = static_cast<unsigned>(count) * UnitsPerBlock;
    known.open = before != 0 ? open : WCHAR{0};
    known.endCount = static_cast<int>(pEnd - known.ends);
}

/// Goes over the text once, some blocks at a time, and keeps what it knows of them, since many short tags lie in them.
class CTagEndFinder
{
public:
    static constexpr int NotFound = -1;

    // cppcheck-suppress uninitMemberVar ; as long as no block is known, nothing of it is read
    CTagEndFinder(const WCHAR* pText, int length) : m_pText(pText), m_length(length), m_steps(VectorSteps()) {}

    /// The offset of the first > outside quotes from that unit on, which lies in a start tag and not before that of
    /// the last call. NotFound if what is known does not tell it: then ReadOn may help.
    int Find(int from)
    {
        if ((IsOutside(from) || from == m_readFor) && Knows(from))
            return m_known.ends[m_nextEnd];
        m_wanted = from;
        return NotFound;
    }

    /// Reads what the last Find did not know. False if there is no such >, or the way there leads into a block with a
    /// NUL, which is for a reader that goes unit by unit; or if that Find has been answered.
    bool ReadOn();

private:
    /// Whether what is known of the blocks holds for a tag that starts there too: as long as nothing but tags stands
    /// in them, it does.
    bool IsOutside(int from) const
    {
        const auto before = static_cast<unsigned>(from - 1 - m_known.first); // none if it stands in front
        return before < m_known.length && (m_known.inside[before / UnitsPerBlock] >> before % UnitsPerBlock & 1) == 0;
    }
    /// Whether there is an end from there on.
    bool Knows(int from)
    {
        while (m_nextEnd < m_known.endCount && m_known.ends[m_nextEnd] < from)
            ++m_nextEnd;
        return m_nextEnd < m_known.endCount;
    }
    bool Restart(int from);
    bool ReadNext();
    bool Read(int first);
    void ReadLast(int first);

    const WCHAR* const m_pText;
    const int m_length;
    const XmlVectorSteps& m_steps;
    int m_wanted = NotFound;  ///< what Find did not know
    int m_readFor = NotFound; ///< what ReadOn did; the tag may begin before the known blocks
    int m_blocksAtOnce = 1;
    int m_nextEnd = 0; ///< in m_known.ends, the first that was not passed by
    KnownBlocks m_known;
};
