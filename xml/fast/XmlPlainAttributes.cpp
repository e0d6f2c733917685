#include "xml/fast/XmlPlainAttributes.h"
#include "xml/fast/XmlVector.h"

PlainAttribute FindPlainAttribute(const WCHAR* pText, int length, int tagName, const WCHAR* pName)
{
    return VectorSteps().pFindAttribute(pText, length, tagName, pName);
}
