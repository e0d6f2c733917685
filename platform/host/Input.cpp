#include "platform/host/CoordinateInput.h"
#include "platform/host/HostState.h"
#include "platform/host/InteractorMessage.h"

namespace
{
constexpr int StartInputFunctionMessage = 21;
} // namespace

namespace Allplan::IFW
{
Framework::BaseEnum::BaseEnum(int value) : m_value(value)
{
}
Framework::BaseEnum::BaseEnum(const BaseEnum& other) = default;
Framework::BaseEnum& Framework::BaseEnum::operator=(const BaseEnum& other) = default;

Framework::BaseMessageFunction::BaseMessageFunction()
{
    ++s_liveInputFunctions;
}

Framework::BaseMessageFunction::~BaseMessageFunction()
{
    --s_liveInputFunctions;
}

Input::BaseInputMode::BaseInputMode() : BaseInputMode(eInputMode(1), eInputMode(2))
{
}

Input::BaseInputMode::BaseInputMode(const eInputMode& firstMessage, const eInputMode& laterMessages)
    : eInputModeFirstMessage(firstMessage), eInputModeLaterMessages(laterMessages)
{
}

void Input::BaseInputMode::SetInputMode(
    eInputMode mode) // NOLINT(performance-unnecessary-value-param): the host's signature
{
    GetHostState().m_record.inputModes.push_back({this, mode.m_value});
    const CHostCall call(eHostCall::SetInputMode, {double(mode.m_value)});
}

bool Framework::SendInteractorMessage(eInteractorMessage message, __int64 value)
{
    CHostState& state = GetHostState();
    state.m_record.messages.push_back({message, value});
    const bool isStart = message == StartInputFunctionMessage;
    if (isStart) // owned before anything can fail. NOLINTNEXTLINE(performance-no-int-to-ptr): the message carries an
                 // integer
        state.m_pInputFunction.reset(reinterpret_cast<CObjectSelectGeneral*>(value));
    CHostCall call(eHostCall::SendInteractorMessage,
                   {double(message), CHostObject{isStart ? TEXT("CObjectSelectGeneral") : TEXT("")}});
    return call.Return(isStart);
}
} // namespace Allplan::IFW

CObjectSelectGeneral::CObjectSelectGeneral(const CString& prompt, eObjectSelectType type, bool first, bool second)
    : m_prompt(prompt)
{
    GetHostState().m_record.selections.push_back({prompt.GetString(), type, first, second});
    const CHostCall call(eHostCall::CreateObjectSelect, {prompt.GetString(), double(type), first, second});
}
