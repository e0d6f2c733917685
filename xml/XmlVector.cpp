#include "xml/XmlVector.h"

const XmlVectorSteps& VectorSteps()
{
    static const XmlVectorSteps& s_steps = HasAvx2() ? s_avx2Steps : s_sse2Steps;
    return s_steps;
}
