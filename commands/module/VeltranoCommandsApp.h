#pragma once
#include <afxwin.h>

/// The module's application object, required by MFC. There is one, in ModuleObjects.cpp.
class CVeltranoCommandsApp : public CWinApp
{
public:
    CVeltranoCommandsApp() : CWinApp(nullptr) {}
    ~CVeltranoCommandsApp() override = default;

    /// Called by MFC at load. Always TRUE: the module initialises everything on first use.
    BOOL InitInstance() override;

protected:
    DECLARE_MESSAGE_MAP()
};
