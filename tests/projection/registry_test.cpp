#include "projection/ProjectionRegistry.h"

#include <gtest/gtest.h>

namespace
{
const CString s_pipe = TEXT(
    "<projectionRegistry><projectionDefinition name=\"UGlwZQ==\" showInLS=\"1\" showInCS=\"0\" showInEditor=\"1\" ")
    TEXT("layerName=\"TDE=\" entityId=\"RTc=\" isActive=\"1\" /></projectionRegistry>");
} // namespace

TEST(ProjectionRegistry, WritesOneLineOfAsciiWhateverItHolds)
{
    CProjectionRegistry registry;
    EXPECT_EQ(CProjectionRegistry::GetConfigurationId(), TEXT("PRJ_REGISTRY"));
    EXPECT_EQ(registry.GetXML(), TEXT("<projectionRegistry></projectionRegistry>"));
    EXPECT_EQ(CProjectionDefinition().GetXML(),
              TEXT("<projectionDefinition name=\"\" showInLS=\"0\" showInCS=\"0\" showInEditor=\"0\" layerName=\"\" ")
                  TEXT("entityId=\"\" isActive=\"0\" />"));
    registry.ParseXML(s_pipe);
    EXPECT_EQ(registry.GetXML(), s_pipe);

    const CString name = TEXT("\"<\u0158\xD83D>'");
    registry.m_definitions[0]->m_name = name;
    registry.m_definitions[0]->m_showInCS = INT_MIN;
    registry.m_definitions.push_back(registry.m_definitions[0]);
    const CString xml = registry.GetXML();
    for (int i = 0; i < xml.GetLength(); ++i)
        ASSERT_LT(xml.GetAt(i), 0x80);
    EXPECT_EQ(registry.ParseXML(xml), 1);
    EXPECT_EQ(registry.GetXML(), xml);
    EXPECT_EQ(registry.m_definitions.at(1)->m_name, name);

    registry.m_definitions[0]->m_name = s_pipe.GetString();             // text of its own
    EXPECT_EQ(registry.ParseXML(registry.m_definitions[0]->m_name), 1); // the text is part of what it replaces
    EXPECT_EQ(registry.GetXML(), s_pipe);
}

// Runtimes differ in what they take for white space or a digit. Here only ASCII counts, and any other unit ends the
// number.
TEST(ProjectionRegistry, ReadsNumbersOfAsciiDigits)
{
    const std::pair<int, std::vector<CString>> rows[] = {
        {0, {TEXT(""), TEXT("- 5"), TEXT("+-5"), TEXT("0x10"), TEXT("\u00A05"), TEXT("\u0665")}},
        {1, {TEXT("01"), TEXT(" \t\n\v\f\r+1x"), TEXT("1\uFF15"), TEXT("1&#65536;2"), TEXT("&#49;")}},
        {INT_MIN, {TEXT("-2147483649")}},
        {INT_MAX, {TEXT("4294967297")}}};
    for (const auto& [number, texts] : rows)
        for (const CString& text : texts)
        {
            CProjectionRegistry registry;
            registry.ParseXML(TEXT("<projectionRegistry><projectionDefinition isActive='") + text +
                              TEXT("' showInCS='-3' isActive='9'/></projectionRegistry>"));
            EXPECT_EQ(registry.m_definitions.at(0)->m_isActive, number) << testing::PrintToString(text.GetString());
            EXPECT_EQ(registry.m_definitions[0]->m_showInCS, -3);
        }
}
