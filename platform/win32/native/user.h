#pragma once
/// Windows, dialogs and controls without a screen, under their Windows names. A window stores what the messages below
/// read and write, and answers them as a real one does. It draws nothing and has neither mouse nor keyboard.
/// Everything belongs to one thread, that of the user interface. Handles are never reused. Calls with an invalid window
/// handle fail with ERROR_INVALID_WINDOW_HANDLE.
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

// The constants have the same types as on Windows, so that code that compiles here compiles there.
constexpr int WM_DESTROY = 0x0002;
constexpr int WM_SETTEXT = 0x000C;
constexpr int WM_GETTEXT = 0x000D;
constexpr int WM_GETTEXTLENGTH = 0x000E;
constexpr int WM_CLOSE = 0x0010;
constexpr int WM_NOTIFY = 0x004E;
constexpr int WM_NCDESTROY = 0x0082;
constexpr int WM_INITDIALOG = 0x0110;
constexpr int WM_COMMAND = 0x0111;

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

/// Creates a modeless dialog and its controls from the module's template, standard or extended, and sends it
/// WM_INITDIALOG. parent: the owner, or the parent if the template has WS_CHILD; may be null.
/// The caller owns the dialog until DestroyWindow; it is destroyed with its parent. Returns null if the template is
/// missing or damaged (ERROR_INVALID_DATA), if a control's class is unknown (ERROR_CANNOT_FIND_WND_CLASS), or if
/// WM_INITDIALOG destroyed the dialog.
HWND CreateDialogParamW(HINSTANCE module, LPCWSTR pTemplate, HWND parent, DLGPROC pProcedure, LPARAM parameter);
/// Hides a modeless dialog without destroying it. Returns FALSE if the window is not a dialog.
BOOL EndDialog(HWND dialog, INT_PTR result);
/// Returns TRUE: all classes are always registered.
BOOL InitCommonControlsEx(const INITCOMMONCONTROLSEX* pClasses);

/// Sends WM_DESTROY to the window and then to its children, WM_NCDESTROY to the children and then to the window.
BOOL DestroyWindow(HWND window);
BOOL IsWindow(HWND window);

/// Calls the class's own procedure, or the dialog procedure. Returns 0 for a message that the class does not handle.
LRESULT SendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT SendDlgItemMessageW(HWND dialog, int id, UINT message, WPARAM wParam, LPARAM lParam);
/// Appends the message to the queue, which the caller's message loop delivers.
BOOL PostMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// Supports only all windows, all messages and PM_REMOVE. Returns FALSE if the queue is empty. Messages for a destroyed
/// window are dropped.
BOOL PeekMessageW(MSG* pMessage, HWND window, UINT first, UINT last, UINT remove);
LRESULT DispatchMessageW(const MSG* pMessage);

/// Returns whether the window was visible before.
BOOL ShowWindow(HWND window, int command);
/// Returns TRUE if the window and all its parents have WS_VISIBLE.
BOOL IsWindowVisible(HWND window);
/// Stores the window, without any other effect. Returns the window that had the focus, or null.
HWND SetFocus(HWND window);
HWND GetFocus();

/// Returns the first child with the identifier, or null.
HWND GetDlgItem(HWND dialog, int id);
int GetDlgCtrlID(HWND window);
/// Returns a top-level window of that class and text, or null. A null argument matches any.
HWND FindWindowW(LPCWSTR pClassName, LPCWSTR pText);
/// GW_CHILD: the first child, in the template's order. GW_HWNDNEXT: a child's next sibling. Returns null if there is
/// none; no other relation is supported.
HWND GetWindow(HWND window, UINT relation);

/// Lengths and sizes in UTF-16 units. The buffer's size includes the NUL; the result does not.
BOOL SetWindowTextW(HWND window, LPCWSTR pText);
int GetWindowTextW(HWND window, LPWSTR pBuffer, int size);
int GetWindowTextLengthW(HWND window);

/// Support the indexes above; those that begin with D belong to dialogs. SetWindowLongPtrW returns the value before.
/// Both return 0 with ERROR_INVALID_INDEX for an index that the window does not have.
LONG_PTR GetWindowLongPtrW(HWND window, int index);
LONG_PTR SetWindowLongPtrW(HWND window, int index, LONG_PTR value);

/// In pixels of the screen. One pixel is one dialog unit; windows have no frame.
BOOL GetWindowRect(HWND window, RECT* pRect);
