#pragma once
#include "tools/vltconfig/RecordList.h"

/// Prints records and definitions in a form made for reading and for comparing line by line: the definitions of
/// PRJ_REGISTRY field by field, any other text line by line.
void PrintRecord(const Record& record, const std::string& mark);

/// Prints what has changed from the left records to the right ones: by records, by definitions and their fields, and by
/// lines. Records of one identifier are told apart by their order. Returns whether anything has changed.
bool PrintDifference(const std::vector<Record>& left, const std::vector<Record>& right);
