// Saves one generation after the other into the file that is its argument, until it is killed.
#include "platform/console/console.h"
#include "tests/sdk/Generation.h"

int main()
{
    VLT::CStorageFile file(GetProgramArguments().at(0).c_str());
    while (file.Update(SetNextGeneration))
        continue;
    PrintText(stderr, file.GetErrorText().GetString() + WString(TEXT("\n")));
    return 1;
}
