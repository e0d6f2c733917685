#include "trialhost/windows/ListView.h"

#include <cstring>

HWND CreateReportList(HWND parent, int id, DWORD furtherStyle)
{
    const HWND list = ::CreateWindowExW(
        WS_EX_CLIENTEDGE, WC_LISTVIEWW, nullptr,
        WS_CHILD | WS_VISIBLE | WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER | furtherStyle, 0, 0, 0,
        0, parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), ::GetModuleHandleW(nullptr), nullptr);
    ListView_SetExtendedListViewStyle(list, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER);
    return list;
}

void SetColumns(HWND list, const std::vector<WString>& captions, const std::vector<int>& widths)
{
    while (ListView_DeleteColumn(list, 0))
        continue;
    for (size_t i = 0; i < captions.size(); ++i)
    {
        LVCOLUMNW column{};
        column.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_SUBITEM;
        column.cx = widths[i];
        column.iSubItem = static_cast<int>(i);
        column.pszText = const_cast<LPWSTR>(captions[i].c_str());
        ::SendMessageW(list, LVM_INSERTCOLUMNW, i, reinterpret_cast<LPARAM>(&column));
    }
}

bool CopyToClipboard(HWND owner, const WString& text)
{
    if (!::OpenClipboard(owner))
        return false;
    const size_t size = (text.size() + 1) * sizeof(WCHAR);
    const HGLOBAL block = ::GlobalAlloc(GMEM_MOVEABLE, size);
    if (block != nullptr)
    {
        std::memcpy(::GlobalLock(block), text.c_str(), size);
        ::GlobalUnlock(block);
        ::EmptyClipboard();
        if (::SetClipboardData(CF_UNICODETEXT, block) == nullptr)
            ::GlobalFree(block); // the clipboard did not take it over
    }
    ::CloseClipboard();
    return block != nullptr;
}
