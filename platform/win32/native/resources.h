#pragma once
/// Resources of the binaries of this process, read from their compiled form (.res), and the calls that find them.
#include "platform/win32/native/types.h"

/// Only its address counts: it names the binary that it is linked into, as on Windows.
struct IMAGE_DOS_HEADER
{
    int unused;
};
extern "C" IMAGE_DOS_HEADER __ImageBase;

/// Makes the resources of one binary known for as long as the object lives. The bytes are borrowed.
class CModuleResources
{
public:
    CModuleResources(HINSTANCE module, const BYTE* pBegin, const BYTE* pEnd);
    ~CModuleResources();
    CModuleResources(const CModuleResources&) = delete;
    CModuleResources& operator=(const CModuleResources&) = delete;

private:
    HINSTANCE m_module;
};
