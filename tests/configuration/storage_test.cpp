#include "configuration/Storage.h"

#include "platform/win32/win32.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <cstdio>
#include <optional>

using testing::PrintToString;
using VLT::CConfiguration;
using VLT::CStorage;
using Record = boost::shared_ptr<CConfiguration>;

namespace
{
const WCHAR* const s_pFile = TEXT("storage_test_\u017E.xml");

Record MakeRecord(const WCHAR* pId, const WCHAR* pCfg)
{
    const auto pRecord = boost::make_shared<CConfiguration>();
    pRecord->SetId(pId);
    pRecord->SetCfg(pCfg);
    return pRecord;
}

/// "id=cfg," for the vector, "|", and the same for the map, with its keys.
CString ContentOf(CStorage& storage)
{
    CString content;
    for (const Record& pRecord : *storage.GetConfigurationVector())
        content += pRecord->GetId() + TEXT("=") + pRecord->GetCfg() + TEXT(",");
    content += TEXT("|");
    for (const auto& [id, pRecord] : *storage.GetConfigurationMapById())
        content += id + TEXT("=") + pRecord->GetCfg() + TEXT(",");
    return content;
}

CStorage MakeStorage()
{
    CStorage storage;
    for (const WCHAR* pId : {TEXT("b"), TEXT("a"), TEXT("b")})
        storage.AddConfiguration(MakeRecord(pId, storage.GetConfigurationVector()->size() < 2 ? TEXT("1") : TEXT("2")));
    return storage;
}

void WriteFile(const std::string& bytes)
{
    FILE* pFile = _wfopen(s_pFile, TEXT("wb"));
    ASSERT_NE(pFile, nullptr);
    std::fwrite(bytes.data(), 1, bytes.size(), pFile);
    std::fclose(pFile);
}
} // namespace

// What is left of a text, damaged or not. QQ== is A, Qg== is B.
TEST(Storage, ReadsWhatATextStillSays)
{
    const struct
    {
        const WCHAR* pXml;
        int result;
        const WCHAR* pContent;
    } rows[] = {
        {nullptr, 0, TEXT("|")},
        {TEXT(""), 0, TEXT("|")},
        {TEXT("<Storage></Storage>"), 0, TEXT("|")},
        {TEXT("<x><storage><configuration id=\"QQ==\"/></storage></x>"), 0, TEXT("|")},
        {TEXT("<storage"), 0, TEXT("|")},
        {TEXT("<storage a='b' "), 0, TEXT("|")},
        {TEXT("<storage></storage>"), 1, TEXT("|")},
        {TEXT("<storage />"), 1, TEXT("|")},
        // The root without its end tag loses its children; another element loses them to the root.
        {TEXT("<storage><configuration id=\"QQ==\"/>"), 1, TEXT("|")},
        {TEXT("<storage><configuration id=\"QQ==\"/></stor"), 1, TEXT("|")},
        {TEXT("<storage><configuration id=\"QQ==\"/></other>"), 1, TEXT("|")},
        {TEXT("<x><storage><configuration id=\"QQ==\"/></storage>"), 1, TEXT("A=,|A=,")},
        {TEXT("<storage><configuration id=\"Qg==\"/><x><configuration id=\"QQ==\"/></storage>"), 1,
         TEXT("B=,A=,|A=,B=,")},
        {TEXT("<storage><configuration id=\"Qg==\"><configuration id=\"QQ==\"/></storage>"), 1, TEXT("B=,A=,|A=,B=,")},
        {TEXT("t<a/><storage><configuration id=\"QQ==\"/></storage><storage><configuration/></storage>"), 1,
         TEXT("A=,|A=,")},
        {TEXT("<storage><configuration cfg=\"QQ==\"/><configuration/></storage>"), 1, TEXT("=A,=,|=A,")},
        {TEXT("<storage><configuration id cfg=\"!\"/><configuration id=\"QQ!\"/></storage>"), 1,
         TEXT("\u0089=,A=,|A=,\u0089=,")},
        {TEXT("<storage><configuration id='QQ==' cfg='QQ=='/><configuration id='QQ==' cfg='Qg=='/></storage>"), 1,
         TEXT("A=A,A=B,|A=A,")},
        {TEXT("<?xml version=\"1.0\"?>\r\n<!-- a --><storage>\n\t<other id=\"QQ==\"/>text\n\t<configuration x=\"\" "
              "cfg='Q&#103;==' ") TEXT("id=\"QQ==\" id=\"Qg==\">\n<configuration/></configuration>\n</storage>"),
         1, TEXT("A=B,|A=B,")}};
    for (const auto& row : rows)
    {
        CStorage storage = MakeStorage();
        EXPECT_EQ(storage.ParseXML(row.pXml), row.result) << PrintToString(row.pXml);
        EXPECT_EQ(ContentOf(storage), row.pContent) << PrintToString(row.pXml);
    }
}

TEST(Storage, WritesTheVectorInOneLineAndReadsItBack)
{
    CStorage storage;
    EXPECT_EQ(storage.GetXML(), TEXT("<storage></storage>"));
    storage.AddConfiguration(MakeRecord(TEXT("PRJ_REGISTRY"), TEXT("<projectionRegistry></projectionRegistry>")));
    EXPECT_EQ(storage.GetXML(), TEXT("<storage><configuration id=\"UFJKX1JFR0lTVFJZ\" cfg=\"")
                                    TEXT("PHByb2plY3Rpb25SZWdpc3RyeT48L3Byb2plY3Rpb25SZWdpc3RyeT4=\" /></storage>"));
    CStorage source = MakeStorage();
    EXPECT_EQ(storage.ParseXML(source.GetXML()), 1);
    EXPECT_EQ(ContentOf(storage), TEXT("b=1,a=1,b=2,|a=1,b=1,"));
    // The text may be part of what is being replaced.
    storage.GetConfigurationMapById()->try_emplace(TEXT("<storage/>"), storage.GetConfigurationById(TEXT("a")));
    EXPECT_EQ(storage.ParseXML(storage.GetConfigurationMapById()->begin()->first), 1);
    EXPECT_EQ(ContentOf(storage), TEXT("|"));
}

TEST(Storage, RemovesByRecordFromTheVectorAndByIdentifierFromTheMap)
{
    CStorage storage = MakeStorage();
    storage.RemoveConfiguration(storage.GetConfigurationVector()->back());
    EXPECT_EQ(ContentOf(storage), TEXT("b=1,a=1,|a=1,"));
    storage.RemoveConfiguration(MakeRecord(TEXT("a"), TEXT(""))); // a stranger of that identifier
    EXPECT_EQ(ContentOf(storage), TEXT("b=1,a=1,|"));
    const Record pTwice = storage.GetConfigurationVector()->front();
    storage.AddConfiguration(pTwice);
    storage.RemoveConfiguration(pTwice);
    EXPECT_EQ(ContentOf(storage), TEXT("a=1,b=1,|"));

    storage = MakeStorage();
    const Record pRenamed = storage.GetConfigurationById(TEXT("b"));
    pRenamed->SetId(TEXT("a"));
    EXPECT_EQ(storage.GetConfigurationById(TEXT("b")), pRenamed);
    storage.RemoveConfiguration(pRenamed); // "a" goes, though it was another's; "b" keeps the record
    EXPECT_EQ(ContentOf(storage), TEXT("a=1,b=2,|b=1,"));

    storage.AddConfiguration(nullptr);
    storage.RemoveConfiguration(nullptr);
    EXPECT_EQ(ContentOf(storage), TEXT("a=1,b=2,|b=1,"));
    storage.AddConfiguration(MakeRecord(TEXT(""), TEXT("3")));
    EXPECT_EQ(storage.GetConfigurationById(nullptr)->GetCfg(), TEXT("3"));
    EXPECT_EQ(storage.GetConfigurationById(TEXT("B")), nullptr);
}

TEST(Storage, CopiesShareRecordsAndDeepCopiesDoNot)
{
    CStorage storage = MakeStorage();
    CStorage copy(storage);
    CStorage deep = copy;
    storage.MakeDeepCopy(deep);
    storage.MakeDeepCopy(storage);
    storage.GetConfigurationById(TEXT("a"))->SetCfg(TEXT("9"));
    storage = *&storage;
    EXPECT_EQ(ContentOf(storage), TEXT("b=1,a=9,b=2,|a=9,b=1,"));
    storage.Clear();
    EXPECT_EQ(ContentOf(storage), TEXT("|"));
    EXPECT_EQ(ContentOf(copy), TEXT("b=1,a=9,b=2,|a=9,b=1,"));
    EXPECT_EQ(ContentOf(deep), TEXT("b=1,a=1,b=2,|a=1,b=1,"));
}

TEST(Storage, LoadsOnlyFaultlessFiles)
{
    const std::string text = "<storage>\n<configuration id=\"QQ==\" cfg=\"Qg==\"/></storage>\n";
    const struct
    {
        std::optional<std::string> bytes;
        int result;
        const WCHAR* pContent;
    } rows[] = {{std::nullopt, 0, TEXT("a=1,|a=1,")},
                {"", 0, TEXT("a=1,|a=1,")},
                {"<storage>", 0, TEXT("a=1,|a=1,")},
                {text + "<storage/>", 0, TEXT("a=1,|a=1,")},
                {"<other/>", 0, TEXT("|")},
                {text, 1, TEXT("A=B,|A=B,")},
                {"\xEF\xBB\xBF" + text, 1, TEXT("A=B,|A=B,")},
                {"\xFF" + text, 1, TEXT("A=B,|A=B,")}};
    for (const auto& row : rows)
    {
        ::DeleteFileW(s_pFile);
        if (row.bytes)
            WriteFile(*row.bytes);
        CStorage storage;
        storage.AddConfiguration(MakeRecord(TEXT("a"), TEXT("1")));
        EXPECT_EQ(storage.Load(s_pFile), row.result) << row.bytes.value_or("no file");
        EXPECT_EQ(ContentOf(storage), row.pContent) << row.bytes.value_or("no file");
    }
    CStorage storage = MakeStorage();
    for (const WCHAR* pPath : {static_cast<const WCHAR*>(nullptr), TEXT("."), TEXT("no_such_folder/a.xml")})
        EXPECT_TRUE(storage.Load(pPath) == 0 && storage.Save(pPath) == 0) << PrintToString(pPath);
    EXPECT_EQ(storage.Save(TEXT("/dev/full")), 0);
    EXPECT_EQ(ContentOf(storage), TEXT("b=1,a=1,b=2,|a=1,b=1,"));

    WriteFile(std::string(1000, 'x'));
    EXPECT_EQ(storage.Save(s_pFile), 1);
    CStorage loaded;
    EXPECT_EQ(loaded.Load(s_pFile), 1);
    EXPECT_EQ(ContentOf(loaded), ContentOf(storage));
    ::DeleteFileW(s_pFile);
}
