#pragma once
#include "platform/host/BaseInputMode.h"
#include <afxstr.h>

enum eObjectSelectType : int
{
};

namespace Allplan::IFW
{
namespace Framework
{
/// What the host owns and deletes as an input function.
class HOST_API BaseMessageFunction
{
public:
    BaseMessageFunction();
    BaseMessageFunction(const BaseMessageFunction&) = delete;
    BaseMessageFunction& operator=(const BaseMessageFunction&) = delete;
    virtual ~BaseMessageFunction();
};
} // namespace Framework

namespace Input
{
// Nothing of these parts is called here: they stand for the host's order of bases.
class BaseGUIFunction
{
};
class InputViewDocumentData
{
};
class InputStateCursor
{
};

class HOST_API BaseInputFunction : public Framework::BaseMessageFunction,
                                   public BaseInputMode,
                                   public BaseGUIFunction,
                                   public InputViewDocumentData,
                                   public InputStateCursor
{
};

class HOST_API BaseElementSelect : public BaseInputFunction
{
};
} // namespace Input
} // namespace Allplan::IFW

class HOST_API CObjectSelect : public Allplan::IFW::Input::BaseElementSelect
{
};

/// The host's general object selection. Made with new and given to the host by interactor message 21, which owns it
/// from then on. Stand-in: keeps its prompt and selects nothing.
class HOST_API CObjectSelectGeneral : public CObjectSelect
{
public:
    CObjectSelectGeneral(const CString& prompt, eObjectSelectType type, bool first, bool second);

    const CString m_prompt;
};
