#include "platform/win32/native/kernel.h"
#include "platform/win32/native/resourcereader.h"
#include "platform/win32/native/window.h"

#include <optional>

namespace
{
/// A template's data of the dialog or of one control. The rectangle is in dialog units.
struct CTemplateItem
{
    DWORD style = 0;
    DWORD exStyle = 0;
    RECT rect = {};
    DWORD id = 0;
    CResourceName className;
    WString text;
};

struct CDialogTemplate
{
    CTemplateItem dialog;
    std::vector<CTemplateItem> controls;
};

/// Reads the two binary forms: DLGTEMPLATE, and DLGTEMPLATEEX, which starts with the version 1 and 0xFFFF.
class CTemplateReader
{
public:
    CTemplateReader(const BYTE* pBytes, size_t size) : m_reader(pBytes, size)
    {
        CResourceReader start(pBytes, size);
        m_isExtended = start.ReadWord() == 1 && start.ReadWord() == 0xFFFF;
    }

    /// Empty if the template is damaged.
    std::optional<CDialogTemplate> Read()
    {
        CDialogTemplate result;
        WORD count = 0;
        ReadDialog(result.dialog, count);
        for (; count > 0 && !m_reader.HasFailed(); --count)
            result.controls.push_back(ReadControl());
        if (m_reader.HasFailed())
            return {};
        return result;
    }

private:
    void ReadDialog(CTemplateItem& dialog, WORD& count)
    {
        if (m_isExtended)
            m_reader.Skip(2 * sizeof(WORD)); // version and mark
        ReadStyles(dialog);
        count = m_reader.ReadWord();
        dialog.rect = ReadRect();
        m_reader.ReadName(); // menu
        dialog.className = m_reader.ReadName();
        dialog.text = m_reader.ReadName().text;
        if ((dialog.style & DS_SETFONT) == 0)
            return;
        m_reader.Skip(sizeof(WORD)); // height in points
        if (m_isExtended)
            m_reader.Skip(2 * sizeof(WORD)); // weight; slope and character set
        m_reader.ReadName();                 // face
    }

    CTemplateItem ReadControl()
    {
        m_reader.Align();
        CTemplateItem control;
        ReadStyles(control);
        control.rect = ReadRect();
        control.id = m_isExtended ? m_reader.ReadDword() : m_reader.ReadWord();
        control.className = m_reader.ReadName();
        control.text = m_reader.ReadName().text; // a number refers to a picture: no text
        SkipCreationData();
        return control;
    }

    void ReadStyles(CTemplateItem& item)
    {
        if (!m_isExtended)
        {
            item.style = m_reader.ReadDword();
            item.exStyle = m_reader.ReadDword();
            return;
        }
        m_reader.Skip(sizeof(DWORD)); // help identifier
        item.exStyle = m_reader.ReadDword();
        item.style = m_reader.ReadDword();
    }

    RECT ReadRect()
    {
        RECT rect = {};
        rect.left = m_reader.ReadShort();
        rect.top = m_reader.ReadShort();
        rect.right = rect.left + m_reader.ReadShort();
        rect.bottom = rect.top + m_reader.ReadShort();
        return rect;
    }

    /// The size in the standard form includes itself, the one in the extended form does not.
    void SkipCreationData()
    {
        const WORD size = m_reader.ReadWord();
        const size_t counted = m_isExtended ? 0 : sizeof(WORD);
        if (size > counted)
            m_reader.Skip(size - counted);
    }

    CResourceReader m_reader;
    bool m_isExtended = false;
};

class CDialogWindow : public CWindow
{
public:
    CDialogWindow(const CTemplateItem& item, DLGPROC pProcedure)
        // Becomes visible only after its controls exist.
        : CWindow(u"#32770", item.style & ~static_cast<DWORD>(WS_VISIBLE), item.exStyle, 0)
    {
        m_longs[DWLP_MSGRESULT] = 0;
        m_longs[DWLP_DLGPROC] = reinterpret_cast<LONG_PTR>(pProcedure);
        m_longs[DWLP_USER] = 0;
    }

    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        m_longs[DWLP_MSGRESULT] = 0;
        const auto pProcedure = reinterpret_cast<DLGPROC>(m_longs[DWLP_DLGPROC]);
        const INT_PTR handled = pProcedure == nullptr ? FALSE : pProcedure(m_handle, message, wParam, lParam);
        if (message == WM_INITDIALOG)
            return handled; // for this message the procedure's own result is the answer
        if (handled != FALSE)
            return m_longs[DWLP_MSGRESULT];
        if (message == WM_CLOSE)
            return PressCancel();
        return CWindow::HandleMessage(message, wParam, lParam);
    }

private:
    LRESULT PressCancel()
    {
        PostMessageW(m_handle, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(m_handle, IDCANCEL)));
        return 0;
    }
};

/// Null if the class of a control is unknown.
std::vector<std::shared_ptr<CWindow>> MakeControls(const std::vector<CTemplateItem>& items)
{
    std::vector<std::shared_ptr<CWindow>> controls;
    for (const CTemplateItem& item : items)
    {
        const WString className =
            item.className.number == 0 ? item.className.text : ControlClassName(item.className.number);
        const DWORD style = (item.style & ~WS_POPUP) | WS_CHILD;
        const auto pControl = MakeControl(className, style, item.exStyle, item.id);
        if (!pControl)
            return {};
        pControl->m_text = item.text;
        pControl->m_rect = item.rect;
        controls.push_back(pControl);
    }
    return controls;
}

HWND FirstTabStop(HWND dialog)
{
    HWND control = GetWindow(dialog, GW_CHILD);
    while (control != nullptr)
    {
        const auto pControl = WindowOf(control);
        if (pControl->HasStyle(WS_TABSTOP | WS_VISIBLE) && !pControl->HasStyle(WS_DISABLED))
            return control;
        control = GetWindow(control, GW_HWNDNEXT);
    }
    return nullptr;
}

HWND Failed(DWORD code)
{
    SetLastError(code);
    return nullptr;
}
} // namespace

HWND CreateDialogParamW(HINSTANCE module, LPCWSTR pTemplate, HWND parent, DLGPROC pProcedure, LPARAM parameter)
{
    const HRSRC resource = FindResourceW(module, pTemplate, RT_DIALOG);
    if (resource == nullptr)
        return nullptr;
    CTemplateReader reader(static_cast<const BYTE*>(LockResource(LoadResource(module, resource))),
                           SizeofResource(module, resource));
    const auto dialogTemplate = reader.Read();
    if (!dialogTemplate)
        return Failed(ERROR_INVALID_DATA);
    const auto controls = MakeControls(dialogTemplate->controls);
    // A dialog class of its own would have to be registered, and the stand-in has no call for that.
    if (dialogTemplate->dialog.className != CResourceName() || controls.size() != dialogTemplate->controls.size())
        return Failed(ERROR_CANNOT_FIND_WND_CLASS);
    if (parent != nullptr && !WindowOf(parent))
        return nullptr;

    const auto pDialog = std::make_shared<CDialogWindow>(dialogTemplate->dialog, pProcedure);
    pDialog->m_text = dialogTemplate->dialog.text;
    pDialog->m_rect = dialogTemplate->dialog.rect;
    const HWND dialog = AddWindow(pDialog, parent);
    for (const auto& pControl : controls)
        AddWindow(pControl, dialog);

    const HWND focus = FirstTabStop(dialog);
    if (SendMessageW(dialog, WM_INITDIALOG, reinterpret_cast<WPARAM>(focus), parameter) != FALSE && IsWindow(focus))
        SetFocus(focus);
    if (!IsWindow(dialog))
        return nullptr;
    if ((dialogTemplate->dialog.style & WS_VISIBLE) != 0)
        ShowWindow(dialog, SW_SHOWNORMAL);
    return dialog;
}

BOOL EndDialog(HWND dialog, INT_PTR)
{
    const auto pDialog = std::dynamic_pointer_cast<CDialogWindow>(WindowOf(dialog));
    if (!pDialog)
        return FALSE;
    pDialog->SetStyle(WS_VISIBLE, false);
    return TRUE;
}

BOOL InitCommonControlsEx(const INITCOMMONCONTROLSEX*)
{
    return TRUE;
}
