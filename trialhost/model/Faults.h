#pragma once
#include "platform/text.h"
#include "trialhost/log/RecordingHandler.h"

#include <vector>

class CTrialHost;

/// What can go wrong around the module, to see what its user then sees.
enum class eFault
{
    None,
    NoHandler,
    HandlerRefuses,
    HandlerThrows,
    SeventhLineRefused,
    ClosingThrows,
    OtherLanguage,
    NoStringFiles
};

struct CFaultChoice
{
    eFault fault;
    const WCHAR* pName;    ///< of the option --fault
    const WCHAR* pCaption; ///< in the menu
};

/// All choices, in the order of eFault.
const std::vector<CFaultChoice>& GetFaultChoices();
/// The choice of that name; null if there is none.
const CFaultChoice* FindFault(const WString& name);
/// The module reads language and string files once in a process: such a fault has an effect on the first run alone.
bool IsForFirstRun(eFault fault);

/// Sets the fault up for the next run of a command. The destructor restores the folder Plugins; the next object resets
/// handler and language. A failure of the host that the run did not reach stays switched on.
class CArmedFault
{
public:
    CArmedFault(eFault fault, CTrialHost& host, const boost::shared_ptr<CRecordingHandler>& pHandler);
    ~CArmedFault();
    CArmedFault(const CArmedFault&) = delete;
    CArmedFault& operator=(const CArmedFault&) = delete;

    /// False if the folder Plugins could not be renamed: another program has a file in it open.
    bool IsInPlace() const { return m_isInPlace; }

private:
    const eFault m_fault;
    bool m_isInPlace = true;
};
