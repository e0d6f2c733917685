#pragma once
#include "platform/host/BaseEnum.h"

/// A mode of the host's input, passed by value.
class eInputMode : public Allplan::IFW::Framework::BaseEnum
{
public:
    using BaseEnum::BaseEnum;
};

namespace Allplan::IFW::Input
{
/// The part of an input object with its modes. Stand-in: two modes; SetInputMode only records the call.
class HOST_API BaseInputMode
{
public:
    BaseInputMode();
    BaseInputMode(const eInputMode& firstMessage, const eInputMode& laterMessages);

    void SetInputMode(eInputMode mode);

    const eInputMode eInputModeFirstMessage;
    const eInputMode eInputModeLaterMessages;
};
} // namespace Allplan::IFW::Input
