// vltconfig: reads and changes storage files, whose values are base64, so that people can see what they hold.
#include <afxstr.h> // the framework before the Windows headers

#include "platform/console/console.h"
#include "platform/win32/utf8.h"
#include "tools/vltconfig/Output.h"
#include "tools/vltconfig/Progress.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <sstream>

namespace
{
/// The options of all commands; each command has those that it names.
struct Options
{
    std::string file;
    std::string id;
    std::string second;
    std::string third;
    std::string output;
    bool asJson = false;
    bool isLong = false;
    bool replacesInvalid = false;
    bool isConfirmed = false;
    bool showsProgress = false;
};

class CCommandLine
{
public:
    CCommandLine()
    {
        m_app.require_subcommand(1);
        m_app.set_version_flag("--version", "vltconfig " VELTRANO_VERSION);
        m_app.footer("A change is written next to the file, flushed to disk and renamed into place; the content before "
                     "it stays in FILE.bak.\n"
                     "Exit code: 0 fine, 1 the file is faulty or cannot be used or the identifier is unknown, 2 wrong "
                     "use. diff and merge: 1 differences or conflicts, 2 a file cannot be used.");
        m_app.add_flag("--progress", m_options.showsProgress, "show progress also where standard error is no terminal");
        m_app.fallthrough(); // the commands take the flag, too
        AddReading();
        AddChanging();
        AddComparing();
    }

    int Run(const std::vector<WString>& arguments)
    {
        const auto isNamed = [&](const CLI::App* pCommand) { return pCommand->get_name() == ToUtf8(arguments[0]); };
        if (!arguments.empty() && !arguments[0].starts_with(TEXT("-")) && m_app.get_subcommands(isNamed).empty())
        {
            Complain(TEXT("unknown command '") + arguments[0] + TEXT("'; 'vltconfig --help' lists the commands"));
            return ExitWrongUse;
        }
        std::vector<std::string> narrow;
        for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) // as the parser wants them
            narrow.push_back(ToUtf8(*argument));
        try
        {
            m_app.parse(narrow);
        }
        catch (const CLI::ParseError& result)
        {
            return Report(result);
        }
        CProgress::Enable(m_options.showsProgress || IsTerminal(stderr));
        return m_run();
    }

private:
    using Action = std::function<int(const Options&)>;

    CLI::App* Add(const char* pName, const char* pDescription, Action run)
    {
        CLI::App* pCommand = m_app.add_subcommand(pName, pDescription);
        pCommand->callback([this, run = std::move(run)] { m_run = [this, run] { return run(m_options); }; });
        return pCommand;
    }
    CLI::App* AddForFile(const char* pName, const char* pDescription, Action run)
    {
        CLI::App* pCommand = Add(pName, pDescription, std::move(run));
        pCommand->add_option("FILE", m_options.file, "the storage file")->required();
        return pCommand;
    }
    CLI::App* AddForRecord(const char* pName, const char* pDescription, Action run)
    {
        CLI::App* pCommand = AddForFile(pName, pDescription, std::move(run));
        pCommand->add_option("ID", m_options.id, "the identifier of the record")->required();
        return pCommand;
    }
    void AddJson(CLI::App* pCommand) { pCommand->add_flag("--json", m_options.asJson, "print JSON"); }
    static WString Wide(const std::string& text) { return FromUtf8(text); }

    void AddReading()
    {
        CLI::App* pShow = AddForFile("show", "list the records: identifier, length, beginning of the text",
                                     [](const Options& o) { return ShowRecords(Wide(o.file), o.asJson, o.isLong); });
        pShow->add_flag("--long", m_options.isLong, "whole texts");
        AddJson(pShow);
        AddJson(AddForRecord("get", "write the text of a record to standard output, in UTF-8",
                             [](const Options& o) { return GetRecord(Wide(o.file), Wide(o.id), o.asJson); }));
        AddJson(AddForFile("definitions", "list the projection definitions of the record PRJ_REGISTRY",
                           [](const Options& o) { return ShowDefinitions(Wide(o.file), o.asJson); }));
        AddJson(AddForFile("check", "name the first fault with line and column; count the records that can be read",
                           [](const Options& o) { return CheckFile(Wide(o.file), o.asJson); }));
        AddForFile("text", "print the whole file line by line, for git diff and for reviews",
                   [](const Options& o) { return PrintAsText(Wide(o.file)); });
        AddForFile("export", "write all records as JSON to standard output",
                   [](const Options& o) { return ExportRecords(Wide(o.file)); });
    }

    void AddChanging()
    {
        CLI::App* pSet =
            AddForRecord("set", "store standard input, in UTF-8, under the identifier",
                         [](const Options& o) { return SetRecord(Wide(o.file), Wide(o.id), o.replacesInvalid); });
        pSet->add_flag("--replace-invalid", m_options.replacesInvalid, "store U+FFFD for bytes that are not UTF-8");
        AddForRecord("edit", "change the text of a record in the editor that VISUAL or EDITOR names",
                     [](const Options& o) { return EditRecord(Wide(o.file), Wide(o.id)); });
        AddForRecord("remove", "remove the record",
                     [](const Options& o) { return RemoveRecord(Wide(o.file), Wide(o.id)); });
        AddForFile("import", "replace all records by those of the JSON on standard input",
                   [](const Options& o) { return ImportRecords(Wide(o.file)); });
        CLI::App* pRestore =
            AddForFile("restore", "show what a backup would change, and restore it",
                       [](const Options& o) { return RestoreFile(Wide(o.file), Wide(o.second), o.isConfirmed); });
        pRestore->add_option("SOURCE", m_options.second, "FILE.bak, if not given, or an .unsaved file of one record");
        pRestore->add_flag("--yes", m_options.isConfirmed, "do not ask");
        CLI::App* pRepair = AddForFile("repair", "write what can be read of a damaged file to a new one",
                                       [](const Options& o) { return RepairFile(Wide(o.file), Wide(o.output)); });
        pRepair->add_option("-o,--output", m_options.output, "the new file; FILE.repaired if not given");
    }

    void AddComparing()
    {
        CLI::App* pDiff = Add("diff", "print what differs, by records, definitions and fields",
                              [](const Options& o) { return DiffFiles(Wide(o.file), Wide(o.second)); });
        pDiff->add_option("A", m_options.file, "the earlier file")->required();
        pDiff->add_option("B", m_options.second, "the later file")->required();
        CLI::App* pMerge = Add("merge", "apply the changes from BASE to B to A; what conflicts stays as in A",
                               [](const Options& o)
                               { return MergeFiles(Wide(o.third), Wide(o.file), Wide(o.second), Wide(o.output)); });
        pMerge->add_option("BASE", m_options.third, "what A and B have come from")->required();
        pMerge->add_option("A", m_options.file, "ours")->required();
        pMerge->add_option("B", m_options.second, "theirs")->required();
        pMerge->add_option("-o,--output", m_options.output, "where the result goes; standard output if not given");
    }

    /// Prints help or version, or what is wrong with the arguments.
    int Report(const CLI::ParseError& result)
    {
        std::ostringstream output;
        if (m_app.exit(result, output, output) == 0)
        {
            WriteStandardOutput(output.str());
            return ExitFine;
        }
        Complain(FromUtf8(result.what()) +
                 TEXT("; 'vltconfig --help' lists the commands, and 'vltconfig COMMAND --help' ")
                     TEXT("tells what a command takes"));
        return ExitWrongUse;
    }

    Options m_options;
    CLI::App m_app{"Reads and changes the storage files of VeltranoCommands.", "vltconfig"};
    std::function<int()> m_run;
};

int Run(const std::vector<WString>& arguments)
{
    return CCommandLine().Run(arguments);
}
} // namespace

int main()
{
    return RunConsoleProgram("vltconfig", Run);
}
