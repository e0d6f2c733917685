#pragma once
/// The documents that every contestant reads. A seeded generator makes the same ones in every run.
#include "platform/text.h"

#include <cstdint>
#include <string>
#include <vector>

/// Totals over many values, by which a reader's result is checked.
struct ValueTotals
{
    int64_t values = 0;
    int64_t units = 0;
    int64_t checksum = 0; ///< the sum of the first and the last unit of each value

    /// The value is ASCII, in units of 8 or 16 bits.
    template <typename Unit>
    void Add(const Unit* pValue, size_t length)
    {
        ++values;
        units += static_cast<int64_t>(length);
        if (length > 0)
            checksum += static_cast<int64_t>(pValue[0]) + static_cast<int64_t>(pValue[length - 1]);
    }
    bool operator==(const ValueTotals&) const = default;
};

/// An ASCII document, with what a correct reader finds in it.
struct BenchDocument
{
    std::string name; ///< "A" to "E"
    WString text;
    std::string narrowText; ///< the same in bytes
    int64_t elements = 0;
    std::string childName; ///< of the root's children; empty if no job reads attributes of the document
    std::string firstAttribute;
    std::string secondAttribute;
    ValueTotals attributes;                  ///< of these two attributes of all of the root's children
    ValueTotals texts;                       ///< the same, decoded from base64
    std::vector<std::string> attributeNames; ///< all that each child has, in order
    ValueTotals allAttributes;

    int64_t GetLength() const { return static_cast<int64_t>(text.size()); }
};

/// The kinds of documents, a letter for each:
/// A  a storage: records with ids of 20 characters and texts of 200 to 4,000 bytes before base64
/// B  a registry of short definitions
/// C  <r><a/><a/>...
/// D  long texts, few tags
/// E  elements 10,000 levels deep, again and again
constexpr const char* BenchDocumentKinds = "ABCDE";

/// A well-formed document of that kind with about that many characters.
BenchDocument MakeBenchDocument(char kind, int64_t characters);

/// A storage (A) or a registry (B) with that many children; the texts of the storage's records have 200 bytes each.
BenchDocument MakeSmallDocument(char kind, int children);

/// "1 MB": a million or a thousand characters make one.
std::string SizeName(int64_t characters);
