#include "configuration/ConfigurationStorage.h"

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>
#include <memory>
#include <vector>

using VLT::CConfigurationStorage;
using VLT::IConfigurationHandler;

namespace
{
std::vector<CString> s_notes; // of all handlers, oldest first

class CNotingHandler : public IConfigurationHandler
{
public:
    ~CNotingHandler() override { s_notes.push_back(TEXT("gone")); }
    int OpenStorage() override { return 7; }
    void CloseStorage() override
    {
        CConfigurationStorage::Instance()->RegisterHandler(nullptr); // must not destroy this object during the call
        s_notes.push_back(TEXT("close"));
    }
    CString LoadConfigurationById(const WCHAR* pId) override
    {
        return pId == nullptr ? throw 1 : TEXT("of ") + CString(pId);
    }
    int SaveConfiguration(const WCHAR* pId, const WCHAR* pCfg) override
    {
        s_notes.push_back(pId + CString(TEXT("=")) + pCfg);
        return -2;
    }
};

void ExpectNoHandler(IConfigurationHandler& storage)
{
    EXPECT_EQ(storage.OpenStorage(), 0);
    EXPECT_TRUE(storage.LoadConfigurationById(TEXT("PRJ_REGISTRY")).IsEmpty());
    EXPECT_EQ(storage.SaveConfiguration(TEXT("PRJ_REGISTRY"), TEXT("")), 0);
    storage.CloseStorage();
}
} // namespace

TEST(ConfigurationStorage, ForwardsToTheLastRegisteredHandler)
{
    CConfigurationStorage& storage = *CConfigurationStorage::Instance();
    EXPECT_EQ(CConfigurationStorage::Instance(), &storage);
    ExpectNoHandler(storage);
    storage.RegisterHandler(boost::make_shared<CNotingHandler>());
    EXPECT_EQ(storage.OpenStorage(), 7);
    EXPECT_EQ(storage.LoadConfigurationById(TEXT("A")), TEXT("of A"));
    EXPECT_EQ(storage.SaveConfiguration(TEXT("A"), TEXT("B")), -2);
    EXPECT_THROW(storage.LoadConfigurationById(nullptr), int);

    // Only the interface has a public destructor.
    std::unique_ptr<IConfigurationHandler> pCopy(new CConfigurationStorage(storage));
    storage.RegisterHandler(boost::make_shared<CNotingHandler>());
    s_notes.push_back(TEXT("registered"));
    EXPECT_EQ(pCopy->OpenStorage(), 7);
    static_cast<CConfigurationStorage&>(*pCopy) = storage;
    pCopy.reset();
    storage.CloseStorage();
    ExpectNoHandler(storage);
    EXPECT_EQ(s_notes,
              (std::vector<CString>{TEXT("A=B"), TEXT("registered"), TEXT("gone"), TEXT("close"), TEXT("gone")}));
}
