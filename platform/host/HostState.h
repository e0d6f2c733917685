#pragma once
/// The stand-in's own state: what HostControl sets and shows, and the calls of the host use.
#include "platform/host/HostControl.h"
#include "platform/host/NOI_Database.h"
#include "platform/host/ObjectSelectGeneral.h"

#include <memory>

struct CArmedFailure
{
    eHostCall call;
    eHostFailure failure;
    int callsToGo;
};

struct CHostState
{
    CHostRecord m_record;
    CNOI_SmartPtr<CNOI_Database> m_pDatabase{new CNOI_Database};
    std::unique_ptr<CObjectSelectGeneral> m_pInputFunction;
    WString m_language = TEXT("en");
    WString m_resourceLibrary; ///< whose resources are current; empty: the host's own
    std::vector<CArmedFailure> m_failures;
    std::function<void(eHostCall)> m_observer;
    std::function<void(eHostCall, eHostFailure)> m_failureObserver;
    std::function<void(const CHostInformation&)> m_viewer;
};

CHostState& GetHostState();

/// Begins every call of the host that can fail: records it, tells the observer, and throws what was switched on for it.
/// False when the call is to give an empty result. arguments: the numbers among the call's arguments, for the record.
bool EnterHostCall(eHostCall call, std::initializer_list<double> arguments = {});
/// For the ends of objects, where nothing may be thrown.
void RecordHostCall(eHostCall call);

// Outside the state, as objects may outlive it at the end of the process.
extern int s_liveObjects;
extern int s_liveExceptions;
extern int s_liveInputFunctions;
