// Only for the stand-in: Windows takes its resources from its own loader.
#include "platform/text.h"
#include "platform/win32/win32.h"
#include "tests/platform/win32/test.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

extern "C" const unsigned char VeltranoResourcesBegin[];
extern "C" const unsigned char VeltranoResourcesEnd[];

namespace
{
const size_t s_size = static_cast<size_t>(VeltranoResourcesEnd - VeltranoResourcesBegin);

/// Reads the first bytes of this program's resources, one of them changed, as those of a module of their own, in a
/// block of exactly their size: everything that is found must lie inside. Returns where the entries end.
std::vector<size_t> ReadCopy(size_t size, size_t changed = s_size, BYTE value = 0)
{
    const std::unique_ptr<BYTE[]> pBytes(new BYTE[size]);
    std::copy_n(VeltranoResourcesBegin, size, pBytes.get());
    if (changed < size)
        pBytes[changed] = value;
    const HINSTANCE module = reinterpret_cast<HINSTANCE>(pBytes.get());
    const CModuleResources resources(module, pBytes.get(), pBytes.get() + size);

    std::vector<size_t> ends;
    for (const CResource& resource : resources.GetResources())
        ends.push_back(static_cast<size_t>(resource.pBytes + resource.size - pBytes.get()));
    for (UINT id = 16; id < 48; ++id)
    {
        LPWSTR pText = nullptr;
        const int units = LoadStringW(module, id, reinterpret_cast<LPWSTR>(&pText), 0);
        EXPECT_TRUE(units == 0 || reinterpret_cast<const BYTE*>(pText + units) <= pBytes.get() + size);
    }
    for (int dialog = DIALOG_EXTENDED; dialog <= DIALOG_CHILD; ++dialog)
        DestroyWindow(CreateDialogParamW(module, MAKEINTRESOURCEW(dialog), nullptr, nullptr, 0));
    return ends;
}
} // namespace

TEST(DamagedResources, AFileCutShortKeepsItsWholeEntries)
{
    const std::vector<size_t> ends = ReadCopy(s_size);
    ASSERT_EQ(ends.size(), 16u); // the empty first one, 5 dialogs, 2 blocks of texts, 8 times bytes
    for (size_t size = 0; size < s_size; ++size)
        ASSERT_EQ(ReadCopy(size).size(), std::upper_bound(ends.begin(), ends.end(), size) - ends.begin()) << size;
}

TEST(DamagedResources, AChangedByteLeadsNowhereElse)
{
    for (size_t i = 0; i < s_size; ++i)
        for (const BYTE value : {0x00, 0xFF})
            for (const size_t end : ReadCopy(s_size, i, value))
                ASSERT_LE(end, s_size) << i;
}
