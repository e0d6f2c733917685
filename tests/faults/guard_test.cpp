// Texts that end right before an inaccessible page. A read past the end crashes every build, with or without
// sanitizers.
#include "platform/compiler.h"
#include "projection/base64/Base64.h"
#include "projection/base64/Base64Ascii.h"
#include "uistrings/TextFileReader.h"
#include "xml/XmlAttributes.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNames.h"
#include "xml/fast/XmlTagIndex.h"

#include <gtest/gtest.h>

#include <algorithm>
#ifndef _WIN32
#include <sys/mman.h>
#endif

namespace
{
constexpr size_t PageSize = 4096;
constexpr size_t Room = 4 * PageSize;

class CGuardedRoom
{
public:
    CGuardedRoom()
    {
#ifdef _WIN32
        DWORD before = 0;
        m_pRoom =
            static_cast<char*>(::VirtualAlloc(nullptr, Room + PageSize, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
        if (m_pRoom == nullptr || !::VirtualProtect(m_pRoom + Room, PageSize, PAGE_NOACCESS, &before))
            throw std::bad_alloc();
#else
        void* pRoom = mmap(nullptr, Room + PageSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (pRoom == MAP_FAILED || mprotect(static_cast<char*>(pRoom) + Room, PageSize, PROT_NONE) != 0)
            throw std::bad_alloc();
        m_pRoom = static_cast<char*>(pRoom);
#endif
    }
    CGuardedRoom(const CGuardedRoom&) = delete;
    CGuardedRoom& operator=(const CGuardedRoom&) = delete;
    ~CGuardedRoom()
    {
#ifdef _WIN32
        ::VirtualFree(m_pRoom, 0, MEM_RELEASE);
#else
        munmap(m_pRoom, Room + PageSize);
#endif
    }

    /// Copies the units so that the last one lies right before the inaccessible page. Valid until the next Put.
    const WCHAR* Put(const WCHAR* pUnits, size_t count)
    {
        auto* pCopy = reinterpret_cast<WCHAR*>(m_pRoom + Room) - count;
        std::copy_n(pUnits, count, pCopy);
        return pCopy;
    }
    /// The same for a text with its NUL.
    const WCHAR* PutText(const WString& text)
    {
        return Put(text.c_str(), text.size() + 1);
    }

private:
    char* m_pRoom = nullptr;
};

class Guarded : public testing::Test
{
public:
    CGuardedRoom m_room;
};

const WString s_document = TEXT("<r><tag aa=\"a value > of some length\" bb='&amp;' longerName=\"\u20AC\xFF01\" "
                                "c=x/><b></b><!-- note --><![CDATA[x]]>")
    TEXT("text 'quoted' &#65;<deep><er x=\"1\"/></deep></wrong><?pi y?><!DOCTYPE z [<!ENTITY a>]><last attribute=\"")
        TEXT("0123456789012345678901234567890123456789012345678901234567890123456789&lt;\"/></r>");
} // namespace

TEST_F(Guarded, TheParserAndItsSearches)
{
    const auto forms = {&s_sse2Loops, HasAvx2() ? &s_avx2Loops : &s_sse2Loops};
    for (size_t length = 0; length <= s_document.size(); ++length)
    {
        const WString text = s_document.substr(0, length);
        const int count = static_cast<int>(length);
        CXmlDocument plain;
        plain.SetText(text.c_str());

        const WCHAR* pText = m_room.PutText(text);
        CXmlDocument document;
        document.ParseInPlace({pText, length});
        ASSERT_EQ(document.m_usedPositions, plain.m_usedPositions) << length;
        document.FindElement(WString(40, TEXT('x')).c_str()); // longer than what is left of the text after some tags
        for (int i = 1; i < plain.m_usedPositions; ++i)
        {
            const WString name = TEXT("longerName");
            const int tagName = plain.At(i).start + 1;
            XmlScanner attribute{.next = tagName, .text = pText};
            if (ScanAttribute(attribute, name.c_str()))
                DecodeEntities(pText + attribute.first, attribute.last - attribute.first + 1);
            for (const XmlVectorLoops* pLoops : forms)
                pLoops->pFindAttribute(pText, count, tagName, count, FirstToken(name.c_str()));
        }

        const WCHAR* pUnits = m_room.Put(text.c_str(), length); // these take a length and need no NUL
        for (int from = 0; from <= count; ++from)
        {
            for (const XmlVectorLoops* pLoops : forms)
            {
                pLoops->pFindUnit(pUnits, from, count, TEXT('^'));
                XmlTagBlocks known;
                pLoops->pIndexBlocks(pUnits + from, (count - from) / UnitsPerBlock, known);
                pLoops->pCopyValue(pUnits + from, count - from, WString(length, 0).data());
            }
            FindUnit(pUnits, from, count, TEXT('^'));
            FindTagNameEnd(pUnits, from, count);
        }
    }
}

TEST_F(Guarded, TheCodec)
{
    for (const WCHAR unit : {TEXT('a'), TEXT('\u00FC'), TEXT('\u20AC')})
        for (size_t length = 0; length < 120; ++length)
        {
            WString text(length, TEXT('t'));
            if (length != 0)
                text.back() = unit;
            const CString value = EncodeTextValue(text.c_str());
            ASSERT_EQ(EncodeTextValue(m_room.PutText(text)), value);
            for (const int cut : {0, 1, 2})
            {
                const CString part = value.Left(value.GetLength() - cut);
                const CString decoded = DecodeTextValue(part);
                ASSERT_EQ(DecodeTextValue(m_room.PutText(part.GetString())), decoded);
                CString ascii;
                DecodeAsciiText(m_room.Put(part, static_cast<size_t>(part.GetLength())),
                                static_cast<size_t>(part.GetLength()), ascii);
            }
            CString ascii;
            AppendAsciiValue(m_room.Put(text.c_str(), length), length, ascii);
        }
}
