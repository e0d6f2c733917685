#pragma once
// Numbers of the module's resources.
#define IDD_DEFINE_PROJECTIONS 1000
