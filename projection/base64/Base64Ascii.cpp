#include "projection/base64/Base64Ascii.h"

#include "platform/compiler.h"
#include "projection/base64/Base64.h"
#include "xml/fast/XmlVector.h"

#include <algorithm>
#include <climits>
#include <immintrin.h>
#include <new>

// The vector loops follow W. Mula, D. Lemire: "Faster Base64 Encoding and Decoding using AVX2 Instructions", 2018. Each
// half of a vector holds 12 bytes or 16 characters; here both come from and go to 16-bit units. Without AVX2, and from
// the first unit that is not plain on, the scalar loops do the work.

namespace
{
bool HasVectorSteps()
{
    static const bool s_hasAvx2 = HasAvx2();
    return s_hasAvx2;
}

bool IsPlain(unsigned unit)
{
    return unit - 1 < 0x7F;
}

/// The value of each character; Foreign for those outside the alphabet.
constexpr unsigned Foreign = 64;
struct CValueTable
{
    constexpr CValueTable()
    {
        for (auto& value : values)
            value = Foreign;
        for (unsigned value = 0; value < 64; ++value)
            values[static_cast<unsigned char>(Base64Alphabet[value])] = static_cast<unsigned char>(value);
    }
    unsigned char values[128];
};
constexpr CValueTable s_valueTable;

unsigned ValueOf(WCHAR character)
{
    return character < 128 ? s_valueTable.values[character] : Foreign;
}

WCHAR CharacterOf(unsigned value)
{
    return static_cast<WCHAR>(Base64Alphabet[value & 63]);
}

/// Loads 16 units from each of two addresses, as bytes. Units of 0x100 and above become 0 or 0xFF.
VELTRANO_TARGET_AVX2 inline __m256i PackUnits(const WCHAR* pFirst, const WCHAR* pSecond)
{
    const __m256i first = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pFirst));
    const __m256i second = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(pSecond));
    return _mm256_permute4x64_epi64(_mm256_packus_epi16(first, second), 0xD8); // packing goes by lanes
}

/// 16 bytes as units.
VELTRANO_TARGET_AVX2 inline void StoreUnits(WCHAR* pUnits, __m128i bytes)
{
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(pUnits), _mm256_cvtepu8_epi16(bytes));
}

/// A bit for each byte that is ASCII and not NUL.
VELTRANO_TARGET_AVX2 inline unsigned PlainBytes(__m256i bytes)
{
    return static_cast<unsigned>(_mm256_movemask_epi8(_mm256_cmpgt_epi8(bytes, _mm256_setzero_si256())));
}

VELTRANO_TARGET_AVX2 inline __m256i TwiceTable(__m128i table)
{
    return _mm256_broadcastsi128_si256(table);
}

/// Encodes 12 units to 16 characters, or 24 to 32, at a time while 16 units are left and all are plain. Returns how
/// many units it encoded.
VELTRANO_TARGET_AVX2 size_t EncodeBlocks(const WCHAR* pText, size_t length, WCHAR* pValue)
{
    const __m256i spread = TwiceTable(_mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10));
    const __m256i offsets =
        TwiceTable(_mm_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                                 '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0));
    size_t taken = 0;
    while (taken + 16 <= length)
    {
        const bool isTwice = taken + 12 + 16 <= length;
        const __m256i units = PackUnits(pText + taken, pText + taken + (isTwice ? 12 : 0));
        if (PlainBytes(units) != 0xFFFFFFFF)
            break;
        const __m256i bytes = _mm256_shuffle_epi8(units, spread);
        const __m256i outer =
            _mm256_mulhi_epu16(_mm256_and_si256(bytes, _mm256_set1_epi32(0x0FC0FC00)), _mm256_set1_epi32(0x04000040));
        const __m256i inner =
            _mm256_mullo_epi16(_mm256_and_si256(bytes, _mm256_set1_epi32(0x003F03F0)), _mm256_set1_epi32(0x01000010));
        const __m256i values = _mm256_or_si256(outer, inner);
        const __m256i isUpper = _mm256_and_si256(_mm256_cmpgt_epi8(_mm256_set1_epi8(26), values), _mm256_set1_epi8(13));
        const __m256i kind = _mm256_or_si256(_mm256_subs_epu8(values, _mm256_set1_epi8(51)), isUpper);
        const __m256i characters = _mm256_add_epi8(_mm256_shuffle_epi8(offsets, kind), values);
        StoreUnits(pValue, _mm256_castsi256_si128(characters));
        if (isTwice)
            StoreUnits(pValue + 16, _mm256_extracti128_si256(characters, 1));
        taken += isTwice ? 24 : 12;
        pValue += isTwice ? 32 : 16;
    }
    return taken;
}

/// Decodes 16 characters to 12 units, or 32 to 24, at a time while all are in the alphabet and give plain units.
/// Returns how many characters it decoded. Writes up to four units more; the decoded characters leave room for them.
VELTRANO_TARGET_AVX2 size_t DecodeBlocks(const WCHAR* pValue, size_t length, WCHAR* pText)
{
    // Index: the high half of a character, for / one less. Entry: the difference between its value and its code.
    const __m256i shifts = TwiceTable(_mm_setr_epi8(0, 16, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0));
    // A character is foreign if the entries of its halves have a bit in common: 1 for codes 0x2., 2 for 0x3., 4 for
    // 0x4. and 0x6., 8 for 0x5. and 0x7., which share their foreign low halves; 16 for the others, all foreign.
    const __m256i lowHalves = TwiceTable(
        _mm_setr_epi8(0x15, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x11, 0x13, 0x1A, 0x1B, 0x1B, 0x1B, 0x1A));
    const __m256i highHalves = TwiceTable(_mm_setr_epi8(16, 16, 1, 2, 4, 8, 4, 8, 16, 16, 16, 16, 16, 16, 16, 16));
    const __m256i gather = TwiceTable(_mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
    const __m256i nibble = _mm256_set1_epi8(0x0F);
    const int distance = PrefetchDistance();
    size_t taken = 0;
    while (taken + 16 <= length)
    {
        PrefetchBlock(pValue + taken, distance);
        bool isTwice = taken + 32 <= length;
        const __m256i characters = PackUnits(pValue + taken, pValue + taken + (isTwice ? 16 : 0));
        const __m256i high = _mm256_and_si256(_mm256_srli_epi32(characters, 4), nibble);
        const __m256i low = _mm256_and_si256(characters, nibble);
        // Neither 0 nor 0xFF is in the alphabet.
        const __m256i lowBits = _mm256_shuffle_epi8(lowHalves, low);
        const __m256i highBits = _mm256_shuffle_epi8(highHalves, high);
        if (_mm256_testz_si256(lowBits, highBits) == 0)
        {
            if (_mm_testz_si128(_mm256_castsi256_si128(lowBits), _mm256_castsi256_si128(highBits)) == 0)
                break;
            isTwice = false; // the first half still counts
        }
        const __m256i isSlash = _mm256_cmpeq_epi8(characters, _mm256_set1_epi8('/'));
        const __m256i values = _mm256_add_epi8(characters, _mm256_shuffle_epi8(shifts, _mm256_add_epi8(high, isSlash)));
        const __m256i pairs = _mm256_maddubs_epi16(values, _mm256_set1_epi32(0x01400140));
        const __m256i bytes = _mm256_shuffle_epi8(_mm256_madd_epi16(pairs, _mm256_set1_epi32(0x00011000)), gather);
        const unsigned wanted = isTwice ? 0x0FFF0FFF : 0x0FFF;
        if ((PlainBytes(bytes) & wanted) != wanted)
            break;
        StoreUnits(pText, _mm256_castsi256_si128(bytes));
        if (isTwice)
            StoreUnits(pText + 12, _mm256_extracti128_si256(bytes, 1));
        taken += isTwice ? 32 : 16;
        pText += isTwice ? 24 : 12;
    }
    return taken;
}
} // namespace

bool AppendAsciiValue(const WCHAR* pText, size_t length, CString& target)
{
    const size_t valueLength = (length + 2) / 3 * 4;
    const int targetLength = target.GetLength();
    if (valueLength > static_cast<size_t>(INT_MAX - targetLength))
        throw std::bad_alloc();
    WCHAR* pValue = target.GetBuffer(targetLength + static_cast<int>(valueLength)) + targetLength;
    size_t i = HasVectorSteps() ? EncodeBlocks(pText, length, pValue) : 0;
    pValue += i / 3 * 4;
    bool isPlain = true;
    for (; i < length && isPlain; i += 3, pValue += 4)
    {
        const size_t count = std::min<size_t>(length - i, 3);
        const unsigned first = pText[i];
        const unsigned second = count > 1 ? pText[i + 1] : 0;
        const unsigned third = count > 2 ? pText[i + 2] : 0;
        isPlain = IsPlain(first) && (count < 2 || IsPlain(second)) && (count < 3 || IsPlain(third));
        const unsigned group = first << 16 | second << 8 | third;
        pValue[0] = CharacterOf(group >> 18);
        pValue[1] = CharacterOf(group >> 12);
        pValue[2] = count > 1 ? CharacterOf(group >> 6) : TEXT('=');
        pValue[3] = count > 2 ? CharacterOf(group) : TEXT('=');
    }
    target.ReleaseBufferSetLength(targetLength + (isPlain ? static_cast<int>(valueLength) : 0));
    return isPlain;
}

size_t LengthOfBase64Run(const WCHAR* pValue, size_t length)
{
    const WCHAR* const pEnd = pValue + length;
    return static_cast<size_t>(std::find_if(pValue, pEnd, [](WCHAR unit) { return ValueOf(unit) == Foreign; }) -
                               pValue);
}

std::optional<size_t> DecodeAsciiText(const WCHAR* pValue, size_t length, CString& text)
{
    CString decoded;
    WCHAR* const pText = decoded.GetBuffer(static_cast<int>(length / 4 * 3 + 3));
    size_t i = HasVectorSteps() ? DecodeBlocks(pValue, length, pText) : 0;
    size_t count = i / 4 * 3;
    unsigned group = 0;
    int pendingBits = 0; // the lowest ones of the group, which have not become a unit yet
    for (unsigned value = 0; i < length && (value = ValueOf(pValue[i])) != Foreign; ++i)
    {
        group = group << 6 | value;
        pendingBits += 6;
        if (pendingBits < 8)
            continue;
        pendingBits -= 8;
        const unsigned byte = group >> pendingBits & 0xFF;
        if (!IsPlain(byte))
            return std::nullopt;
        pText[count++] = static_cast<WCHAR>(byte);
    }
    decoded.ReleaseBufferSetLength(static_cast<int>(count));
    text = std::move(decoded);
    return i;
}
