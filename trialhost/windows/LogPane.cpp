#include "trialhost/windows/LogPane.h"

#include "trialhost/Format.h"
#include "trialhost/windows/ListView.h"

#include <windowsx.h>

namespace
{
constexpr int s_listId = 1;

WString TextOf(const CLoggedCall& call, int column)
{
    switch (column)
    {
    case 0:
        return Fixed(call.start, 3);
    case 1:
        return WString(4 * static_cast<size_t>(call.depth), TEXT(' ')) + call.call;
    case 2:
        return call.state == CLoggedCall::eState::Running ? TEXT("...") : call.result;
    default:
        return call.state == CLoggedCall::eState::Ended ? Fixed(call.duration, 3) : WString();
    }
}
} // namespace

CLogPane::CLogPane(HWND parent, CCallLog& log) : m_log(log)
{
    Create(TEXT("TrialHostLog"), TEXT("Log"), WS_CHILD | WS_VISIBLE, WS_EX_CONTROLPARENT, parent);
    m_list = CreateReportList(GetHandle(), s_listId, LVS_OWNERDATA);
}

void CLogPane::SetDpi(UINT dpi, HFONT font)
{
    ::SendMessageW(m_list, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
    SetColumns(m_list, {TEXT("Time (ms)"), TEXT("Call"), TEXT("Result"), TEXT("Duration (ms)")},
               {ScaleLength(80, dpi), ScaleLength(600, dpi), ScaleLength(220, dpi), ScaleLength(95, dpi)});
}

void CLogPane::Refresh()
{
    if (m_log.GetCalls().size() != m_shownCalls)
        ShowNewCalls();
    ::InvalidateRect(m_list, nullptr, FALSE); // running calls may have ended
}

void CLogPane::ShowNewCalls()
{
    const size_t count = m_log.GetCalls().size();
    const int last = static_cast<int>(m_shownCalls) - 1;
    const bool isAtEnd = last < ListView_GetTopIndex(m_list) + ListView_GetCountPerPage(m_list) || count < m_shownCalls;
    ::SendMessageW(m_list, WM_SETREDRAW, FALSE, 0); // else each step draws
    ::SendMessageW(m_list, LVM_SETITEMCOUNT, count, LVSICF_NOSCROLL);
    ::SendMessageW(m_list, WM_SETREDRAW, TRUE, 0);
    if (isAtEnd && count > 0)
        ListView_EnsureVisible(m_list, static_cast<int>(count) - 1, FALSE);
    m_shownCalls = count;
}

void CLogPane::Copy() const
{
    const bool isAll = ListView_GetSelectedCount(m_list) == 0;
    WString text;
    for (size_t i = 0; i < m_log.GetCalls().size(); ++i)
    {
        if (!isAll && ListView_GetItemState(m_list, static_cast<int>(i), LVIS_SELECTED) == 0)
            continue;
        const CLoggedCall& call = m_log.GetCalls()[i];
        text += FormatBegin(call) + FormatResult(call) + TEXT("\r\n");
    }
    CopyToClipboard(GetHandle(), text);
}

void CLogPane::Clear()
{
    m_log.Clear();
    Refresh();
}

void CLogPane::ShowFirst() const
{
    ListView_EnsureVisible(m_list, 0, FALSE);
}

LRESULT CLogPane::HandleMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_SIZE)
        ::MoveWindow(m_list, 0, 0, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam), TRUE);
    const auto* pHeader = reinterpret_cast<const NMHDR*>(lParam);
    if (message == WM_NOTIFY && pHeader->code == LVN_GETDISPINFOW)
        GiveText(reinterpret_cast<NMLVDISPINFOW*>(lParam)->item);
    return CTrialWindow::HandleMessage(message, wParam, lParam);
}

void CLogPane::GiveText(LVITEMW& item) const
{
    const auto index = static_cast<size_t>(item.iItem);
    if ((item.mask & LVIF_TEXT) != 0 && index < m_log.GetCalls().size())
        ::lstrcpynW(item.pszText, TextOf(m_log.GetCalls()[index], item.iSubItem).c_str(), item.cchTextMax);
}
