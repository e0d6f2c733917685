#pragma once
#include "platform/host/BaseInputMode.h"

/// A point of the drawing, in the units of the host's database.
struct CStdPoint2D
{
    double x;
    double y;
};

/// Further data of a mouse message. Only the host knows its content; commands pass it on.
struct strAddMsgInfo
{
};

/// The host's coordinate input, which comes with every mouse message. Stand-in: has only its modes.
class HOST_API CCoordinateInput : public Allplan::IFW::Input::BaseInputMode
{
public:
    using BaseInputMode::BaseInputMode;
};
