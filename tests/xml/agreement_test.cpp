// The module's document and the plain document must agree in everything visible, on texts with every kind of damage and
// with every version of the hot loops. A failure prints the text, shortened as far as the difference allows, as a
// literal to paste into a test.
#include "tests/reference/BothForms.h"
#include "tests/support/Readable.h"

#include <array>
#include <random>

namespace
{
// How much is tried: least under the sanitizers, less on Windows, since Wine is slow.
#ifdef __SANITIZE_ADDRESS__
constexpr size_t s_level = 0;
#else
constexpr size_t s_level = OnWindows ? 1 : 2;
#endif
constexpr int s_effort = std::array{1, 8, 32}[s_level];

// The pieces of a list in which `|` separates them.
std::vector<WString> Split(const WString& list)
{
    std::vector<WString> pieces(1);
    for (const WCHAR c : list)
        if (c == '|')
            pieces.emplace_back();
        else
            pieces.back() += c;
    return pieces;
}

// False, and a failure, if they differ. A long text is not cut down, since that takes a parse for each try.
bool Agree(CBothForms& forms, WString text)
{
    std::string difference = forms.Compare(text);
    if (difference.empty())
        return true;
    size_t size = text.size() > 20'000 ? 0 : text.size();
    for (; size > 0; size = size / 2)
        for (size_t at = 0; at + size <= text.size();)
        {
            const WString shorter = WString(text).erase(at, size);
            const std::string still = CBothForms().Compare(shorter);
            at += still.empty() ? 1 : 0;
            text = still.empty() ? text : shorter;
            difference = still.empty() ? difference : still;
        }
    ADD_FAILURE() << "TEXT(" << Printable(text.substr(0, 5'000)) << "), " << text.size() << " units\n" << difference;
    return false;
}

// Every text of a row of up to `longest` of the pieces, between prefix and suffix.
void TryEveryRow(const WString& prefix, const std::vector<WString>& pieces, size_t longest, const WString& suffix)
{
    std::vector<size_t> row;
    while (row.size() <= longest)
    {
        WString text = prefix;
        for (const size_t piece : row)
            text += pieces[piece];
        CBothForms forms;
        if (!Agree(forms, text + suffix))
            return;
        size_t place = 0; // count on, in as many digits as the row has pieces
        while (place < row.size() && ++row[place] == pieces.size())
            row[place++] = 0;
        if (place == row.size())
            row.push_back(0);
    }
}

// Writes documents that are nearly right, and damages them.
class CDamagedTexts
{
public:
    WString Next()
    {
        WString text;
        for (int i = Below(3); i >= 0; --i)
            text += Below(3) == 0 ? Content() : Element(Below(7));
        for (int i = Below(8); i > 0 && !text.empty(); --i)
            Damage(text);
        return text;
    }

    int Below(size_t limit) { return static_cast<int>(m_random() % limit); }
    const WString& Pick(const std::vector<WString>& pieces) { return pieces[Below(pieces.size())]; }

private:
    WString Content()
    {
        static const auto s_contents = Split(TEXT("text| \n|x > y|<!-- </a> -->|<!---->|<![CDATA[</a>]]>|<?xml <a> ?>|")
                                                 TEXT("<!ENTITY e '>'>|<!ATTLIST a \">\">|&lt;|<1 'x'>|</>"));
        if (Below(4) != 0)
            return Pick(s_contents);
        WString doctype = TEXT("<!DOCTYPE a [");
        for (int i = Below(4); i > 0; --i)
            doctype += Below(3) == 0 ? Element(0) : Below(2) == 0 ? Pick(m_pieces) : Content();
        return doctype + TEXT("]>");
    }

    WString Element(int depth)
    {
        static const auto s_names = Split(TEXT("a|a|b|aa|a[1]|b=x|\u00FC:<|b\u00FC|longerName|longorName|longerNam"));
        static const auto s_whites = Split(TEXT(" |\n|\t \r"));
        static const auto s_quotes = Split(TEXT("\"|\"|'||"));
        static const auto s_equals = Split(TEXT("=|=|= |\n=| "));
        static const auto s_ends = Split(TEXT("/>| />|/ >"));
        static const auto s_endTagEnds = Split(TEXT(">|>|\t'>"));
        const WString name = Pick(s_names);
        WString text = TEXT("<") + name;
        for (int i = Below(4); i > 0; --i)
        {
            const WString quote = Pick(s_quotes);
            text += Pick(s_whites) + Pick(s_names) + Pick(s_equals) + quote;
            for (int j = Below(4); j > 0; --j)
                text += Below(2) == 0 ? Pick(m_pieces) : Pick(s_names);
            text += WString(Below(8) == 0 ? Below(300) : 0, Below(4) == 0 ? 0x8FFF : 'v') + quote;
        }
        if (Below(3) == 0)
            return text + Pick(s_ends);
        text += TEXT(">");
        for (int i = Below(4); i > 0; --i)
            text += depth > 0 && Below(3) != 0 ? Element(depth - 1) : Content();
        return text + TEXT("</") + (Below(12) == 0 ? Pick(s_names) : name) + Pick(s_endTagEnds);
    }

    void Damage(WString& text)
    {
        // Some have a byte that looks like a delimiter; some are blanks or digits in Unicode, but not here.
        static constexpr WCHAR s_units[] = {0,      1,      0x7F,  0xA0,   0x3C00, 0x13E, 0x8026, 0xFF3C, 0xD83C,
                                            0xFFFF, 0x2003, 0x663, 0xFF11, '<',    '>',   '/',    '"',    '\''};
        const int at = Below(text.size());
        const int other = Below(text.size());
        const int kind = Below(12);
        if (kind < 2)
            text[at] = s_units[Below(std::size(s_units))];
        else if (kind < 5)
            text.erase(at, 1 + Below(4));
        else if (kind < 6)
            text.erase(std::max(at, other));
        else if (kind < 7)
            text.insert(at, Below(70), text[other]); // a run that fills some blocks of a fast search
        else if (kind < 8)
            text.insert(other, WString(text, at, Below(12)));
        else if (kind < 9)
            std::swap(text[at], text[other]);
        else
            text.insert(at, Pick(m_pieces));
    }

    const std::vector<WString> m_pieces = Split(
        TEXT("<|>|/|\"|'|=|&|]]>|-->|?>|<!|<!-|<!D|<!E|<![C|<?|</|</a>|<b>|&amp;|&quot|&#65;|&#x 0x42;|&#-12345;|")
            TEXT("&#65536;|&#x0012345;|\u00FC|\xD834\xDD1E|1| |\\|\v|\u3C3E"));
    std::mt19937 m_random{5489};
};

TEST(XmlAgreement, EveryShortText)
{
    const auto markup = Split(TEXT("<a|<b>|</a>|</b|<|>|/>|/| |\"|'|!|<!D|<!E|<!--|--|<![C|]]|<?|?|=|[]"));
    TryEveryRow(TEXT(""), Split(TEXT("<|>|/|a|\"| |!|-|D")), 3 + s_level, TEXT(""));
    TryEveryRow(TEXT(""), markup, 2 + s_level, TEXT(""));
    TryEveryRow(TEXT("<a><!D"), markup, 2 + s_level / 2, TEXT("></a>"));
    TryEveryRow(TEXT("<a "), Split(TEXT("a|b|=|\"|'|/|>| ")), 3 + s_level, TEXT(">"));
    TryEveryRow(TEXT("<r a=\"&#"), Split(TEXT("0|x|X|41|-|+| \v|;|&lt;|b")), 3 + s_level, TEXT("\" b=';'>"));
}

// After a tag comes one with a name of the same length in which one unit ends the name or opens a quote; and that
// anywhere in a block.
TEST(XmlAgreement, NamesOfOneLength)
{
    const size_t step = std::array{6, 2, 1}[s_level];
    const WString after = TEXT(" b=\">\"/>'") + WString(2 * 64, ' '); // so that both tags lie in what is read at once
    size_t blanks = 0;
    for (size_t length = 2; length < 70; ++length)
        for (size_t at = 1 + blanks % step; at < length; at += step)
            for (const WCHAR* pEnd : {TEXT("\""), TEXT("'"), TEXT("/"), TEXT(">"), TEXT("/> ")})
            {
                const WString name(length, 'n');
                const WString tag = TEXT("<") + name + TEXT(" a=\"1\"/>");
                WString broken = WString(name).replace(at, 1, pEnd);
                broken.resize(length, ' ');
                const WString between(++blanks % 53, ' ');
                if (CBothForms forms; !Agree(forms, tag + between + TEXT("<") + broken + after))
                    return;
            }
}

TEST(XmlAgreement, DamagedTexts)
{
    CDamagedTexts texts;
    auto pForms = std::make_unique<CBothForms>();
    for (int i = 0; i < 5'000 * s_effort; ++i)
    {
        if (i % 8 == 0) // a document that held another text must behave like a new one
            pForms = std::make_unique<CBothForms>();
        if (!Agree(*pForms, texts.Next()))
            return;
    }
}

// More open elements than the parser compares one by one, with names that match only up to a delimiter. And attribute
// searches that run past their tag, where later searches reuse what earlier ones found.
TEST(XmlAgreement, ManyOpenElementsAndSearchesThatRunOn)
{
    const auto openNames = Split(TEXT("<a>|<a>|<a=b>|<a=b[c>|<a==>|<b]>|</a>|</a=>|</a=b>|</a=b[>|</b>|</c>"));
    const auto searches =
        Split(TEXT("<a b=>|<a b=>|<a c=>|<longName x=>|<a x=\">|=a\" \"|<a=\"<b>|a=\"|=|'| b='1'| a = >|</a>|/>|>| c"));
    CDamagedTexts texts;
    for (int i = 0; i < 100 * s_effort; ++i)
    {
        const auto& pieces = i % 2 == 0 ? openNames : searches;
        WString text;
        for (int count = texts.Below(400); count > 0; --count)
            text += pieces[texts.Below(texts.Below(8) == 0 ? pieces.size() : 1 + i / 2 % pieces.size())];
        if (CBothForms forms; !Agree(forms, text))
            return;
    }
}

// Tables of several segments, and levels and lengths that do not fit their bits.
TEST(XmlAgreement, LongTexts)
{
    const auto tags = Split(TEXT("<a>|</a>|<b/>|<b/>|</b>|<b x='1'>|</b>"));
    CDamagedTexts texts;
    WString mixed = TEXT("<r>");
    for (int i = 0; i < 200'000; ++i)
        mixed += texts.Pick(tags);
    const WString blanks(s_level > 0 ? 4'800'000 : 48'000, ' '); // more than 22 bits tell, or 10
    for (const WString& text :
         {Repeated(TEXT("<a/>"), 70'000), Repeated(TEXT("<a\"b>"), 1'000), mixed, mixed.substr(1'000, 50'000),
          Repeated(TEXT("<a>"), 66'000) + Repeated(TEXT("</a >"), 66'000),
          Repeated(TEXT("<a>"), 40) + Repeated(TEXT("<b>"), 40) + TEXT("</c></a></b></a>"),
          TEXT("<a") + blanks + TEXT("></a") + blanks + TEXT(">"), TEXT("<r><a") + blanks + TEXT("></r><b>"),
          blanks + blanks + Repeated(TEXT("<a/>"), 140'000)})
        if (CBothForms forms; !Agree(forms, text))
            return;
}
} // namespace
