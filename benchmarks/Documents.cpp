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
    /// With that many children of the root.
    CGenerator(BenchDocument& document, int children, int recordBytes)
        : m_document(document), m_children(children), m_minRecord(recordBytes), m_maxRecord(recordBytes)
    {
    }

    void Make(char kind);

private:
    std::string& Text() { return m_document.narrowText; }
    bool IsShort(size_t closing)
    {
        return m_children == 0 ? static_cast<int64_t>(Text().size() + closing) < m_characters
                               : m_document.elements <= m_children;
    }
    int Number(int least, int most) { return std::uniform_int_distribution(least, most)(m_random); }
    bool Chance() { return Number(0, 1) != 0; }

    void MakeStorage();
    void MakeRegistry();
    void MakeShortTags();
    void MakeTexts();
    void MakeDeep();

    /// Printable ASCII.
    std::string RandomText(int length);
    void AddAttribute(std::string_view name, std::string_view value);
    void AddStored(std::string_view name, std::string_view text);
    void AddCounted(std::string_view name, std::string_view text);

    BenchDocument& m_document;
    int64_t m_characters = 0;
    int m_children = 0; ///< 0: as many as the characters allow
    int m_minRecord = 200;
    int m_maxRecord = 4000;
    std::mt19937 m_random{Seed};
};

void CGenerator::Make(char kind)
{
    m_document.name = std::string(1, kind);
    switch (kind)
    {
    case 'A':
        MakeStorage();
        break;
    case 'B':
        MakeRegistry();
        break;
    case 'C':
        MakeShortTags();
        break;
    case 'D':
        MakeTexts();
        break;
    default:
        MakeDeep();
        break;
    }
    m_document.text.assign(Text().begin(), Text().end());
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
    m_document.allAttributes.Add(value.data(), value.size());
}

/// An attribute in base64.
void CGenerator::AddStored(std::string_view name, std::string_view text)
{
    AddAttribute(name, Base64EncodeBytes(text.data(), static_cast<uint32_t>(text.size())));
}

/// An attribute that the jobs read, in base64.
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
    m_document.attributeNames = {"id", "cfg"};
    m_document.firstAttribute = "id";
    m_document.secondAttribute = "cfg";
    Text() = "<storage>";
    for (m_document.elements = 1; IsShort(10); ++m_document.elements)
    {
        Text() += "<configuration";
        AddCounted("id", RandomText(20));
        AddCounted("cfg", RandomText(Number(m_minRecord, m_maxRecord)));
        Text() += " />";
    }
    Text() += "</storage>";
}

void CGenerator::MakeRegistry()
{
    m_document.childName = "projectionDefinition";
    m_document.attributeNames = {"name", "showInLS", "showInCS", "showInEditor", "layerName", "entityId", "isActive"};
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
    CGenerator(document, characters).Make(kind);
    return document;
}

BenchDocument MakeSmallDocument(char kind, int children)
{
    BenchDocument document;
    CGenerator(document, children, 200).Make(kind);
    return document;
}

std::string SizeName(int64_t characters)
{
    return characters >= 1000000 ? std::to_string(characters / 1000000) + " MB"
                                 : std::to_string(characters / 1000) + " kB";
}
