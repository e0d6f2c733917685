#pragma once
#include "platform/text.h"

/// What vltconfig can do. Each prints its result and gives the program's exit code.
enum ExitCode : int
{
    ExitFine = 0,
    ExitFault = 1,   ///< the file is faulty or cannot be used, or the identifier is unknown
    ExitWrongUse = 2 ///< the arguments are wrong
};

/// Lists the records: identifier, length of the text in UTF-16 units, and its beginning.
int ShowRecords(const WString& path, bool asJson);
/// Writes the text of one record as it is, in UTF-8.
int GetRecord(const WString& path, const WString& id, bool asJson);
/// Stores standard input, read as UTF-8, under the identifier. Makes the file if there is none.
int SetRecord(const WString& path, const WString& id);
int RemoveRecord(const WString& path, const WString& id);
/// Lists the projection definitions of the record PRJ_REGISTRY.
int ShowDefinitions(const WString& path, bool asJson);
/// Names the first fault with its place, and tells how many records can be read.
int CheckFile(const WString& path, bool asJson);
