// Only for the stand-in: Windows reads the resources of its own loader, and does not survive damaged ones.
#include "platform/text.h"
#include "platform/win32/win32.h"
#include "tests/platform/win32/test.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

extern "C" const unsigned char VeltranoResourcesBegin[];
extern "C" const unsigned char VeltranoResourcesEnd[];

namespace
{
const size_t s_size = static_cast<size_t>(VeltranoResourcesEnd - VeltranoResourcesBegin);

/// The first bytes of this program's resources as those of a module of their own, in a block of exactly their size.
class CResourceCopy
{
public:
    explicit CResourceCopy(size_t size) : m_pBytes(new BYTE[size]), m_size(size)
    {
        std::memcpy(m_pBytes.get(), VeltranoResourcesBegin, size);
    }

    /// Uses everything that can be found in it; every result must lie inside.
    void Read()
    {
        const HINSTANCE module = reinterpret_cast<HINSTANCE>(this);
        const CModuleResources resources(module, m_pBytes.get(), m_pBytes.get() + m_size);
        m_found = resources.GetResources();
        for (const CResource& resource : m_found)
        {
            ASSERT_GE(resource.pBytes, m_pBytes.get());
            ASSERT_LE(resource.pBytes + resource.size, m_pBytes.get() + m_size);
        }
        for (UINT id = 16; id < 48; ++id)
        {
            LPWSTR pText = nullptr;
            const int units = LoadStringW(module, id, reinterpret_cast<LPWSTR>(&pText), 0);
            const auto* pEnd = reinterpret_cast<const BYTE*>(pText + units);
            ASSERT_TRUE(units == 0 || pEnd <= m_pBytes.get() + m_size);
        }
        for (const int dialog : {DIALOG_EXTENDED, DIALOG_STANDARD, DIALOG_UNKNOWN_CLASS, DIALOG_SHOWN, DIALOG_CHILD})
        {
            const HWND window = CreateDialogParamW(module, MAKEINTRESOURCEW(dialog), nullptr, nullptr, 0);
            ASSERT_EQ(DestroyWindow(window), window != nullptr);
        }
    }

    std::unique_ptr<BYTE[]> m_pBytes;
    size_t m_size;
    std::vector<CResource> m_found;
};
} // namespace

TEST(DamagedResources, AFileCutShortKeepsItsWholeEntries)
{
    CResourceCopy whole(s_size);
    whole.Read();
    ASSERT_EQ(whole.m_found.size(), 16u); // the empty first one, 5 dialogs, 2 blocks of texts, 8 times bytes
    for (size_t size = 0; size < s_size; ++size)
    {
        CResourceCopy copy(size);
        copy.Read();
        size_t expected = 0;
        for (const CResource& resource : whole.m_found)
            expected += resource.pBytes + resource.size <= whole.m_pBytes.get() + size;
        ASSERT_EQ(copy.m_found.size(), expected) << size;
    }
}

TEST(DamagedResources, AChangedByteLeadsNowhereElse)
{
    for (size_t i = 0; i < s_size; ++i)
        for (const BYTE value : {0x00, 0xFF})
        {
            CResourceCopy copy(s_size);
            copy.m_pBytes[i] = value;
            copy.Read();
        }
}
