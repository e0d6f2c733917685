#include "configuration/Configuration.h"

#include <gtest/gtest.h>

#include <utility>

using VLT::CConfiguration;

namespace
{
CConfiguration Record(const WCHAR* pId, const WCHAR* pCfg)
{
    CConfiguration record;
    record.SetId(pId);
    record.SetCfg(pCfg);
    return record;
}
} // namespace

TEST(Configuration, WritesItsElement)
{
    const std::pair<CConfiguration, CString> rows[] = {
        {CConfiguration(), TEXT("<configuration id=\"\" cfg=\"\" />")},
        {Record(nullptr, nullptr), TEXT("<configuration id=\"\" cfg=\"\" />")},
        {Record(TEXT("A&B"), TEXT("")), TEXT("<configuration id=\"QSZC\" cfg=\"\" />")},
        {Record(TEXT("A"), TEXT("<a b=\"c\"/>")), TEXT("<configuration id=\"QQ==\" cfg=\"PGEgYj0iYyIvPg==\" />")}};
    for (auto [record, element] : rows)
    {
        EXPECT_TRUE(record.GetXML() == element);
        WStringStream stream;
        stream << TEXT("(");
        stream.width(200); // of the caller's next output, not of ours
        record.GetXML(stream);
        EXPECT_TRUE(stream.str() == (TEXT("(") + element).GetString());
    }
}

TEST(Configuration, CopiesAreIndependent)
{
    CConfiguration source = Record(TEXT("A"), TEXT("B"));
    CConfiguration target = Record(TEXT("X"), TEXT("Y"));
    CConfiguration copy(source);
    source.MakeDeepCopy(target);
    source.MakeDeepCopy(source);
    source.GetCfg().GetBuffer(1)[0] = TEXT('Z');
    EXPECT_TRUE(source.GetXML() == target.GetXML());
    source.SetCfg(TEXT("C"));
    copy.SetId(TEXT("D"));
    EXPECT_TRUE(source.GetId() == TEXT("A") && source.GetCfg() == TEXT("C"));
    EXPECT_TRUE(target.GetId() == TEXT("A") && target.GetCfg() == TEXT("B"));
    EXPECT_TRUE(copy.GetId() == TEXT("D") && copy.GetCfg() == TEXT("B"));
}
