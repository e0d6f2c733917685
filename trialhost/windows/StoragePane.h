#pragma once
#include "trialhost/model/StorageContents.h"
#include "trialhost/windows/Window.h"

/// Shows what the storage file holds: identifiers on the left; on the right the text of the selected one, or the
/// definitions of PRJ_REGISTRY as a table. Follows the file, whoever changes it.
class CStoragePane : public CTrialWindow
{
public:
    CStoragePane(HWND parent, const WString& path);

    void SetDpi(UINT dpi, HFONT font);
    /// Shows another file.
    void Open(const WString& path);
    /// Reads the file again, even if it does not look changed.
    void Reload();

    HWND GetIdentifierList() const { return m_identifiers; }
    HWND GetDefinitionList() const { return m_definitions; }
    HWND GetTextField() const { return m_text; }

protected:
    LRESULT HandleMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

private:
    void Update(bool isForced);
    void ShowIdentifiers();
    void ShowSelected();
    void ShowDefinitions(const std::vector<CDefinitionRow>& rows);
    void Arrange();

    CStorageContents m_contents;
    WString m_selectedId;
    HWND m_identifiers;
    HWND m_definitions;
    HWND m_text;
    UINT m_dpi = 96;
};
