#pragma once
/// CString: a wide string with shared, counted, copy-on-write text. Only what the module uses, under the original
/// names.
#include "platform/win32/win32.h"

#include <atomic>
#include <climits>
#include <cstdarg>
#include <cstring>
#include <new>
#include <utility>

namespace ATL
{
/// Stands before the text of every string. The text is NUL-terminated; lengths are in units, without the NUL.
struct CStringData
{
    std::atomic<int> references;
    int length;
    int capacity;
};

/// For the module's strings in its MFC: the narrow text that is assigned is in the ANSI code page.
template <typename Char>
struct StrTraitMFC
{
    static int ToWide(const char* pNarrow, int narrowLength, Char* pWide, int room)
    {
        return narrowLength == 0 ? 0 : ::MultiByteToWideChar(CP_ACP, 0, pNarrow, narrowLength, pWide, room);
    }
};

/// Copies share the text until one of them changes it; the count is atomic, a single string is for one thread.
/// Lengths above 2^31 - 1 units are refused with std::bad_alloc.
template <typename BaseType, class Traits>
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
        const int length = Traits::ToWide(pNarrow, narrowLength, nullptr, 0);
        Traits::ToWide(pNarrow, narrowLength, wide.GetBuffer(length), length);
        wide.ReleaseBufferSetLength(length);
        wide.Swap(*this);
        return *this;
    }

    int GetLength() const noexcept { return Data()->length; }
    bool IsEmpty() const noexcept { return GetLength() == 0; }
    PCXSTR GetString() const noexcept { return m_pText; }
    operator PCXSTR() const noexcept { return m_pText; }
    XCHAR GetAt(int index) const noexcept { return m_pText[index]; }

    void Empty() noexcept { CStringT().Swap(*this); }
    void SetString(PCXSTR pText, int length) { CStringT(pText, length).Swap(*this); }

    void Append(PCXSTR pText, int length)
    {
        const CStringT keep = HasRoomBehind(length) ? CStringT() : *this; // pText may point into it
        Copy(GetBufferBehind(length), pText, length);
        ReleaseBufferSetLength(GetLength() + length);
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

    /// By unit value, up to the first NUL: negative, 0 or positive.
    int Compare(PCXSTR pOther) const { return wcscmp(m_pText, pOther); }
    friend bool operator==(const CStringT& left, const CStringT& right) { return left.Compare(right.m_pText) == 0; }
    friend bool operator==(const CStringT& left, PCXSTR pRight) { return left.Compare(pRight) == 0; }
    friend bool operator<(const CStringT& left, const CStringT& right) { return left.Compare(right.m_pText) < 0; }

    /// The index of the first unit of that value from start on, or -1.
    int Find(XCHAR unit, int start = 0) const noexcept
    {
        for (int i = start; i < GetLength(); ++i)
            if (m_pText[i] == unit)
                return i;
        return -1;
    }
    int ReverseFind(XCHAR unit) const noexcept
    {
        for (int i = GetLength() - 1; i >= 0; --i)
            if (m_pText[i] == unit)
                return i;
        return -1;
    }
    /// Out-of-range arguments are taken to the nearest end.
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

    /// printf-like. Only %s with a const WCHAR*, %d, %u, %x and %c are used: pass a CString as GetString().
    void Format(PCXSTR pFormat, ...)
    {
        va_list arguments;
        va_start(arguments, pFormat);
        const int length = ::_vscwprintf(pFormat, arguments);
        va_end(arguments);
        if (length < 0) // more than an int can count
            throw std::bad_alloc();
        CStringT formatted;
        const PXSTR pBuffer = formatted.GetBuffer(length);
        va_start(arguments, pFormat);
        ::_vsnwprintf_s(pBuffer, static_cast<size_t>(length) + 1, static_cast<size_t>(length), pFormat, arguments);
        va_end(arguments);
        formatted.ReleaseBufferSetLength(length);
        formatted.Swap(*this);
    }

    /// Room for at least that many units, the text so far kept, owned by this string alone. The pointer is good until
    /// the string changes; a call of ReleaseBuffer or ReleaseBufferSetLength must follow a change through it.
    PXSTR GetBuffer(int length)
    {
        if (length < GetLength())
            length = GetLength();
        if (IsNil())
            return m_pText = NewText(length);
        if (!IsShared() && Data()->capacity >= length)
            return m_pText;
        CStringT own;
        own.m_pText = NewText(length);
        own.Fill(m_pText, GetLength());
        own.Swap(*this);
        return m_pText;
    }
    /// The place behind the text, with room for that many units more; otherwise as GetBuffer. What grows takes room for
    /// half as much again, so that many small additions cost no more than their sum.
    PXSTR GetBufferBehind(int count)
    {
        const int length = GetLength();
        if (count > INT_MAX - length)
            throw std::bad_alloc();
        const int spare = HasRoomBehind(count) || count > INT_MAX - length - length / 2 ? 0 : length / 2;
        return GetBuffer(length + count + spare) + length;
    }
    void ReleaseBufferSetLength(int length) noexcept
    {
        if (IsNil())
            return;
        Data()->length = length;
        m_pText[length] = 0;
    }
    /// Gives back the room that the text does not need.
    void FreeExtra()
    {
        if (Data()->capacity != GetLength())
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
        // One for all empty strings, so that an empty string needs no allocation. Its count is never touched.
        static constinit Nil s_nil{{{2}, 0, 0}, 0};
        return reinterpret_cast<PXSTR>(&s_nil.data + 1);
    }
    /// Every library has an empty text of its own, and strings pass between them: another one's has no room either.
    bool IsNil() const noexcept { return m_pText == EmptyText() || Data()->capacity == 0; }
    bool IsShared() const noexcept { return Data()->references.load(std::memory_order_acquire) != 1; }
    bool HasRoomBehind(int count) const noexcept { return !IsShared() && count <= Data()->capacity - GetLength(); }
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
            Data()->references.fetch_add(1, std::memory_order_relaxed);
    }
    void Release() noexcept
    {
        // Nobody else can come by the text of a single owner.
        if (!IsNil() && (!IsShared() || Data()->references.fetch_sub(1, std::memory_order_acq_rel) == 1))
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

using CString = ATL::CStringT<WCHAR, ATL::StrTraitMFC<WCHAR>>;
