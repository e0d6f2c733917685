// Storage and registry are read by the same rules, so one table serves both.
#include "configuration/Storage.h"
#include "projection/ProjectionRegistry.h"
#include "projection/base64/Base64.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

using testing::PrintToString;

namespace
{
CString RegistryTextFor(const WCHAR* pStorageText)
{
    WString text = pStorageText;
    const WCHAR* const words[] = {
        TEXT("storage"),       TEXT("projectionRegistry"),   TEXT("Storage"), TEXT("ProjectionRegistry"),
        TEXT("configuration"), TEXT("projectionDefinition"), TEXT(" id"),     TEXT(" name")};
    for (size_t i = 0; i < std::size(words); i += 2)
        for (size_t at; (at = text.find(words[i])) != WString::npos;)
            text.replace(at, wcslen(words[i]), words[i + 1]);
    return text.c_str();
}
} // namespace

TEST(Parsing, ReadsWhatADamagedTextStillSays)
{
    const std::tuple<int, CString, std::vector<const WCHAR*>> rows[] = {
        // the result, the identifiers that are read, and the texts
        {0,
         TEXT(""),
         {TEXT(""), TEXT("<Storage></Storage>"), TEXT("<x><storage><configuration id='QQ=='/></storage></x>"),
          TEXT("<storage a='b' ")}},
        {1,
         TEXT(""),
         {TEXT("<storage></storage>"), TEXT("<storage />"),
          // A root without its end tag loses its children; another element loses them to the root.
          TEXT("<storage><configuration id='QQ=='/>"), TEXT("<storage><configuration id='QQ=='/></storage"),
          TEXT("<storage><configuration id='QQ=='/></other>")}},
        {1,
         TEXT("BA"),
         {TEXT("<x><storage><configuration id='Qg=='/><configuration id='QQ=='/></storage>"),
          TEXT("<storage><configuration id='Qg=='/><x><configuration id='QQ=='/></storage>"),
          TEXT("<storage><configuration id='Qg=='><configuration id='QQ=='/></storage>"),
          TEXT("t<a/><storage><configuration id='QkE='/></storage>t<storage><configuration id='Qg=='/></storage>"),
          TEXT("<storage><configuration/><configuration id='!'/><configuration id='QkE!'/></storage>"),
          TEXT("<?xml version='1.0'?>\r\n<!-- a --><storage>\n\t<other id='Qg=='/>t\n\t<configuration x=\"\" "
               "id=\"Q&#103;==\" id='QQ=='>")
              TEXT("<configuration/>\n</configuration>\n<configuration id = 'QQ==' /></storage>")}}};
    for (const auto& [result, expectedIds, texts] : rows)
        for (const WCHAR* pXml : texts)
        {
            VLT::CStorage storage;
            storage.AddConfiguration(boost::make_shared<VLT::CConfiguration>());
            EXPECT_EQ(storage.ParseXML(pXml), result) << PrintToString(pXml);
            CProjectionRegistry registry;
            registry.m_definitions.push_back(boost::make_shared<CProjectionDefinition>());
            EXPECT_EQ(registry.ParseXML(RegistryTextFor(pXml)), result) << PrintToString(pXml);
            CString ids, names;
            for (const auto& pRecord : *storage.GetConfigurationVector())
                ids += pRecord->GetId();
            for (const auto& pDefinition : registry.m_definitions)
                names += pDefinition->m_name;
            EXPECT_TRUE(ids == expectedIds && names == expectedIds) << PrintToString(pXml);
            EXPECT_EQ(storage.ParseXML(nullptr) + registry.ParseXML(nullptr), 0);
            EXPECT_TRUE(storage.GetConfigurationMapById()->empty() && registry.m_definitions.empty());
        }
}

// Long values with other attributes around them, and with a reference or a character that is not base64 inside.
TEST(Parsing, ReadsLongValuesWhole)
{
    for (const size_t length : {30, 60, 66, 3000})
    {
        const CString text = WString(length, TEXT('t')).c_str();
        const WString value = EncodeTextValue(text).GetString();
        const WString other = TEXT(" other=\"") + WString(3 * length, TEXT('a')) + TEXT("\"");
        const auto withReference = [&](size_t at)
        {
            CString reference;
            reference.Format(TEXT("&#%d;"), value[at]);
            return WString(value).replace(at, 1, reference.GetString());
        };
        const WString attributes[] = {TEXT(" id=\"") + value + TEXT("\""),
                                      TEXT(" id=\"") + value + TEXT("\"") + other,
                                      other + TEXT(" id=\"") + value + TEXT("\" "),
                                      TEXT(" id=\"") + value + TEXT("! dHR0\"") + other,
                                      TEXT(" id=\"") + withReference(0) + TEXT("\""),
                                      TEXT(" id=\"") + withReference(value.size() / 2) + TEXT("\"") + other,
                                      TEXT(" id='") + value + TEXT("'") + other};
        for (const WString& attribute : attributes)
        {
            VLT::CStorage storage;
            storage.ParseXML((TEXT("<storage><configuration") + attribute + TEXT("/></storage>")).c_str());
            ASSERT_EQ(storage.GetConfigurationVector()->size(), 1U);
            EXPECT_EQ(storage.GetConfigurationVector()->front()->GetId(), text) << PrintToString(attribute);
        }
    }
}
