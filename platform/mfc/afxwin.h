#pragma once
/// Application object, module state, windows, dialogs and message maps: a thin layer over the Windows calls.
///
/// A window object and its window have separate lifetimes. An object without a window returns FALSE or does nothing.
/// The system or the host may destroy a window at any time; the object is told and stays. All windows of a module
/// belong to one thread.
///
/// Different from MFC's:
/// - Only the classes and operations that the module uses.
/// - Windows are not subclassed: an object sees the commands and notifications of a dialog, and no other message.
/// - An exception thrown by OnInitDialog comes out of Create. One thrown by another handler ends that handler.
/// - A message map entry holds its handler in the member handler, and there is no routing to other objects.
#include <afx.h>

#include <unordered_map>

class CCmdTarget;
class CDataExchange;
class CWinApp;
class CWnd;

/// The framework's state of one binary that links it.
class AFX_MODULE_STATE
{
public:
    AFX_MODULE_STATE();
    /// Runs at unload. A dialog that is still open stays open, but no longer calls code that has been unloaded.
    ~AFX_MODULE_STATE();
    AFX_MODULE_STATE(const AFX_MODULE_STATE&) = delete;
    AFX_MODULE_STATE& operator=(const AFX_MODULE_STATE&) = delete;

    CWinApp* m_pCurrentWinApp = nullptr;       ///< null until the application object exists
    HINSTANCE m_hCurrentResourceHandle;        ///< the binary that contains the dialog templates and strings
    std::unordered_map<HWND, CWnd*> m_mapHWND; ///< windows with an object; objects are not owned
};

/// Returns the state of the binary that this code is linked into. The first call creates it, so a static object whose
/// constructor calls this is destroyed before the state.
AFX_MODULE_STATE* AfxGetStaticModuleState();
/// Returns the current state of this thread: the one that was switched to last, or the binary's own.
AFX_MODULE_STATE* AfxGetModuleState();
CWinApp* AfxGetApp(); ///< null if the binary has no application object
HINSTANCE AfxGetResourceHandle();

/// Makes a module's state the current one of this thread for the lifetime of the object.
class AFX_MAINTAIN_STATE2
{
public:
    explicit AFX_MAINTAIN_STATE2(AFX_MODULE_STATE* pModuleState) noexcept;
    ~AFX_MAINTAIN_STATE2();
    AFX_MAINTAIN_STATE2(const AFX_MAINTAIN_STATE2&) = delete;
    AFX_MAINTAIN_STATE2& operator=(const AFX_MAINTAIN_STATE2&) = delete;

private:
    AFX_MODULE_STATE* m_pPrevModuleState;
};

using AFX_PMSG = void (CCmdTarget::*)();

/// The signature of an entry's handler.
enum AfxSig
{
    AfxSig_end,    ///< marks the end of the entries
    AfxSigCmd_v,   ///< void ()
    AfxSigNotify_v ///< void (NMHDR*, LRESULT*)
};

union MessageMapFunctions
{
    MessageMapFunctions(AFX_PMSG pfnHandler) : pfn(pfnHandler) {}
    MessageMapFunctions(void (CCmdTarget::*pfnHandler)(NMHDR*, LRESULT*)) : pfnNotify(pfnHandler) {}

    AFX_PMSG pfn;                                    ///< for AfxSigCmd_v
    void (CCmdTarget::*pfnNotify)(NMHDR*, LRESULT*); ///< for AfxSigNotify_v
};

struct AFX_MSGMAP_ENTRY
{
    UINT nMessage; ///< WM_COMMAND or WM_NOTIFY
    UINT nCode;    ///< the notification, such as BN_CLICKED; negative ones as unsigned
    UINT nID;      ///< the control's identifier
    UINT nLastID;  ///< equal to nID: there are no entries for ranges of controls
    UINT_PTR nSig; ///< an AfxSig
    MessageMapFunctions handler;
};

struct AFX_MSGMAP
{
    const AFX_MSGMAP* (*pfnGetBaseMap)(); ///< null at the root
    const AFX_MSGMAP_ENTRY* lpEntries;
};

#define DECLARE_MESSAGE_MAP()                                                                                          \
protected:                                                                                                             \
    static const AFX_MSGMAP* GetThisMessageMap();                                                                      \
    const AFX_MSGMAP* GetMessageMap() const override;

#define BEGIN_MESSAGE_MAP(class_name, base_class_name)                                                                 \
    const AFX_MSGMAP* class_name::GetMessageMap() const                                                                \
    {                                                                                                                  \
        return GetThisMessageMap();                                                                                    \
    }                                                                                                                  \
    const AFX_MSGMAP* class_name::GetThisMessageMap()                                                                  \
    {                                                                                                                  \
        using TheBaseClass = base_class_name;                                                                          \
        static const AFX_MSGMAP_ENTRY s_entries[] = {

// clang-format off
#define END_MESSAGE_MAP()                                                                                              \
        {0, 0, 0, 0, AfxSig_end, AFX_PMSG()}};                                                                         \
        static const AFX_MSGMAP s_messageMap = {&TheBaseClass::GetThisMessageMap, s_entries};                          \
        return &s_messageMap;                                                                                          \
    }
// clang-format on

#define ON_CONTROL(code, id, handler)                                                                                  \
    {WM_COMMAND, static_cast<WORD>(code), id, id, AfxSigCmd_v, static_cast<AFX_PMSG>(handler)},
#define ON_BN_CLICKED(id, handler) ON_CONTROL(BN_CLICKED, id, handler)
#define ON_CBN_SELCHANGE(id, handler) ON_CONTROL(CBN_SELCHANGE, id, handler)
/// A command that does not come from a control has the code 0, too.
#define ON_COMMAND(id, handler) ON_CONTROL(0, id, handler)
#define ON_NOTIFY(code, id, handler)                                                                                   \
    {WM_NOTIFY, static_cast<UINT>(code), id,                                                                           \
     id,        AfxSigNotify_v,          static_cast<void (CCmdTarget::*)(NMHDR*, LRESULT*)>(handler)},

/// An object with a message map. The entries of its class are searched first, in order, then those of the base class;
/// the first entry that matches is used.
class CCmdTarget : public CObject
{
    DECLARE_DYNAMIC(CCmdTarget)
protected:
    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;

private:
    friend class CWnd;
    /// Calls the handler for a control's WM_COMMAND or WM_NOTIFY. pNotify and pResult go to the handler of a WM_NOTIFY.
    /// Returns FALSE if no entry matches. The handler may delete this object.
    BOOL DispatchControlMessage(UINT message, UINT code, UINT id, NMHDR* pNotify, LRESULT* pResult);
};

/// The application object of a module; there is at most one. Its constructor enters it into the module's state.
class CWinApp : public CCmdTarget
{
    DECLARE_DYNAMIC(CWinApp)
public:
    /// The application's name is not used.
    explicit CWinApp(LPCTSTR lpszAppName = nullptr);
    ~CWinApp() override;

    virtual BOOL InitInstance(); ///< called at load; FALSE makes the load fail
    virtual int ExitInstance();  ///< called at unload

protected:
    DECLARE_MESSAGE_MAP()
};

/// A window.
class CWnd : public CCmdTarget
{
    DECLARE_DYNAMIC(CWnd)
public:
    CWnd() = default;
    /// Does not destroy the window: a control's window belongs to its dialog.
    ~CWnd() override;

    /// Makes this the object of the window; another object loses it. Returns FALSE for null or if this has a window.
    BOOL Attach(HWND hWndNew);
    /// Separates object and window. Returns the window, or null if there was none.
    HWND Detach();
    /// Returns this module's object of the window, or null.
    static CWnd* FromHandlePermanent(HWND hWnd);

    /// Returns whether the window was visible before, as ::ShowWindow does.
    BOOL ShowWindow(int nCmdShow);
    /// Returns FALSE without a window, so a second call does no harm. The object stays.
    virtual BOOL DestroyWindow();
    /// Copies values from the controls to the members (TRUE) or back (FALSE). Returns FALSE without a window or if a
    /// control is missing; the values before that control have been copied.
    BOOL UpdateData(BOOL bSaveAndValidate = TRUE);

    HWND m_hWnd = nullptr;

protected:
    virtual void DoDataExchange(CDataExchange* pDX);
    /// Pass WM_COMMAND and WM_NOTIFY to the message map. Return FALSE if no entry matches.
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* pResult);

    DECLARE_MESSAGE_MAP()
};

/// A modeless dialog created from a template resource.
class CDialog : public CWnd
{
    DECLARE_DYNAMIC(CDialog)
public:
    CDialog() = default;
    /// Template and parent are for DoModal, which this layer does not have. Create takes its own.
    explicit CDialog(UINT nIDTemplate, CWnd* pParentWnd = nullptr);
    /// Destroys a window that still exists, without a message to the object.
    ~CDialog() override;

    /// Creates the window from the template in AfxGetResourceHandle() and calls OnInitDialog before it returns. Returns
    /// FALSE if there is no such template, a control cannot be created, or the object already has a window. An
    /// exception of OnInitDialog comes out of Create; the window exists then. OnInitDialog may delete the object.
    virtual BOOL Create(LPCTSTR lpszTemplateName, CWnd* pParentWnd = nullptr);
    virtual BOOL Create(UINT nIDTemplate, CWnd* pParentWnd = nullptr);
    /// Hides a modeless dialog. Destroys neither the window nor the object.
    void EndDialog(int nResult);

protected:
    /// Fills the controls from the members. Returns FALSE if it has set the focus; otherwise the system gives the focus
    /// to the first control that can take it.
    virtual BOOL OnInitDialog();
    virtual void OnOK();     ///< copies the values to the members, then ends the dialog with IDOK
    virtual void OnCancel(); ///< ends the dialog with IDCANCEL

    DECLARE_MESSAGE_MAP()

private:
    struct CCreation;

    static INT_PTR CALLBACK DialogProc(HWND hWnd, UINT message, WPARAM wParam, LPARAM lParam);
    static INT_PTR InitDialog(HWND hWnd, CCreation& creation);
    INT_PTR HandleMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void ForgetWindows();
};

class CComboBox : public CWnd
{
    DECLARE_DYNAMIC(CComboBox)
public:
    void ResetContent() { ::SendMessageW(m_hWnd, CB_RESETCONTENT, 0, 0); }
    /// Returns the new item's index, or CB_ERR or CB_ERRSPACE (negative) on failure. Copies the text.
    int AddString(LPCTSTR lpszString)
    {
        return static_cast<int>(::SendMessageW(m_hWnd, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(lpszString)));
    }
    /// Returns CB_ERR if there is no item nIndex.
    int SetItemData(int nIndex, DWORD_PTR dwItemData)
    {
        return static_cast<int>(
            ::SendMessageW(m_hWnd, CB_SETITEMDATA, static_cast<WPARAM>(nIndex), static_cast<LPARAM>(dwItemData)));
    }
    /// Returns the index, or CB_ERR if there is no such item. Sends no CBN_SELCHANGE.
    int SetCurSel(int nSelect)
    {
        return static_cast<int>(::SendMessageW(m_hWnd, CB_SETCURSEL, static_cast<WPARAM>(nSelect), 0));
    }
};

#include <afxdd_.h>
