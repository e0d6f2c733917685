#include "platform/text.h"
#include "platform/win32/win32.h"
#include "platform/win32/wine.h"
#include "tests/platform/win32/test.h"

#include <gtest/gtest.h>

#include <functional>

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace
{
template <class T>
WString Ask(T pCall, HWND window)
{
    WCHAR buffer[100] = {};
    return {buffer, static_cast<size_t>(pCall(window, buffer, 100))};
}
WString TextOf(HWND window)
{
    return Ask(GetWindowTextW, window);
}

LPARAM Pointer(LPCWSTR pText)
{
    return reinterpret_cast<LPARAM>(pText);
}

/// Makes a dialog and notes what its procedure is told. A test may answer in its place.
class CTracedDialog
{
public:
    explicit CTracedDialog(int number, HWND parent = nullptr)
    {
        INITCOMMONCONTROLSEX classes = {sizeof(INITCOMMONCONTROLSEX), ICC_LISTVIEW_CLASSES};
        EXPECT_TRUE(InitCommonControlsEx(&classes));
        m_window = CreateDialogParamW(reinterpret_cast<HINSTANCE>(&__ImageBase), MAKEINTRESOURCEW(number), parent,
                                      &CTracedDialog::Procedure, reinterpret_cast<LPARAM>(this));
    }
    ~CTracedDialog() { DestroyWindow(m_window); }
    CTracedDialog(const CTracedDialog&) = delete;
    CTracedDialog& operator=(const CTracedDialog&) = delete;

    HWND Item(int id) const { return GetDlgItem(m_window, id); }
    LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const
    {
        return SendDlgItemMessageW(m_window, id, message, wParam, lParam);
    }
    /// What the procedure was told since the last call, when the messages that wait are delivered.
    std::string TakeLog()
    {
        MSG message = {};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE))
            DispatchMessageW(&message);
        return std::exchange(m_log, std::string());
    }

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
        const WORD code = HIWORD(wParam);
        if (message == WM_INITDIALOG)
            m_log += "init " + std::to_string(GetDlgCtrlID(reinterpret_cast<HWND>(wParam))) + ";";
        if (message == WM_DESTROY)
            m_log += Item(ID_CHECK) == nullptr ? "destroy;" : "destroy with children;";
        if (message == WM_NCDESTROY)
            m_log += Item(ID_CHECK) == nullptr ? "gone;" : "gone with children;";
        if (message != WM_COMMAND || code == 0x100 || code == 0x200)
            return; // EN_SETFOCUS and EN_KILLFOCUS are left out: without a screen there are none
        EXPECT_EQ(reinterpret_cast<HWND>(lParam), Item(LOWORD(wParam)));
        m_log += "command " + std::to_string(code) + " of " + std::to_string(LOWORD(wParam)) + ";";
    }

    std::string m_log;
};
} // namespace

// Every field of both binary forms of a template; one misread field shifts all that follow.
TEST(Dialog, HasTheControlsOfItsTemplate)
{
    const struct
    {
        int dialog;
        int id;
        WString className;
        WString text;
        DWORD style;
        RECT place; // in dialog units: left, top, width, height
    } rows[] = {
        {DIALOG_EXTENDED, ID_LABEL, TEXT("Static"), TEXT("Label"), WS_GROUP, {7, 7, 100, 8}},
        {DIALOG_EXTENDED, IDOK, TEXT("Button"), TEXT("OK"), WS_TABSTOP | BS_DEFPUSHBUTTON, {90, 130, 50, 14}},
        {DIALOG_EXTENDED, IDCANCEL, TEXT("Button"), TEXT("Cancel"), WS_TABSTOP, {143, 130, 50, 14}},
        {DIALOG_EXTENDED, ID_CHECK, TEXT("Button"), TEXT("Check"), WS_TABSTOP | BS_AUTOCHECKBOX, {7, 20, 60, 10}},
        {DIALOG_EXTENDED, ID_THREE_STATES, TEXT("Button"), TEXT("States"), WS_TABSTOP | BS_AUTO3STATE, {7, 32, 60, 10}},
        {DIALOG_EXTENDED, ID_MANUAL_CHECK, TEXT("Button"), TEXT("Manual"), WS_TABSTOP | BS_CHECKBOX, {7, 44, 60, 10}},
        {DIALOG_EXTENDED, ID_SORTED_COMBO, TEXT("ComboBox"), TEXT(""), WS_TABSTOP | CBS_DROPDOWN, {70, 20, 60, 60}},
        {DIALOG_EXTENDED, ID_LIST_COMBO, TEXT("ComboBox"), TEXT(""), WS_TABSTOP | CBS_DROPDOWNLIST, {133, 20, 60, 60}},
        {DIALOG_EXTENDED, ID_EDIT, TEXT("Edit"), TEXT(""), WS_TABSTOP, {70, 40, 60, 14}},
        {DIALOG_EXTENDED, ID_MULTILINE_EDIT, TEXT("Edit"), TEXT(""), WS_TABSTOP | ES_MULTILINE, {133, 40, 60, 14}},
        {DIALOG_EXTENDED, ID_LIST, TEXT("SysListView32"), TEXT(""), WS_TABSTOP | LVS_REPORT, {7, 60, 100, 60}},
        {DIALOG_EXTENDED, ID_GROUP, TEXT("Button"), TEXT(""), BS_GROUPBOX, {110, 60, 83, 60}},
        {DIALOG_STANDARD, ID_CHECK, TEXT("Button"), TEXT("Odd"), WS_TABSTOP, {7, 7, 50, 14}},
        {DIALOG_STANDARD, ID_EDIT, TEXT("Edit"), TEXT(""), WS_TABSTOP | WS_DISABLED, {60, 7, 50, 14}},
        {DIALOG_STANDARD, ID_LIST, TEXT("SysListView32"), TEXT(""), LVS_REPORT, {7, 24, 100, 30}},
    };
    CTracedDialog extended(DIALOG_EXTENDED);
    CTracedDialog standard(DIALOG_STANDARD);
    EXPECT_TRUE(TextOf(extended.m_window) == TEXT("Extended"));
    EXPECT_TRUE(TextOf(standard.m_window) == TEXT("Standard"));
    EXPECT_TRUE(Ask(GetClassNameW, extended.m_window) == TEXT("#32770"));
    HWND window = nullptr;
    for (const auto& row : rows)
    {
        const HWND dialog = row.dialog == DIALOG_EXTENDED ? extended.m_window : standard.m_window;
        window = GetParent(window) == dialog ? GetWindow(window, GW_HWNDNEXT) : GetWindow(dialog, GW_CHILD);
        EXPECT_EQ(GetDlgCtrlID(window), row.id);
        EXPECT_EQ(GetDlgItem(dialog, row.id), window);
        EXPECT_TRUE(Ask(GetClassNameW, window) == row.className) << row.id;
        EXPECT_TRUE(TextOf(window) == row.text) << row.id;
        const DWORD compared = WS_CHILD | WS_VISIBLE | WS_DISABLED | WS_GROUP | WS_TABSTOP | 0xF;
        EXPECT_EQ(GetWindowLongPtrW(window, GWL_STYLE) & compared, row.style | WS_CHILD | WS_VISIBLE) << row.id;

        RECT expected = row.place;
        RECT actual = {};
        EXPECT_TRUE(MapDialogRect(dialog, &expected) && GetWindowRect(window, &actual));
        MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&actual), 2);
        EXPECT_EQ(actual.left, expected.left) << row.id;
        EXPECT_EQ(actual.top, expected.top) << row.id;
        EXPECT_EQ(actual.right - actual.left, expected.right) << row.id;
        // A combo box is as high as its closed field.
        EXPECT_TRUE(actual.bottom - actual.top == expected.bottom || row.className == TEXT("ComboBox")) << row.id;
    }
    EXPECT_EQ(GetWindow(window, GW_HWNDNEXT), nullptr);
}

TEST(Dialog, ShowsWhenAskedAndHidesAtItsEnd)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    EXPECT_EQ(dialog.TakeLog(), "init 1;"); // the first tab stop
    EXPECT_FALSE(IsWindowVisible(dialog.m_window));
    EXPECT_FALSE(IsWindowVisible(dialog.Item(IDOK))); // shown in a dialog that is not
    EXPECT_FALSE(ShowWindow(dialog.m_window, SW_SHOW));
    EXPECT_TRUE(IsWindowVisible(dialog.Item(IDOK)));
    EXPECT_FALSE(EndDialog(dialog.Item(IDOK), IDOK));
    EXPECT_TRUE(EndDialog(dialog.m_window, IDOK));
    EXPECT_TRUE(IsWindow(dialog.m_window));
    EXPECT_FALSE(ShowWindow(dialog.m_window, SW_SHOW));
    EXPECT_TRUE(ShowWindow(dialog.m_window, SW_HIDE));
    SendMessageW(dialog.m_window, WM_CLOSE, 0, 0); // acts as Cancel
    EXPECT_EQ(dialog.TakeLog(), "command 0 of 2;");

    CTracedDialog shown(DIALOG_SHOWN);
    EXPECT_TRUE(IsWindowVisible(shown.m_window));
    EXPECT_FALSE(IsWindowVisible(shown.Item(ID_CHECK)));
}

TEST(Dialog, FailsAsAWholeWhenAPartIsMissing)
{
    EXPECT_EQ(CTracedDialog(DIALOG_UNKNOWN_CLASS).m_window, nullptr);
    EXPECT_EQ(CTracedDialog(DIALOG_STANDARD, reinterpret_cast<HWND>(0x7FFFFFF0)).m_window, nullptr);
    EXPECT_EQ(CTracedDialog(999).m_window, nullptr);
}

// Children are there in WM_DESTROY and gone in WM_NCDESTROY; windows that it owns and child dialogs go with it.
TEST(Dialog, DestructionReachesEverythingOfIt)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    CTracedDialog child(DIALOG_CHILD, dialog.m_window);
    CTracedDialog owned(DIALOG_STANDARD, dialog.m_window);
    const HWND control = dialog.Item(IDOK);
    SendMessageW(dialog.m_window, WM_CLOSE, 0, 0); // a posted message, which must not arrive any more
    EXPECT_EQ(GetParent(owned.m_window), dialog.m_window);
    EXPECT_TRUE(DestroyWindow(dialog.m_window));
    EXPECT_EQ(dialog.TakeLog(), "init 1;destroy with children;gone;");
    for (CTracedDialog* pDialog : {&child, &owned})
        EXPECT_EQ(pDialog->TakeLog(), "init 201;destroy with children;gone;");
    for (const HWND window : {dialog.m_window, child.m_window, owned.m_window, control})
        EXPECT_FALSE(IsWindow(window));

    SetLastError(ERROR_SUCCESS);
    EXPECT_FALSE(DestroyWindow(dialog.m_window));
    // Wine does not tell a window that is none from one that is another thread's.
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(IsWine() ? ERROR_ACCESS_DENIED : ERROR_INVALID_WINDOW_HANDLE));
    EXPECT_EQ(SendMessageW(control, BM_CLICK, 0, 0), 0);
    EXPECT_EQ(GetDlgItem(dialog.m_window, IDOK), nullptr);
    EXPECT_TRUE(TextOf(control).empty());
    EXPECT_EQ(GetWindowLongPtrW(dialog.m_window, DWLP_USER), 0);
}

// The result of an answered message is DWLP_MSGRESULT; without an answer it is the class's own.
TEST(Dialog, ResultComesFromTheDialogsData)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    NMHDR header = {dialog.Item(ID_LIST), ID_LIST, static_cast<UINT>(NM_CLICK)};
    for (const INT_PTR answer : {TRUE, 7, FALSE})
    {
        dialog.m_answer = [&dialog, answer](UINT message, WPARAM)
        {
            EXPECT_EQ(GetWindowLongPtrW(dialog.m_window, DWLP_MSGRESULT), 0); // no left-over
            SetWindowLongPtrW(dialog.m_window, DWLP_MSGRESULT, -42);
            return message == WM_NOTIFY ? answer : FALSE;
        };
        EXPECT_EQ(SendMessageW(dialog.m_window, WM_NOTIFY, ID_LIST, reinterpret_cast<LPARAM>(&header)),
                  answer == FALSE ? 0 : -42);
    }
    dialog.m_answer = {};
}

TEST(Controls, ButtonsToggleAndTellTheDialog)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    const struct
    {
        int id;
        std::vector<LRESULT> checks; // after each click
        LRESULT highest;             // what BM_SETCHECK with 5 sets
    } rows[] = {
        {ID_CHECK, {1, 0, 1}, 1}, {ID_THREE_STATES, {1, 2, 0}, 2}, {ID_MANUAL_CHECK, {0, 0}, 1}, {IDOK, {0, 0}, 0}};
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

TEST(Controls, EditTellsOfItsTextAndCutsItToTheBuffer)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    const HWND edit = dialog.Item(ID_EDIT);
    dialog.TakeLog();
    EXPECT_TRUE(SetWindowTextW(dialog.Item(ID_MULTILINE_EDIT), TEXT("two")));
    EXPECT_EQ(dialog.TakeLog(), ""); // the multi-line field tells only of what its user does
    EXPECT_TRUE(SetWindowTextW(edit, TEXT("gr\u00FC\xD83D\xDE00")));
    EXPECT_EQ(dialog.TakeLog(), "command 1024 of 206;command 768 of 206;");
    EXPECT_EQ(GetWindowTextLengthW(edit), 5);
    WCHAR buffer[] = TEXT("######");
    EXPECT_EQ(GetWindowTextW(edit, buffer, 0), 0);
    EXPECT_EQ(GetWindowTextW(edit, buffer, 4), 3);
    EXPECT_TRUE(WString(buffer, 6) == WString(TEXT("gr\u00FC\0##"), 6));
    EXPECT_TRUE(TextOf(edit) == TEXT("gr\u00FC\xD83D\xDE00"));
    EXPECT_TRUE(SetWindowTextW(edit, nullptr));
    EXPECT_EQ(GetWindowTextLengthW(edit), 0);
}

TEST(Controls, ComboBoxKeepsItemsDataAndSelection)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    for (const int id : {ID_LIST_COMBO, ID_SORTED_COMBO})
    {
        EXPECT_EQ(dialog.Send(id, CB_GETCURSEL), CB_ERR);
        EXPECT_EQ(dialog.Send(id, CB_ADDSTRING, 0, Pointer(TEXT("layer"))), 0);
        dialog.Send(id, CB_SETITEMDATA, 0, 11);
        EXPECT_EQ(dialog.Send(id, CB_SETCURSEL, 0), 0);
        EXPECT_TRUE(TextOf(dialog.Item(id)) == TEXT("layer"));
        // Sorted, the new item stands before the selected one, which stays selected with its data.
        const LRESULT place = dialog.Send(id, CB_ADDSTRING, 0, Pointer(TEXT("\u00C4rea")));
        EXPECT_EQ(place, id == ID_SORTED_COMBO ? 0 : 1);
        EXPECT_EQ(dialog.Send(id, CB_GETCURSEL), 1 - place);
        EXPECT_EQ(dialog.Send(id, CB_GETITEMDATA, static_cast<WPARAM>(1 - place)), 11);
        EXPECT_EQ(dialog.Send(id, CB_GETITEMDATA, static_cast<WPARAM>(place)), 0);

        for (const int message : {CB_SETCURSEL, CB_GETITEMDATA, CB_SETITEMDATA, CB_GETLBTEXT, CB_GETLBTEXTLEN})
            for (const int index : {2, -1}) // the last but not the first takes the selection away
                EXPECT_EQ(dialog.Send(id, static_cast<UINT>(message), static_cast<WPARAM>(index)), CB_ERR) << message;
        EXPECT_EQ(dialog.Send(id, CB_GETCURSEL), CB_ERR);
        EXPECT_EQ(GetWindowTextLengthW(dialog.Item(id)), 0);

        dialog.Send(id, CB_SETCURSEL, 1);
        dialog.TakeLog();
        const bool takesText = id == ID_SORTED_COMBO; // the other has no edit field
        EXPECT_EQ(dialog.Send(id, WM_SETTEXT, 0, Pointer(TEXT("free"))), takesText ? TRUE : CB_ERR);
        EXPECT_TRUE(TextOf(dialog.Item(id)) == (takesText ? TEXT("free") : TEXT("\u00C4rea")));
        EXPECT_EQ(dialog.TakeLog(), "");

        dialog.Send(id, CB_RESETCONTENT);
        EXPECT_EQ(dialog.Send(id, CB_GETCOUNT), 0);
        EXPECT_EQ(dialog.Send(id, CB_GETCURSEL), CB_ERR);
        EXPECT_TRUE(TextOf(dialog.Item(id)).empty());
    }
}

TEST(Controls, ComboBoxSortsByTheAlphabet)
{
    CTracedDialog dialog(DIALOG_EXTENDED);
    const LPCWSTR sorted[] = {TEXT(""),     TEXT("area"),      TEXT("\u00C4rger"),
                              TEXT("Body"), TEXT("body part"), TEXT("Zone")};
    for (const int i : {5, 1, 4, 0, 3, 2})
        dialog.Send(ID_SORTED_COMBO, CB_ADDSTRING, 0, Pointer(sorted[i]));
    for (size_t i = 0; i < std::size(sorted); ++i)
    {
        WCHAR buffer[20];
        const LRESULT length = dialog.Send(ID_SORTED_COMBO, CB_GETLBTEXT, i, reinterpret_cast<LPARAM>(buffer));
        EXPECT_EQ(length, dialog.Send(ID_SORTED_COMBO, CB_GETLBTEXTLEN, i));
        EXPECT_TRUE(WString(sorted[i]) == buffer) << "at " << i;
    }
}
