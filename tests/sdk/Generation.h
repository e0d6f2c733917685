#pragma once
#include "platform/win32/win32.h"
#include "sdk/StorageFile.h"

/// Two records that belong together: a number, and a text that follows from it and is of another length each time.
inline WString GenerationText(int number)
{
    return WString(static_cast<size_t>(1000 + number % 7 * 9000), static_cast<WCHAR>(TEXT('a') + number % 26));
}

/// The number that the storage holds, 0 if it is empty, -1 if its records do not belong together.
inline int GenerationOf(VLT::CStorage& storage)
{
    if (storage.GetConfigurationVector()->empty())
        return 0;
    const auto pNumber = storage.GetConfigurationById(TEXT("NUMBER"));
    const auto pText = storage.GetConfigurationById(TEXT("TEXT"));
    if (!pNumber || !pText)
        return -1;
    const int number = ::_wtoi(pNumber->GetCfg());
    return pText->GetCfg() == GenerationText(number).c_str() ? number : -1;
}

/// Makes the next generation of the storage; false if it does not hold one.
inline bool SetNextGeneration(VLT::CStorage& storage)
{
    const int number = GenerationOf(storage) + 1;
    CString text;
    text.Format(TEXT("%d"), number);
    VLT::SetConfigurationText(storage, TEXT("NUMBER"), text);
    VLT::SetConfigurationText(storage, TEXT("TEXT"), GenerationText(number).c_str());
    return number > 0;
}
