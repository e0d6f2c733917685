#pragma once
#include "platform/host/NOI_BaseRefCount.h"
#include "platform/host/NOI_SmartPtr.h"

/// A colour; each component is 0 to 255.
class HOST_API CNOI_ColorARGB : public CNOI_BaseRefCount
{
public:
    static WString GetStaticClassName();

    void SetARGB(const BYTE& alpha, const BYTE& red, const BYTE& green, const BYTE& blue);

    BYTE m_alpha = 0;
    BYTE m_red = 0;
    BYTE m_green = 0;
    BYTE m_blue = 0;
};

/// How a database object is drawn. Stroke, pen and layer are indexes of the host's tables.
class HOST_API CNOI_CommonStyle : public CNOI_BaseRefCount
{
public:
    static WString GetStaticClassName();

    /// Resets everything to zero.
    void Init();
    /// Returns the style's own colour: a change through it changes the style.
    CNOI_SmartPtr<CNOI_ColorARGB> Color();
    void Stroke(const int& stroke);
    void Pen(const int& pen);
    void Layer(const int& layer);

    const CNOI_SmartPtr<CNOI_ColorARGB> m_pColor{new CNOI_ColorARGB};
    int m_stroke = 0;
    int m_pen = 0;
    int m_layer = 0;
};
