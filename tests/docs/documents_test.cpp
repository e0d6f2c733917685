// The documents' examples are true: code is what is compiled, and texts are what the module reads and writes.
#include "configuration/Storage.h"

#include <gtest/gtest.h>

#include <fstream>
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
} // namespace

TEST(Documents, GuideShowsTheCodeThatIsCompiled)
{
    const std::string compiled = ReadSource("tests/docs/plugin_guide.cpp");
    const auto blocks = BlocksOf(ReadSource("docs/plugin-guide.md"), "cpp");
    EXPECT_EQ(blocks.size(), 4u);
    for (const std::string& block : blocks)
        EXPECT_NE(compiled.find(block), std::string::npos) << block;
}

TEST(Documents, StorageExampleComesBackByteForByte)
{
    const auto blocks = BlocksOf(ReadSource("docs/formats.md"), "xml");
    ASSERT_EQ(blocks.size(), 2u);
    const std::string line = blocks[0].substr(0, blocks[0].size() - 1);
    VLT::CStorage storage;
    ASSERT_EQ(storage.ParseXML(WString(line.begin(), line.end()).c_str()), 1);
    EXPECT_TRUE(storage.GetXML() == WString(line.begin(), line.end()).c_str());
    const auto pRecord = storage.GetConfigurationById(TEXT("PRJ_REGISTRY"));
    ASSERT_TRUE(pRecord);
    EXPECT_TRUE(pRecord->GetCfg() == TEXT("<projectionRegistry></projectionRegistry>"));
}
