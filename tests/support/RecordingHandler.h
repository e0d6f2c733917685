#pragma once
#include "configuration/ConfigurationStorage.h"

#include <functional>
#include <string>
#include <vector>

using Calls = std::vector<std::string>;

/// Keeps one text and records the calls. m_inside is called inside each of them.
class CRecordingHandler : public VLT::IConfigurationHandler
{
public:
    int OpenStorage() override
    {
        Note("open");
        return m_opens;
    }
    void CloseStorage() override { Note("close"); }
    CString LoadConfigurationById(const WCHAR* pId) override
    {
        Note(CString(pId) == TEXT("PRJ_REGISTRY") ? "load" : "load of something else");
        return m_text;
    }
    int SaveConfiguration(const WCHAR* pId, const WCHAR* pCfg) override
    {
        m_text = pCfg;
        Note(CString(pId) == TEXT("PRJ_REGISTRY") ? "save" : "save of something else");
        return m_saves;
    }

    int m_opens = 1; ///< what opening returns
    int m_saves = 0; ///< what saving returns; the dialog does not read it
    CString m_text;
    Calls m_calls;
    std::function<void(const std::string&)> m_inside;

private:
    void Note(const std::string& call)
    {
        m_calls.push_back(call);
        if (m_inside)
            m_inside(call);
    }
};
