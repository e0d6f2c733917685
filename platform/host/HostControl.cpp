#include "platform/host/HostState.h"
#include <afx.h>

#include <boost/exception/exception.hpp>

#include <algorithm>
#include <stdexcept>

int s_liveObjects = 0;
int s_liveExceptions = 0;
int s_liveInputFunctions = 0;

namespace
{
class CHostMfcException : public CException
{
public:
    CHostMfcException() { ++s_liveExceptions; }
    CHostMfcException(const CHostMfcException&) = delete;
    CHostMfcException& operator=(const CHostMfcException&) = delete;
    ~CHostMfcException() override { --s_liveExceptions; }
};

class CHostBoostException : public std::runtime_error, public boost::exception
{
public:
    using std::runtime_error::runtime_error;
};

/// Throws, unless the failure is no exception.
void Fail(eHostFailure failure)
{
    switch (failure)
    {
    case eHostFailure::AppException:
        throw new CNOI_AppException(TEXT("the host refused"));
    case eHostFailure::MfcException:
        throw new CHostMfcException;
    case eHostFailure::ComError:
        throw _com_error(E_FAIL);
    case eHostFailure::BoostException:
        throw CHostBoostException("the host refused");
    case eHostFailure::StdException:
        throw std::runtime_error("the host refused");
    case eHostFailure::Unknown:
        throw 21;
    case eHostFailure::EmptyResult:
        break;
    }
}
} // namespace

CHostState& GetHostState()
{
    static CHostState s_state;
    return s_state;
}

CHostCall::CHostCall(eHostCall call, std::vector<CHostValue> arguments)
{
    CHostState& state = GetHostState();
    RecordHostCall(call);
    state.m_record.arguments = std::move(arguments);
    if (const auto observer = state.m_observer) // a copy: the observer may call Reset
        observer(call);
    for (auto& armed : state.m_failures)
        armed.callsToGo -= armed.call == call;
    const auto due =
        std::find_if(state.m_failures.begin(), state.m_failures.end(),
                     [call](const CArmedFailure& armed) { return armed.call == call && armed.callsToGo <= 0; });
    if (due == state.m_failures.end())
        return;
    const eHostFailure failure = due->failure;
    state.m_failures.erase(due);
    if (const auto observer = state.m_failureObserver)
        observer(call, failure);
    Fail(failure);
    m_isEmpty = true;
}

CHostCall::~CHostCall()
{
    if (const auto& observer = GetHostState().m_endObserver)
        observer(m_result);
}

void RecordHostCall(eHostCall call)
{
    GetHostState().m_record.calls.push_back(call);
}

void HostControl::Reset()
{
    auto viewer = std::move(GetHostState().m_viewer);
    GetHostState() = CHostState();
    GetHostState().m_viewer = std::move(viewer);
}

const CHostRecord& HostControl::GetRecord()
{
    return GetHostState().m_record;
}

std::vector<CHostLine> HostControl::GetLines()
{
    const CNOI_IDatabase& database = *GetHostState().m_pDatabase;
    std::vector<CHostLine> lines;
    for (size_t i = 0; i < database.GetObjectCount(); ++i)
    {
        const auto pObject = database.GetObjectAt(i);
        const auto* pLine = dynamic_cast<const CNOI_GeoLine2D*>(pObject->m_pGeometry.Get());
        if (pLine == nullptr)
            continue;
        const CNOI_CommonStyle& style = *pObject->m_pStyle;
        const CNOI_ColorARGB& color = *style.m_pColor;
        lines.push_back({pLine->m_pStart->m_x, pLine->m_pStart->m_y, pLine->m_pEnd->m_x, pLine->m_pEnd->m_y,
                         color.m_alpha, color.m_red, color.m_green, color.m_blue, style.m_stroke, style.m_pen,
                         style.m_layer});
    }
    return lines;
}

bool HostControl::IsDatabaseOpen()
{
    return GetHostState().m_pDatabase->IsOpen();
}

WString HostControl::GetPrompt()
{
    const auto& pFunction = GetHostState().m_pInputFunction;
    return pFunction == nullptr ? WString() : WString(pFunction->m_prompt.GetString());
}

void HostControl::SelectLine(size_t index)
{
    if (GetHostState().m_pInputFunction != nullptr)
        GetHostState().m_record.selectedLines.push_back(index);
}

void HostControl::SetLanguage(const WString& language)
{
    GetHostState().m_language = language;
}

void HostControl::FailAt(eHostCall call, eHostFailure failure, int count)
{
    GetHostState().m_failures.push_back({call, failure, count});
}

void HostControl::SetCallObserver(std::function<void(eHostCall)> observer)
{
    GetHostState().m_observer = std::move(observer);
}

void HostControl::SetFailureObserver(std::function<void(eHostCall, eHostFailure)> observer)
{
    GetHostState().m_failureObserver = std::move(observer);
}

void HostControl::SetEndObserver(std::function<void(const CHostValue&)> observer)
{
    GetHostState().m_endObserver = std::move(observer);
}

void HostControl::SetInformationViewer(std::function<void(const CHostInformation&)> viewer)
{
    GetHostState().m_viewer = std::move(viewer);
}

int HostControl::CountLiveObjects()
{
    return s_liveObjects;
}

int HostControl::CountLiveExceptions()
{
    return s_liveExceptions;
}

int HostControl::CountLiveInputFunctions()
{
    return s_liveInputFunctions;
}
