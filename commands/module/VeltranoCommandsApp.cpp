#include "commands/module/VeltranoCommandsApp.h"

BEGIN_MESSAGE_MAP(CVeltranoCommandsApp, CWinApp)
END_MESSAGE_MAP()

BOOL CVeltranoCommandsApp::InitInstance()
{
    CWinApp::InitInstance();
    return TRUE;
}
