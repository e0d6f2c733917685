#pragma once
/// Application object, module state, windows, dialogs and message maps: a thin layer over the Windows calls. Only what
/// the module uses, under the original names.
///
/// A window object and its window live apart. An object may have no window yet or no longer, and then its operations
/// give FALSE or do nothing. The system or the host may destroy a window at any time: the object learns of it and
/// stays. All windows of a module belong to one thread.
#include <afx.h>

#include <unordered_map>

class CCmdTarget;
class CDataExchange;
class CWinApp;
class CWnd;

/// What one binary that carries this framework keeps of itself.
class AFX_MODULE_STATE
{
public:
    AFX_MODULE_STATE();
    /// At unload. A dialog that is still open stays open, and takes no more messages to code that is gone.
    ~AFX_MODULE_STATE();
    AFX_MODULE_STATE(const AFX_MODULE_STATE&) = delete;
    AFX_MODULE_STATE& operator=(const AFX_MODULE_STATE&) = delete;

    CWinApp* m_pCurrentWinApp = nullptr; ///< null until the application object is made
    HINSTANCE m_hCurrentInstanceHandle;
    HINSTANCE m_hCurrentResourceHandle;        ///< where templates and texts are looked for
    std::unordered_map<HWND, CWnd*> m_mapHWND; ///< the windows that have an object; objects are not owned
};

/// The state of the binary that this code is linked into. It is made when it is first asked for, so whoever asks for it
/// in a constructor is destroyed before it.
AFX_MODULE_STATE* AfxGetStaticModuleState();
/// The state in force on this thread: the one that was switched to last, or the binary's own.
AFX_MODULE_STATE* AfxGetModuleState();
CWinApp* AfxGetApp(); ///< null if the binary has no application object
HINSTANCE AfxGetInstanceHandle();
HINSTANCE AfxGetResourceHandle();

/// Puts a module's state in force on this thread for as long as the object lives.
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
using AFX_PMSG_NOTIFY = void (CCmdTarget::*)(NMHDR*, LRESULT*);

/// How the handler of an entry is called.
enum AfxSig
{
    AfxSig_end,    ///< behind the last entry
    AfxSigCmd_v,   ///< void ()
    AfxSigNotify_v ///< void (NMHDR*, LRESULT*)
};

union AFX_HANDLER
{
    AFX_HANDLER(AFX_PMSG pfnHandler) : pfn(pfnHandler) {}
    AFX_HANDLER(AFX_PMSG_NOTIFY pfnHandler) : pfnNotify(pfnHandler) {}

    AFX_PMSG pfn;              ///< for AfxSigCmd_v
    AFX_PMSG_NOTIFY pfnNotify; ///< for AfxSigNotify_v
};

struct AFX_MSGMAP_ENTRY
{
    UINT nMessage; ///< WM_COMMAND or WM_NOTIFY
    UINT nCode;    ///< the notification, such as BN_CLICKED; negative ones as unsigned
    UINT nID;      ///< the control's identifier
    UINT nLastID;  ///< the same: entries for a range of controls are not used
    UINT_PTR nSig; ///< an AfxSig
    AFX_HANDLER handler;
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
/// A command that comes from no control in particular has the code 0 as well.
#define ON_COMMAND(id, handler) ON_CONTROL(0, id, handler)
#define ON_NOTIFY(code, id, handler)                                                                                   \
    {WM_NOTIFY, static_cast<UINT>(code), id, id, AfxSigNotify_v, static_cast<AFX_PMSG_NOTIFY>(handler)},

/// Something with a message map. A map is searched from its first entry on, then the map of the base class; the first
/// entry that fits decides.
class CCmdTarget : public CObject
{
    DECLARE_DYNAMIC(CCmdTarget)
protected:
    /// Calls the handler for a WM_COMMAND or WM_NOTIFY of a control. pNotify and pResult are for the latter's handler.
    /// FALSE if no entry fits. The object may be gone afterwards, if the handler deleted it.
    BOOL DispatchControlMessage(UINT message, UINT code, UINT id, NMHDR* pNotify, LRESULT* pResult);

    static const AFX_MSGMAP* GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;
};

/// The application object of a module; there is at most one. Its constructor makes the module's state known to it.
class CWinApp : public CCmdTarget
{
    DECLARE_DYNAMIC(CWinApp)
public:
    /// The name is borrowed; null stands for none.
    explicit CWinApp(LPCTSTR lpszAppName = nullptr);
    ~CWinApp() override;

    virtual BOOL InitInstance(); ///< at load; FALSE refuses it
    virtual int ExitInstance();  ///< at unload

    const LPCTSTR m_pszAppName;

protected:
    DECLARE_MESSAGE_MAP()
};

/// The object of a window.
class CWnd : public CCmdTarget
{
    DECLARE_DYNAMIC(CWnd)
public:
    CWnd() = default;
    /// Leaves the window as it is: a control's window belongs to the dialog that it stands in.
    ~CWnd() override;

    HWND GetSafeHwnd() const { return m_hWnd; }
    /// Makes this the object of the window, in place of one that it had. FALSE for null or if this has a window.
    BOOL Attach(HWND hWndNew);
    /// Parts object and window; returns the window, null if there was none.
    HWND Detach();
    /// The object of a window in this module, or null.
    static CWnd* FromHandlePermanent(HWND hWnd);

    /// As ::ShowWindow: whether the window was visible before.
    BOOL ShowWindow(int nCmdShow);
    /// FALSE without a window, so a second call is harmless. The object stays.
    virtual BOOL DestroyWindow();
    /// Carries values from the controls to the members (TRUE) or back (FALSE). FALSE if there is no window or a control
    /// is missing; the values before that one have been carried.
    BOOL UpdateData(BOOL bSaveAndValidate = TRUE);

    HWND m_hWnd = nullptr;

protected:
    virtual void DoDataExchange(CDataExchange* pDX);
    /// WM_COMMAND and WM_NOTIFY, sent to the message map. FALSE if nothing there takes them.
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);
    virtual BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* pResult);

    DECLARE_MESSAGE_MAP()
};

/// A modeless dialog made from a template resource.
class CDialog : public CWnd
{
    DECLARE_DYNAMIC(CDialog)
public:
    CDialog() = default;
    /// Template and parent are those of a modal run, which this layer does not have. Create has its own.
    explicit CDialog(UINT nIDTemplate, CWnd* pParentWnd = nullptr);
    /// Destroys a window that still lives, without a message to the object.
    ~CDialog() override;

    /// Makes the window from the template in AfxGetResourceHandle() and runs OnInitDialog before it returns. FALSE if
    /// there is no such template, a control cannot be made, or the object has a window already. What OnInitDialog
    /// throws comes out here; the window is there then. OnInitDialog may delete the object.
    virtual BOOL Create(LPCTSTR lpszTemplateName, CWnd* pParentWnd = nullptr);
    virtual BOOL Create(UINT nIDTemplate, CWnd* pParentWnd = nullptr);
    /// Takes a modeless dialog from the screen. Neither the window nor the object is destroyed.
    void EndDialog(int nResult);

protected:
    /// Fills the controls from the members. FALSE if the focus has been set, else the system gives it to the first
    /// control that takes it.
    virtual BOOL OnInitDialog();
    virtual void OnOK();     ///< takes the values over, then ends the dialog with IDOK
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
    /// The new item's index; CB_ERR or CB_ERRSPACE (negative) on failure. The text is copied.
    int AddString(LPCTSTR lpszString)
    {
        return static_cast<int>(::SendMessageW(m_hWnd, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(lpszString)));
    }
    /// CB_ERR for an index without an item.
    int SetItemData(int nIndex, DWORD_PTR dwItemData)
    {
        return static_cast<int>(
            ::SendMessageW(m_hWnd, CB_SETITEMDATA, static_cast<WPARAM>(nIndex), static_cast<LPARAM>(dwItemData)));
    }
    /// The index, or CB_ERR if there is no such item. Sends no CBN_SELCHANGE.
    int SetCurSel(int nSelect)
    {
        return static_cast<int>(::SendMessageW(m_hWnd, CB_SETCURSEL, static_cast<WPARAM>(nSelect), 0));
    }
};
