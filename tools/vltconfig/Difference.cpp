#include "tools/vltconfig/Difference.h"

#include "tools/vltconfig/Definitions.h"
#include "tools/vltconfig/KeyedPairs.h"
#include "tools/vltconfig/Progress.h"

#include <cstdio>

namespace
{
using Definitions = std::vector<CProjectionDefinition>;

TextView NameOf(const CProjectionDefinition& definition)
{
    return ViewOf(definition.m_name);
}

void PrintHeading(const std::string& mark, const char* pKind, TextView name)
{
    std::printf("%s%s %s\n", mark.c_str(), pKind, Printable(name, Backslash::Double).c_str());
}

void PrintDefinition(const CProjectionDefinition& definition, const std::string& mark)
{
    PrintHeading(mark, "definition", NameOf(definition));
    for (const DefinitionField& field : s_definitionFields)
        if (field.pText != &CProjectionDefinition::m_name)
            std::printf("%s    %s %s\n", mark.c_str(), field.pName, FieldText(definition, field).c_str());
}

void PrintFieldChanges(const CProjectionDefinition& left, const CProjectionDefinition& right)
{
    for (const DefinitionField& field : s_definitionFields)
        if (!HasSameField(left, right, field))
            std::printf("          %s %s -> %s\n", field.pName, FieldText(left, field).c_str(),
                        FieldText(right, field).c_str());
}

bool AreSame(const CProjectionDefinition& left, const CProjectionDefinition& right)
{
    return std::all_of(std::begin(s_definitionFields), std::end(s_definitionFields),
                       [&](const DefinitionField& field) { return HasSameField(left, right, field); });
}

void PrintDefinitionChanges(const Definitions& left, const Definitions& right)
{
    CProgress progress("comparing definitions");
    const auto pairs = PairByKey(left, right, NameOf);
    for (const ItemPair& pair : pairs)
    {
        progress.Show(&pair - pairs.data(), static_cast<long long>(pairs.size()));
        if (pair.right == ItemPair::NoItem)
            PrintDefinition(left[pair.left], "    - ");
        else if (pair.left == ItemPair::NoItem)
            PrintDefinition(right[pair.right], "    + ");
        else if (!AreSame(left[pair.left], right[pair.right]))
        {
            PrintHeading("    ~ ", "definition", NameOf(left[pair.left]));
            PrintFieldChanges(left[pair.left], right[pair.right]);
        }
    }
    if (!HasSameOrder(pairs))
        std::puts("    ~ the order of the definitions");
}

std::vector<TextView> LinesOf(TextView text)
{
    std::vector<TextView> lines;
    for (size_t end = 0; end != TextView::npos; text.remove_prefix(std::min(end + 1, text.size())))
    {
        end = text.find(TEXT('\n'));
        lines.push_back(text.substr(0, end));
        if (end == TextView::npos)
            break;
    }
    return lines;
}

/// The lines between those that both texts begin and end with.
void PrintLineChanges(TextView left, TextView right)
{
    const std::vector<TextView> leftLines = LinesOf(left);
    const std::vector<TextView> rightLines = LinesOf(right);
    const size_t common = std::min(leftLines.size(), rightLines.size());
    size_t head = 0;
    while (head < common && leftLines[head] == rightLines[head])
        ++head;
    size_t tail = 0;
    while (tail < common - head && leftLines[leftLines.size() - 1 - tail] == rightLines[rightLines.size() - 1 - tail])
        ++tail;
    for (size_t i = head; i < leftLines.size() - tail; ++i)
        PrintLines("    - | ", leftLines[i]);
    for (size_t i = head; i < rightLines.size() - tail; ++i)
        PrintLines("    + | ", rightLines[i]);
}

void PrintChanges(const Record& left, const Record& right)
{
    PrintHeading("~ ", "record", left.id);
    const auto leftDefinitions = ReadDefinitions(left.id, left.cfg);
    const auto rightDefinitions = ReadDefinitions(right.id, right.cfg);
    if (leftDefinitions && rightDefinitions)
        PrintDefinitionChanges(*leftDefinitions, *rightDefinitions);
    else
        PrintLineChanges(left.cfg, right.cfg);
}
} // namespace

void PrintRecord(const Record& record, const std::string& mark)
{
    PrintHeading(mark, "record", record.id);
    const auto definitions = ReadDefinitions(record.id, record.cfg);
    if (!definitions)
    {
        PrintLines(mark + "    | ", record.cfg);
        return;
    }
    for (const CProjectionDefinition& definition : *definitions)
        PrintDefinition(definition, mark + "    ");
}

bool PrintDifference(const std::vector<Record>& left, const std::vector<Record>& right)
{
    bool isDifferent = false;
    CProgress::GiveWayToOutput();
    CProgress progress("comparing records");
    const auto pairs = PairByKey(left, right, [](const Record& record) { return record.id; });
    for (const ItemPair& pair : pairs)
    {
        progress.Show(&pair - pairs.data(), static_cast<long long>(pairs.size()));
        const bool isInBoth = pair.left != ItemPair::NoItem && pair.right != ItemPair::NoItem;
        if (isInBoth && left[pair.left].cfg == right[pair.right].cfg)
            continue;
        isDifferent = true;
        if (isInBoth)
            PrintChanges(left[pair.left], right[pair.right]);
        else if (pair.right == ItemPair::NoItem)
            PrintRecord(left[pair.left], "- ");
        else
            PrintRecord(right[pair.right], "+ ");
    }
    if (HasSameOrder(pairs))
        return isDifferent;
    std::puts("~ the order of the records");
    return true;
}
