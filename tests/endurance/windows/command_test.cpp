// The command of the DLL, run again and again: handles and heap must return to their level.
#include "commands/CommandManager.h"
#include "platform/host/HostControl.h"
#include "tests/endurance/Endurance.h"
#include "tests/support/RecordingHandler.h"
#include <CoordinateInput.h>

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
/// Wine does not count handles, so this fills the table of one kind of handle. When the free slots are used up, the
/// numbers rise by one, and the highest number tells how many handles existed before.
template <class Make, class Destroy>
long CountHandles(Make make, Destroy destroy, unsigned step)
{
    static long s_fill = 3000;
    s_fill += 100; // more than the free slots, including those that the last count left
    std::vector<decltype(make())> handles(static_cast<size_t>(s_fill));
    long highest = 0;
    for (auto& handle : handles)
    {
        handle = make();
        highest = std::max(highest, static_cast<long>(LOWORD(reinterpret_cast<ULONG_PTR>(handle)) / step));
    }
    for (const auto& handle : handles)
        EXPECT_TRUE(destroy(handle));
    return highest - s_fill;
}

struct CLevel
{
    long user = CountHandles(::CreateMenu, ::DestroyMenu, 2);
    long drawing = CountHandles([] { return ::CreatePen(PS_SOLID, 1, 0); }, ::DeleteObject, 1);
    long kernel = CountHandles([] { return ::CreateEventW(nullptr, FALSE, FALSE, nullptr); }, ::CloseHandle, 4);
    size_t heap = HeapBytesInUse();
};

void Print(const char* pWhen, const CLevel& level)
{
    std::printf("%s: %ld user, %ld drawing and %ld kernel handles, heap %zu bytes\n", pWhen, level.user, level.drawing,
                level.kernel, level.heap);
}

void RunOnce(int run, const boost::shared_ptr<CRecordingHandler>& pHandler)
{
    static CCoordinateInput s_input;
    auto* pManager = VLT::CCommandManager::Instance();
    pManager->RunCommand(TEXT("CMD_DEFINE_PROJ_ENTITIES"), &s_input);
    pManager->ProcessMouseMsg(WM_MOUSEMOVE, {}, nullptr, &s_input);
    const HWND dialog = ::FindWindowW(nullptr, TEXT("Define projection/intersection"));
    ASSERT_TRUE(::IsWindowVisible(dialog));
    const int buttons[] = {IDOK, IDCANCEL, 0}; // 0: no button, only CompleteCommand
    ::SendDlgItemMessageW(dialog, buttons[run % 3], BM_CLICK, 0, 0);
    ASSERT_EQ(::IsWindowVisible(dialog), run % 3 == 2);
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        if (!::IsDialogMessageW(dialog, &message))
            ::DispatchMessageW(&message);
    pManager->CompleteCommand(&s_input);
    ASSERT_FALSE(::IsWindow(dialog));
    ASSERT_EQ(pHandler->m_calls.size(), run % 3 == 0 ? 4u : 2u);
    pHandler->m_calls.clear();
    HostControl::Reset();
}
} // namespace

TEST(Endurance, TwoThousandRunsOfTheCommand)
{
    constexpr int WarmUp = 300;
    constexpr int Runs = 2000;
    const boost::shared_ptr<CRecordingHandler> pHandler(new CRecordingHandler);
    VLT::CConfigurationStorage::Instance()->RegisterHandler(pHandler);
    for (int run = 0; run < WarmUp && !HasFatalFailure(); ++run)
        RunOnce(run, pHandler);
    CLevel(); // the first count allocates memory that it keeps
    const CLevel before;
    Print("before", before);
    const HMENU menu = ::CreateMenu();
    const HPEN pen = ::CreatePen(PS_SOLID, 1, 0);
    const HANDLE event = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
    const CLevel held;
    EXPECT_TRUE(held.user == before.user + 1 && held.drawing == before.drawing + 1 && held.kernel == before.kernel + 1)
        << "the counting does not see a handle";
    EXPECT_TRUE(::DestroyMenu(menu) && ::DeleteObject(pen) && ::CloseHandle(event));
    for (int run = 1; run <= Runs && !HasFatalFailure(); ++run)
    {
        RunOnce(run, pHandler);
        ShowProgress(run, Runs, "runs");
    }
    const CLevel after;
    Print("after", after);
    EXPECT_LE(after.user, before.user);
    EXPECT_LE(after.drawing, before.drawing);
    EXPECT_LE(after.kernel, before.kernel);
    EXPECT_LE(after.heap, before.heap + Runs); // not one byte for a run
}
