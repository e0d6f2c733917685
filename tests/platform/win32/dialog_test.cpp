#include "platform/text.h"
#include "platform/win32/win32.h"
#include "platform/win32/wine.h"
#include "tests/platform/win32/test.h"

#include <gtest/gtest.h>

#include <functional>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace
{
const HINSTANCE s_module = reinterpret_cast<HINSTANCE>(&__ImageBase);

WString TextOf(HWND window)
{
    WCHAR buffer[100];
    return {buffer, static_cast<size_t>(GetWindowTextW(window, buffer, 100))};
}

WString ClassOf(HWND window)
{
    WCHAR buffer[100];
    return {buffer, static_cast<size_t>(GetClassNameW(window, buffer, 100))};
}

/// Makes a dialog and notes what its procedure is told. A test may answer in its place.
class CTracedDialog
{
public:
    explicit CTracedDialog(int number, HWND parent = nullptr, std::function<INT_PTR(UINT, WPARAM)> answer = {})
        : m_answer(std::move(answer))
    {
        INITCOMMONCONTROLSEX classes = {sizeof(INITCOMMONCONTROLSEX), ICC_LISTVIEW_CLASSES};
        EXPECT_TRUE(InitCommonControlsEx(&classes));
        m_window = CreateDialogParamW(s_module, MAKEINTRESOURCEW(number), parent, &CTracedDialog::Procedure,
                                      reinterpret_cast<LPARAM>(this));
    }
    ~CTracedDialog() { DestroyWindow(m_window); }
    CTracedDialog(const CTracedDialog&) = delete;
    CTracedDialog& operator=(const CTracedDialog&) = delete;

    HWND Item(int id) const { return GetDlgItem(m_window, id); }
    LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return SendDlgItemMessageW(m_window, id, message, wParam, lParam);
    }
    /// What the procedure was told since the last call.
    std::string TakeLog() { return std::exchange(m_log, std::string()); }

    HWND m_window = nullptr;
    std::function<INT_PTR(UINT, WPARAM)> m_answer;

private:
    static INT_PTR CALLBACK Procedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam)
    {
        if (message == WM_INITDIALOG)
        {
            SetWindowLongPtrW(dialog, DWLP_USER, lParam);
            reinterpret_cast<CTracedDialog*>(lParam)->m_window = dialog;
        }
        auto* pThis = reinterpret_cast<CTracedDialog*>(GetWindowLongPtrW(dialog, DWLP_USER));
        if (pThis == nullptr)
            return FALSE; // a message from before WM_INITDIALOG
        pThis->Note(message, wParam, lParam);
        return pThis->m_answer ? pThis->m_answer(message, wParam) : FALSE;
    }

    void Note(UINT message, WPARAM wParam, LPARAM lParam)
    {
        switch (message)
        {
        case WM_INITDIALOG:
            m_log += "init " + std::to_string(GetDlgCtrlID(reinterpret_cast<HWND>(wParam))) + ";";
            break;
        case WM_COMMAND:
            if (HIWORD(wParam) >= 0x100 && HIWORD(wParam) < 0x300)
                break; // EN_SETFOCUS and EN_KILLFOCUS: there is no focus without a screen
            EXPECT_EQ(reinterpret_cast<HWND>(lParam), Item(LOWORD(wParam)));
            m_log += "command " + std::to_string(HIWORD(wParam)) + " of " + std::to_string(LOWORD(wParam)) + ";";
            break;
        case WM_DESTROY:
            m_log += Item(ID_CHECK) == nullptr ? "destroy;" : "destroy with children;";
            break;
        case WM_NCDESTROY:
            m_log += Item(ID_CHECK) == nullptr ? "gone;" : "gone with children;";
            break;
        default:
            break;
        }
    }

    std::string m_log;
};

/// Delivers the messages that wait.
void RunMessageLoop()
{
    MSG message = {};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
        DispatchMessageW(&message);
}
} // namespace

// Every field of both binary forms of a template; one misread field shifts all that follow.
TEST(Dialog, HasTheControlsOfItsTemplate)
{
    const struct CControl
    {
        int id;
        WString className;
        WString text;
        DWORD style; // without WS_BORDER, which becomes an edge on Windows
        POINT place; // in dialog units, as the size
        POINT size;  // a combo box is as high as its closed field
    } extended[] = {
        {ID_LABEL, TEXT("Static"), TEXT("Label"), WS_GROUP, {7, 7}, {100, 8}},
        {IDOK, TEXT("Button"), TEXT("OK"), WS_TABSTOP | BS_DEFPUSHBUTTON, {90, 130}, {50, 14}},
        {IDCANCEL, TEXT("Button"), TEXT("Cancel"), WS_TABSTOP, {143, 130}, {50, 14}},
        {ID_CHECK, TEXT("Button"), TEXT("Check"), WS_TABSTOP | BS_AUTOCHECKBOX, {7, 20}, {60, 10}},
        {ID_THREE_STATES, TEXT("Button"), TEXT("States"), WS_TABSTOP | BS_AUTO3STATE, {7, 32}, {60, 10}},
        {ID_MANUAL_CHECK, TEXT("Button"), TEXT("Manual"), WS_TABSTOP | BS_CHECKBOX, {7, 44}, {60, 10}},
        {ID_SORTED_COMBO, TEXT("ComboBox"), TEXT(""), WS_TABSTOP | CBS_DROPDOWN | CBS_SORT, {70, 20}, {60, 60}},
        {ID_LIST_COMBO, TEXT("ComboBox"), TEXT(""), WS_TABSTOP | CBS_DROPDOWNLIST, {133, 20}, {60, 60}},
        {ID_EDIT, TEXT("Edit"), TEXT(""), WS_TABSTOP | ES_AUTOHSCROLL, {70, 40}, {60, 14}},
        {ID_MULTILINE_EDIT, TEXT("Edit"), TEXT(""), WS_TABSTOP | ES_MULTILINE, {133, 40}, {60, 14}},
        {ID_LIST, TEXT("SysListView32"), TEXT(""), WS_TABSTOP | LVS_REPORT, {7, 60}, {100, 60}},
        {ID_GROUP, TEXT("Button"), TEXT(""), BS_GROUPBOX, {110, 60}, {83, 60}},
    };
    const CControl standard[] = {
        {ID_CHECK, TEXT("Button"), TEXT("Odd"), WS_TABSTOP, {7, 7}, {50, 14}},
        {ID_EDIT, TEXT("Edit"), TEXT(""), WS_TABSTOP | WS_DISABLED, {60, 7}, {50, 14}},
        {ID_LIST, TEXT("SysListView32"), TEXT(""), LVS_REPORT, {7, 24}, {100, 30}},
    };
    const auto check = [](HWND dialog, const auto& controls)
    {
        HWND window = GetWindow(dialog, GW_CHILD);
        for (const CControl& control : controls)
        {
            ASSERT_NE(window, nullptr) << control.id;
            EXPECT_EQ(GetDlgCtrlID(window), control.id);
            EXPECT_EQ(GetDlgItem(dialog, control.id), window);
            EXPECT_EQ(GetParent(window), dialog);
            EXPECT_TRUE(ClassOf(window) == control.className) << control.id;
            EXPECT_TRUE(TextOf(window) == control.text) << control.id;
            const DWORD style = static_cast<DWORD>(GetWindowLongPtrW(window, GWL_STYLE));
            const DWORD compared = WS_CHILD | WS_VISIBLE | WS_DISABLED | WS_GROUP | WS_TABSTOP | 0xF;
            EXPECT_EQ(style & compared, (control.style & compared) | WS_CHILD | WS_VISIBLE) << control.id;

            RECT expected = {control.place.x, control.place.y, control.size.x, control.size.y};
            RECT actual = {};
            EXPECT_TRUE(MapDialogRect(dialog, &expected));
            EXPECT_TRUE(GetWindowRect(window, &actual));
            MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&actual), 2);
            EXPECT_EQ(actual.left, expected.left) << control.id;
            EXPECT_EQ(actual.top, expected.top) << control.id;
            EXPECT_EQ(actual.right - actual.left, expected.right) << control.id;
            const LONG height = actual.bottom - actual.top;
            EXPECT_TRUE(height == expected.bottom || control.className == TEXT("ComboBox")) << control.id;
            window = GetWindow(window, GW_HWNDNEXT);
        }
        EXPECT_EQ(window, nullptr);
    };
    CTracedDialog extendedDialog(DIALOG_EXTENDED);
    EXPECT_TRUE(TextOf(extendedDialog.m_window) == TEXT("Extended"));
    EXPECT_TRUE(ClassOf(extendedDialog.m_window) == TEXT("#32770"));
    check(extendedDialog.m_window, extended);
    CTracedDialog standardDialog(DIALOG_STANDARD);
    EXPECT_TRUE(TextOf(standardDialog.m_window) == TEXT("Standard"));
    check(standardDialog.m_window, standard);
}

TEST(Dialog, StartsWithTheFirstTabStopAndShowsOnlyWhenAsked)
{
    CTracedDialog hidden(DIALOG_EXTENDED);
    EXPECT_EQ(hidden.TakeLog(), "init 1;");
    EXPECT_FALSE(IsWindowVisible(hidden.m_window));
    EXPECT_FALSE(IsWindowVisible(hidden.Item(IDOK))); // shown in a dialog that is not
    EXPECT_FALSE(ShowWindow(hidden.m_window, SW_SHOW));
    EXPECT_TRUE(IsWindowVisible(hidden.Item(IDOK)));
    EXPECT_TRUE(ShowWindow(hidden.m_window, SW_HIDE));
    EXPECT_FALSE(IsWindowVisible(hidden.m_window));

    CTracedDialog shown(DIALOG_SHOWN);
    EXPECT_TRUE(IsWindowVisible(shown.m_window));
    EXPECT_FALSE(IsWindowVisible(shown.Item(ID_CHECK)));
}

TEST(Dialog, FailsAsAWholeWhenAPartIsMissing)
{
    const struct
    {
        int number;
        HWND parent;
        DWORD code;
    } rows[] = {
        {999, nullptr, ERROR_RESOURCE_NAME_NOT_FOUND},
        {DIALOG_UNKNOWN_CLASS, nullptr, ERROR_CANNOT_FIND_WND_CLASS},
        {DIALOG_STANDARD, reinterpret_cast<HWND>(0x7FFFFFF0), ERROR_INVALID_WINDOW_HANDLE},
    };
    for (const auto& row : rows)
    {
        SetLastError(ERROR_SUCCESS);
        CTracedDialog dialog(row.number, row.parent);
        EXPECT_EQ(dialog.m_window, nullptr) << row.number;
        // Wine's tidying up after a class that is missing leaves no error code.
        const bool codeLost = IsWine() && row.code == ERROR_CANNOT_FIND_WND_CLASS;
        EXPECT_EQ(GetLastError(), codeLost ? ERROR_SUCCESS : row.code) << row.number;
    }
}

// Children are there in WM_DESTROY and gone in WM_NCDESTROY; windows that it owns and child dialogs go with it.
TEST(Dialog, DestructionReachesEverythingOfIt)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    CTracedDialog child(DIALOG_CHILD, dialog.m_window);
    CTracedDialog owned(DIALOG_STANDARD, dialog.m_window);
    EXPECT_EQ(GetParent(child.m_window), dialog.m_window);
    EXPECT_EQ(GetParent(owned.m_window), dialog.m_window);
    const HWND control = dialog.Item(IDOK);
    child.TakeLog();
    owned.TakeLog();
    dialog.TakeLog();

    EXPECT_TRUE(DestroyWindow(dialog.m_window));
    for (CTracedDialog* pDialog : {&dialog, &child, &owned})
    {
        EXPECT_EQ(pDialog->TakeLog(), "destroy with children;gone;");
        EXPECT_FALSE(IsWindow(pDialog->m_window));
    }
    EXPECT_FALSE(IsWindow(control));

    SetLastError(ERROR_SUCCESS);
    EXPECT_FALSE(DestroyWindow(dialog.m_window));
    // Wine does not tell a window that is none from one that is another thread's.
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(IsWine() ? ERROR_ACCESS_DENIED : ERROR_INVALID_WINDOW_HANDLE));
    EXPECT_EQ(SendMessageW(control, BM_CLICK, 0, 0), 0);
    EXPECT_EQ(GetDlgItem(dialog.m_window, IDOK), nullptr);
    EXPECT_TRUE(TextOf(control).empty());
    EXPECT_EQ(GetWindowLongPtrW(dialog.m_window, DWLP_USER), 0);
}

// The button is still at work when the dialog goes: what it holds must outlive its own click.
TEST(Dialog, MayBeDestroyedByItsOwnProcedure)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    dialog.m_answer = [&dialog](UINT message, WPARAM) -> INT_PTR
    { return message == WM_COMMAND && DestroyWindow(dialog.m_window); };
    dialog.Send(ID_CHECK, BM_CLICK);
    EXPECT_FALSE(IsWindow(dialog.m_window));

    HWND window = nullptr;
    const auto destroyAtOnce = [&window](UINT message, WPARAM wParam) -> INT_PTR
    {
        if (message != WM_INITDIALOG)
            return FALSE;
        window = GetParent(reinterpret_cast<HWND>(wParam));
        return DestroyWindow(window);
    };
    CTracedDialog unborn(DIALOG_EXTENDED, nullptr, destroyAtOnce);
    EXPECT_NE(window, nullptr);
    EXPECT_FALSE(IsWindow(window));
}

TEST(Dialog, EndingHidesAModelessDialog)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    ShowWindow(dialog.m_window, SW_SHOW);
    EXPECT_FALSE(EndDialog(dialog.Item(IDOK), IDOK));
    EXPECT_TRUE(EndDialog(dialog.m_window, IDOK));
    EXPECT_TRUE(IsWindow(dialog.m_window));
    EXPECT_FALSE(IsWindowVisible(dialog.m_window));
}

TEST(Dialog, ClosingActsAsCancelUnlessThatIsDisabled)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    RunMessageLoop();
    dialog.TakeLog();
    SendMessageW(dialog.m_window, WM_CLOSE, 0, 0);
    RunMessageLoop();
    EXPECT_EQ(dialog.TakeLog(), "command 0 of 2;");
    EXPECT_TRUE(IsWindow(dialog.m_window));

    EXPECT_FALSE(EnableWindow(dialog.Item(IDCANCEL), FALSE));
    EXPECT_FALSE(IsWindowEnabled(dialog.Item(IDCANCEL)));
    SendMessageW(dialog.m_window, WM_CLOSE, 0, 0);
    RunMessageLoop();
    // Wine does not look at the button; Windows sounds a warning and posts nothing.
    EXPECT_EQ(dialog.TakeLog(), IsWine() ? "command 0 of 2;" : "");
    EXPECT_TRUE(EnableWindow(dialog.Item(IDCANCEL), TRUE));

    SendMessageW(dialog.m_window, WM_CLOSE, 0, 0);
    DestroyWindow(dialog.m_window);
    dialog.TakeLog();
    RunMessageLoop(); // what waited for the dialog is dropped
    EXPECT_EQ(dialog.TakeLog(), "");
}

// The result of an answered message is DWLP_MSGRESULT; without an answer it is the class's own.
TEST(Dialog, ResultComesFromTheDialogsData)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    const struct
    {
        INT_PTR answer;
        LONG_PTR result;
        LRESULT expected;
    } rows[] = {{TRUE, 42, 42}, {TRUE, 0, 0}, {7, -1, -1}, {FALSE, 42, 0}};
    for (const auto& row : rows)
    {
        dialog.m_answer = [&dialog, &row](UINT message, WPARAM) -> INT_PTR
        {
            if (message != WM_NOTIFY)
                return FALSE;
            EXPECT_EQ(GetWindowLongPtrW(dialog.m_window, DWLP_MSGRESULT), 0); // no left-over
            SetWindowLongPtrW(dialog.m_window, DWLP_MSGRESULT, row.result);
            return row.answer;
        };
        NMHDR header = {dialog.Item(ID_LIST), ID_LIST, static_cast<UINT>(NM_CLICK)};
        EXPECT_EQ(SendMessageW(dialog.m_window, WM_NOTIFY, ID_LIST, reinterpret_cast<LPARAM>(&header)), row.expected);
    }
}

TEST(Button, ClicksToggleAndTellTheDialog)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    const struct
    {
        int id;
        std::vector<LRESULT> checks; // after each click
        LRESULT highest;             // what BM_SETCHECK with 5 sets
    } rows[] = {
        {ID_CHECK, {1, 0, 1}, 1},
        {ID_THREE_STATES, {1, 2, 0}, 2},
        {ID_MANUAL_CHECK, {0, 0}, 1},
        {IDOK, {0, 0}, 0},
    };
    for (const auto& row : rows)
    {
        for (const LRESULT check : row.checks)
        {
            dialog.TakeLog();
            dialog.Send(row.id, BM_CLICK);
            EXPECT_EQ(dialog.TakeLog(), "command 0 of " + std::to_string(row.id) + ";");
            EXPECT_EQ(dialog.Send(row.id, BM_GETCHECK), check) << row.id;
        }
        dialog.Send(row.id, BM_SETCHECK, 5);
        EXPECT_EQ(dialog.Send(row.id, BM_GETCHECK), row.highest) << row.id;
        EXPECT_EQ(dialog.TakeLog(), ""); // a state set by the program is no click
    }
}

TEST(Edit, TellsOfANewText)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    dialog.TakeLog();
    EXPECT_TRUE(SetWindowTextW(dialog.Item(ID_EDIT), TEXT("one")));
    EXPECT_EQ(dialog.TakeLog(), "command 1024 of 206;command 768 of 206;");
    EXPECT_TRUE(SetWindowTextW(dialog.Item(ID_MULTILINE_EDIT), TEXT("two")));
    EXPECT_EQ(dialog.TakeLog(), ""); // the multi-line field tells only of what its user does
    EXPECT_TRUE(SetWindowTextW(dialog.Item(ID_EDIT), nullptr));
    EXPECT_EQ(GetWindowTextLengthW(dialog.Item(ID_EDIT)), 0);
}

TEST(Window, TextIsCutToTheBuffer)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    const HWND edit = dialog.Item(ID_EDIT);
    SetWindowTextW(edit, TEXT("gr\u00FC\xD83D\xDE00"));
    EXPECT_EQ(GetWindowTextLengthW(edit), 5);
    const struct
    {
        int size;
        WString text;
    } rows[] = {{6, TEXT("gr\u00FC\xD83D\xDE00")}, {4, TEXT("gr\u00FC")}, {1, TEXT("")}, {0, TEXT("##")}};
    for (const auto& row : rows)
    {
        WCHAR buffer[] = TEXT("##\0#####");
        const int copied = GetWindowTextW(edit, buffer, row.size);
        EXPECT_EQ(copied, row.size == 0 ? 0 : static_cast<int>(row.text.size())) << row.size;
        EXPECT_TRUE(row.text == buffer) << row.size;
    }
}

TEST(ComboBox, KeepsItemsDataAndSelection)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    const auto add = [&dialog](int id, LPCWSTR pText)
    { return dialog.Send(id, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(pText)); };
    for (const int id : {ID_LIST_COMBO, ID_SORTED_COMBO})
    {
        EXPECT_EQ(dialog.Send(id, CB_GETCURSEL), CB_ERR);
        EXPECT_EQ(add(id, TEXT("layer")), 0);
        dialog.Send(id, CB_SETITEMDATA, 0, 11);
        EXPECT_EQ(dialog.Send(id, CB_SETCURSEL, 0), 0);
        EXPECT_TRUE(TextOf(dialog.Item(id)) == TEXT("layer"));
        // Sorted, the new item stands before the selected one, which stays selected with its data.
        const LRESULT place = add(id, TEXT("\u00C4rea"));
        EXPECT_EQ(place, id == ID_SORTED_COMBO ? 0 : 1);
        EXPECT_EQ(dialog.Send(id, CB_GETCURSEL), 1 - place);
        EXPECT_EQ(dialog.Send(id, CB_GETITEMDATA, static_cast<WPARAM>(1 - place)), 11);
        EXPECT_EQ(dialog.Send(id, CB_GETITEMDATA, static_cast<WPARAM>(place)), 0);

        EXPECT_EQ(dialog.Send(id, CB_SETCURSEL, static_cast<WPARAM>(-1)), CB_ERR); // takes the selection away
        EXPECT_EQ(dialog.Send(id, CB_GETCURSEL), CB_ERR);
        EXPECT_EQ(GetWindowTextLengthW(dialog.Item(id)), 0);

        dialog.Send(id, CB_SETCURSEL, 1);
        dialog.Send(id, CB_RESETCONTENT);
        EXPECT_EQ(dialog.Send(id, CB_GETCOUNT), 0);
        EXPECT_EQ(dialog.Send(id, CB_GETCURSEL), CB_ERR);
        EXPECT_TRUE(TextOf(dialog.Item(id)).empty());
    }
}

TEST(ComboBox, SortsByTheAlphabet)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    const LPCWSTR sorted[] = {TEXT(""),     TEXT("area"),      TEXT("\u00C4rger"),
                              TEXT("Body"), TEXT("body part"), TEXT("Zone")};
    for (const int i : {5, 1, 4, 0, 3, 2})
        dialog.Send(ID_SORTED_COMBO, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(sorted[i]));
    for (size_t i = 0; i < std::size(sorted); ++i)
    {
        WCHAR buffer[20];
        const LRESULT length = dialog.Send(ID_SORTED_COMBO, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(buffer));
        EXPECT_EQ(length, dialog.Send(ID_SORTED_COMBO, CB_GETLBTEXTLEN, i));
        EXPECT_TRUE(WString(sorted[i]) == buffer) << "at " << i;
    }
}

TEST(ComboBox, RefusesIndexesOfNoItem)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    dialog.Send(ID_LIST_COMBO, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(TEXT("only")));
    WCHAR buffer[20];
    for (const int message : {CB_SETCURSEL, CB_GETITEMDATA, CB_SETITEMDATA, CB_GETLBTEXT, CB_GETLBTEXTLEN})
        for (const int index : {-1, 1})
            EXPECT_EQ(dialog.Send(ID_LIST_COMBO, static_cast<UINT>(message), static_cast<WPARAM>(index),
                                  reinterpret_cast<LPARAM>(buffer)),
                      CB_ERR)
                << message << " for " << index;
}

TEST(ComboBox, OnlyAnEditFieldTakesText)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    dialog.Send(ID_LIST_COMBO, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(TEXT("only")));
    dialog.Send(ID_LIST_COMBO, CB_SETCURSEL, 0);
    dialog.TakeLog();
    EXPECT_EQ(dialog.Send(ID_LIST_COMBO, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(TEXT("free"))), CB_ERR);
    EXPECT_TRUE(TextOf(dialog.Item(ID_LIST_COMBO)) == TEXT("only"));
    EXPECT_TRUE(SetWindowTextW(dialog.Item(ID_SORTED_COMBO), TEXT("free")));
    EXPECT_TRUE(TextOf(dialog.Item(ID_SORTED_COMBO)) == TEXT("free"));
    EXPECT_EQ(dialog.TakeLog(), "");
}

TEST(Window, LongValues)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    const HWND button = dialog.Item(ID_CHECK);
    EXPECT_EQ(SetWindowLongPtrW(button, GWLP_USERDATA, -5), 0);
    EXPECT_EQ(SetWindowLongPtrW(button, GWLP_USERDATA, 6), -5);
    EXPECT_EQ(SetWindowLongPtrW(button, GWLP_ID, 999), ID_CHECK);
    EXPECT_EQ(dialog.Item(999), button);
    SetLastError(ERROR_SUCCESS);
    EXPECT_EQ(GetWindowLongPtrW(dialog.m_window, 1000), 0);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_INDEX));
}
