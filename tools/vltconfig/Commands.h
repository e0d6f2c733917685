#pragma once
#include "platform/text.h"

/// What vltconfig can do. Each prints its result and returns the program's exit code.
enum ExitCode : int
{
    ExitFine = 0,
    ExitFault = 1,   ///< the file is faulty or cannot be used, or the identifier is unknown; differences or conflicts
    ExitWrongUse = 2 ///< the arguments are wrong; of diff and merge: a file cannot be used
};

/// Lists the records: identifier, length of the text in UTF-16 units, and its beginning, or all of it if isLong.
int ShowRecords(const WString& path, bool asJson, bool isLong);
/// Writes the text of one record in UTF-8: as it is into a file or pipe, with control characters escaped to a terminal.
int GetRecord(const WString& path, const WString& id, bool asJson);
/// Stores standard input, read as UTF-8, under the identifier. Makes the file if there is none. Bytes that are not
/// UTF-8 are refused, or become U+FFFD if replacesInvalid.
int SetRecord(const WString& path, const WString& id, bool replacesInvalid);
int RemoveRecord(const WString& path, const WString& id);
/// Opens the record's text in the user's editor and stores the result.
int EditRecord(const WString& path, const WString& id);
/// Lists the projection definitions of the record PRJ_REGISTRY.
int ShowDefinitions(const WString& path, bool asJson);
/// Names the first fault with its place, and counts the records that can be read.
int CheckFile(const WString& path, bool asJson);

/// Prints the whole file line by line, in a form for comparing versions. Of a faulty file it prints what can be read,
/// and then the fault.
int PrintAsText(const WString& path);
/// Prints the changes from the left file to the right one. Returns ExitFault if there are any, as diff does, and
/// ExitWrongUse if a file cannot be read.
int DiffFiles(const WString& left, const WString& right);
/// Applies the changes between base and theirs to ours, and writes the result to the output file, or to standard output
/// if the name is empty. Where both sides changed the same thing, ours stays; the conflict is named, and ExitFault
/// returned.
int MergeFiles(const WString& base, const WString& ours, const WString& theirs, const WString& output);
/// Writes all records as JSON.
int ExportRecords(const WString& path);
/// Replaces all records by those of the JSON on standard input.
int ImportRecords(const WString& path);
/// Shows what the source, by default the backup, would change and, if isConfirmed or the user agrees, restores it: all
/// records from a backup, its one record from an .unsaved file.
int RestoreFile(const WString& path, const WString& source, bool isConfirmed);
/// Writes every record that can still be read into a new file, and says what is lost.
int RepairFile(const WString& path, const WString& output);
