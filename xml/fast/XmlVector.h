#pragma once
/// The hot loops of the XML engine, which handle 64 units a step. Each is written once (XmlVectorLoops.h) and compiled
/// for SSE2 and for AVX2. Nothing after the given length is read; lengths and offsets count UTF-16 code units.
#include "xml/fast/XmlUnits.h"

#include <atomic>

struct XmlTagBlocks;

constexpr int UnitsPerBlock = 64;

/// What the search for an attribute in a start tag found.
struct PlainAttribute
{
    enum Outcome
    {
        Found, ///< the value goes up to the next ", unless a NUL comes first
        Missing,
        /// The tag or the name is not of the common kind, or the tag is among the last units of the text. The quotes of
        /// an uncommon tag can seem to go on after its end. The search stops there: with many such tags, each search
        /// could go on to the end of the text.
        NotPlain
    };
    Outcome outcome;
    int value = 0; ///< offset of the value's first unit
};

/// A name that a caller asks for, up to the unit that ends it.
struct XmlName
{
    const WCHAR* pUnits;
    int length;
};

struct XmlVectorLoops
{
    /// Returns the offset, from that one on, of the first unit that is the given ASCII unit or NUL; length if there is
    /// none.
    int (*pFindUnit)(const WCHAR* pText, int from, int length, WCHAR unit);

    /// Indexes up to count blocks of text. pBlocks points at the unit of offset blocks.first. Stops before a block that
    /// has a NUL.
    void (*pIndexBlocks)(const WCHAR* pBlocks, int count, XmlTagBlocks& blocks);

    /// Looks for an attribute in a common start tag: white space, a name and ="value", again and again. What is found,
    /// or found missing, is what ScanAttribute gives. tagName: offset after the <. tagEnd: offset after the >; may be
    /// less. name: not empty.
    PlainAttribute (*pFindAttribute)(const WCHAR* pText, int length, int tagName, int tagEnd, XmlName name);

    /// Copies units up to the first ", & or NUL, at most length, for which pTo has room. Returns how many.
    int (*pCopyValue)(const WCHAR* pFrom, int length, WCHAR* pTo);
};

extern const XmlVectorLoops s_sse2Loops; ///< for every x86-64
extern const XmlVectorLoops s_avx2Loops; ///< only for a processor with HasAvx2
/// Returns the loops in use: the fastest that this processor can run.
const XmlVectorLoops& VectorLoops();
/// Sets the loops in use. For tests.
void UseVectorLoops(const XmlVectorLoops& loops);

/// How many bytes ahead of a search its text is prefetched. Chosen with the loops.
extern std::atomic<int> s_prefetchDistance;

inline int PrefetchDistance()
{
    return s_prefetchDistance.load(std::memory_order_relaxed);
}

/// Prefetches the text that a search will come to soon, a block at a time.
inline void PrefetchBlock(const WCHAR* pBlock, int distance)
{
    const char* const pAhead = reinterpret_cast<const char*>(pBlock) + distance;
    _mm_prefetch(pAhead, _MM_HINT_T0);
    _mm_prefetch(pAhead + 64, _MM_HINT_T0);
}

inline int FindUnit(const WCHAR* pText, int from, int length, WCHAR unit)
{
    return VectorLoops().pFindUnit(pText, from, length, unit);
}
