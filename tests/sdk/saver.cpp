// Saves one generation after the other into the file that is its argument, until it is killed.
#include "platform/win32/console.h"
#include "platform/win32/win32.h"
#include "tests/sdk/Generation.h"

static bool SaveNext(VLT::CStorage& storage)
{
    const int number = GenerationOf(storage) + 1;
    CString text;
    text.Format(TEXT("%d"), number);
    VLT::SetConfigurationText(storage, TEXT("NUMBER"), text);
    VLT::SetConfigurationText(storage, TEXT("TEXT"), GenerationText(number).c_str());
    return number > 0;
}

int main()
{
    VLT::CStorageFile file(GetProgramArguments().at(0).c_str());
    while (file.Update(SaveNext))
        continue;
    PrintText(stderr, file.GetErrorText().GetString() + WString(TEXT("\n")));
    return 1;
}
