// The examples in the documents are what the module reads and writes, and the guide is complete.
#include "configuration/Storage.h"
#include "projection/ProjectionRegistry.h"
#include "projection/base64/Base64.h"
#include "tests/support/Readable.h"
#include "tests/support/TestFiles.h"
#include "tests/support/TestFolder.h"
#include "uistrings/UIStrings.h"

#include <regex>

namespace
{
/// For each match: the whole match, then its groups.
std::vector<std::vector<std::string>> MatchesOf(const std::string& text, const std::string& pattern)
{
    const std::regex regex(pattern);
    std::vector<std::vector<std::string>> matches;
    for (std::sregex_iterator match(text.begin(), text.end(), regex), end; match != end; ++match)
        matches.emplace_back(match->begin(), match->end());
    return matches;
}
} // namespace

TEST(Documents, GuideCoversEveryExportedOperation)
{
    const std::string guide = BytesOf(SOURCE_FOLDER "/docs/plugin-guide.md");
    const auto exports = MatchesOf(BytesOf(SOURCE_FOLDER "/tests/dll/exports.txt"), R"(\nVLT::(C\w+)::([A-Z]\w+)\()");
    EXPECT_GT(exports.size(), 30u);
    for (const auto& names : exports)
    {
        const bool isForUsers = names[1] != names[2] && names[2] != "RegisterCommands"; // no constructor, not private
        EXPECT_TRUE(!isForUsers || !MatchesOf(guide, "`(\\w+::)?" + names[2] + "`").empty()) << names[0];
    }
}

TEST(Documents, XmlExamplesComeBackByteForByte)
{
    const auto blocks = MatchesOf(BytesOf(SOURCE_FOLDER "/docs/formats.md"), "```xml\n([^`]*)\n```");
    ASSERT_EQ(blocks.size(), 2u);
    const CString storageText = Wide(blocks[0][1]);
    const CString registryText = Wide(blocks[1][1]);
    VLT::CStorage storage;
    ASSERT_EQ(storage.ParseXML(storageText), 1);
    EXPECT_EQ(storage.GetXML(), storageText);
    const auto pRecord = storage.GetConfigurationById(CProjectionRegistry::GetConfigurationId());
    ASSERT_TRUE(pRecord);
    CProjectionRegistry registry;
    EXPECT_EQ(registry.ParseXML(pRecord->GetCfg()), 1);
    EXPECT_EQ(registry.GetXML(), pRecord->GetCfg());

    ASSERT_EQ(registry.ParseXML(registryText), 1);
    EXPECT_EQ(registry.GetXML(), registryText);
    ASSERT_EQ(registry.m_definitions.size(), 1u);
    EXPECT_EQ(registry.m_definitions[0]->m_name, TEXT("Pipe"));
}

TEST(Documents, Base64ExamplesAreWhatIsStored)
{
    const auto rows =
        MatchesOf(BytesOf(SOURCE_FOLDER "/docs/formats.md"), R"(\| `([^`]*)` \| `([^`]*)` \| `([^`]*)` \|)");
    EXPECT_EQ(rows.size(), 2u);
    for (const auto& row : rows)
    {
        EXPECT_EQ(EncodeTextValue(Wide(row[1])), Wide(row[2])) << row[0];
        EXPECT_EQ(DecodeTextValue(Wide(row[2])), Wide(row[1])) << row[0];
        const std::string head = Base64DecodeBytes(row[2]).c_str(); // a C text ends at the first NUL
        EXPECT_EQ(DecodeTextValue(Wide(Base64EncodeBytes(head.data(), static_cast<uint32_t>(head.size())))),
                  Wide(row[3]));
    }
}

TEST(Documents, StringFileExampleIsRead)
{
    const auto blocks = MatchesOf(BytesOf(SOURCE_FOLDER "/docs/formats.md"), "```text\n([^`]*)```");
    ASSERT_EQ(blocks.size(), 1u);
    const CTestFile file(blocks[0][1], TEXT("documents_test.dat"));
    CUIStrings* pStrings = CUIStrings::Instance(); // the first call sets the language
    CUIStrings::LoadFile(TEXT("document"), file.GetPath());
    CUIStrings::m_currentLanguage = TEXT("document");
    for (const auto& [id, pText] :
         {std::pair(0, TEXT("note")), {2, TEXT("Projection")}, {3, TEXT("Layer")}, {4, TEXT("Entity, or group")}})
        EXPECT_EQ(pStrings->GetString(id), pText) << id;
}
