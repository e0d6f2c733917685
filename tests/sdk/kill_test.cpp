#include "tests/sdk/ChildProcess.h"
#include "tests/sdk/Generation.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

using std::chrono::microseconds;

/// The generation in the file; -1 if it is not whole.
static int GenerationIn(const WString& path)
{
    VLT::CStorage storage;
    return storage.Load(path.c_str()) != 0 ? GenerationOf(storage) : -1;
}

// Wherever the killing hits, both files hold one generation whole, and the next program can save at once: what the
// killed one leaves behind, its lock and half-written files, is in nobody's way.
TEST(Kill, LeavesTheOldOrTheNewContentAtAnyMomentOfASave)
{
    const CTestFolder folder;
    const WString path = folder.Path(TEXT("storage.xml"));
    const auto lock = folder.m_path / "storage.xml.lock";
    std::mt19937 random(4711);
    // How long a save takes here, so that the killing falls into the first few of the child's.
    VLT::CStorageFile file(path.c_str());
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < 4; ++i)
        ASSERT_TRUE(file.Update(SetNextGeneration));
    const auto fourSaves = std::chrono::duration_cast<microseconds>(std::chrono::steady_clock::now() - start);
    int last = 4;
    int midSave = 0;
    for (int round = 0; round < 40; ++round)
    {
        std::filesystem::remove(lock);
        CChildProcess saver("sdk_saver", path);
        // The lock file's coming says that the first save begins.
        const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (!std::filesystem::exists(lock) && std::chrono::steady_clock::now() < patience)
            std::this_thread::sleep_for(microseconds(100));
        std::this_thread::sleep_for(microseconds(random() % fourSaves.count()));
        ASSERT_TRUE(saver.Kill()) << "the saver gave up in round " << round;

        midSave += std::filesystem::exists(folder.m_path / "storage.xml.new") ||
                   std::filesystem::exists(folder.m_path / "storage.xml.bak.new");
        const int now = GenerationIn(path);
        ASSERT_GE(now, last) << "round " << round;
        ASSERT_GE(GenerationIn(path + TEXT(".bak")), now - 1) << "round " << round;
        last = now;
    }
    EXPECT_GT(last, 4) << "no round ended a save";
    EXPECT_GT(midSave, 5) << "hardly any round hit a save, so this has shown nothing";
}
