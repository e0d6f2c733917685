// Memory that runs out at any allocation: the exception passes through, nothing is left behind, and the objects stay
// sound.
#include "commands/CommandManager.h"
#include "configuration/Storage.h"
#include "projection/ProjectionRegistry.h"
#include "projection/base64/Base64.h"
#include "tests/faults/Allocation.h"
#include "uistrings/UIStrings.h"
#include "xml/XmlDocument.h"
#include "xml/XmlFile.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace
{
const WCHAR* const s_pFile = TEXT("allocation_test.tmp");

WString Repeated(const WCHAR* pText, int count)
{
    WString text;
    while (count-- > 0)
        text += pText;
    return text;
}

boost::shared_ptr<VLT::CConfiguration> MakeConfiguration(const WCHAR* pId, const WCHAR* pCfg)
{
    auto pConfiguration = boost::make_shared<VLT::CConfiguration>();
    pConfiguration->SetId(pId);
    pConfiguration->SetCfg(pCfg);
    return pConfiguration;
}

void FillStorage(VLT::CStorage& storage)
{
    storage.AddConfiguration(MakeConfiguration(TEXT("one"), TEXT("first")));
    storage.AddConfiguration(MakeConfiguration(TEXT("two"), TEXT("\u0159\u20AC"))); // by way of the plain base64
}

void FillFile(const char* pBytes)
{
    std::ofstream(std::filesystem::path(s_pFile), std::ios::binary) << pBytes;
}

class AllocationFailure : public testing::Test
{
public:
    ~AllocationFailure() override { std::filesystem::remove(s_pFile); }
};
} // namespace

TEST_F(AllocationFailure, InTheXmlDocument)
{
    const WString before = TEXT("<a b=\"1\"/>");
    const WString deep =
        TEXT("<r>") + Repeated(TEXT("<a b='&lt;'>"), 1100) + Repeated(TEXT("</a>"), 1099) + TEXT("</x></r>");
    Allocation::FailEach(
        [&](auto perform)
        {
            CXmlDocument document;
            document.SetText(before.c_str());
            perform([&] { document.SetText(deep.c_str()); });
            EXPECT_TRUE(document.SetText(before.c_str()));
            EXPECT_TRUE(document.FindElement(TEXT("a")));
            EXPECT_EQ(document.GetAttribute(TEXT("b")), TEXT("1"));
        });
    Allocation::FailEach(
        [&](auto perform)
        {
            CXmlDocument document;
            document.SetText(deep.c_str());
            document.FindElement(TEXT("r"));
            document.EnterElement();
            document.FindElement(TEXT("a"));
            perform([&] { document.GetAttribute(TEXT("b")); });
            EXPECT_EQ(document.GetAttribute(TEXT("b")), TEXT("<"));
        });
    Allocation::FailEach([](auto perform) { perform([] { CXmlDocument(); }); });
}

TEST_F(AllocationFailure, InTheCodec)
{
    for (const WCHAR* pText : {TEXT("plain"), TEXT("M\u00FCller"), TEXT("\u0158\u00EDp \xD83D\xDE00 \xD800")})
    {
        const CString value = EncodeTextValue(pText);
        Allocation::FailEach([&](auto perform) { perform([&] { EncodeTextValue(pText); }); });
        Allocation::FailEach([&](auto perform) { perform([&] { DecodeTextValue(value); }); });
        EXPECT_EQ(DecodeTextValue(value), pText);
    }
}

// What an operation reads into is as it was, or holds some of the new; what it reads from is as it was.
TEST_F(AllocationFailure, InTheStorage)
{
    VLT::CStorage filled;
    FillStorage(filled);
    const CString xml = filled.GetXML();
    filled.Save(s_pFile);

    using Operation = void (*)(VLT::CStorage&, const CString&);
    const std::pair<const char*, Operation> rows[] = {
        {"GetXML", [](VLT::CStorage& storage, const CString&) { storage.GetXML(); }},
        {"ParseXML", [](VLT::CStorage& storage, const CString& text) { storage.ParseXML(text); }},
        {"Load", [](VLT::CStorage& storage, const CString&) { storage.Load(s_pFile); }},
        {"Save", [](VLT::CStorage& storage, const CString&) { storage.Save(TEXT("allocation_test_2.tmp")); }},
        {"AddConfiguration", [](VLT::CStorage& storage, const CString&) { FillStorage(storage); }},
        {"MakeDeepCopy",
         [](VLT::CStorage& storage, const CString&)
         {
             VLT::CStorage copy;
             storage.MakeDeepCopy(copy);
         }},
    };
    for (const auto& [pName, operation] : rows)
    {
        SCOPED_TRACE(pName);
        Allocation::FailEach(
            [&, operation = operation](auto perform)
            {
                VLT::CStorage storage;
                FillStorage(storage);
                perform([&] { operation(storage, xml); });
                const auto& records = *storage.GetConfigurationVector();
                for (const auto& pConfiguration : records)
                    EXPECT_TRUE(pConfiguration && storage.GetConfigurationById(pConfiguration->GetId()));
                for (const auto& [id, pConfiguration] : *storage.GetConfigurationMapById())
                    EXPECT_EQ(std::count(records.begin(), records.end(), pConfiguration), 1);
                EXPECT_EQ(storage.ParseXML(xml), 1);
                EXPECT_EQ(storage.GetXML(), xml);
            });
    }
    std::filesystem::remove("allocation_test_2.tmp");
}

// No other test of this program makes the manager. A failed start leaves none: the next one registers the commands.
TEST_F(AllocationFailure, InTheCommandManager)
{
    Allocation::FailEach([](auto perform) { perform([] { VLT::CCommandManager::Instance(); }); });
    EXPECT_EQ(VLT::CCommandManager::Instance()->IsNativeCommandAvailable(TEXT("CMD_DEFINE_PROJ_ENTITIES")), 1);
}

TEST_F(AllocationFailure, InTheRegistry)
{
    CProjectionRegistry filled;
    filled.m_definitions.push_back(boost::make_shared<CProjectionDefinition>());
    filled.m_definitions[0]->m_name = TEXT("\u0159 and a longer name");
    const CString xml = filled.GetXML();
    Allocation::FailEach(
        [&](auto perform)
        {
            CProjectionRegistry registry;
            perform([&] { registry.ParseXML(xml); });
            EXPECT_EQ(registry.ParseXML(xml), 1);
            EXPECT_EQ(registry.GetXML(), xml);
        });
    Allocation::FailEach([&](auto perform) { perform([&] { filled.GetXML(); }); });
}

TEST_F(AllocationFailure, InTheFiles)
{
    FillFile("\xEF\xBB\xBFtext \xC3\xBC");
    Allocation::FailEach(
        [](auto perform)
        {
            CString text = TEXT("before"), result;
            perform([&] { ReadTextFile(s_pFile, text, &result); });
            EXPECT_TRUE(text == TEXT("before") || text.IsEmpty() || text.GetLength() >= 6);
            EXPECT_TRUE(ReadTextFile(s_pFile, text, &result));
        });
    const CString text = TEXT("\u20AC text");
    Allocation::FailEach(
        [&](auto perform)
        {
            CString result;
            perform([&] { WriteTextFile(s_pFile, text, &result); });
            EXPECT_TRUE(WriteTextFile(s_pFile, text, &result));
        });
}

// The table is the process's: what a failed load has put there already stays, and is what later loads add to.
TEST_F(AllocationFailure, InTheStringTable)
{
    const std::string longLine(3000, 'x');
    for (const std::string mark : {"", "\xEF\xBB\xBF"})
    {
        const std::string bytes = mark + "2 two\n3 " + longLine + "\n4 four\n";
        long loads = 0;
        bool hasFailed = true;
        while (hasFailed && ++loads < 1000)
        {
            FillFile(bytes.c_str()); // on Windows a file that was left open could not be written
            Allocation::FailAt(loads);
            try
            {
                CUIStrings::LoadFile(TEXT("scarce"), s_pFile);
            }
            catch (const std::bad_alloc&)
            {
            }
            hasFailed = Allocation::HasFailed();
            Allocation::FailAt(0);
        }
        EXPECT_GT(loads, 5);
        EXPECT_FALSE(hasFailed);
        CUIStrings* const pStrings = CUIStrings::Instance(); // the first one chooses the host's language
        CUIStrings::m_currentLanguage = TEXT("scarce");
        EXPECT_EQ(pStrings->Lookup(4), TEXT("four"));
    }
}
