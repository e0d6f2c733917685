#pragma once
#include "sdk/FileConfigurationHandler.h"
#include "tests/support/TestFolder.h"

#include <gtest/gtest.h>

/// Two handlers over one file in a folder of the test's own, and what they report.
class Handler : public testing::Test
{
protected:
    /// The text of a record in a file of the folder; "-" if file or record is missing.
    CString TextIn(const WCHAR* pName, const WCHAR* pId) const
    {
        VLT::CStorage storage;
        storage.Load(m_folder.Path(pName).c_str());
        const auto pRecord = storage.GetConfigurationById(pId);
        return pRecord ? pRecord->GetCfg() : CString(TEXT("-"));
    }
    testing::AssertionResult HasReported(const WCHAR* pPart) const
    {
        if (m_report.find(pPart) != WString::npos)
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << "reported: " << testing::PrintToString(m_report);
    }

    const CTestFolder m_folder;
    const WString m_path = m_folder.Path(TEXT("storage.xml"));
    WString m_report; ///< all reports, one after the other
    const VLT::CFileConfigurationHandler::Report m_reporter = [this](const CString& text) { m_report += text; };
    VLT::CFileConfigurationHandler m_handler{m_path.c_str(), m_reporter};
    VLT::CFileConfigurationHandler m_other{m_path.c_str(), m_reporter};
};
