#include "projection/Base64Ascii.h"

#include <algorithm>
#include <climits>
#include <new>
#include <tmmintrin.h>

// The vector steps are the known ones for 12 bytes and 16 characters at a time (W. Mula, D. Lemire: "Faster Base64
// Encoding and Decoding using AVX2 Instructions", 2018), here between 16-bit units. They need SSSE3, which the x86-64
// baseline does not promise, and stop at the first unit that is not plain; the scalar steps go on from there.
#define VECTOR_STEPS __attribute__((target("ssse3")))

namespace
{
bool HasVectorSteps()
{
    static const bool s_hasSsse3 = __builtin_cpu_supports("ssse3") != 0;
    return s_hasSsse3;
}

bool IsPlain(unsigned unit)
{
    return unit - 1 < 0x7F;
}

constexpr WCHAR s_alphabet[] = TEXT("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");

/// The place of every character in the alphabet; for the others a mark that no place has.
constexpr unsigned Foreign = 64;
struct CValueTable
{
    constexpr CValueTable()
    {
        for (auto& value : values)
            value = Foreign;
        for (unsigned value = 0; value < 64; ++value)
            values[s_alphabet[value]] = static_cast<unsigned char>(value);
    }
    unsigned char values[128];
};
constexpr CValueTable s_valueTable;

unsigned ValueOf(WCHAR character)
{
    return character < 128 ? s_valueTable.values[character] : Foreign;
}

/// Encodes 12 units to 16 characters at a time while 16 units are left and all are plain. Returns the units taken.
VECTOR_STEPS size_t EncodeBlocks(const WCHAR* pText, size_t length, WCHAR* pValue)
{
    const __m128i zero = _mm_setzero_si128();
    const __m128i spread = _mm_setr_epi8(1, 0, 2, 1, 4, 3, 5, 4, 7, 6, 8, 7, 10, 9, 11, 10);
    const __m128i offsets = _mm_setr_epi8('a' - 26, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52, '0' - 52,
                                          '0' - 52, '0' - 52, '0' - 52, '0' - 52, '+' - 62, '/' - 63, 'A', 0, 0);
    size_t taken = 0;
    for (; taken + 16 <= length; taken += 12, pValue += 16)
    {
        const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pText + taken));
        const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pText + taken + 8));
        const __m128i foreign = _mm_and_si128(_mm_or_si128(low, high), _mm_set1_epi16(static_cast<short>(0xFF80)));
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(foreign, zero)) != 0xFFFF)
            break;
        const __m128i bytes = _mm_shuffle_epi8(_mm_packus_epi16(low, high), spread);
        const __m128i outer =
            _mm_mulhi_epu16(_mm_and_si128(bytes, _mm_set1_epi32(0x0FC0FC00)), _mm_set1_epi32(0x04000040));
        const __m128i inner =
            _mm_mullo_epi16(_mm_and_si128(bytes, _mm_set1_epi32(0x003F03F0)), _mm_set1_epi32(0x01000010));
        const __m128i values = _mm_or_si128(outer, inner);
        const __m128i isUpper = _mm_and_si128(_mm_cmpgt_epi8(_mm_set1_epi8(26), values), _mm_set1_epi8(13));
        const __m128i kind = _mm_or_si128(_mm_subs_epu8(values, _mm_set1_epi8(51)), isUpper);
        const __m128i characters = _mm_add_epi8(_mm_shuffle_epi8(offsets, kind), values);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(pValue), _mm_unpacklo_epi8(characters, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(pValue + 8), _mm_unpackhi_epi8(characters, zero));
    }
    return taken;
}

/// Decodes 16 characters to 12 units at a time while all are of the alphabet and give plain units. Returns the
/// characters taken.
VECTOR_STEPS size_t DecodeBlocks(const WCHAR* pValue, size_t length, WCHAR* pText)
{
    const __m128i zero = _mm_setzero_si128();
    const __m128i shifts = _mm_setr_epi8(0, 0, 19, 4, -65, -65, -71, -71, 0, 0, 0, 0, 0, 0, 0, 0);
    // For each low half of a character the set of high halves with which it is in the alphabet.
    const __m128i allowed = _mm_setr_epi8(
        static_cast<char>(0xA8), static_cast<char>(0xF8), static_cast<char>(0xF8), static_cast<char>(0xF8),
        static_cast<char>(0xF8), static_cast<char>(0xF8), static_cast<char>(0xF8), static_cast<char>(0xF8),
        static_cast<char>(0xF8), static_cast<char>(0xF8), static_cast<char>(0xF0), 0x54, 0x50, 0x50, 0x50, 0x54);
    const __m128i bits = _mm_setr_epi8(1, 2, 4, 8, 16, 32, 64, static_cast<char>(128), 0, 0, 0, 0, 0, 0, 0, 0);
    const __m128i gather = _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1);
    const __m128i nibble = _mm_set1_epi8(0x0F);
    size_t taken = 0;
    for (; taken + 16 <= length; taken += 16, pText += 12)
    {
        // A unit above 0xFF becomes 0 or 0xFF, neither of which is in the alphabet.
        const __m128i characters =
            _mm_packus_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(pValue + taken)),
                             _mm_loadu_si128(reinterpret_cast<const __m128i*>(pValue + taken + 8)));
        const __m128i high = _mm_and_si128(_mm_srli_epi32(characters, 4), nibble);
        const __m128i low = _mm_and_si128(characters, nibble);
        const __m128i fits = _mm_and_si128(_mm_shuffle_epi8(allowed, low), _mm_shuffle_epi8(bits, high));
        if (_mm_movemask_epi8(_mm_cmpeq_epi8(fits, zero)) != 0)
            break;
        const __m128i isSlash = _mm_cmpeq_epi8(characters, _mm_set1_epi8('/'));
        const __m128i shift = _mm_or_si128(_mm_and_si128(isSlash, _mm_set1_epi8(16)),
                                           _mm_andnot_si128(isSlash, _mm_shuffle_epi8(shifts, high)));
        const __m128i values = _mm_add_epi8(characters, shift);
        const __m128i pairs = _mm_maddubs_epi16(values, _mm_set1_epi32(0x01400140));
        const __m128i bytes = _mm_shuffle_epi8(_mm_madd_epi16(pairs, _mm_set1_epi32(0x00011000)), gather);
        const int notPlain = _mm_movemask_epi8(bytes) | (_mm_movemask_epi8(_mm_cmpeq_epi8(bytes, zero)) & 0xFFF);
        if (notPlain != 0)
            break;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(pText), _mm_unpacklo_epi8(bytes, zero));
        _mm_storel_epi64(reinterpret_cast<__m128i*>(pText + 8), _mm_unpackhi_epi8(bytes, zero));
    }
    return taken;
}
} // namespace

bool AppendAsciiValue(const WCHAR* pText, size_t length, CString& target)
{
    const size_t valueLength = (length + 2) / 3 * 4;
    if (valueLength > INT_MAX)
        throw std::bad_alloc();
    WCHAR* pValue = target.GetBufferBehind(static_cast<int>(valueLength));
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
        pValue[0] = s_alphabet[group >> 18 & 63];
        pValue[1] = s_alphabet[group >> 12 & 63];
        pValue[2] = count > 1 ? s_alphabet[group >> 6 & 63] : TEXT('=');
        pValue[3] = count > 2 ? s_alphabet[group & 63] : TEXT('=');
    }
    target.ReleaseBufferSetLength(target.GetLength() + (isPlain ? static_cast<int>(valueLength) : 0));
    return isPlain;
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
