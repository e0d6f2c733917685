#pragma once
#include "commands/ICommand.h"
#include <NOI_BasisLine2D.h>

#include <vector>

class CDlgDefineProjections;

// The command's state: one per process, not per command object.
extern CDlgDefineProjections* s_pDlgDefineProjections; ///< the dialog of the running command, or null
extern int s_bFirstInputPending;                       ///< nonzero: the next mouse message starts the entity selection

namespace VLT
{
/// Opens the dialog "Define projection/intersection", adds trial lines to the active drawing, and on the first mouse
/// message starts the host's entity selection. OK and Cancel of the dialog do not end it; Complete does.
class CCommand_DefineProjectionEntities final : public ICommand
{
public:
    /// Returns "CMD_DEFINE_PROJ_ENTITIES". As a side effect the next mouse message counts as the first one again;
    /// nothing else has this effect.
    WString GetId() override;
    /// Opens the dialog, then draws the trial lines. Without Complete after an earlier Run, the earlier dialog stays
    /// open and nothing reaches it any more. pInput is not used.
    void Run(CCoordinateInput* pInput) override;
    /// Sets the host's input mode on pInput, which must not be null. The first message also starts the entity
    /// selection. The other arguments are not used.
    void ProcessMouseMsg(int message, const CStdPoint2D& point, strAddMsgInfo* pInfo,
                         CCoordinateInput* pInput) override;
    /// Destroys the dialog without saving. Without a dialog it does nothing. pInput is not used.
    void Complete(CCoordinateInput* pInput) override;
    /// Always 1.
    int RequiresProcessMouseMsg() override;
};
} // namespace VLT

/// Adds ten vertical lines of length 20 to the active drawing, the first at (100, 100), the others to its right at a
/// distance of 10, in the drawing's units. Appends each line to lines, with a reference of its own. Throws nothing but
/// failures of the report itself: a failure is shown in the host's modal information dialog, and the lines added before
/// it stay in the drawing and in lines.
void MakeTrialLines(std::vector<CNOI_SmartPtr<CNOI_BasisLine2D>>& lines);

/// Gives the object the style of the trial lines: blue, stroke 1, pen 1, layer 0. Throws what the host throws.
void ApplyTrialLineStyle(const CNOI_SmartPtr<CNOI_DBObject>& pObject);
