#pragma once
/// Windows, dialogs and controls without a screen, under their Windows names. A window keeps what the messages below
/// read and write, and answers them as the real one does; it draws nothing and knows neither mouse nor keyboard.
/// All of it belongs to one thread, the user interface's. A handle is never given out twice. Calls with a handle of no
/// window fail with ERROR_INVALID_WINDOW_HANDLE.
#include "platform/win32/native/types.h"

using DLGPROC = INT_PTR(CALLBACK*)(HWND, UINT, WPARAM, LPARAM);

struct POINT
{
    LONG x;
    LONG y;
};
struct RECT
{
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};
struct MSG
{
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};
struct NMHDR
{
    HWND hwndFrom;
    UINT_PTR idFrom;
    UINT code;
};
struct INITCOMMONCONTROLSEX
{
    DWORD dwSize;
    DWORD dwICC;
};
using LPNMHDR = NMHDR*;

// The constants have the types that they have on Windows, so that what compiles here compiles there.
constexpr int WM_DESTROY = 0x0002;
constexpr int WM_SETTEXT = 0x000C;
constexpr int WM_GETTEXT = 0x000D;
constexpr int WM_GETTEXTLENGTH = 0x000E;
constexpr int WM_CLOSE = 0x0010;
constexpr int WM_NOTIFY = 0x004E;
constexpr int WM_NCDESTROY = 0x0082;
constexpr int WM_INITDIALOG = 0x0110;
constexpr int WM_COMMAND = 0x0111;
constexpr int WM_USER = 0x0400;

constexpr LONG WS_OVERLAPPED = 0x00000000;
constexpr DWORD WS_POPUP = 0x80000000;
constexpr LONG WS_CHILD = 0x40000000;
constexpr LONG WS_VISIBLE = 0x10000000;
constexpr LONG WS_DISABLED = 0x08000000;
constexpr LONG WS_CAPTION = 0x00C00000;
constexpr LONG WS_BORDER = 0x00800000;
constexpr LONG WS_VSCROLL = 0x00200000;
constexpr LONG WS_SYSMENU = 0x00080000;
constexpr LONG WS_GROUP = 0x00020000;
constexpr LONG WS_TABSTOP = 0x00010000;

constexpr LONG DS_SETFONT = 0x40;
constexpr LONG DS_MODALFRAME = 0x80;
constexpr LONG DS_FIXEDSYS = 0x08;

constexpr LONG SS_LEFT = 0x00;
constexpr LONG ES_MULTILINE = 0x04;
constexpr LONG ES_AUTOHSCROLL = 0x80;

constexpr LONG BS_PUSHBUTTON = 0x0;
constexpr LONG BS_DEFPUSHBUTTON = 0x1;
constexpr LONG BS_CHECKBOX = 0x2;
constexpr LONG BS_AUTOCHECKBOX = 0x3;
constexpr LONG BS_RADIOBUTTON = 0x4;
constexpr LONG BS_3STATE = 0x5;
constexpr LONG BS_AUTO3STATE = 0x6;
constexpr LONG BS_GROUPBOX = 0x7;
constexpr LONG BS_AUTORADIOBUTTON = 0x9;
constexpr LONG BS_TYPEMASK = 0xF;
constexpr int BST_UNCHECKED = 0;
constexpr int BST_CHECKED = 1;
constexpr int BST_INDETERMINATE = 2;
constexpr int BM_GETCHECK = 0x00F0;
constexpr int BM_SETCHECK = 0x00F1;
constexpr int BM_CLICK = 0x00F5;
constexpr int BN_CLICKED = 0;
constexpr int EN_CHANGE = 0x0300;
constexpr int EN_UPDATE = 0x0400;

constexpr LONG CBS_SIMPLE = 0x001;
constexpr LONG CBS_DROPDOWN = 0x002;
constexpr LONG CBS_DROPDOWNLIST = 0x003;
constexpr LONG CBS_SORT = 0x100;
constexpr int CB_OKAY = 0;
constexpr int CB_ERR = -1;
constexpr int CB_ADDSTRING = 0x0143;
constexpr int CB_GETCOUNT = 0x0146;
constexpr int CB_GETCURSEL = 0x0147;
constexpr int CB_GETLBTEXT = 0x0148;
constexpr int CB_GETLBTEXTLEN = 0x0149;
constexpr int CB_RESETCONTENT = 0x014B;
constexpr int CB_SETCURSEL = 0x014E;
constexpr int CB_GETITEMDATA = 0x0150;
constexpr int CB_SETITEMDATA = 0x0151;
constexpr int CBN_SELCHANGE = 1;

constexpr LONG LVS_REPORT = 0x0001;
constexpr LONG LVS_ALIGNLEFT = 0x0800;
constexpr LONG LVS_NOSORTHEADER = 0x8000;
constexpr UINT NM_CLICK = static_cast<UINT>(-2);
constexpr LONG ICC_LISTVIEW_CLASSES = 0x1;
#define WC_LISTVIEWW u"SysListView32"

constexpr int SW_HIDE = 0;
constexpr int SW_SHOWNORMAL = 1;
constexpr int SW_SHOW = 5;
constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;

constexpr int GWLP_ID = -12;
constexpr int GWL_STYLE = -16;
constexpr int GWL_EXSTYLE = -20;
constexpr int GWLP_USERDATA = -21;
constexpr int DWLP_MSGRESULT = 0;
constexpr int DWLP_DLGPROC = 8;
constexpr int DWLP_USER = 16;
constexpr int GW_HWNDNEXT = 2;
constexpr int GW_CHILD = 5;
constexpr int PM_REMOVE = 1;

/// Makes a modeless dialog and its controls from the module's template, a standard or an extended one, and sends it
/// WM_INITDIALOG. parent: its owner, or its parent if the template says WS_CHILD; null for none.
/// The dialog is the caller's until DestroyWindow, or goes with its parent. Null if the template is missing or damaged
/// (ERROR_INVALID_DATA), if a control is of an unknown class (ERROR_CANNOT_FIND_WND_CLASS), or if WM_INITDIALOG
/// destroyed the dialog.
HWND CreateDialogParamW(HINSTANCE module, LPCWSTR pTemplate, HWND parent, DLGPROC pProcedure, LPARAM parameter);
/// Hides a modeless dialog, which lives on. FALSE if the window is no dialog.
BOOL EndDialog(HWND dialog, INT_PTR result);
/// Always TRUE: the classes are known from the start.
BOOL InitCommonControlsEx(const INITCOMMONCONTROLSEX* pClasses);

/// WM_DESTROY goes to the window and then to its children, WM_NCDESTROY to the children and then to the window.
BOOL DestroyWindow(HWND window);
BOOL IsWindow(HWND window);

/// The class's own behaviour, or the dialog procedure's; 0 for what a class does not answer.
LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT SendDlgItemMessageW(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam);
/// Puts the message behind those that wait; it is delivered by the caller's message loop.
BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// Only for all windows, all messages and PM_REMOVE. FALSE if none waits. What waits for a destroyed window is dropped.
BOOL PeekMessageW(MSG* pMessage, HWND window, UINT first, UINT last, UINT remove);
LRESULT DispatchMessageW(const MSG* pMessage);

/// Not 0 if the window was visible before.
BOOL ShowWindow(HWND window, int command);
/// TRUE if the window and all its parents are shown, though none is on a screen.
BOOL IsWindowVisible(HWND window);
/// Remembered, without effect on anything. Returns the window that had the focus, or null.
HWND SetFocus(HWND window);
HWND GetFocus();

/// The parent of a child window, the owner of a popup window.
HWND GetParent(HWND window);
/// The first child with the identifier, or null.
HWND GetDlgItem(HWND dialog, int id);
int GetDlgCtrlID(HWND window);
/// Only GW_CHILD, the first child in the template's order, and GW_HWNDNEXT, the next of a child's siblings; or null.
/// The first top-level window of that class and text; null counts as any.
HWND FindWindowW(LPCWSTR pClassName, LPCWSTR pText);
HWND GetWindow(HWND window, UINT relation);

/// Texts in UTF-16 units. The buffer's size counts the NUL; the result does not.
BOOL SetWindowTextW(HWND window, LPCWSTR pText);
int GetWindowTextW(HWND window, LPWSTR pBuffer, int size);
int GetWindowTextLengthW(HWND window);
/// "#32770" for a dialog.
int GetClassNameW(HWND window, LPWSTR pBuffer, int size);

/// Only for the indexes above; those with D are a dialog's. Setting returns the value before; 0 with
/// ERROR_INVALID_INDEX for an index that the window does not have.
LONG_PTR GetWindowLongPtrW(HWND window, int index);
LONG_PTR SetWindowLongPtrW(HWND window, int index, LONG_PTR value);

/// In pixels of the screen, each of them a dialog unit; windows have no frame here.
BOOL GetWindowRect(HWND window, RECT* pRect);
/// From one window's pixels to another's; null is the screen. Returns how far the points moved, as MAKELONG(x, y).
int MapWindowPoints(HWND from, HWND to, POINT* pPoints, UINT count);
/// From dialog units to pixels, which are the same here.
BOOL MapDialogRect(HWND dialog, RECT* pRect);
