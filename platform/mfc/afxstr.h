#pragma once
/// CString: a wide string with shared, reference-counted, copy-on-write text.
/// Different from MFC's: only wide strings and the operations that the module uses. The reference count is part of the
/// text's block, without a manager object. A null text is the empty text everywhere.
#include <afxver_.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <cstdarg>
#include <cstring>
#include <new>
#include <utility>

namespace ATL
{
/// The header in front of every string's text. The text is NUL-terminated; lengths count units, without the NUL.
struct CStringData
{
    std::atomic<int> nRefs;
    int nDataLength;
    int nAllocLength;
};

/// The conversions of a string's text.
template <typename CharType>
class ChTraitsCRT
{
public:
    /// Converts narrow text from the ANSI code page. Returns the length in units, with a length of 0 for the
    /// destination the one that it needs.
    static int ConvertToBaseType(CharType* pDestination, int destinationLength, const char* pSource, int sourceLength)
    {
        return sourceLength == 0
                   ? 0
                   : ::MultiByteToWideChar(CP_ACP, 0, pSource, sourceLength, pDestination, destinationLength);
    }
};

/// Copies share the text until one of them changes it. The reference count is atomic; one string object belongs to one
/// thread. A length above 2^31 - 1 units throws std::bad_alloc.
template <typename BaseType, class StringTraits>
class CStringT
{
public:
    using XCHAR = BaseType;
    using PXSTR = XCHAR*;
    using PCXSTR = const XCHAR*;

    CStringT() noexcept : m_pText(EmptyText()) {}
    CStringT(PCXSTR pText) : CStringT(pText, LengthOf(pText)) {}
    CStringT(PCXSTR pText, int length) : m_pText(NewText(length)) { Fill(pText, length); }
    CStringT(const CStringT& other) noexcept : m_pText(other.m_pText) { AddReference(); }
    CStringT(CStringT&& other) noexcept : m_pText(std::exchange(other.m_pText, EmptyText())) {}
    ~CStringT() { Release(); }

    CStringT& operator=(const CStringT& other) noexcept
    {
        CStringT(other).Swap(*this);
        return *this;
    }
    CStringT& operator=(CStringT&& other) noexcept
    {
        CStringT(std::move(other)).Swap(*this);
        return *this;
    }
    CStringT& operator=(PCXSTR pText)
    {
        SetString(pText, LengthOf(pText));
        return *this;
    }
    /// Narrow text in the ANSI code page; null counts as empty.
    CStringT& operator=(const char* pNarrow)
    {
        const int narrowLength = pNarrow == nullptr ? 0 : CheckedLength(std::strlen(pNarrow));
        CStringT wide;
        const int length = StringTraits::ConvertToBaseType(nullptr, 0, pNarrow, narrowLength);
        StringTraits::ConvertToBaseType(wide.GetBuffer(length), length, pNarrow, narrowLength);
        wide.ReleaseBufferSetLength(length);
        wide.Swap(*this);
        return *this;
    }

    int GetLength() const noexcept { return Data()->nDataLength; }
    bool IsEmpty() const noexcept { return GetLength() == 0; }
    PCXSTR GetString() const noexcept { return m_pText; }
    operator PCXSTR() const noexcept { return m_pText; }
    XCHAR GetAt(int index) const noexcept { return m_pText[index]; }

    void Empty() noexcept { CStringT().Swap(*this); }
    void SetString(PCXSTR pText, int length) { CStringT(pText, length).Swap(*this); }

    void Append(PCXSTR pText, int length)
    {
        const int oldLength = GetLength();
        if (length > INT_MAX - oldLength)
            throw std::bad_alloc();
        const CStringT keep = HasRoomFor(length) ? CStringT() : *this; // pText may point into it
        Copy(GetBuffer(oldLength + length) + oldLength, pText, length);
        ReleaseBufferSetLength(oldLength + length);
    }
    CStringT& operator+=(const CStringT& other)
    {
        Append(other.m_pText, other.GetLength());
        return *this;
    }
    CStringT& operator+=(PCXSTR pText)
    {
        Append(pText, LengthOf(pText));
        return *this;
    }
    friend CStringT operator+(const CStringT& left, const CStringT& right) { return CStringT(left) += right; }
    friend CStringT operator+(const CStringT& left, PCXSTR pRight) { return CStringT(left) += pRight; }
    friend CStringT operator+(PCXSTR pLeft, const CStringT& right) { return CStringT(pLeft) += right; }

    /// Compares unit values up to the first NUL. Returns a negative number, 0 or a positive one.
    int Compare(PCXSTR pOther) const { return wcscmp(m_pText, pOther); }
    friend bool operator==(const CStringT& left, const CStringT& right) { return left.Compare(right.m_pText) == 0; }
    friend bool operator==(const CStringT& left, PCXSTR pRight) { return left.Compare(pRight) == 0; }
    friend bool operator<(const CStringT& left, const CStringT& right) { return left.Compare(right.m_pText) < 0; }

    /// Returns the index of the last such unit, or -1.
    int ReverseFind(XCHAR unit) const noexcept
    {
        for (int i = GetLength() - 1; i >= 0; --i)
            if (m_pText[i] == unit)
                return i;
        return -1;
    }
    /// Arguments out of range are clamped to the text.
    CStringT Left(int count) const { return Mid(0, count); }
    CStringT Mid(int first) const { return Mid(first, GetLength()); }
    CStringT Mid(int first, int count) const
    {
        first = first < 0 ? 0 : first > GetLength() ? GetLength() : first;
        count = count < 0 ? 0 : count > GetLength() - first ? GetLength() - first : count;
        return CStringT(m_pText + first, count);
    }
    CStringT& MakeLower()
    {
        ::CharLowerW(GetBuffer(GetLength()));
        return *this;
    }

    /// As printf, with %s for a const WCHAR*: pass a CString as GetString().
    void Format(PCXSTR pFormat, ...)
    {
        va_list arguments;
        va_start(arguments, pFormat);
        const int length = ::_vscwprintf(pFormat, arguments);
        va_end(arguments);
        if (length < 0) // does not fit an int
            throw std::bad_alloc();
        CStringT formatted;
        const PXSTR pBuffer = formatted.GetBuffer(length);
        va_start(arguments, pFormat);
        ::_vsnwprintf_s(pBuffer, static_cast<size_t>(length) + 1, static_cast<size_t>(length), pFormat, arguments);
        va_end(arguments);
        formatted.ReleaseBufferSetLength(length);
        formatted.Swap(*this);
    }

    /// Returns the text, now owned by this string alone, with room for at least length units. The pointer is valid
    /// until the string changes. After a change through it, call ReleaseBuffer or ReleaseBufferSetLength. A buffer that
    /// grows grows by at least half, so that many small additions take linear time.
    PXSTR GetBuffer(int length)
    {
        if (length < GetLength())
            length = GetLength();
        if (IsNil())
            return m_pText = NewText(length);
        if (!IsShared() && Data()->nAllocLength >= length)
            return m_pText;
        CStringT own;
        own.m_pText = NewText(IsShared() ? length : GrownCapacity(length));
        own.Fill(m_pText, GetLength());
        own.Swap(*this);
        return m_pText;
    }
    void ReleaseBufferSetLength(int length) noexcept
    {
        if (IsNil())
            return;
        Data()->nDataLength = length;
        m_pText[length] = 0;
    }
    /// Releases the room that the text does not need.
    void FreeExtra()
    {
        if (Data()->nAllocLength != GetLength())
            SetString(m_pText, GetLength());
    }
    /// length -1: up to the first NUL.
    void ReleaseBuffer(int length = -1) noexcept
    {
        ReleaseBufferSetLength(length >= 0 ? length : static_cast<int>(wcslen(m_pText)));
    }

private:
    struct Nil
    {
        CStringData data;
        XCHAR terminator;
    };

    static PXSTR EmptyText() noexcept
    {
        // Shared by all empty strings, so that they need no allocation. Its reference count never changes.
        static constinit Nil s_nil{{{2}, 0, 0}, 0};
        return reinterpret_cast<PXSTR>(&s_nil.data + 1);
    }
    /// Each library has its own empty text, and strings pass between libraries: another library's has no room, either.
    bool IsNil() const noexcept { return m_pText == EmptyText() || Data()->nAllocLength == 0; }
    bool IsShared() const noexcept { return Data()->nRefs.load(std::memory_order_acquire) != 1; }
    bool HasRoomFor(int count) const noexcept { return !IsShared() && count <= Data()->nAllocLength - GetLength(); }
    int GrownCapacity(int length) const noexcept
    {
        const int capacity = Data()->nAllocLength;
        return capacity > INT_MAX - capacity / 2 ? length : std::max(length, capacity + capacity / 2);
    }
    static int CheckedLength(size_t length)
    {
        if (length > static_cast<size_t>(INT_MAX))
            throw std::bad_alloc();
        return static_cast<int>(length);
    }
    static int LengthOf(PCXSTR pText) { return pText == nullptr ? 0 : CheckedLength(wcslen(pText)); }
    static void Copy(PXSTR pTo, PCXSTR pFrom, int length)
    {
        if (length > 0)
            std::memcpy(pTo, pFrom, static_cast<size_t>(length) * sizeof(XCHAR));
    }

    static PXSTR NewText(int capacity)
    {
        if (capacity == 0)
            return EmptyText();
        void* pBlock = ::operator new(sizeof(CStringData) + (static_cast<size_t>(capacity) + 1) * sizeof(XCHAR));
        auto* pData = new (pBlock) CStringData{{1}, 0, capacity};
        auto* pText = reinterpret_cast<PXSTR>(pData + 1);
        pText[0] = 0;
        return pText;
    }
    CStringData* Data() const noexcept { return reinterpret_cast<CStringData*>(m_pText) - 1; }
    void AddReference() noexcept
    {
        if (!IsNil())
            Data()->nRefs.fetch_add(1, std::memory_order_relaxed);
    }
    void Release() noexcept
    {
        // A single owner cannot gain another one meanwhile.
        if (!IsNil() && (!IsShared() || Data()->nRefs.fetch_sub(1, std::memory_order_acq_rel) == 1))
            ::operator delete(Data());
    }
    void Fill(PCXSTR pText, int length) noexcept
    {
        Copy(m_pText, pText, length);
        ReleaseBufferSetLength(length);
    }
    void Swap(CStringT& other) noexcept { std::swap(m_pText, other.m_pText); }

    PXSTR m_pText;
};
} // namespace ATL

/// The traits of strings in a program that uses MFC as a DLL.
template <typename CharType, class StringIterator = ATL::ChTraitsCRT<CharType>>
class StrTraitMFC_DLL : public StringIterator
{
};

using CString = ATL::CStringT<WCHAR, StrTraitMFC_DLL<WCHAR>>;
