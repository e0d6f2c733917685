// Each vector form beside the plain one, on random texts of what they look for, at random places.
#include "xml/XmlTagEnds.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

namespace
{
using Text = std::vector<WCHAR>; // a block of its own length, so that a read behind it shows under the sanitizers

Text MakeText(std::mt19937& random, size_t length, int rarity)
{
    constexpr WCHAR marks[] = {'"', '\'', '>', '<', '/', ' ', '-', '.', 0x8000, 0xFF22, 0x3E00, 0};
    Text text(length, 'x');
    for (WCHAR& unit : text)
        if (random() % static_cast<unsigned>(rarity) == 0)
            unit = marks[random() % (std::size(marks) - (random() % 64 == 0 ? 0 : 1))];
    return text;
}

template <typename IsWanted>
int FindPlainly(const Text& text, int from, IsWanted isWanted)
{
    while (from < static_cast<int>(text.size()) && text[static_cast<size_t>(from)] != 0 &&
           !isWanted(text[static_cast<size_t>(from)]))
        ++from;
    return from;
}

// What is known of the blocks, unit by unit; those behind the first NUL's are none.
void ExpectPlainBlocks(const Text& text, int first, WCHAR open, const KnownBlocks& known, int asked)
{
    int blocks = 0;
    std::vector<int> ends;
    for (WCHAR quote = open; blocks < asked; ++blocks)
    {
        const int block = first + blocks * UnitsPerBlock;
        if (FindPlainly(text, block, [](WCHAR) { return false; }) < block + UnitsPerBlock)
            break;
        uint64_t inside = 0;
        for (int i = 0; i < UnitsPerBlock; ++i)
        {
            const WCHAR unit = text[static_cast<size_t>(block + i)];
            if (quote == 0 ? unit == '"' || unit == '\'' : unit == quote)
                quote = quote == 0 ? unit : WCHAR{0};
            if (quote != 0)
                inside |= uint64_t{1} << i;
            else if (unit == '>')
                ends.push_back(block + i);
        }
        ASSERT_EQ(known.inside[blocks], inside);
        open = quote;
    }
    ASSERT_EQ(known.length, static_cast<unsigned>(blocks * UnitsPerBlock));
    ASSERT_EQ(std::vector<int>(known.ends, known.ends + known.endCount), ends);
    ASSERT_EQ(known.open, open);
}

class VectorForms : public testing::TestWithParam<const XmlVectorSteps*>
{
};

TEST_P(VectorForms, AgreeWithThePlainOne)
{
    if (GetParam() == &s_avx2Steps && !HasAvx2())
        GTEST_SKIP() << "this processor has no AVX2";
    std::mt19937 random(7);
    for (int round = 0; round < 4000; ++round)
    {
        const Text text = MakeText(random, random() % 2600, 1 << random() % 9);
        const int length = static_cast<int>(text.size());
        const int from = static_cast<int>(random() % (text.size() + 1));
        for (const WCHAR wanted : {'<', '"', '&'})
        {
            const int found = FindPlainly(text, from, [=](WCHAR unit) { return unit == wanted; });
            ASSERT_EQ(GetParam()->pFindUnit(text.data(), from, length, wanted), found) << "round " << round;
            ASSERT_EQ(FindUnit(text.data(), from, length, wanted), found) << "round " << round;
        }
        ASSERT_EQ(FindNameEnd(text.data(), from, length),
                  FindPlainly(text, from,
                              [](WCHAR unit) { return WString(TEXT("\"'>/ \t\n\r")).find(unit) != WString::npos; }));

        const WCHAR open = std::array<WCHAR, 3>{0, '"', '\''}[random() % 3];
        const int blocks = std::min((length - from) / UnitsPerBlock, KnownBlocks::Most);
        KnownBlocks known;
        known.first = from;
        known.open = open;
        GetParam()->pReadBlocks(text.data() + from, blocks, known);
        ASSERT_NO_FATAL_FAILURE(ExpectPlainBlocks(text, from, open, known, blocks)) << "round " << round;
    }
}

INSTANTIATE_TEST_SUITE_P(EachWidth, VectorForms, testing::Values(&s_sse2Steps, &s_avx2Steps));
} // namespace
