#include "platform/win32/native/resources.h"

CModuleResources::CModuleResources(HINSTANCE module, const BYTE*, const BYTE*) : m_module(module)
{
}
CModuleResources::~CModuleResources()
{
    (void)m_module;
}
