#pragma once
/// Finds the ends of start tags many at once.
#include "platform/compiler.h"
#include "xml/fast/XmlVector.h"

#include <climits>

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
    static constexpr int NoEnd = INT_MAX;

    int first = 0;       ///< offset of the first of them
    unsigned length = 0; ///< in units
    WCHAR open = 0;      ///< the quote that is open behind them; before they are read, in front of them
    /// Of each block: a bit for each unit from an opening quote to before the closing one. The last is not in use, but
    /// read, since bits are read from any byte on.
    uint64_t inside[Most + 1] = {};
    int ends[Most * UnitsPerBlock + 1]; ///< offsets of the > outside quotes, and NoEnd behind them
};

/// From one quote to the next, since those of one kind say nothing inside the other. open: the one that is open before
/// the block, and then behind it. Returns the bits from an opening quote to before the closing one.
uint64_t WalkQuotes(const BlockMarks& marks, WCHAR& open);

/// Makes blocks known from their marks, one behind the other. Part of each vector form, for whose processor it is
/// compiled.
class CBlockCollector
{
public:
    explicit CBlockCollector(KnownBlocks& known)
        : m_known(known),
          m_pInside(known.inside),
          m_pEnd(known.ends),
          m_next(static_cast<unsigned>(known.first)),
          m_open(known.open != 0 ? ~uint64_t{0} : 0),
          m_openSingle(known.open == TEXT('\'') ? ~uint64_t{0} : 0)
    {
    }

    VELTRANO_FORCE_INLINE void Add(const BlockMarks& marks)
    {
        uint64_t inside = marks.insideDoubles ^ m_open;
        if ((marks.singles | m_openSingle) != 0) [[unlikely]]
        {
            WCHAR open = OpenQuote();
            inside = WalkQuotes(marks, open);
            m_openSingle = open == TEXT('\'') ? ~uint64_t{0} : 0;
        }
        m_open = 0 - (inside >> (UnitsPerBlock - 1));
        *m_pInside++ = inside;

        // Hardly ever more than one, but whether there is one cannot be foretold.
        uint64_t ends = marks.ends & ~inside;
        *m_pEnd = OffsetOf(ends);
        m_pEnd += ends != 0;
        for (ends &= ends - 1; ends != 0; ends &= ends - 1)
            *m_pEnd++ = OffsetOf(ends);
        m_next += UnitsPerBlock;
    }

    void Finish()
    {
        m_known.length = m_next - static_cast<unsigned>(m_known.first);
        m_known.open = OpenQuote();
        *m_pEnd = KnownBlocks::NoEnd;
    }

private:
    WCHAR OpenQuote() const { return m_open == 0 ? WCHAR{0} : m_openSingle == 0 ? TEXT('"') : TEXT('\''); }
    VELTRANO_FORCE_INLINE int OffsetOf(uint64_t bits) const
    {
        return static_cast<int>(m_next + static_cast<unsigned>(std::countr_zero(bits)));
    }

    KnownBlocks& m_known;
    uint64_t* m_pInside;
    int* m_pEnd;
    unsigned m_next; ///< offset of the next block; unsigned, as the last one may reach beyond what an int counts
    // A bit for each unit, all alike: whether a quote is open in front of the next block, and whether a single one.
    uint64_t m_open;
    uint64_t m_openSingle;
};

/// Goes over the text once, some blocks at a time, and keeps what it knows of them, since many short tags lie in them.
class CTagEndFinder
{
public:
    static constexpr int NotFound = KnownBlocks::NoEnd;
    static constexpr int InsideBits = 56;

    struct TagEnd
    {
        int end;         ///< offset of the >, or NotFound
        uint64_t inside; ///< InsideBits, for the units up to that end; all ones if it is not known where quotes stand
    };

    // cppcheck-suppress uninitMemberVar ; as long as no block is known, nothing of it is read
    CTagEndFinder(const WCHAR* pText, int length) : m_pText(pText), m_length(length), m_steps(VectorSteps()) {}

    /// The first > outside quotes from that unit on, which lies in a start tag and not before that of the last call.
    /// NotFound if what is known does not tell it: then ReadOn may help.
    /// inside has a bit for each unit from the one in front of that on, if it stands in quotes or opens them.
    TagEnd Find(int from)
    {
        const uint64_t inside = InsideFrom(from - 1);
        const int end = (inside & 1) == 0 || from == m_readFor ? KnownEnd(from) : NotFound;
        if (end == NotFound)
            m_wanted = from;
        return {end, inside};
    }

    /// Reads what the last Find did not know. False if there is no such >, or the way there leads into a block with a
    /// NUL, which is for a reader that goes unit by unit; or if that Find has been answered.
    bool ReadOn();

private:
    /// As the inside of a TagEnd.
    uint64_t InsideFrom(int first) const
    {
        const auto place = static_cast<unsigned>(first - m_known.first); // beyond them too if it stands in front
        if (place >= m_known.length)
            return ~uint64_t{0};
        uint64_t inside; // from a byte on, whatever word it lies in
        std::memcpy(&inside, reinterpret_cast<const char*>(m_known.inside) + place / CHAR_BIT, sizeof inside);
        return inside >> place % CHAR_BIT;
    }
    /// Whether what is known of the blocks holds for a tag that starts there too: as long as nothing but tags stands
    /// in them, it does.
    bool IsOutside(int from) const { return (InsideFrom(from - 1) & 1) == 0; }
    /// The first one from there on, or NoEnd.
    int KnownEnd(int from)
    {
        while (m_known.ends[m_nextEnd] < from)
            ++m_nextEnd;
        return m_known.ends[m_nextEnd];
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
