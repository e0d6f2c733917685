#include "platform/win32/native/window.h"

#include <algorithm>
#include <memory>

#include <unicode/ucol.h>
#include <unicode/ustring.h>

namespace
{
/// Push buttons, check boxes, group boxes; radio buttons without their group behaviour.
class CButton : public CWindow
{
public:
    using CWindow::CWindow;

    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        switch (message)
        {
        case BM_GETCHECK:
            return static_cast<LRESULT>(m_check);
        case BM_SETCHECK:
            m_check = std::min(wParam, HighestCheck());
            return 0;
        case BM_CLICK:
            if (IsAutomatic())
                m_check = (m_check + 1) % (HighestCheck() + 1);
            NotifyParent(BN_CLICKED);
            return 0;
        default:
            return CWindow::HandleMessage(message, wParam, lParam);
        }
    }

private:
    DWORD Type() const { return static_cast<DWORD>(m_longs.at(GWL_STYLE)) & BS_TYPEMASK; }
    bool IsAutomatic() const { return Type() == BS_AUTOCHECKBOX || Type() == BS_AUTO3STATE; }

    WPARAM HighestCheck() const
    {
        switch (Type())
        {
        case BS_CHECKBOX:
        case BS_AUTOCHECKBOX:
        case BS_RADIOBUTTON:
        case BS_AUTORADIOBUTTON:
            return BST_CHECKED;
        case BS_3STATE:
        case BS_AUTO3STATE:
            return BST_INDETERMINATE;
        default:
            return BST_UNCHECKED;
        }
    }

    WPARAM m_check = BST_UNCHECKED;
};

class CEdit : public CWindow
{
public:
    using CWindow::CWindow;

    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        const LRESULT result = CWindow::HandleMessage(message, wParam, lParam);
        if (message == WM_SETTEXT && !HasStyle(ES_MULTILINE)) // a multi-line field reports only the user's changes
        {
            NotifyParent(EN_UPDATE);
            NotifyParent(EN_CHANGE);
        }
        return result;
    }
};

struct CCollatorCloser
{
    void operator()(UCollator* pCollator) const { ucol_close(pCollator); }
};

/// The order of a sorted list: alphabetical, an umlaut next to its letter, without regard to case.
bool StandsBefore(const WString& left, const WString& right)
{
    static const std::unique_ptr<UCollator, CCollatorCloser> s_pCollator = []
    {
        UErrorCode status = U_ZERO_ERROR;
        std::unique_ptr<UCollator, CCollatorCloser> pCollator(ucol_open("en", &status));
        ucol_setStrength(pCollator.get(), UCOL_SECONDARY);
        return pCollator;
    }();
    return ucol_strcoll(s_pCollator.get(), left.data(), static_cast<int32_t>(left.size()), right.data(),
                        static_cast<int32_t>(right.size())) == UCOL_LESS;
}

/// The window's text is that of the edit field or the closed drop-down list.
class CComboBox : public CWindow
{
public:
    using CWindow::CWindow;

    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        switch (message)
        {
        case WM_SETTEXT:
            return HasStyle(CBS_DROPDOWNLIST) ? CB_ERR : CWindow::HandleMessage(message, wParam, lParam);
        case CB_RESETCONTENT:
            m_items.clear();
            Select(m_items.size());
            return CB_OKAY;
        case CB_ADDSTRING:
            return AddString(lParam == 0 ? WString() : WString(reinterpret_cast<LPCWSTR>(lParam)));
        case CB_GETCOUNT:
            return static_cast<LRESULT>(m_items.size());
        case CB_SETCURSEL:
            return Select(wParam);
        case CB_GETCURSEL:
            return m_selected;
        default:
            return HandleItemMessage(message, wParam, lParam);
        }
    }

private:
    struct CItem
    {
        WString text;
        LPARAM data = 0;
    };

    LRESULT HandleItemMessage(UINT message, WPARAM index, LPARAM lParam)
    {
        const bool exists = index < m_items.size();
        switch (message)
        {
        case CB_SETITEMDATA:
            if (exists)
                m_items[index].data = lParam;
            return exists ? CB_OKAY : CB_ERR;
        case CB_GETITEMDATA:
            return exists ? m_items[index].data : CB_ERR;
        case CB_GETLBTEXT: // the message has no size: the caller asks for it with CB_GETLBTEXTLEN
            return exists
                       ? CopyText(m_items[index].text, reinterpret_cast<LPWSTR>(lParam), m_items[index].text.size() + 1)
                       : CB_ERR;
        case CB_GETLBTEXTLEN:
            return exists ? static_cast<LRESULT>(m_items[index].text.size()) : CB_ERR;
        default:
            return CWindow::HandleMessage(message, index, lParam);
        }
    }

    LRESULT AddString(const WString& text)
    {
        const auto place = HasStyle(CBS_SORT) ? std::upper_bound(m_items.begin(), m_items.end(), text,
                                                                 [](const WString& left, const CItem& right)
                                                                 { return StandsBefore(left, right.text); })
                                              : m_items.end();
        const LRESULT index = place - m_items.begin();
        m_items.insert(place, {text});
        if (index <= m_selected)
            ++m_selected; // the same item stays selected
        return index;
    }

    /// An invalid index removes the selection.
    LRESULT Select(WPARAM index)
    {
        const bool exists = index < m_items.size();
        m_selected = exists ? static_cast<LRESULT>(index) : CB_ERR;
        m_text = exists ? m_items[index].text : WString();
        return m_selected;
    }

    std::vector<CItem> m_items;
    LRESULT m_selected = CB_ERR;
};

template <class T>
std::shared_ptr<CWindow> Make(const WString& className, DWORD style, DWORD exStyle, UINT_PTR id)
{
    return std::make_shared<T>(className, style, exStyle, id);
}

/// The first six are in the order of their numbers in templates.
constexpr struct
{
    LPCWSTR pName;
    std::shared_ptr<CWindow> (*pMake)(const WString& className, DWORD style, DWORD exStyle, UINT_PTR id);
} s_classes[] = {
    {u"Button", Make<CButton>},    {u"Edit", Make<CEdit>},        {u"Static", Make<CWindow>},
    {u"ListBox", Make<CWindow>},   {u"ScrollBar", Make<CWindow>}, {u"ComboBox", Make<CComboBox>},
    {WC_LISTVIEWW, Make<CWindow>},
};
} // namespace

std::shared_ptr<CWindow> MakeControl(const WString& className, DWORD style, DWORD exStyle, UINT_PTR id)
{
    for (const auto& row : s_classes)
        if (u_strcasecmp(row.pName, className.c_str(), U_FOLD_CASE_DEFAULT) == 0)
            return row.pMake(row.pName, style, exStyle, id);
    return nullptr;
}

WString ControlClassName(WORD number)
{
    constexpr WORD First = 0x80;
    constexpr WORD Last = 0x85;
    return number < First || number > Last ? WString() : s_classes[number - First].pName;
}
