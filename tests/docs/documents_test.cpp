// The documents' examples are what the module reads and writes, and the guide is complete.
#include "configuration/Storage.h"
#include "projection/Base64.h"
#include "projection/ProjectionRegistry.h"
#include "tests/uistrings/test_files.h"
#include "uistrings/UIStrings.h"

#include <regex>
#include <sstream>

namespace
{
std::string ReadSource(const std::string& path)
{
    const std::ifstream file(std::string(SOURCE_FOLDER) + "/" + path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// The blocks of a document that are fenced with the given word.
std::vector<std::string> BlocksOf(const std::string& document, const std::string& word)
{
    const std::string fence = "```" + word + "\n";
    std::vector<std::string> blocks;
    for (size_t at = document.find(fence); at != std::string::npos; at = document.find(fence, at + 1))
    {
        const size_t first = at + fence.size();
        blocks.push_back(document.substr(first, document.find("```", first) - first));
    }
    return blocks;
}

CString Wide(const std::string& utf8)
{
    WString text(utf8.size(), WCHAR{0});
    ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), static_cast<int>(utf8.size()), text.data(),
                          static_cast<int>(text.size()));
    return text.c_str();
}
} // namespace

TEST(Documents, GuideTellsOfEveryExportedOperation)
{
    const std::string guide = ReadSource("docs/plugin-guide.md");
    const std::string exports = ReadSource("tests/dll/exports.txt");
    const std::regex operation(R"(\nVLT::(C\w+)::([A-Z]\w+)\()");
    int operations = 0;
    for (std::sregex_iterator match(exports.begin(), exports.end(), operation), end; match != end; ++match)
    {
        const std::string name = (*match)[2];
        if (name == (*match)[1] || name == "RegisterCommands") // constructors; private
            continue;
        ++operations;
        EXPECT_TRUE(std::regex_search(guide, std::regex("`([A-Za-z]+::)?" + name + "`"))) << name;
    }
    EXPECT_EQ(operations, 33);
}

TEST(Documents, XmlExamplesComeBackByteForByte)
{
    const auto blocks = BlocksOf(ReadSource("docs/formats.md"), "xml");
    ASSERT_EQ(blocks.size(), 2u);
    VLT::CStorage storage;
    ASSERT_EQ(storage.ParseXML(Wide(blocks[0])), 1);
    EXPECT_EQ(storage.GetXML() + TEXT("\n"), Wide(blocks[0]));
    const auto pRecord = storage.GetConfigurationById(CProjectionRegistry::GetConfigurationId());
    ASSERT_TRUE(pRecord);
    CProjectionRegistry registry;
    EXPECT_EQ(registry.ParseXML(pRecord->GetCfg()), 1);
    EXPECT_EQ(registry.GetXML(), pRecord->GetCfg());

    ASSERT_EQ(registry.ParseXML(Wide(blocks[1])), 1);
    EXPECT_EQ(registry.GetXML() + TEXT("\n"), Wide(blocks[1]));
    ASSERT_EQ(registry.m_definitions.size(), 1u);
    EXPECT_EQ(registry.m_definitions[0]->m_name, TEXT("Pipe"));
}

TEST(Documents, Base64ExamplesAreWhatIsStored)
{
    const std::string document = ReadSource("docs/formats.md");
    const std::regex row(R"(\n\| `([^`]*)` \| `([^`]*)` \| `([^`]*)` \|)");
    int rows = 0;
    for (std::sregex_iterator match(document.begin(), document.end(), row), end; match != end; ++match, ++rows)
    {
        const CString text = Wide((*match)[1]);
        const CString stored = Wide((*match)[2]);
        EXPECT_EQ(EncodeTextValue(text), stored) << match->str();
        EXPECT_EQ(DecodeTextValue(stored), text) << match->str();
        const std::string head = Base64DecodeBytes((*match)[2]).c_str(); // a C text ends at the first NUL
        EXPECT_EQ(DecodeTextValue(Wide(Base64EncodeBytes(head.data(), static_cast<uint32_t>(head.size())))),
                  Wide((*match)[3]));
    }
    EXPECT_EQ(rows, 2);
}

TEST(Documents, StringFileExampleIsRead)
{
    const auto blocks = BlocksOf(ReadSource("docs/formats.md"), "text");
    ASSERT_EQ(blocks.size(), 1u);
    const CTestFile file(blocks[0]);
    CUIStrings* pStrings = CUIStrings::Instance(); // the first call sets the language
    CUIStrings::LoadFile(TEXT("document"), file.GetPath());
    CUIStrings::m_currentLanguage = TEXT("document");
    for (const auto& [id, pText] :
         {std::pair(0, TEXT("note")), {2, TEXT("Projection")}, {3, TEXT("Layer")}, {4, TEXT("Entity, or group")}})
        EXPECT_EQ(pStrings->GetString(id), pText) << id;
}
