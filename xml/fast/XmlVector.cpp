#include "xml/fast/XmlVector.h"

const int s_bytesAhead = __builtin_cpu_is("intel") ? 4096 : 512;

const XmlVectorSteps& VectorSteps()
{
    static const XmlVectorSteps& s_steps = HasAvx2() ? s_avx2Steps : s_sse2Steps;
    return s_steps;
}
