#include "projection/Cmd_DefineProjectionEntities.h"

#include "platform/host/CoordinateInput.h"
#include "platform/host/InteractorMessage.h"
#include "platform/host/ObjectSelectGeneral.h"
#include "projection/DlgDefineProjections.h"
#include "projection/TrialGeometry.h"
#include "resources/resource.h"

#include <memory>
#include <utility>

CDlgDefineProjections* s_pDlgDefineProjections = nullptr;
int s_bFirstInputPending = 1;

namespace
{
// The host's interface has no names for these.
constexpr auto StartInputFunction = static_cast<eInteractorMessage>(21);
constexpr auto SelectAnything = static_cast<eObjectSelectType>(0);

void StartEntitySelection()
{
    auto* pSelection = new CObjectSelectGeneral(TEXT("Select an entity"), SelectAnything, true, false);
    // From here on the selection is the host's.
    Allplan::IFW::Framework::SendInteractorMessage(StartInputFunction, reinterpret_cast<__int64>(pSelection));
}
} // namespace

namespace VLT
{
WString CCommand_DefineProjectionEntities::GetId()
{
    s_bFirstInputPending = 1;
    return TEXT("CMD_DEFINE_PROJ_ENTITIES");
}

void CCommand_DefineProjectionEntities::Run(CCoordinateInput*)
{
    AFX_MAINTAIN_STATE2 moduleState(AfxGetStaticModuleState()); // the dialog's template is the module's, not the host's
    s_pDlgDefineProjections = new CDlgDefineProjections;
    s_pDlgDefineProjections->Create(IDD_DEFINE_PROJECTIONS, nullptr);
    if (s_pDlgDefineProjections != nullptr) // the configuration handler may have ended the command already
        s_pDlgDefineProjections->ShowWindow(SW_SHOW);

    std::vector<CNOI_SmartPtr<CNOI_BasisLine2D>> lines; // the drawing keeps them, too
    MakeTrialLines(lines);
}

void CCommand_DefineProjectionEntities::ProcessMouseMsg(int, const CStdPoint2D&, strAddMsgInfo*,
                                                        CCoordinateInput* pInput)
{
    if (s_bFirstInputPending == 0)
    {
        pInput->SetInputMode(pInput->eInputModeLaterMessages);
        return;
    }
    pInput->SetInputMode(pInput->eInputModeFirstMessage);
    StartEntitySelection();
    s_bFirstInputPending = 0; // last: a message that the host sends while it starts the selection is a first one, too
}

void CCommand_DefineProjectionEntities::Complete(CCoordinateInput*)
{
    // Taken first: the window's messages may lead to a second Complete.
    const std::unique_ptr<CDlgDefineProjections> pDialog(std::exchange(s_pDlgDefineProjections, nullptr));
    if (!pDialog)
        return;
    pDialog->ShowWindow(SW_HIDE);
    pDialog->DestroyWindow();
}

int CCommand_DefineProjectionEntities::RequiresProcessMouseMsg()
{
    return 1;
}
} // namespace VLT
