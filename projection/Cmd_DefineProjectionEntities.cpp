#include "projection/Cmd_DefineProjectionEntities.h"

#include "projection/DlgDefineProjections.h"
#include "resources/resource.h"
#include <CoordinateInput.h>
#include <InteractorMessage.h>
#include <NOI_RuntimeSystem.h>
#include <ObjectSelectGeneral.h>
#include <ResourceHandleHelper.h>
#include <XMLTreeInfoDlg.h>
#include <afx.h>

#include <boost/exception/exception.hpp>

#include <exception>
#include <memory>
#include <utility>

CDlgDefineProjections* s_pDlgDefineProjections = nullptr;
int s_bFirstInputPending = 1;

namespace
{
// Values of the host's enumerations that have no name there.
constexpr auto StartInputFunction = static_cast<eInteractorMessage>(21);
constexpr auto SelectAnything = static_cast<eObjectSelectType>(0);

void StartEntitySelection()
{
    auto* pSelection = new CObjectSelectGeneral(TEXT("Select an entity"), SelectAnything, true, false);
    // The host owns the selection from now on.
    Allplan::IFW::Framework::SendInteractorMessage(StartInputFunction, reinterpret_cast<__int64>(pSelection));
}

constexpr int LineCount = 10;
constexpr int GridWidth = 100; // lines in a row
constexpr double Origin = 100.0;
constexpr double ColumnPitch = 10.0;
constexpr double RowFactor = 20.0;
constexpr double RowSpacing = 1.1;
constexpr double LineLength = 20.0;

// Named objects because the host takes the components of a colour by reference.
constexpr BYTE s_red = 0;
constexpr BYTE s_green = 128;
constexpr BYTE s_blue = 255;

void SetTrialGeometry(const CNOI_SmartPtr<CNOI_BasisLine2D>& pLine, int index)
{
    const int row = index / GridWidth;
    const int column = index % GridWidth;
    const double x = column * ColumnPitch + Origin;
    const double startY = row * RowFactor * RowSpacing + Origin;
    const double endY = startY + LineLength;

    const auto pGeometry = CNOI_GeoLine2D::CreateObj();
    pGeometry->GetStartPoint()->Set(x, startY);
    pGeometry->GetEndPoint()->Set(x, endY);
    pLine->SetGeometry(pGeometry);
}

void AddTrialLines(const CNOI_SmartPtr<CNOI_IDatabase>& pDatabase, std::vector<CNOI_SmartPtr<CNOI_BasisLine2D>>& lines)
{
    for (int i = 0; i < LineCount; ++i)
    {
        CNOI_SmartPtr<CNOI_BasisLine2D> pLine;
        CNOI_BasisLine2D::CNOI_ClassFactory::createObject(pDatabase, pLine);
        SetTrialGeometry(pLine, i);
        ApplyTrialLineStyle(pLine);
        pDatabase->AddObject(pLine);
        lines.push_back(pLine);
    }
}

/// Closes the database while an exception is on its way out. If closing fails too, the new exception replaces that one,
/// which then must be deleted here.
template <typename Deleter>
void CloseAfterFailure(CNOI_SmartPtr<CNOI_Database>& pDatabase, Deleter deleteReplaced)
{
    try
    {
        CNOI_RuntimeSystem::closeDatabase(pDatabase);
    }
    catch (...)
    {
        deleteReplaced();
        throw;
    }
}

void AddTrialLinesToDrawing(std::vector<CNOI_SmartPtr<CNOI_BasisLine2D>>& lines)
{
    CNOI_SmartPtr<CNOI_Database> pDatabase;
    try
    {
        pDatabase = CNOI_RuntimeSystem::openActiveDatabase();
        AddTrialLines(pDatabase, lines);
    }
    catch (CNOI_AppException* pException)
    {
        CloseAfterFailure(pDatabase, [&] { delete pException; });
        throw;
    }
    catch (CException* pException)
    {
        CloseAfterFailure(pDatabase, [&] { pException->Delete(); });
        throw;
    }
    catch (...)
    {
        CNOI_RuntimeSystem::closeDatabase(pDatabase);
        throw;
    }
    CNOI_RuntimeSystem::closeDatabase(pDatabase);
}

void ShowReport(const WString& report)
{
    const Allplan::IFW::Resources::ResourceHandleHelper resources(TEXT("NemAll_IFW_Controls"));
    CXMLTreeInfoDlg dialog(TEXT("Error"), TEXT("test"), report.c_str());
    dialog.DoModal();
}

/// Returns the report and deletes the exception, so that it is gone before the dialog opens.
WString TakeReport(CNOI_AppException* pException)
{
    const std::unique_ptr<CNOI_AppException> pOwned(pException);
    return pOwned->PrintReport();
}

void ShowForeignReport(CNOI_AppForeignException&& exception)
{
    // A fixed text that identifies these reports; 89 is not the current line.
    exception.Source(TEXT("Cmd_DefineProjectionEntities(89)"));
    ShowReport(exception.PrintReport());
}
} // namespace

void ApplyTrialLineStyle(const CNOI_SmartPtr<CNOI_DBObject>& pObject)
{
    pObject->GetCommonStyle()->Init();
    pObject->GetCommonStyle()->Color()->SetARGB(0, s_red, s_green, s_blue);
    pObject->GetCommonStyle()->Stroke(1);
    pObject->GetCommonStyle()->Pen(1);
    pObject->GetCommonStyle()->Layer(0);
}

void MakeTrialLines(std::vector<CNOI_SmartPtr<CNOI_BasisLine2D>>& lines)
{
    try
    {
        AddTrialLinesToDrawing(lines);
    }
    catch (CNOI_AppException* pException)
    {
        ShowReport(TakeReport(pException));
    }
    catch (CException* pException)
    {
        ShowForeignReport(CNOI_AppForeignException(pException));
    }
    catch (_com_error& error)
    {
        ShowForeignReport(CNOI_AppForeignException(error));
    }
    catch (boost::exception& exception) // before std::exception: Boost's exceptions are often both
    {
        ShowForeignReport(CNOI_AppForeignException(exception));
    }
    catch (std::exception& exception)
    {
        ShowForeignReport(CNOI_AppForeignException(exception));
    }
    catch (...)
    {
        ShowForeignReport(CNOI_AppForeignException());
    }
}

namespace VLT
{
WString CCommand_DefineProjectionEntities::GetId()
{
    s_bFirstInputPending = 1;
    return TEXT("CMD_DEFINE_PROJ_ENTITIES");
}

void CCommand_DefineProjectionEntities::Run(CCoordinateInput*)
{
    AFX_MAINTAIN_STATE2 moduleState(AfxGetStaticModuleState()); // the dialog template is a resource of the module
    s_pDlgDefineProjections = new CDlgDefineProjections;
    s_pDlgDefineProjections->Create(IDD_DEFINE_PROJECTIONS, nullptr);
    if (s_pDlgDefineProjections != nullptr) // the configuration handler may have ended the command already
        s_pDlgDefineProjections->ShowWindow(SW_SHOW);

    std::vector<CNOI_SmartPtr<CNOI_BasisLine2D>> lines; // the drawing holds references too
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
    s_bFirstInputPending = 0; // last: a message that arrives while the selection starts counts as a first one
}

void CCommand_DefineProjectionEntities::Complete(CCoordinateInput*)
{
    // Cleared first: destroying the window sends messages, and a handler of these may call Complete again.
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
