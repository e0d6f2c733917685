// Each vector form beside the plain one, on random texts of what they look for, at random places.
#include "xml/XmlScanner.h"
#include "xml/fast/XmlPlainAttributes.h"
#include "xml/fast/XmlTagEnds.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

namespace
{
using Text = std::vector<WCHAR>; // a block of its own length, so that a read behind it shows under the sanitizers

Text MakeText(std::mt19937& random, size_t length, int rarity)
{
    constexpr WCHAR marks[] = {'"', '\'', '>',  '<',  '/', ' ',    '-',    '.',    '=',
                               '?', '\t', '\n', '\r', '&', 0x8000, 0xFF22, 0x3E00, 0};
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
    ends.push_back(KnownBlocks::NoEnd);
    ASSERT_EQ(std::vector<int>(known.ends, known.ends + ends.size()), ends);
    ASSERT_EQ(known.open, open);
}

class VectorForms : public testing::TestWithParam<const XmlVectorSteps*>
{
    void SetUp() override
    {
        if (GetParam() == &s_avx2Steps && !HasAvx2())
            GTEST_SKIP() << "this processor has no AVX2";
    }
};

TEST_P(VectorForms, AgreeWithThePlainOne)
{
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

        Text copy(text.size() - static_cast<size_t>(from));
        const int copied = GetParam()->pCopyValue(text.data() + from, length - from, copy.data());
        ASSERT_EQ(from + copied, FindPlainly(text, from, [](WCHAR unit) { return unit == '"' || unit == '&'; }));
        ASSERT_TRUE(std::equal(copy.begin(), copy.begin() + copied, text.begin() + from)) << "round " << round;

        const WCHAR open = std::array<WCHAR, 3>{0, '"', '\''}[random() % 3];
        const int blocks = std::min((length - from) / UnitsPerBlock, KnownBlocks::Most);
        KnownBlocks known;
        known.first = from;
        known.open = open;
        GetParam()->pReadBlocks(text.data() + from, blocks, known);
        ASSERT_NO_FATAL_FAILURE(ExpectPlainBlocks(text, from, open, known, blocks)) << "round " << round;
    }
}

// What it finds or finds missing is what the token by token look does; and it is sure of nearly all plain tags.
TEST_P(VectorForms, FindTheAttributesThatTheScannerFinds)
{
    const auto piece = [](std::mt19937& random)
    {
        const WString pieces[] = {TEXT(" a=\"1\""),
                                  TEXT(" bb=\"2 > 1\""),
                                  TEXT("\t\r\n ccc=\"\""),
                                  TEXT("dd=\"x\""),
                                  TEXT(" bb='3'"),
                                  TEXT(" ccc"),
                                  TEXT(" a=4"),
                                  TEXT(" bb = \"5\""),
                                  TEXT("\""),
                                  TEXT("'"),
                                  TEXT("="),
                                  TEXT("/"),
                                  TEXT(">"),
                                  TEXT(" "),
                                  TEXT("?"),
                                  TEXT(" x=\"a\"bb=\"6\""),
                                  TEXT(" bb\tccc=\"7\""),
                                  TEXT(" x=\"?\" y=\"/\""),
                                  TEXT(" \x8000=\"\x3D00\""),
                                  TEXT(" \u0159a=\"8\""),
                                  TEXT("\u0159=\"\"")};
        const bool isPlain = random() % 16 != 0;
        const WString value(random() % 8 == 0 ? random() % 300 : random() % 6, 'v');
        WString name(random() % 64 == 0 ? 62 + random() % 4 : 1 + random() % 3, static_cast<WCHAR>('a' + random() % 4));
        if (random() % 4 == 0)
            name = TEXT("long") + name + TEXT("name");
        return isPlain ? TEXT(" ") + name + TEXT("=\"") + value + TEXT("\"") : pieces[random() % std::size(pieces)];
    };
    const WString longest(UnitsPerBlock, 'b');
    const WString tooLong(UnitsPerBlock + 1, 'b');
    std::mt19937 random(11);
    int outcomes[3] = {};
    for (int round = 0; round < 60000; ++round)
    {
        WString text = TEXT("<") + WString(1 + random() % 70, 'n');
        for (unsigned count = random() % 12; count != 0; --count)
            text += piece(random);
        text += WString(random() % 4 == 0 ? TEXT("") : TEXT("/>")) + WString(random() % 80, ' ');
        if (random() % 8 == 0)
            text[1 + random() % (text.size() - 1)] = 0;
        for (const WCHAR* pName :
             {TEXT("a"), TEXT("bb"), TEXT("ccc"), TEXT("n"), TEXT("dd[1]"), TEXT(""), TEXT("a\"bb"), TEXT("bb\tccc"),
              TEXT("\x8000"), TEXT("\u0159a"), TEXT("longaname"), longest.c_str(), tooLong.c_str()})
        {
            const PlainAttribute plain =
                GetParam()->pFindAttribute(text.c_str(), static_cast<int>(text.size()), 1, pName);
            const size_t end = text.find('"', static_cast<size_t>(plain.first));
            const bool isCut = text.find(WCHAR(0), static_cast<size_t>(plain.first)) < end;
            ++outcomes[plain.outcome];
            if (plain.outcome == PlainAttribute::NotPlain ||
                (plain.outcome == PlainAttribute::Found && (isCut || end == WString::npos)))
                continue;
            XmlScanner scanner{.next = 1, .text = text.c_str()};
            ASSERT_EQ(ScanAttribute(scanner, pName), plain.outcome == PlainAttribute::Found) << "round " << round;
            if (plain.outcome == PlainAttribute::Found)
            {
                ASSERT_EQ(std::pair(scanner.first, scanner.last + 1), std::pair(plain.first, static_cast<int>(end)));
            }
        }
    }
    EXPECT_GT(outcomes[PlainAttribute::Found], 40000);
    EXPECT_GT(outcomes[PlainAttribute::Missing], 100000);
}

INSTANTIATE_TEST_SUITE_P(EachWidth, VectorForms, testing::Values(&s_sse2Steps, &s_avx2Steps));
} // namespace
