#pragma once
#include "platform/host/Export.h"

namespace Allplan::IFW::Framework
{
/// Base of the host's enumerations that are objects.
class HOST_API BaseEnum
{
public:
    explicit BaseEnum(int value);
    BaseEnum(const BaseEnum& other);
    BaseEnum& operator=(const BaseEnum& other);

    int m_value; ///< the stand-in's own numbers
};
} // namespace Allplan::IFW::Framework
