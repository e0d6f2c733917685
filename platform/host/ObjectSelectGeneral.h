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
/// An input function, which the host owns and deletes.
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
// The module calls nothing of these: they only reproduce the host's order of base classes.
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

/// The host's general object selection. Created with new and passed to the host by interactor message 21, which owns it
/// from then on. Stand-in: keeps its prompt and selects nothing.
class HOST_API CObjectSelectGeneral : public CObjectSelect
{
public:
    CObjectSelectGeneral(const CString& prompt, eObjectSelectType type, bool first, bool second);

    const CString m_prompt;
};
