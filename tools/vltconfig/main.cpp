// vltconfig: reads and changes storage files, whose values are base64, so that people can see what stands in them.
#include "platform/console/console.h"
#include "tools/vltconfig/Commands.h"

#include <algorithm>
#include <exception>

namespace
{
const WCHAR s_usage[] = TEXT("usage: vltconfig COMMAND FILE [ID] [--json]\n")
    TEXT("  show FILE         list the records: identifier, length, beginning of the text\n") TEXT(
        "  get FILE ID       write the text of a record to standard output, in UTF-8\n")
        TEXT("  set FILE ID       store standard input, in UTF-8, under the identifier\n") TEXT(
            "  remove FILE ID    remove the record\n")
            TEXT("  definitions FILE  list the projection definitions of the record PRJ_REGISTRY\n") TEXT(
                "  check FILE        name the first fault with line and column; count the records that can be read\n")
                TEXT("--json: show, get, definitions and check print JSON.\n")
                    TEXT("A change is written beside the file, flushed and swapped in; the content before it stays in "
                         "FILE.bak.\n") TEXT("Exit code: 0 fine, 1 the file is faulty or cannot be used or the "
                                             "identifier is unknown, 2 wrong use.\n");

int WrongUse(const WString& reason)
{
    PrintText(stderr, TEXT("vltconfig: ") + reason + TEXT("\n") + s_usage);
    return ExitWrongUse;
}

int Run(std::vector<WString> arguments)
{
    const bool asJson = std::erase(arguments, TEXT("--json")) > 0;
    if (arguments.empty())
        return WrongUse(TEXT("no command"));
    const WString command = arguments[0];
    const bool needsId = command == TEXT("get") || command == TEXT("set") || command == TEXT("remove");
    const WCHAR* const commands[] = {TEXT("show"),   TEXT("get"),         TEXT("set"),
                                     TEXT("remove"), TEXT("definitions"), TEXT("check")};
    if (std::find(std::begin(commands), std::end(commands), command) == std::end(commands))
        return WrongUse(TEXT("unknown command '") + command + TEXT("'"));
    if (arguments.size() != (needsId ? 3 : 2))
        return WrongUse(needsId ? TEXT("this command takes a file and an identifier")
                                : TEXT("this command takes a file"));
    const WString path = arguments[1];
    if (command == TEXT("get"))
        return GetRecord(path, arguments[2], asJson);
    if (command == TEXT("set"))
        return SetRecord(path, arguments[2]);
    if (command == TEXT("remove"))
        return RemoveRecord(path, arguments[2]);
    if (command == TEXT("definitions"))
        return ShowDefinitions(path, asJson);
    return command == TEXT("check") ? CheckFile(path, asJson) : ShowRecords(path, asJson);
}
} // namespace

int main()
{
    const std::vector<WString> arguments = GetProgramArguments();
    if (!arguments.empty() && (arguments[0] == TEXT("--help") || arguments[0] == TEXT("-h")))
    {
        PrintText(stdout, s_usage);
        return ExitFine;
    }
    try
    {
        return Run(arguments);
    }
    catch (const std::exception& error)
    {
        std::fprintf(stderr, "vltconfig: %s\n", error.what());
        return ExitFault;
    }
}
