#include "benchmarks/Documents.h"

#include "projection/base64/Base64.h"

#include <random>
#include <string_view>

namespace
{
constexpr unsigned Seed = 20;
constexpr int DeepLevels = 10000;

class CGenerator
{
public:
    CGenerator(BenchDocument& document, int64_t characters) : m_document(document), m_characters(characters) {}

    void Make(char kind);

private:
    std::string& Text() { return m_document.narrowText; }
    bool IsShort(size_t closing) { return static_cast<int64_t>(Text().size() + closing) < m_characters; }
    int Number(int least, int most) { return std::uniform_int_distribution(least, most)(m_random); }
    bool Chance() { return Number(0, 1) != 0; }

    void MakeStorage();
    void MakeRegistry();
    void MakeShortTags();
    void MakeTexts();
    void MakeDeep();

    /// ASCII that can be printed.
    std::string RandomText(int length);
    void AddAttribute(std::string_view name, std::string_view value);
    void AddStored(std::string_view name, std::string_view text);
    void AddCounted(std::string_view name, std::string_view text);

    BenchDocument& m_document;
    int64_t m_characters;
    std::mt19937 m_random{Seed};
};

void CGenerator::Make(char kind)
{
    switch (kind)
    {
    case 'A':
        return MakeStorage();
    case 'B':
        return MakeRegistry();
    case 'C':
        return MakeShortTags();
    case 'D':
        return MakeTexts();
    default:
        return MakeDeep();
    }
}

std::string CGenerator::RandomText(int length)
{
    std::string text(static_cast<size_t>(length), 0);
    for (char& unit : text)
        unit = static_cast<char>(Number(' ', '~'));
    return text;
}

void CGenerator::AddAttribute(std::string_view name, std::string_view value)
{
    Text().append(" ").append(name).append("=\"").append(value).append("\"");
}

/// An attribute in base64.
void CGenerator::AddStored(std::string_view name, std::string_view text)
{
    AddAttribute(name, Base64EncodeBytes(text.data(), static_cast<uint32_t>(text.size())));
}

/// One that the jobs read.
void CGenerator::AddCounted(std::string_view name, std::string_view text)
{
    AddStored(name, text);
    m_document.texts.Add(text.data(), text.size());
    const size_t length = (text.size() + 2) / 3 * 4;
    m_document.attributes.Add(Text().data() + Text().size() - 1 - length, length);
}

void CGenerator::MakeStorage()
{
    m_document.childName = "configuration";
    m_document.firstAttribute = "id";
    m_document.secondAttribute = "cfg";
    Text() = "<storage>";
    for (m_document.elements = 1; IsShort(10); ++m_document.elements)
    {
        Text() += "<configuration";
        AddCounted("id", RandomText(20));
        AddCounted("cfg", RandomText(Number(200, 4000)));
        Text() += " />";
    }
    Text() += "</storage>";
}

void CGenerator::MakeRegistry()
{
    m_document.childName = "projectionDefinition";
    m_document.firstAttribute = "name";
    m_document.secondAttribute = "entityId";
    Text() = "<projectionRegistry>";
    for (m_document.elements = 1; IsShort(21); ++m_document.elements)
    {
        Text() += "<projectionDefinition";
        AddCounted("name", RandomText(Number(4, 20)));
        for (const char* pName : {"showInLS", "showInCS", "showInEditor"})
            AddAttribute(pName, Chance() ? "1" : "0");
        AddStored("layerName", RandomText(Number(2, 10)));
        AddCounted("entityId", RandomText(Number(2, 8)));
        AddAttribute("isActive", Chance() ? "1" : "0");
        Text() += " />";
    }
    Text() += "</projectionRegistry>";
}

void CGenerator::MakeShortTags()
{
    Text() = "<r>";
    for (m_document.elements = 1; IsShort(4); ++m_document.elements)
        Text() += "<a/>";
    Text() += "</r>";
}

void CGenerator::MakeTexts()
{
    Text() = "<texts>";
    for (m_document.elements = 1; IsShort(8); ++m_document.elements)
    {
        Text() += "<p>";
        for (int words = Number(50, 600); words > 0; --words)
        {
            for (int letters = Number(1, 12); letters > 0; --letters)
                Text() += static_cast<char>(Number('a', 'z'));
            Text() += words % 15 == 0 ? '\n' : ' ';
        }
        Text() += "</p>";
    }
    Text() += "</texts>";
}

void CGenerator::MakeDeep()
{
    Text() = "<r>";
    m_document.elements = 1;
    while (IsShort(4))
    {
        for (int level = 0; level < DeepLevels; ++level)
            Text() += "<a>";
        for (int level = 0; level < DeepLevels; ++level)
            Text() += "</a>";
        m_document.elements += DeepLevels;
    }
    Text() += "</r>";
}
} // namespace

BenchDocument MakeBenchDocument(char kind, int64_t characters)
{
    BenchDocument document;
    document.name = std::string(1, kind);
    CGenerator(document, characters).Make(kind);
    document.text.assign(document.narrowText.begin(), document.narrowText.end());
    return document;
}

std::string SizeName(int64_t characters)
{
    return characters >= 1000000 ? std::to_string(characters / 1000000) + " MB"
                                 : std::to_string(characters / 1000) + " kB";
}
