#include "commands/CommandManager.h"

#include <CoordinateInput.h>

#include <gtest/gtest.h>

#include <boost/make_shared.hpp>

#include <functional>

namespace
{
using Calls = std::vector<std::string>;
using Pointers = std::vector<const void*>;

const Calls nothing;

/// Records the calls on it.
class CTestCommand final : public VLT::ICommand
{
public:
    explicit CTestCommand(const WCHAR* pId) : m_id(pId) {}

    WString GetId() override
    {
        Note("GetId");
        return m_id;
    }
    void Run(CCoordinateInput* pInput) override { Note("Run", {pInput}); }
    void ProcessMouseMsg(int message, const CStdPoint2D& point, strAddMsgInfo* pInfo, CCoordinateInput* pInput) override
    {
        Note("ProcessMouseMsg " + std::to_string(message), {&point, pInfo, pInput});
    }
    void Complete(CCoordinateInput* pInput) override { Note("Complete", {pInput}); }
    int RequiresProcessMouseMsg() override
    {
        Note("Requires");
        return 17;
    }

    Calls TakeCalls() { return std::exchange(m_calls, {}); }

    WString m_id;
    Calls m_calls;
    std::function<void()> m_inside; ///< called inside every operation
    Pointers m_arguments;           ///< of the last operation

private:
    void Note(const std::string& call, const Pointers& arguments = {})
    {
        m_calls.push_back(call);
        m_arguments = arguments;
        if (m_inside)
            m_inside();
    }
};

class CommandManager : public testing::Test
{
protected:
    CommandManager()
    {
        m_manager.RegisterCommand(m_pPipe);
        m_manager.RegisterCommand(m_pWall);
        m_pPipe->TakeCalls();
        m_pWall->TakeCalls();
    }
    ~CommandManager() override { m_manager = *VLT::CCommandManager::Instance(); } // releases the test's commands

    /// A copy of the process's manager. Its destructor is private: all copies stay reachable until the process ends.
    static VLT::CCommandManager& NewManager()
    {
        static auto& s_managers = *new std::vector<VLT::CCommandManager*>;
        s_managers.push_back(new VLT::CCommandManager(*VLT::CCommandManager::Instance()));
        return *s_managers.back();
    }

    const boost::shared_ptr<CTestCommand> m_pPipe = boost::make_shared<CTestCommand>(TEXT("PIPE"));
    const boost::shared_ptr<CTestCommand> m_pWall = boost::make_shared<CTestCommand>(TEXT("WALL"));
    VLT::CCommandManager& m_manager = NewManager();
    CCoordinateInput m_input;
};
} // namespace

TEST_F(CommandManager, KnowsTheBuiltInCommandFromTheStart)
{
    const auto* pManager = VLT::CCommandManager::Instance();
    EXPECT_EQ(pManager, VLT::CCommandManager::Instance());
    EXPECT_EQ(pManager->IsNativeCommandAvailable(TEXT("CMD_DEFINE_PROJ_ENTITIES")), 1);
    EXPECT_EQ(pManager->RequiresProcessMouseMsg(TEXT("CMD_DEFINE_PROJ_ENTITIES")), 1);
    EXPECT_EQ(pManager->IsNativeCommandActive(), 0);
    EXPECT_EQ(pManager->IsNativeCommandAvailable(TEXT("PIPE")), 0); // registered only in a copy
}

TEST_F(CommandManager, ComparesIdentifiersExactly)
{
    ASSERT_EQ(m_manager.RunCommand(TEXT("WALL"), &m_input), 1);
    m_pWall->TakeCalls();
    for (const WCHAR* pId : {TEXT("pipe"), TEXT("PIPE "), TEXT("PIP"), TEXT(""), static_cast<const WCHAR*>(nullptr)})
    {
        EXPECT_EQ(m_manager.IsNativeCommandAvailable(pId), 0);
        EXPECT_EQ(m_manager.RequiresProcessMouseMsg(pId), 0);
        EXPECT_FALSE(m_manager.GetCommandById(pId));
        EXPECT_EQ(m_manager.RunCommand(pId, &m_input), 0);
        EXPECT_EQ(m_manager.IsNativeCommandActive(), 1); // still WALL
    }
    m_manager.RegisterCommand(boost::make_shared<CTestCommand>(TEXT("")));
    EXPECT_EQ(m_manager.IsNativeCommandAvailable(TEXT("")), 1);
    EXPECT_EQ(m_pWall->TakeCalls(), nothing);
}

TEST_F(CommandManager, KeepsTheFirstOfTwoWithOneIdentifier)
{
    const auto pSecond = boost::make_shared<CTestCommand>(TEXT("PIPE"));
    m_manager.RegisterCommand(pSecond);
    EXPECT_EQ(pSecond->TakeCalls(), Calls{"GetId"});
    EXPECT_EQ(m_manager.GetCommandById(TEXT("PIPE")), m_pPipe);
    EXPECT_EQ(pSecond.use_count(), 1);
    m_manager.RegisterCommand({}); // ignored
}

TEST_F(CommandManager, RunsForwardsAndCompletes)
{
    Calls activeInside;
    m_pPipe->m_inside = [&] { activeInside.push_back(m_manager.IsNativeCommandActive() ? "active" : "idle"); };
    const CStdPoint2D point{1, 2};
    strAddMsgInfo info;
    CCoordinateInput other;
    m_manager.ProcessMouseMsg(513, point, &info, &m_input); // idle: nothing
    m_manager.CompleteCommand(&m_input);
    EXPECT_EQ(m_pPipe->TakeCalls(), nothing);

    EXPECT_EQ(m_manager.RunCommand(TEXT("PIPE"), nullptr), 1);
    EXPECT_EQ(m_manager.RunCommand(TEXT("PIPE"), &m_input), 1); // again, without CompleteCommand
    EXPECT_EQ(m_pPipe->m_arguments, Pointers{&m_input});
    m_manager.ProcessMouseMsg(-1, point, &info, &other);
    EXPECT_EQ(m_pPipe->m_arguments, (Pointers{&point, &info, &other}));
    EXPECT_EQ(m_manager.RequiresProcessMouseMsg(TEXT("PIPE")), 17);
    m_manager.CompleteCommand(&m_input);
    EXPECT_EQ(m_pPipe->m_arguments, Pointers{&m_input});
    EXPECT_EQ(m_pPipe->TakeCalls(), (Calls{"Run", "Run", "ProcessMouseMsg -1", "Requires", "Complete"}));
    EXPECT_EQ(activeInside, Calls(5, "active"));
    EXPECT_EQ(m_manager.IsNativeCommandActive(), 0);
    EXPECT_EQ(m_manager.IsNativeCommandAvailable(TEXT("PIPE")), 1);
}

TEST_F(CommandManager, DropsTheActiveCommandWithoutACallWhenAnotherRuns)
{
    m_manager.RunCommand(TEXT("PIPE"), &m_input);
    const auto references = m_pPipe.use_count();
    m_manager.RunCommand(TEXT("WALL"), &m_input);
    EXPECT_EQ(m_pPipe.use_count(), references - 1);
    m_manager.CompleteCommand(&m_input);
    EXPECT_EQ(m_pPipe->TakeCalls(), Calls{"Run"});
    EXPECT_EQ(m_pWall->TakeCalls(), (Calls{"Run", "Complete"}));
}

TEST_F(CommandManager, PassesExceptionsOfACommandOn)
{
    m_pPipe->m_inside = [] { throw 5; };
    EXPECT_THROW(m_manager.RequiresProcessMouseMsg(TEXT("PIPE")), int);
    EXPECT_THROW(m_manager.RunCommand(TEXT("PIPE"), &m_input), int);
    EXPECT_EQ(m_manager.IsNativeCommandActive(), 1);
    EXPECT_THROW(m_manager.ProcessMouseMsg(0, {}, nullptr, &m_input), int);
    EXPECT_THROW(m_manager.CompleteCommand(&m_input), int);
    EXPECT_EQ(m_manager.IsNativeCommandActive(), 1);
    m_pPipe->m_inside = nullptr;
    m_manager.CompleteCommand(&m_input);
    EXPECT_EQ(m_manager.IsNativeCommandActive(), 0);

    const auto pThrowing = boost::make_shared<CTestCommand>(TEXT("THROWING"));
    pThrowing->m_inside = [] { throw 5; };
    EXPECT_THROW(m_manager.RegisterCommand(pThrowing), int);
    EXPECT_EQ(pThrowing.use_count(), 1);
}

TEST_F(CommandManager, SharesCommandsWithItsCopies)
{
    m_manager.RunCommand(TEXT("PIPE"), &m_input);
    auto& other = NewManager();
    other.RegisterCommand(boost::make_shared<CTestCommand>(TEXT("ROOF")));
    EXPECT_EQ(&(other = m_manager), &other);
    EXPECT_EQ(other.IsNativeCommandAvailable(TEXT("ROOF")), 0); // emptied first
    EXPECT_EQ(other.GetCommandById(TEXT("PIPE")), m_pPipe);
    m_manager.CompleteCommand(&m_input);
    EXPECT_EQ(other.IsNativeCommandActive(), 1);
    other.CompleteCommand(&m_input);
    EXPECT_EQ(m_pPipe->TakeCalls(), (Calls{"Run", "Complete", "Complete"}));

    auto& alias = other;
    other = alias;
    EXPECT_EQ(other.GetCommandById(TEXT("WALL")), m_pWall);
    other = *VLT::CCommandManager::Instance();
    m_manager = other;
    EXPECT_EQ(m_pPipe.use_count(), 1);
}
