#pragma once
#include "platform/host/Export.h"
#include "platform/win32/win32.h"

enum eInteractorMessage : int
{
};

namespace Allplan::IFW::Framework
{
/// Sends a message to the host's interactor. Message 21: value is a CObjectSelectGeneral* that becomes the active input
/// function; the host owns it from the call on, even if the call fails, and deletes it when another one replaces it or
/// the host ends. Stand-in: returns whether it knows the message.
HOST_API bool SendInteractorMessage(eInteractorMessage message, __int64 value);
} // namespace Allplan::IFW::Framework
