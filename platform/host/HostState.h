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
    std::function<void(const CHostValue&)> m_endObserver;
    std::function<void(const CHostInformation&)> m_viewer;
};

CHostState& GetHostState();

/// A call of the host that can fail, while it runs.
class CHostCall
{
public:
    /// Records the call, tells the observer, and throws what was switched on for it.
    explicit CHostCall(eHostCall call, std::vector<CHostValue> arguments = {});
    ~CHostCall();
    CHostCall(const CHostCall&) = delete;
    CHostCall& operator=(const CHostCall&) = delete;

    /// The call is to give an empty result.
    bool IsEmpty() const { return m_isEmpty; }
    /// Keeps the result for the observer of the end.
    template <class T>
    T Return(T result)
    {
        m_result = Describe(result);
        return result;
    }

    template <class T>
    static CHostValue Describe(const T& value)
    {
        return value;
    }
    template <class T>
    static CHostValue Describe(const CNOI_SmartPtr<T>& pObject)
    {
        return CHostObject{pObject.Get() == nullptr ? WString() : T::GetStaticClassName()};
    }

private:
    CHostValue m_result;
    bool m_isEmpty = false;
};

/// For the ends of objects, where nothing may be thrown.
void RecordHostCall(eHostCall call);

// Outside the state, as objects may outlive it at the end of the process.
extern int s_liveObjects;
extern int s_liveExceptions;
extern int s_liveInputFunctions;
