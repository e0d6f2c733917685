#include "trialhost/windows/StoragePane.h"

#include "trialhost/windows/ListView.h"

#include <algorithm>

namespace
{
constexpr int s_identifiersId = 1;
constexpr int s_definitionsId = 2;
constexpr int s_textId = 3;
constexpr UINT_PTR s_timer = 1;
constexpr UINT s_period = 500; // milliseconds between two looks at the file
constexpr int s_identifierWidth = 135;

void SetItem(HWND list, int row, int column, const WString& text)
{
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.iSubItem = column;
    item.pszText = const_cast<LPWSTR>(text.c_str());
    ::SendMessageW(list, column == 0 ? LVM_INSERTITEMW : LVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
}

/// With the line ends of an edit control.
WString ForEditControl(const WString& text)
{
    WString shown;
    for (const WCHAR unit : text)
        if (unit == TEXT('\n'))
            shown += TEXT("\r\n");
        else if (unit != TEXT('\r'))
            shown += unit;
    return shown;
}
} // namespace

CStoragePane::CStoragePane(HWND parent, const WString& path) : m_contents(path)
{
    Create(TEXT("TrialHostStorage"), TEXT("Storage file"), WS_CHILD | WS_VISIBLE, WS_EX_CONTROLPARENT, parent);
    m_identifiers = CreateReportList(GetHandle(), s_identifiersId, LVS_SINGLESEL);
    m_definitions = CreateReportList(GetHandle(), s_definitionsId, LVS_SINGLESEL);
    m_text = ::CreateWindowExW(
        WS_EX_CLIENTEDGE, WC_EDITW, nullptr, WS_CHILD | WS_TABSTOP | WS_VSCROLL | ES_MULTILINE | ES_READONLY, 0, 0, 0,
        0, GetHandle(), reinterpret_cast<HMENU>(static_cast<INT_PTR>(s_textId)), ::GetModuleHandleW(nullptr), nullptr);
    ::SendMessageW(m_text, EM_SETLIMITTEXT, 0, 0); // no limit
    ::SetTimer(GetHandle(), s_timer, s_period, nullptr);
}

void CStoragePane::SetDpi(UINT dpi, HFONT font)
{
    m_dpi = dpi;
    for (const HWND control : {m_identifiers, m_definitions, m_text})
        ::SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    SetColumns(m_identifiers, {TEXT("Identifier")}, {ScaleLength(s_identifierWidth - 10, dpi)});
    std::vector<int> widths;
    for (const int width : {140, 86, 102, 48, 72, 56, 48}) // as the captions need, and for texts of common length
        widths.push_back(ScaleLength(width, dpi));
    SetColumns(m_definitions, {s_definitionFields.begin(), s_definitionFields.end()}, widths);
    Arrange();
    Update(true);
}

void CStoragePane::Open(const WString& path)
{
    m_contents = CStorageContents(path);
    Update(true);
}

void CStoragePane::Reload()
{
    Update(true);
}

LRESULT CStoragePane::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    const auto* pChange = reinterpret_cast<const NMLISTVIEW*>(lParam);
    if (message == WM_SIZE)
        Arrange();
    else if (message == WM_TIMER)
        Update(false);
    else if (message == WM_NOTIFY && pChange->hdr.idFrom == s_identifiersId && pChange->hdr.code == LVN_ITEMCHANGED &&
             (pChange->uNewState & LVIS_SELECTED) != 0)
    {
        m_selectedId = m_contents.GetRecords()[static_cast<size_t>(pChange->iItem)].id;
        ShowSelected();
    }
    return CTrialWindow::HandleMessage(message, wParam, lParam);
}

void CStoragePane::Update(bool isForced)
{
    if (!m_contents.Update(isForced))
        return;
    ShowIdentifiers();
    ShowSelected();
}

// The selection stays on its identifier, or goes to the first one.
void CStoragePane::ShowIdentifiers()
{
    const auto& records = m_contents.GetRecords();
    const WString selected = m_selectedId; // the list's messages change the member
    ListView_DeleteAllItems(m_identifiers);
    int row = 0;
    int selectedRow = 0;
    for (const auto& record : records)
    {
        if (record.id == selected)
            selectedRow = row;
        SetItem(m_identifiers, row++, 0, record.id);
    }
    ListView_SetItemState(m_identifiers, selectedRow, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
}

void CStoragePane::ShowSelected()
{
    const auto& records = m_contents.GetRecords();
    const auto found =
        std::find_if(records.begin(), records.end(), [this](const auto& record) { return record.id == m_selectedId; });
    const bool isRegistry = found != records.end() && found->id == TEXT("PRJ_REGISTRY");
    ::ShowWindow(m_definitions, isRegistry ? SW_SHOWNA : SW_HIDE);
    ::ShowWindow(m_text, isRegistry ? SW_HIDE : SW_SHOWNA);
    ShowDefinitions(isRegistry ? ReadDefinitions(found->text) : std::vector<CDefinitionRow>());
    ::SetWindowTextW(m_text, ForEditControl(found == records.end() ? m_contents.GetErrorText() : found->text).c_str());
}

void CStoragePane::ShowDefinitions(const std::vector<CDefinitionRow>& rows)
{
    ListView_DeleteAllItems(m_definitions);
    for (size_t row = 0; row < rows.size(); ++row)
        for (size_t column = 0; column < rows[row].size(); ++column)
            SetItem(m_definitions, static_cast<int>(row), static_cast<int>(column), rows[row][column]);
}

void CStoragePane::Arrange()
{
    RECT client;
    ::GetClientRect(GetHandle(), &client);
    const int left = std::min(ScaleLength(s_identifierWidth, m_dpi), static_cast<int>(client.right) / 2);
    ::MoveWindow(m_identifiers, 0, 0, left, client.bottom, TRUE);
    ::MoveWindow(m_definitions, left, 0, client.right - left, client.bottom, TRUE);
    ::MoveWindow(m_text, left, 0, client.right - left, client.bottom, TRUE);
}
