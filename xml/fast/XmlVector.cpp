#include "xml/fast/XmlVector.h"

#include "platform/compiler.h"

std::atomic<int> s_bytesAhead = 512;

namespace
{
const XmlVectorSteps& ChooseSteps()
{
    if (IsIntelProcessor())
        s_bytesAhead = 4096;
    return HasAvx2() ? s_avx2Steps : s_sse2Steps;
}
} // namespace

const XmlVectorSteps& VectorSteps()
{
    static const XmlVectorSteps& s_steps = ChooseSteps();
    return s_steps;
}
