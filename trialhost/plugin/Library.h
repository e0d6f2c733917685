#pragma once
#include "sdk/PlugIn.h"

/// A plug-in's shared library while it is loaded.
class CLibrary
{
public:
    CLibrary() = default;
    ~CLibrary() { Unload(); }
    CLibrary(const CLibrary&) = delete;
    CLibrary& operator=(const CLibrary&) = delete;

    /// Loads the file. Returns why it could not, in the system's words; empty when done.
    WString Load(const WString& path);
    void Unload();
    /// The exported function VeltranoPlugIn; null without one.
    VLT::PlugInFunction* FindEntry() const;

private:
    void* m_pHandle = nullptr;
};
