#pragma once
#include <afxwin.h>

/// The module's application object: the framework's frame, and nothing of the module's own. There is one.
class CVeltranoCommandsApp : public CWinApp
{
public:
    CVeltranoCommandsApp() : CWinApp(nullptr) {}
    ~CVeltranoCommandsApp() override = default;

    /// Called at load. TRUE, whatever the framework's own start gives: all start-up of the module is lazy.
    BOOL InitInstance() override;

protected:
    DECLARE_MESSAGE_MAP()
};
