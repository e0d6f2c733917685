#include "xml/fast/XmlVector.h"

#include "platform/compiler.h"

const int s_bytesAhead = IsIntelProcessor() ? 4096 : 512;

const XmlVectorSteps& VectorSteps()
{
    static const XmlVectorSteps& s_steps = HasAvx2() ? s_avx2Steps : s_sse2Steps;
    return s_steps;
}
