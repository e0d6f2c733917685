#include "configuration/Storage.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

using VLT::CConfiguration;
using VLT::CStorage;

namespace
{
boost::shared_ptr<CConfiguration> Record(const WCHAR* pId, const WCHAR* pCfg)
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
    for (const auto& pRecord : *storage.GetConfigurationVector())
        content += pRecord->GetId() + TEXT("=") + pRecord->GetCfg() + TEXT(",");
    content += TEXT("|");
    for (const auto& [id, pRecord] : *storage.GetConfigurationMapById())
        content += id + TEXT("=") + pRecord->GetCfg() + TEXT(",");
    return content;
}

CStorage MakeStorage()
{
    CStorage storage;
    storage.AddConfiguration(Record(TEXT("b"), TEXT("1")));
    storage.AddConfiguration(Record(TEXT("a"), TEXT("1")));
    storage.AddConfiguration(Record(TEXT("b"), TEXT("2")));
    return storage;
}
} // namespace

TEST(Storage, WritesTheVectorInOneLineAndReadsItBack)
{
    CStorage storage;
    EXPECT_EQ(storage.GetXML(), TEXT("<storage></storage>"));
    storage.AddConfiguration(Record(TEXT("A&B"), TEXT("<a b=\"c\"/>")));
    storage.AddConfiguration(Record(nullptr, nullptr));
    EXPECT_EQ(storage.GetXML(), TEXT("<storage><configuration id=\"QSZC\" cfg=\"PGEgYj0iYyIvPg==\" />")
                                    TEXT("<configuration id=\"\" cfg=\"\" /></storage>"));
    WStringStream stream;
    stream.width(200); // must not affect the element
    storage.GetConfigurationById(TEXT("A&B"))->GetXML(stream);
    EXPECT_EQ(storage.GetConfigurationById(TEXT("A&B"))->GetXML(), stream.str().c_str());

    EXPECT_EQ(storage.ParseXML(MakeStorage().GetXML()), 1);
    EXPECT_EQ(ContentOf(storage), TEXT("b=1,a=1,b=2,|a=1,b=1,"));
    CStorage many; // ParseXML builds the map from sorted records, AddConfiguration one by one
    for (unsigned i = 0, random = 7; i < 500; ++i, random = random * 1664525 + 1013904223)
    {
        CString id, cfg;
        id.Format(TEXT("%s%x"), TEXT("\u00E4aaaaa") + (random >> 20) % 6, random >> 28);
        cfg.Format(TEXT("%u"), i);
        many.AddConfiguration(Record(id, cfg));
    }
    EXPECT_EQ(storage.ParseXML(many.GetXML()), 1);
    EXPECT_EQ(ContentOf(storage), ContentOf(many));
    storage.GetConfigurationMapById()->try_emplace(TEXT("<storage/>"), Record(TEXT(""), TEXT("")));
    EXPECT_EQ(storage.ParseXML(storage.GetConfigurationMapById()->begin()->first),
              1); // the text is part of the content
    EXPECT_EQ(ContentOf(storage), TEXT("|"));
}

TEST(Storage, RemovesByRecordFromTheVectorAndByIdentifierFromTheMap)
{
    CStorage storage = MakeStorage();
    storage.RemoveConfiguration(storage.GetConfigurationVector()->back());
    EXPECT_EQ(ContentOf(storage), TEXT("b=1,a=1,|a=1,"));
    storage.RemoveConfiguration(Record(TEXT("a"), TEXT(""))); // another record with that identifier
    EXPECT_EQ(ContentOf(storage), TEXT("b=1,a=1,|"));
    storage.AddConfiguration(storage.GetConfigurationVector()->front());
    storage.RemoveConfiguration(storage.GetConfigurationVector()->back());
    EXPECT_EQ(ContentOf(storage), TEXT("a=1,b=1,|"));

    storage = MakeStorage();
    const auto pRenamed = storage.GetConfigurationById(TEXT("b"));
    pRenamed->SetId(TEXT("a"));
    EXPECT_EQ(storage.GetConfigurationById(TEXT("b")), pRenamed);
    storage.RemoveConfiguration(pRenamed); // removes the map's "a", which is another record; "b" keeps this one
    EXPECT_EQ(ContentOf(storage), TEXT("a=1,b=2,|b=1,"));
    storage.AddConfiguration(nullptr);
    storage.RemoveConfiguration(nullptr);
    storage.AddConfiguration(Record(nullptr, TEXT("3")));
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
    const auto pShared = storage.GetConfigurationById(TEXT("a"));
    CConfiguration single;
    pShared->MakeDeepCopy(single);
    pShared->GetCfg().GetBuffer(1)[0] = TEXT('Z');
    pShared->SetCfg(TEXT("9"));
    storage = *&storage;
    EXPECT_EQ(ContentOf(storage), TEXT("b=1,a=9,b=2,|a=9,b=1,"));
    storage.Clear();
    EXPECT_EQ(ContentOf(storage), TEXT("|"));
    EXPECT_EQ(ContentOf(copy), TEXT("b=1,a=9,b=2,|a=9,b=1,"));
    EXPECT_EQ(ContentOf(deep), TEXT("b=1,a=1,b=2,|a=1,b=1,"));
    EXPECT_EQ(single.GetXML(), Record(TEXT("a"), TEXT("1"))->GetXML());
}

TEST(Storage, LoadsOnlyFaultlessFiles)
{
    const CTestFolder folder;
    const WString file = folder.Path(TEXT("\u017E.xml"));
    const CString before = TEXT("b=1,a=1,b=2,|a=1,b=1,");
    const CString loaded = TEXT("A=B,|A=B,");
    const std::string text = "<storage>\n<configuration id=\"QQ==\" cfg=\"Qg==\"/></storage>\n";
    const std::tuple<std::string, int, CString> rows[] = {{"", 0, before},
                                                          {"<storage>", 0, before},
                                                          {text + "<storage/>", 0, before},
                                                          {"<other/>", 0, TEXT("|")},
                                                          {text + "\xFF", 1, loaded},
                                                          {text, 1, loaded},
                                                          {"\xEF\xBB\xBF" + text, 1, loaded}};
    for (const auto& [bytes, result, content] : rows)
    {
        folder.Write(u"\u017E.xml", bytes.c_str());
        CStorage storage = MakeStorage();
        EXPECT_EQ(storage.Load(file.c_str()), result) << bytes;
        EXPECT_EQ(ContentOf(storage), content) << bytes;
    }
    CStorage storage = MakeStorage();
    for (const WCHAR* pPath :
         {static_cast<const WCHAR*>(nullptr), TEXT("."), TEXT("no_such_folder/a.xml"), TEXT("/dev/full")})
        EXPECT_TRUE(storage.Load(pPath) == 0 && storage.Save(pPath) == 0) << testing::PrintToString(pPath);
    EXPECT_EQ(ContentOf(storage), before);
    EXPECT_EQ(storage.Save(file.c_str()), 1); // over the longer file
    storage.Clear();
    EXPECT_EQ(storage.Load(file.c_str()), 1);
    EXPECT_EQ(ContentOf(storage), before);
}
