// Loads a plug-in with the module and takes everything down in the order that the argument names. Nothing broke if the
// exit code is 0 and the last line says so.
#include "platform/host/HostControl.h"
#include "tests/dialog/RecordingHandler.h"
#include "tests/shutdown/Plugin.h"

#include <boost/make_shared.hpp>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <stdexcept>

namespace
{
void Check(bool holds, const char* pWhat)
{
    if (!holds)
        throw std::runtime_error(pWhat);
}

[[noreturn]] void ExitSound()
{
    std::puts("nothing broke");
    std::exit(0);
}

HWND Window()
{
    return ::FindWindowW(nullptr, TEXT("Define projection/intersection"));
}

void Press(int id)
{
    ::SendMessageW(::GetDlgItem(Window(), id), BM_CLICK, 0, 0);
}

/// What is in the host's hands while it takes its plug-in down.
struct CHost
{
    CHost() { Load(); }

    void Load()
    {
        library.emplace();
        library->m_pPlugin->RegisterHandler(pHandler);
    }
    void Run()
    {
        library->m_pPlugin->Run();
        Check(::IsWindowVisible(Window()), "the dialog is not shown");
    }
    void Complete()
    {
        library->m_pPlugin->Complete();
        Check(Window() == nullptr, "the dialog is still there");
    }
    /// Everything that can still come to a window whose code is gone.
    void UseWindowLeftOpen()
    {
        const HWND window = Window();
        Check(window != nullptr, "unloading closed the dialog");
        pHandler->m_calls.clear();
        Press(IDOK);
        Press(IDCANCEL);
        ::SendMessageW(window, WM_CLOSE, 0, 0);
        MSG message;
        while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            ::DispatchMessageW(&message);
        Check(::IsWindow(window) && pHandler->m_calls.empty(), "a message came through");
    }
    /// The program ends inside that call of the handler.
    void ExitInside(const char* pCall)
    {
        pHandler->m_inside = [pCall](const std::string& call) { return call == pCall ? ExitSound() : void(); };
    }

    std::optional<CPluginLibrary> library; ///< stays loaded until Unload
    boost::shared_ptr<CRecordingHandler> pHandler = boost::make_shared<CRecordingHandler>();
};

const struct
{
    const char* pName;
    void (*pOrder)(CHost& host);
} s_orders[] = {
    {"open-at-exit", [](CHost& host) { host.Run(); }},
    {"open-at-unload",
     [](CHost& host)
     {
         host.Run();
         host.library->Unload();
         host.UseWindowLeftOpen();
     }},
    {"open-at-unload-then-destroyed",
     [](CHost& host)
     {
         host.Run();
         host.library->Unload();
         Check(::DestroyWindow(Window()), "the window cannot be destroyed");
     }},
    {"open-at-unload-then-loaded-again",
     [](CHost& host)
     {
         host.Run();
         host.library->Unload();
         host.UseWindowLeftOpen();
         ::DestroyWindow(Window());
         host.Load();
         host.Run();
         Press(IDOK);
         Check(host.pHandler->m_calls == Calls{"open", "load", "save", "close"}, "OK did not save");
         host.Complete();
         host.library->Unload();
     }},
    {"loaded-and-unloaded-twice",
     [](CHost& host)
     {
         for (int load = 0; load < 2; ++load)
         {
             host.Run();
             Press(IDOK);
             host.Complete();
             host.library->Unload();
             host.Load();
         }
     }},
    {"completed-after-the-host-closed",
     [](CHost& host)
     {
         host.Run();
         ::DestroyWindow(Window());
         HostControl::Reset();
         host.Complete();
         host.library->Unload();
     }},
    {"selection-open-at-unload",
     [](CHost& host)
     {
         host.Run();
         host.library->m_pPlugin->StartSelection();
         host.Complete();
         host.library->Unload();
         Check(HostControl::CountLiveInputFunctions() == 1, "the host has lost its selection");
         HostControl::Reset();
     }},
    {"handler-destroyed-before-the-module",
     [](CHost& host)
     {
         host.Run();
         host.library->m_pPlugin->RegisterHandler({});
         Check(host.pHandler.use_count() == 1, "the handler is still held");
         host.pHandler.reset();
         Press(IDOK);
         host.Complete();
         host.library->Unload();
     }},
    {"handler-destroyed-after-the-module",
     [](CHost& host)
     {
         host.Run();
         Press(IDOK);
         host.Complete();
         host.library->Unload();
         host.pHandler->CloseStorage();
         host.pHandler.reset();
     }},
    {"text-held-after-unload",
     [](CHost& host)
     {
         CString text = host.library->m_pPlugin->GetText();
         host.library->Unload();
         const CString copy = text;
         text += TEXT("!");
         Check(!copy.IsEmpty() && text == copy + TEXT("!"), "the text has changed");
     }},
    {"exit-inside-load",
     [](CHost& host)
     {
         host.ExitInside("load");
         host.Run();
     }},
    {"exit-inside-save",
     [](CHost& host)
     {
         host.ExitInside("save");
         host.Run();
         Press(IDOK);
         Check(false, "the handler was not asked to save");
     }},
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
            row.pOrder(host);
        }
        catch (const std::exception& exception)
        {
            std::printf("%s: %s\n", row.pName, exception.what());
            return 1;
        }
        ExitSound();
    }
    std::puts("usage: shutdown_order ORDER, one of");
    for (const auto& row : s_orders)
        std::printf("  %s\n", row.pName);
    return 2;
}
