// Loads a plug-in with the module, then shuts everything down in the order that the argument names. Exit code 0 and the
// last line "nothing broke" mean success.
#include "platform/host/HostControl.h"
#include "tests/shutdown/Plugin.h"
#include "tests/support/RecordingHandler.h"

#include <boost/make_shared.hpp>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <vector>

namespace
{
void Check(bool holds, const char* pWhat)
{
    if (!holds)
        throw std::runtime_error(pWhat);
}

[[noreturn]] void ExitWithSuccess()
{
    std::puts("nothing broke");
    std::exit(0);
}

HWND Window()
{
    return ::FindWindowW(nullptr, TEXT("Define projection/intersection"));
}

/// The host: loads the plug-in, holds its handler and a text, and does one step at a time.
class CHost
{
public:
    void Load()
    {
        m_library.emplace();
        Plugin().RegisterHandler(m_pHandler);
    }
    void Unload() { m_library->Unload(); }
    void Run()
    {
        Plugin().Run();
        Check(::IsWindowVisible(Window()), "the dialog is not shown");
    }
    void RunWhileTheHostFails()
    {
        HostControl::FailAt(eHostCall::GetLanguage, eHostFailure::StdException); // only the first run calls it
        try
        {
            Plugin().Run();
        }
        catch (const std::exception&)
        {
            return;
        }
        Fail();
    }
    void StartSelection() { Plugin().StartSelection(); }
    void PressOk() { ::SendDlgItemMessageW(Window(), IDOK, BM_CLICK, 0, 0); }
    void Save()
    {
        m_pHandler->m_calls.clear();
        PressOk();
        Check(m_pHandler->m_calls == Calls{"save", "close"}, "OK did not save");
    }
    void Complete()
    {
        Plugin().Complete();
        Check(Window() == nullptr, "the dialog is still there");
    }
    void DestroyWindow() { Check(::DestroyWindow(Window()), "there is no window to destroy"); }
    /// Sends what can still reach a window after its module is gone.
    void UseWindowLeftOpen()
    {
        const HWND window = Window();
        m_pHandler->m_calls.clear();
        PressOk();
        ::SendMessageW(window, WM_CLOSE, 0, 0);
        MSG message;
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            ::DispatchMessageW(&message);
        Check(::IsWindow(window) && m_pHandler->m_calls.empty(), "the window of an unloaded module reacted");
    }
    void Reset()
    {
        HostControl::Reset();
        Check(HostControl::CountLiveInputFunctions() == 0, "the selection is still there");
    }
    void TakeHandlerBack()
    {
        Plugin().RegisterHandler({});
        Check(m_pHandler.use_count() == 1, "the handler is still held");
    }
    void DropHandler() { m_pHandler.reset(); }
    void TakeText() { m_text = Plugin().GetText(); }
    void UseText()
    {
        const CString copy = m_text;
        m_text += TEXT("!");
        Check(!copy.IsEmpty() && m_text == copy + TEXT("!"), "the text has changed");
    }
    void ExitInsideLoad() { ExitInside("load"); }
    void ExitInsideSave() { ExitInside("save"); }
    void Fail() { Check(false, "the program goes on"); }

private:
    IPlugin& Plugin() { return *m_library->m_pPlugin; }
    void ExitInside(const char* pCall)
    {
        m_pHandler->m_inside = [pCall](const std::string& call) { return call == pCall ? ExitWithSuccess() : void(); };
    }

    std::optional<CPluginLibrary> m_library;
    boost::shared_ptr<CRecordingHandler> m_pHandler = boost::make_shared<CRecordingHandler>();
    CString m_text;
};

using H = CHost;
const struct
{
    const char* pName;
    std::vector<void (CHost::*)()> steps; // after a first Load
} s_orders[] = {
    {"open-at-exit", {&H::Run}},
    {"open-at-unload-then-loaded-again",
     {&H::Run, &H::Unload, &H::UseWindowLeftOpen, &H::DestroyWindow, &H::Load, &H::Run, &H::Save, &H::Complete,
      &H::Unload}},
    {"host-and-handler-go-first",
     {&H::Run, &H::StartSelection, &H::TakeHandlerBack, &H::DropHandler, &H::PressOk, &H::DestroyWindow, &H::Reset,
      &H::Complete, &H::Unload}},
    {"everything-held-after-unload",
     {&H::TakeText, &H::Run, &H::StartSelection, &H::Save, &H::Complete, &H::Unload, &H::Reset, &H::DropHandler,
      &H::UseText}},
    {"first-run-failed", {&H::RunWhileTheHostFails, &H::Complete, &H::Run, &H::Save, &H::Complete, &H::Unload}},
    {"exit-inside-load", {&H::ExitInsideLoad, &H::Run, &H::Fail}},
    {"exit-inside-save", {&H::ExitInsideSave, &H::Run, &H::PressOk, &H::Fail}},
};
} // namespace

int main(int count, char** ppArguments)
{
    for (const auto& row : s_orders)
    {
        if (count != 2 || std::strcmp(row.pName, ppArguments[1]) != 0)
            continue;
        try
        {
            CHost host;
            host.Load();
            for (const auto step : row.steps)
                (host.*step)();
        }
        catch (const std::exception& exception)
        {
            std::printf("%s: %s\n", row.pName, exception.what());
            return 1;
        }
        ExitWithSuccess();
    }
    std::puts("usage: shutdown_order ORDER, one of");
    for (const auto& row : s_orders)
        std::printf("  %s\n", row.pName);
    return 2;
}
