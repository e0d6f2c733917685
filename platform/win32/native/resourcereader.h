#pragma once
/// Reads the little-endian records of compiled resources. Internal to the stand-in.
#include "platform/win32/native/resources.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

/// Reads borrowed bytes in order. A read past their end returns 0, and so do all later reads.
class CResourceReader
{
public:
    CResourceReader(const BYTE* pBytes, size_t size) : m_pBytes(pBytes), m_size(size) {}

    bool HasFailed() const { return m_failed; }
    size_t GetPosition() const { return m_position; }
    size_t GetRest() const { return m_size - m_position; }

    WORD ReadWord() { return Read<WORD>(); }
    DWORD ReadDword() { return Read<DWORD>(); }
    short ReadShort() { return Read<short>(); }

    /// Reads the unit 0xFFFF and a number, or a NUL-terminated text.
    CResourceName ReadName()
    {
        CResourceName name;
        WCHAR unit = ReadWord();
        if (unit == 0xFFFF)
        {
            name.number = ReadWord();
            return name;
        }
        for (; unit != 0; unit = ReadWord())
            name.text += unit;
        return name;
    }

    void Skip(size_t count)
    {
        m_failed = m_failed || count > GetRest();
        if (!m_failed)
            m_position += count;
    }

    /// Moves to the next multiple of 4, or to the end if that comes first: the last record need not be padded.
    void Align() { Skip(std::min((4 - m_position % 4) % 4, GetRest())); }

private:
    template <class T>
    T Read()
    {
        const size_t start = m_position;
        Skip(sizeof(T));
        T value = 0;
        if (!m_failed)
            std::memcpy(&value, m_pBytes + start, sizeof(T));
        return value;
    }

    const BYTE* m_pBytes;
    size_t m_size;
    size_t m_position = 0;
    bool m_failed = false;
};
