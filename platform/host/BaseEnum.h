#pragma once
#include "platform/host/Export.h"

namespace Allplan::IFW::Framework
{
/// What the host's enumerations that travel as objects derive from.
class HOST_API BaseEnum
{
public:
    explicit BaseEnum(int value);
    BaseEnum(const BaseEnum& other);
    BaseEnum& operator=(const BaseEnum& other);

    int m_value; ///< the stand-in's own numbers
};
} // namespace Allplan::IFW::Framework
