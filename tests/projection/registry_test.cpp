#include "projection/ProjectionRegistry.h"

#include <gtest/gtest.h>

#include <utility>

using testing::PrintToString;

namespace
{
/// "name,LS,CS,editor,layer,entity,active;" for each definition.
CString ContentOf(const CProjectionRegistry& registry)
{
    CString content;
    for (const auto& p : registry.m_definitions)
    {
        CString line;
        line.Format(TEXT("%s,%d,%d,%d,%s,%s,%d;"), p->m_name.GetString(), p->m_showInLS, p->m_showInCS,
                    p->m_showInEditor, p->m_layerName.GetString(), p->m_entityId.GetString(), p->m_isActive);
        content += line;
    }
    return content;
}

const WCHAR* const s_pPipe =
    TEXT("<projectionRegistry><projectionDefinition name=\"UGlwZQ==\" showInLS=\"1\" showInCS=\"0\" ")
        TEXT("showInEditor=\"1\" layerName=\"TDE=\" entityId=\"RTc=\" isActive=\"1\" /></projectionRegistry>");
} // namespace

TEST(ProjectionRegistry, ReadsWhatATextStillSays)
{
    const struct
    {
        CString xml;
        int result;
        const WCHAR* pContent;
    } rows[] = {
        {nullptr, 0, TEXT("")},
        {TEXT("<ProjectionRegistry/>"), 0, TEXT("")},
        {TEXT("<x>") + CString(s_pPipe) + TEXT("</x>"), 0, TEXT("")},
        {TEXT("<projectionRegistry />"), 1, TEXT("")},
        {TEXT("<projectionRegistry></projectionRegistry>"), 1, TEXT("")},
        {TEXT("<projectionRegistry><projectionDefinition/></other>"), 1, TEXT("")},
        {s_pPipe, 1, TEXT("Pipe,1,0,1,L1,E7,1;")},
        {TEXT("t<a/>") + CString(s_pPipe) + TEXT("<projectionRegistry/>"), 1, TEXT("Pipe,1,0,1,L1,E7,1;")},
        {TEXT("<projectionRegistry><x/><projectionDefinition/><projectionDefinition isActive='+7x' entityId='RTc' ")
             TEXT("showInLS=' -3' showInLS='4' x='5' showInEditor='99999999999' layerName='!' name='QQ=='/>")
                 TEXT("</projectionRegistry>"),
         1, TEXT(",0,0,0,,,0;A,-3,0,2147483647,,E7,7;")}};
    for (const auto& row : rows)
    {
        CProjectionRegistry registry;
        registry.ParseXML(s_pPipe);
        EXPECT_EQ(registry.ParseXML(row.xml), row.result) << PrintToString(row.xml.GetString());
        EXPECT_EQ(ContentOf(registry), row.pContent) << PrintToString(row.xml.GetString());
    }
}

TEST(ProjectionRegistry, ARootWithoutItsEndTagIsEmpty)
{
    const int startTag = 20;
    for (int length = 0; length < CString(s_pPipe).GetLength(); ++length)
    {
        CProjectionRegistry registry;
        EXPECT_EQ(registry.ParseXML(CString(s_pPipe).Left(length)), length < startTag ? 0 : 1) << length;
        EXPECT_TRUE(registry.m_definitions.empty()) << length;
    }
}

// The same in every runtime: what is white space or a digit only in some of them ends the number.
TEST(ProjectionRegistry, NumbersAreAscii)
{
    const std::pair<CString, int> rows[] = {{TEXT("01"), 1},
                                            {TEXT(" \t\n\v\f\r5"), 5},
                                            {TEXT("- 5"), 0},
                                            {TEXT("+-5"), 0},
                                            {TEXT("-2147483649"), INT_MIN},
                                            {TEXT("4294967297"), INT_MAX},
                                            {TEXT("0x10"), 0},
                                            {TEXT("x"), 0},
                                            {TEXT("\u00A0"
                                                  "5"),
                                             0},
                                            {TEXT("1\uFF15"), 1},
                                            {TEXT("\u0665"), 0},
                                            {TEXT("1&#65536;2"), 1}};
    for (const auto& [text, number] : rows)
    {
        CProjectionRegistry registry;
        registry.ParseXML(TEXT("<projectionRegistry><projectionDefinition isActive=\"") + text +
                          TEXT("\"/></projectionRegistry>"));
        ASSERT_EQ(registry.m_definitions.size(), 1U);
        EXPECT_EQ(registry.m_definitions[0]->m_isActive, number) << PrintToString(text.GetString());
    }
}

TEST(ProjectionRegistry, WritesOneLineOfAscii)
{
    CProjectionRegistry registry;
    EXPECT_EQ(CProjectionRegistry::GetConfigurationId(), TEXT("PRJ_REGISTRY"));
    EXPECT_EQ(registry.GetXML(), TEXT("<projectionRegistry></projectionRegistry>"));
    registry.ParseXML(s_pPipe);
    EXPECT_EQ(registry.GetXML(), s_pPipe);

    const auto pPipe = registry.m_definitions[0];
    registry.m_definitions.push_back(pPipe);
    pPipe->m_name = TEXT("\"<\u0158\u00ED\xD83D>'");
    pPipe->m_showInCS = INT_MIN;
    const CString content = ContentOf(registry);
    const CString xml = registry.GetXML();
    for (int i = 0; i < xml.GetLength(); ++i)
        ASSERT_LT(xml.GetAt(i), 0x80);
    EXPECT_EQ(registry.ParseXML(xml), 1);
    EXPECT_EQ(ContentOf(registry), content);
    // The text may be part of what is being replaced.
    registry.m_definitions[0]->m_name = s_pPipe;
    EXPECT_EQ(registry.ParseXML(registry.m_definitions[0]->m_name), 1);
    EXPECT_EQ(registry.GetXML(), s_pPipe);
}
