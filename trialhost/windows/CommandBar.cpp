#include "trialhost/windows/CommandBar.h"

#include <filesystem>

namespace
{
void Append(HMENU menu, int command, const WString& caption, UINT flags = 0)
{
    ::AppendMenuW(menu, MF_STRING | flags, static_cast<UINT_PTR>(command), caption.c_str());
}

void AppendSeparator(HMENU menu)
{
    ::AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
}

/// The emptied menu at that place of the bar.
HMENU Emptied(HMENU bar, int place)
{
    const HMENU menu = ::GetSubMenu(bar, place);
    while (::DeleteMenu(menu, 0, MF_BYPOSITION))
        continue;
    return menu;
}

/// "&1 TEXT" for the first item of a list; those after the ninth have no key.
WString Numbered(size_t index, const WString& text)
{
    return index < 9 ? TEXT("&") + std::to_wstring(index + 1) + TEXT(" ") + text : text;
}

/// A text in which no & marks a key.
WString Literal(WString text)
{
    for (size_t at = text.find(TEXT('&')); at != WString::npos; at = text.find(TEXT('&'), at + 2))
        text.insert(at, 1, TEXT('&'));
    return text;
}

WString WithoutKey(WString caption)
{
    std::erase(caption, TEXT('&'));
    return caption;
}

void FillFileMenu(HMENU menu, const CRecentFiles& recent)
{
    Append(menu, CommandOpen, TEXT("&Open...\tCtrl+O"));
    Append(menu, CommandReload, TEXT("&Reload\tF5"));
    AppendSeparator(menu);
    for (size_t i = 0; i < recent.GetPaths().size(); ++i)
        Append(menu, FirstCommandRecent + static_cast<int>(i), Numbered(i, Literal(recent.GetPaths()[i])));
    if (!recent.GetPaths().empty())
        AppendSeparator(menu);
    Append(menu, CommandExit, TEXT("E&xit\tAlt+F4"));
}

void FillCommandMenu(HMENU menu, const std::vector<CTrialCommand>& commands)
{
    for (size_t i = 0; i < commands.size(); ++i)
        Append(menu, FirstCommandRun + static_cast<int>(i),
               commands[i].caption + (i < 9 ? TEXT("\tCtrl+") + std::to_wstring(i + 1) : WString()));
    AppendSeparator(menu);
    Append(menu, CommandRunAgain, TEXT("Run &again\tCtrl+R"));
    Append(menu, CommandComplete, TEXT("Co&mplete\tCtrl+E"));
}

void FillViewMenu(HMENU menu)
{
    Append(menu, CommandFit, TEXT("&Fit drawing\tCtrl+0"));
    Append(menu, CommandZoomIn, TEXT("Zoom &in\tF7"));
    Append(menu, CommandZoomOut, TEXT("Zoom &out\tF8"));
    AppendSeparator(menu);
    Append(menu, CommandCopyLog, TEXT("&Copy log\tCtrl+Shift+C"));
    Append(menu, CommandClearLog, TEXT("C&lear log\tCtrl+Shift+L"));
}

void FillPlugInMenu(HMENU menu, const std::vector<CKnownPlugIn>& plugIns)
{
    Append(menu, CommandLoadPlugIn, TEXT("&Load...\tCtrl+L"));
    Append(menu, CommandLoadAnew, TEXT("Load all &anew\tF6"), plugIns.empty() ? MF_GRAYED : 0);
    if (!plugIns.empty())
        AppendSeparator(menu);
    for (size_t i = 0; i < plugIns.size(); ++i)
        Append(menu, FirstCommandPlugIn + static_cast<int>(i),
               Numbered(i, Literal(std::filesystem::path(plugIns[i].path).filename().wstring())),
               plugIns[i].isLoaded ? MF_CHECKED : 0);
}

void FillFaultMenu(HMENU menu, eFault chosen)
{
    for (const CFaultChoice& choice : GetFaultChoices())
        Append(menu, FirstCommandFault + static_cast<int>(choice.fault), choice.pCaption,
               choice.fault == chosen ? MF_CHECKED : 0);
}

void AddButton(HWND toolBar, int command, const WString& caption)
{
    TBBUTTON button{};
    button.iBitmap = I_IMAGENONE;
    button.idCommand = command;
    button.fsState = TBSTATE_ENABLED;
    button.fsStyle = BTNS_AUTOSIZE | BTNS_SHOWTEXT;
    button.iString = reinterpret_cast<INT_PTR>(caption.c_str()); // the tool bar copies it
    ::SendMessageW(toolBar, TB_ADDBUTTONSW, 1, reinterpret_cast<LPARAM>(&button));
}

void AddGap(HWND toolBar)
{
    TBBUTTON gap{};
    gap.fsStyle = BTNS_SEP;
    ::SendMessageW(toolBar, TB_ADDBUTTONSW, 1, reinterpret_cast<LPARAM>(&gap));
}
} // namespace

HMENU CreateTrialMenu()
{
    const HMENU bar = ::CreateMenu();
    for (const WCHAR* pCaption : {TEXT("&File"), TEXT("&Command"), TEXT("&View"), TEXT("&Plug-ins"), TEXT("F&aults")})
        ::AppendMenuW(bar, MF_POPUP, reinterpret_cast<UINT_PTR>(::CreatePopupMenu()), pCaption);
    return bar;
}

void FillTrialMenu(HMENU bar, const std::vector<CTrialCommand>& commands, eFault fault, const CRecentFiles& recent,
                   const std::vector<CKnownPlugIn>& plugIns)
{
    FillFileMenu(Emptied(bar, 0), recent);
    FillCommandMenu(Emptied(bar, 1), commands);
    FillViewMenu(Emptied(bar, 2));
    FillPlugInMenu(Emptied(bar, 3), plugIns);
    FillFaultMenu(Emptied(bar, 4), fault);
}

HACCEL CreateTrialKeys()
{
    constexpr BYTE key = FVIRTKEY;
    constexpr BYTE control = FVIRTKEY | FCONTROL;
    constexpr BYTE controlShift = FVIRTKEY | FCONTROL | FSHIFT;
    std::vector<ACCEL> keys = {
        {control, 'O', CommandOpen},       {key, VK_F5, CommandReload},         {control, 'R', CommandRunAgain},
        {control, 'E', CommandComplete},   {control, '0', CommandFit},          {key, VK_F7, CommandZoomIn},
        {key, VK_F8, CommandZoomOut},      {controlShift, 'C', CommandCopyLog}, {controlShift, 'L', CommandClearLog},
        {control, 'L', CommandLoadPlugIn}, {key, VK_F6, CommandLoadAnew}};
    for (WORD i = 0; i < 9; ++i)
        keys.push_back({control, static_cast<WORD>('1' + i), static_cast<WORD>(FirstCommandRun + i)});
    return ::CreateAcceleratorTableW(keys.data(), static_cast<int>(keys.size()));
}

HWND CreateTrialToolBar(HWND parent, int id)
{
    const HWND toolBar = ::CreateWindowExW(
        0, TOOLBARCLASSNAMEW, nullptr, WS_CHILD | WS_VISIBLE | TBSTYLE_FLAT | TBSTYLE_LIST | CCS_NODIVIDER, 0, 0, 0, 0,
        parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ::GetModuleHandleW(nullptr), nullptr);
    ::SendMessageW(toolBar, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON), 0);
    ::SendMessageW(toolBar, TB_SETBITMAPSIZE, 0, 0);
    return toolBar;
}

void FillToolBar(HWND toolBar, const std::vector<CTrialCommand>& commands)
{
    while (::SendMessageW(toolBar, TB_DELETEBUTTON, 0, 0) != 0)
        continue;
    for (size_t i = 0; i < commands.size(); ++i)
        AddButton(toolBar, FirstCommandRun + static_cast<int>(i), WithoutKey(commands[i].caption));
    AddGap(toolBar);
    AddButton(toolBar, CommandRunAgain, TEXT("Run again"));
    AddButton(toolBar, CommandComplete, TEXT("Complete"));
    AddGap(toolBar);
    AddButton(toolBar, CommandFit, TEXT("Fit drawing"));
    ::SendMessageW(toolBar, TB_AUTOSIZE, 0, 0);
}
