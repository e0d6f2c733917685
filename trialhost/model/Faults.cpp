#include "trialhost/model/Faults.h"

#include "platform/host/HostControl.h"
#include "platform/win32/win32.h"
#include "trialhost/TrialHost.h"

#include <filesystem>

namespace
{
/// The host's folder of string files, and where it is while a fault hides it.
std::filesystem::path StringFolder()
{
    WCHAR name[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, name, MAX_PATH);
    const WString path = name;
    return std::filesystem::path(path.substr(0, path.find_last_of(TEXT("\\/")))) / "Plugins";
}

std::filesystem::path HiddenFolder()
{
    return StringFolder().concat(".hidden");
}

void Rename(const std::filesystem::path& from, const std::filesystem::path& to)
{
    std::error_code ignored; // somebody else has it open, or it is gone: the run shows
    std::filesystem::rename(from, to, ignored);
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
    Rename(HiddenFolder(), StringFolder()); // left by a program that died
    if (fault == eFault::NoStringFiles)
        Rename(StringFolder(), HiddenFolder());
}

CArmedFault::~CArmedFault()
{
    if (m_fault == eFault::NoStringFiles)
        Rename(HiddenFolder(), StringFolder());
}
