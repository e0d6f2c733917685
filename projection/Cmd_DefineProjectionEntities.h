#pragma once
#include "commands/ICommand.h"
#include "platform/host/NOI_BasisLine2D.h"

#include <vector>

class CDlgDefineProjections;

// One of each for the process, not for the command object; internal to the module.
extern CDlgDefineProjections* s_pDlgDefineProjections; ///< the dialog of the running command; null when there is none
extern int s_bFirstInputPending;                       ///< not 0: the next mouse message starts the entity selection

namespace VLT
{
/// Opens the dialog "Define projection/intersection", adds trial lines to the active drawing, and on the first mouse
/// message starts the host's entity selection. OK and Cancel of the dialog do not end it; Complete does.
class CCommand_DefineProjectionEntities final : public ICommand
{
public:
    /// "CMD_DEFINE_PROJ_ENTITIES". Asking makes the next mouse message count as the first one again; nothing else does.
    WString GetId() override;
    /// Leaves a dialog of an earlier Run without Complete as it is: it cannot be reached any more.
    void Run(CCoordinateInput* pInput) override;
    /// Every message counts, whatever its number. pInput must not be null.
    void ProcessMouseMsg(int message, const CStdPoint2D& point, strAddMsgInfo* pInfo,
                         CCoordinateInput* pInput) override;
    /// Takes the dialog down without saving; nothing happens when there is none.
    void Complete(CCoordinateInput* pInput) override;
    int RequiresProcessMouseMsg() override;
};
} // namespace VLT

/// Adds ten vertical lines of length 20 to the active drawing, from (100, 100) to the right at a distance of 10, and
/// appends each to lines, which holds a reference of its own. Throws nothing: a failure is shown in the host's modal
/// information dialog, and what was added before it stays in the drawing and in lines.
void MakeTrialLines(std::vector<CNOI_SmartPtr<CNOI_BasisLine2D>>& lines);

/// Gives the object the style of the trial lines: blue, stroke and pen 1, layer 0. Throws what the host throws.
void ApplyTrialLineStyle(const CNOI_SmartPtr<CNOI_DBObject>& pObject);
