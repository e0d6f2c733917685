#include "platform/win32/native/runtime.h"

#include "platform/compiler.h"
#include "platform/win32/native/paths.h"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <climits>
#include <emmintrin.h>
#include <limits>
#include <string>
#include <string_view>
#include <sys/stat.h>

namespace
{
/// 32 units, aligned to their size: they are in one page, so if one can be read, all can.
constexpr uintptr_t BlockBytes = 64;

/// A bit for each NUL of a block.
VELTRANO_NO_SANITIZE_ADDRESS uint32_t FindZeros(const __m128i* pBlock)
{
    uint32_t zeros = 0;
    for (int i = 0; i < 4; i += 2)
    {
        const __m128i first = _mm_cmpeq_epi16(_mm_load_si128(pBlock + i), _mm_setzero_si128());
        const __m128i second = _mm_cmpeq_epi16(_mm_load_si128(pBlock + i + 1), _mm_setzero_si128());
        zeros |= static_cast<uint32_t>(_mm_movemask_epi8(_mm_packs_epi16(first, second))) << 8 * i;
    }
    return zeros;
}
} // namespace

size_t wcslen(const WCHAR* pText)
{
    const auto address = reinterpret_cast<uintptr_t>(pText);
    uintptr_t block = address & -BlockBytes;
    uint32_t zeros = FindZeros(reinterpret_cast<const __m128i*>(block)) & ~0U << (address - block) / sizeof(WCHAR);
    while (zeros == 0)
        zeros = FindZeros(reinterpret_cast<const __m128i*>(block += BlockBytes));
    const uintptr_t end = block + static_cast<uintptr_t>(std::countr_zero(zeros)) * sizeof(WCHAR);
    return (end - address) / sizeof(WCHAR);
}

int wcscmp(const WCHAR* pLeft, const WCHAR* pRight)
{
    for (; *pLeft == *pRight; ++pLeft, ++pRight)
        if (*pLeft == 0)
            return 0;
    return *pLeft < *pRight ? -1 : 1;
}

int wcsncmp(const WCHAR* pLeft, const WCHAR* pRight, size_t count)
{
    for (size_t i = 0; i < count; ++i)
    {
        if (pLeft[i] != pRight[i])
            return pLeft[i] < pRight[i] ? -1 : 1;
        if (pLeft[i] == 0)
            return 0;
    }
    return 0;
}

const WCHAR* wcschr(const WCHAR* pText, WCHAR unit)
{
    for (; *pText != unit; ++pText)
        if (*pText == 0)
            return nullptr;
    return pText;
}

namespace
{
bool IsSpace(WCHAR unit)
{
    return unit == ' ' || (unit >= '\t' && unit <= '\r');
}

int DigitValue(WCHAR unit)
{
    if (unit >= '0' && unit <= '9')
        return unit - '0';
    if (unit >= 'a' && unit <= 'z')
        return unit - 'a' + 10;
    if (unit >= 'A' && unit <= 'Z')
        return unit - 'A' + 10;
    return std::numeric_limits<int>::max();
}

bool IsHexPrefix(const WCHAR* pText)
{
    return pText[0] == '0' && (pText[1] == 'x' || pText[1] == 'X') && DigitValue(pText[2]) < 16;
}
} // namespace

long wcstol(const WCHAR* pText, WCHAR** ppEnd, int base)
{
    const WCHAR* p = pText;
    while (IsSpace(*p))
        ++p;
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+')
        ++p;
    if (base == 16 && IsHexPrefix(p))
        p += 2;

    // The lowest 32-bit number has a greater absolute value than the highest.
    const int64_t limit = static_cast<int64_t>(std::numeric_limits<int32_t>::max()) + (negative ? 1 : 0);
    int64_t value = 0;
    const WCHAR* pDigits = p;
    for (; DigitValue(*p) < base; ++p)
        value = std::min(limit, value * base + DigitValue(*p));
    if (ppEnd != nullptr)
        *ppEnd = const_cast<WCHAR*>(p == pDigits ? pText : p);
    return static_cast<long>(negative ? -value : value);
}

int _wtoi(const WCHAR* pText)
{
    return static_cast<int>(wcstol(pText, nullptr, 10));
}

size_t wcstombs(char* pBytes, const WCHAR* pText, size_t count)
{
    const size_t length = wcslen(pText);
    if (pBytes == nullptr)
        return length;
    const size_t copied = std::min(length, count);
    if (std::any_of(pText, pText + copied, [](WCHAR unit) { return unit > 0xFF; }))
    {
        errno = EILSEQ;
        return static_cast<size_t>(-1);
    }
    std::transform(pText, pText + copied, pBytes, [](WCHAR unit) { return static_cast<char>(unit); });
    if (copied < count)
        pBytes[copied] = 0;
    return copied;
}

size_t mbstowcs(WCHAR* pText, const char* pBytes, size_t count)
{
    const size_t length = std::char_traits<char>::length(pBytes);
    if (pText == nullptr)
        return length;
    const size_t copied = std::min(length, count);
    std::transform(pBytes, pBytes + copied, pText, [](char byte) { return static_cast<unsigned char>(byte); });
    if (copied < count)
        pText[copied] = 0;
    return copied;
}

namespace
{
/// Collects the units of a formatted text: counts all and stores those that fit.
class CFormatOutput
{
public:
    CFormatOutput(WCHAR* pBuffer, size_t room) : m_pBuffer(pBuffer), m_room(room) {}

    void Put(WCHAR unit)
    {
        if (m_count < m_room)
            m_pBuffer[m_count] = unit;
        ++m_count;
    }

    void Put(std::basic_string_view<WCHAR> text)
    {
        for (const WCHAR unit : text)
            Put(unit);
    }

    void PutNumber(int64_t value, unsigned base)
    {
        if (value < 0)
            Put(u'-');
        uint64_t rest = value < 0 ? 0 - static_cast<uint64_t>(value) : static_cast<uint64_t>(value);
        WCHAR digits[20];
        size_t count = 0;
        do
        {
            digits[count++] = u"0123456789abcdef"[rest % base];
            rest /= base;
        } while (rest != 0);
        while (count > 0)
            Put(digits[--count]);
    }

    size_t GetCount() const { return m_count; }

private:
    WCHAR* m_pBuffer;
    size_t m_room;
    size_t m_count = 0;
};

void Format(CFormatOutput& output, const WCHAR* pFormat, va_list arguments)
{
    for (; *pFormat != 0; ++pFormat)
    {
        if (*pFormat != '%')
        {
            output.Put(*pFormat);
            continue;
        }
        switch (*++pFormat)
        {
        case 's':
        {
            const WCHAR* pText = va_arg(arguments, const WCHAR*);
            output.Put(pText == nullptr ? u"(null)" : pText);
            break;
        }
        case 'd':
            output.PutNumber(va_arg(arguments, int), 10);
            break;
        case 'u':
            output.PutNumber(va_arg(arguments, unsigned), 10);
            break;
        case 'x':
            output.PutNumber(va_arg(arguments, unsigned), 16);
            break;
        case 'c':
            output.Put(static_cast<WCHAR>(va_arg(arguments, int)));
            break;
        case 0:
            return; // a lone % at the end
        default:
            output.Put(*pFormat);
            break;
        }
    }
}
} // namespace

int _vsnwprintf_s(WCHAR* pBuffer, size_t size, size_t count, const WCHAR* pFormat, va_list arguments)
{
    if (size == 0)
        return -1;
    CFormatOutput output(pBuffer, std::min(size - 1, count));
    Format(output, pFormat, arguments);
    const size_t written = std::min(output.GetCount(), std::min(size - 1, count));
    pBuffer[written] = 0;
    return written == output.GetCount() ? static_cast<int>(written) : -1;
}

int _vscwprintf(const WCHAR* pFormat, va_list arguments)
{
    CFormatOutput output(nullptr, 0);
    Format(output, pFormat, arguments);
    return output.GetCount() > INT_MAX ? -1 : static_cast<int>(output.GetCount());
}

FILE* _wfopen(const WCHAR* pPath, const WCHAR* pMode)
{
    const std::string path = NativePath(pPath);
    struct stat status;
    if (stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode))
    {
        errno = EACCES;
        return nullptr;
    }
    const std::u16string_view mode = pMode;
    return std::fopen(path.c_str(), std::string(mode.begin(), mode.end()).c_str());
}

long long _ftelli64(FILE* pFile)
{
    return ftello(pFile);
}
