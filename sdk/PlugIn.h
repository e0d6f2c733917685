#pragma once
/// @file
/// The entry of a plug-in library. Such a library exports one function, VeltranoPlugIn, which VELTRANO_PLUG_IN defines.
/// A host calls it twice: with null it only gives the version that the plug-in was built for, and after that version
/// was found right, with the host.
///
/// Host and plug-in share one build of the C++ library, Boost, CString and the module: exceptions and C++ types cross
/// the border. All calls come on the thread of the host's user interface.
#include "commands/ICommand.h"

#include <afxstr.h>
#include <afxver_.h>

#include <boost/shared_ptr.hpp>

namespace VLT
{
/// The version of this entry and of the classes that a plug-in uses through it. A host refuses any other.
constexpr unsigned int PlugInVersion = 1;

/// What a plug-in gets from its host. The reference is good until the library is unloaded.
class IPlugInHost
{
public:
    /// Registers the command with the module's CCommandManager and offers it to the user. Returns 1; 0 if its
    /// identifier is empty or taken, or pCommand is empty: then nothing has changed. pCaption: NUL-terminated UTF-16,
    /// copied; an & stands before the letter of the menu key. The host shares pCommand until it unloads the library; a
    /// command that is active then is completed first.
    virtual int RegisterCommand(boost::shared_ptr<ICommand> pCommand, const WCHAR* pCaption) = 0;
    /// Shows a text to the user; NUL-terminated UTF-16, copied.
    virtual void Report(const WCHAR* pText) = 0;

protected:
    ~IPlugInHost() = default;
};

/// The type of the exported function. pHost may be null. Returns PlugInVersion as the plug-in was built with it. What
/// it throws refuses the plug-in: the host takes back its commands, reports the reason and unloads the library.
using PlugInFunction = unsigned int(IPlugInHost* pHost);
} // namespace VLT

/// Defines the exported function VeltranoPlugIn. Load: the plug-in's void(VLT::IPlugInHost&), which registers its
/// commands.
#define VELTRANO_PLUG_IN(Load)                                                                                         \
    extern "C" AFX_CLASS_EXPORT unsigned int VeltranoPlugIn(VLT::IPlugInHost* pHost)                                   \
    {                                                                                                                  \
        if (pHost != nullptr)                                                                                          \
            Load(*pHost);                                                                                              \
        return VLT::PlugInVersion;                                                                                     \
    }
