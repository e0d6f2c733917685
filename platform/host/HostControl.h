#pragma once
/// Drives the stand-in for the host from outside: a test or a trial host says what the host is to do, and sees what was
/// asked of it. The module does not include this. One thread.
#include "platform/host/BaseInputMode.h"
#include "platform/host/Export.h"
#include "platform/text.h"
#include "platform/win32/win32.h"

#include <functional>
#include <variant>
#include <vector>

/// The calls of the host, in the record and for switching on failures.
enum class eHostCall
{
    GetLanguage,
    SetInputMode,
    CreateObjectSelect,
    SendInteractorMessage,
    OpenActiveDatabase,
    CloseDatabase,
    CreateLine,
    CreateGeoLine,
    GetStartPoint,
    GetEndPoint,
    SetPoint,
    SetGeometry,
    GetCommonStyle,
    InitStyle,
    GetColor,
    SetARGB,
    SetStroke,
    SetPen,
    SetLayer,
    AddObject,
    SetSource,
    PrintReport,
    UseResources,
    CreateInformation,
    ShowInformation,
    // Ends of objects: recorded, but they cannot be made to fail.
    DestroyException,
    DestroyInformation,
    RestoreResources
};

/// How a call fails.
enum class eHostFailure
{
    AppException,   ///< CNOI_AppException*
    MfcException,   ///< CException*
    ComError,       ///< _com_error with E_FAIL
    BoostException, ///< a boost::exception that is a std::exception too, as boost::throw_exception makes them
    StdException,   ///< std::runtime_error
    Unknown,        ///< an int
    EmptyResult     ///< an empty smart pointer, from a call that gives one; nothing happens at any other call
};

/// A line of the active database. Coordinates in the units of the database.
struct CHostLine
{
    double startX, startY, endX, endY;
    BYTE alpha, red, green, blue;
    int stroke, pen, layer;
};

struct CHostInputMode
{
    const Allplan::IFW::Input::BaseInputMode* pInput; ///< only to be compared
    int mode;
};

struct CHostSelection
{
    WString prompt;
    int type;
    bool first, second;
};

struct CHostMessage
{
    int message;
    __int64 value;
};

/// An information dialog that was run: its texts in the order of its arguments, and whose resources were current.
struct CHostInformation
{
    WString first, second, text;
    WString library;
};

/// What a pointer in a host call points to.
struct CHostObject
{
    WString className; ///< empty: the pointer is null or empty
};

/// An argument of a host call or its result; std::monostate is no result.
using CHostValue = std::variant<std::monostate, bool, double, WString, CHostObject>;

/// Everything that was asked of the host since the last Reset, oldest first.
struct CHostRecord
{
    std::vector<eHostCall> calls;
    std::vector<CHostInputMode> inputModes;
    std::vector<CHostSelection> selections;
    std::vector<CHostMessage> messages;
    std::vector<CHostInformation> information;
    std::vector<size_t> selectedLines; ///< indices of GetLines that SelectLine was called with
    std::vector<CHostValue> arguments; ///< of the newest call
};

namespace HostControl
{
/// Back to the start: an empty active database, language "en", no failure switched on, an empty record, no observer.
/// The active input function is deleted.
HOST_API void Reset();

HOST_API const CHostRecord& GetRecord();
/// The lines of the active database, in the order in which they came.
HOST_API std::vector<CHostLine> GetLines();
HOST_API bool IsDatabaseOpen();
/// The prompt of the active input function; empty without one.
HOST_API WString GetPrompt();

/// The user picks a line in the running selection; nothing happens without one.
HOST_API void SelectLine(size_t index);

HOST_API void SetLanguage(const WString& language);
/// Makes the count-th call from now on fail, once. Several failures can stand side by side.
HOST_API void FailAt(eHostCall call, eHostFailure failure, int count = 1);
/// Called at the beginning of every host call that can fail, after it was recorded. What it throws, the call throws.
HOST_API void SetCallObserver(std::function<void(eHostCall)> observer);
/// Called when a failure that was switched on is due, after the call observer and before the call fails.
HOST_API void SetFailureObserver(std::function<void(eHostCall, eHostFailure)> observer);
/// Called at the end of every host call that can fail, unless a failure that was switched on has left it by an
/// exception. Must not throw.
HOST_API void SetEndObserver(std::function<void(const CHostValue& result)> observer);
/// Called by every information dialog while it is modal: a program can show it. Stays through Reset.
HOST_API void SetInformationViewer(std::function<void(const CHostInformation&)> viewer);

/// Objects of the host that are alive: after Reset one, the active database, unless somebody holds or leaks another.
HOST_API int CountLiveObjects();
/// CNOI_AppExceptions that are alive, and CExceptions that the host threw.
HOST_API int CountLiveExceptions();
HOST_API int CountLiveInputFunctions();
} // namespace HostControl
