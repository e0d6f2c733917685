#include "trialhost/model/Faults.h"

#include "platform/host/HostControl.h"
#include "platform/win32/win32.h"
#include "trialhost/TrialHost.h"

namespace
{
/// The host's folder of string files.
WString StringFolder()
{
    WCHAR name[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, name, MAX_PATH);
    const WString path = name;
    return path.substr(0, path.find_last_of(TEXT('\\')) + 1) + TEXT("Plugins");
}

/// Where that folder is while a fault hides it.
WString HiddenFolder()
{
    return StringFolder() + TEXT(".hidden");
}
} // namespace

const std::vector<CFaultChoice>& GetFaultChoices()
{
    static const std::vector<CFaultChoice> s_choices = {
        {eFault::None, TEXT("none"), TEXT("&None")},
        {eFault::NoHandler, TEXT("no-handler"), TEXT("No configuration &handler")},
        {eFault::HandlerRefuses, TEXT("handler-refuses"), TEXT("Handler &refuses to open")},
        {eFault::HandlerThrows, TEXT("handler-throws"), TEXT("Handler &throws while opening")},
        {eFault::SeventhLineRefused, TEXT("seventh-line"), TEXT("Database refuses the &seventh line")},
        {eFault::ClosingThrows, TEXT("closing-throws"), TEXT("&Closing the database throws")},
        {eFault::OtherLanguage, TEXT("other-language"), TEXT("Host in another &language")},
        {eFault::NoStringFiles, TEXT("no-string-files"), TEXT("No folder &Plugins")}};
    return s_choices;
}

const CFaultChoice* FindFault(const WString& name)
{
    for (const CFaultChoice& choice : GetFaultChoices())
        if (name == choice.pName)
            return &choice;
    return nullptr;
}

bool IsForFirstRun(eFault fault)
{
    return fault == eFault::OtherLanguage || fault == eFault::NoStringFiles;
}

CArmedFault::CArmedFault(eFault fault, CTrialHost& host, const boost::shared_ptr<CRecordingHandler>& pHandler)
    : m_fault(fault)
{
    pHandler->SetFault(fault == eFault::HandlerRefuses  ? CRecordingHandler::eFault::RefusesToOpen
                       : fault == eFault::HandlerThrows ? CRecordingHandler::eFault::ThrowsAtOpen
                                                        : CRecordingHandler::eFault::None);
    const auto pUsed = fault == eFault::NoHandler ? boost::shared_ptr<CRecordingHandler>() : pHandler;
    if (host.GetHandler() != pUsed)
        host.UseHandler(pUsed);
    HostControl::SetLanguage(fault == eFault::OtherLanguage ? TEXT("de") : TEXT("en"));
    if (fault == eFault::SeventhLineRefused)
        HostControl::FailAt(eHostCall::AddObject, eHostFailure::AppException, 7);
    if (fault == eFault::ClosingThrows)
        HostControl::FailAt(eHostCall::CloseDatabase, eHostFailure::StdException);
    // A program that crashed can have left this folder.
    ::MoveFileExW(HiddenFolder().c_str(), StringFolder().c_str(), 0);
    if (fault == eFault::NoStringFiles)
        m_isInPlace = ::MoveFileExW(StringFolder().c_str(), HiddenFolder().c_str(), 0) != 0;
}

CArmedFault::~CArmedFault()
{
    if (m_fault == eFault::NoStringFiles)
        ::MoveFileExW(HiddenFolder().c_str(), StringFolder().c_str(), 0);
}
