#pragma once
#include "platform/host/NOI_BasisLine2D.h"

#include <vector>

/// Adds ten vertical lines of length 20 to the active drawing, from (100, 100) to the right at a distance of 10, and
/// appends each to lines, which holds a reference of its own. Throws nothing: a failure is shown in the host's modal
/// information dialog, and what was added before it stays in the drawing and in lines.
void MakeTrialLines(std::vector<CNOI_SmartPtr<CNOI_BasisLine2D>>& lines);

/// Gives the object the style of the trial lines: blue, stroke and pen 1, layer 0. Throws what the host throws.
void ApplyTrialLineStyle(const CNOI_SmartPtr<CNOI_DBObject>& pObject);
