#include "xml/XmlPlainAttributes.h"
#include "xml/XmlVector.h"

PlainAttribute FindPlainAttribute(const WCHAR* pText, int length, int tagName, const WCHAR* pName)
{
    return VectorSteps().pFindAttribute(pText, length, tagName, pName);
}
