#pragma once
#include "platform/host/BaseInputMode.h"

/// A point of the drawing, in the units of the host's database.
struct CStdPoint2D
{
    double x;
    double y;
};

/// What the host adds to a mouse message. Its content is the host's own; commands only hand it on.
struct strAddMsgInfo
{
};

/// The host's coordinate input, which comes with every mouse message. Stand-in: its modes, and no input of its own.
class HOST_API CCoordinateInput : public Allplan::IFW::Input::BaseInputMode
{
public:
    using BaseInputMode::BaseInputMode;
};
