#pragma once
/// XML readers under one interface, so that each job is written once.
#include "benchmarks/Documents.h"
#include "benchmarks/Harness.h"
#include "benchmarks/StoredRecords.h"

#include <memory>
#include <vector>

/// One reader with one document, kept in the form that the reader takes. The document given at construction must
/// outlive the reader.
class IXmlReader
{
public:
    virtual ~IXmlReader() = default;
    virtual std::string GetName() const = 0;
    virtual Role GetRole() const = 0;
    /// Restores a text that the last parse has written into.
    virtual void Restore() {}
    /// Makes a document that can be walked, and drops an earlier one. False: the reader refuses the text.
    virtual bool Parse() = 0;
    /// Includes the root.
    virtual int64_t CountElements() = 0;
    /// Makes a string of the two attributes of every child of the root. Readers without a document give empty totals.
    virtual ValueTotals ReadAttributes() = 0;
    /// The same attributes decoded from base64. Empty for the readers that no job measures with it.
    virtual StoredRecords ReadRecords() { return {}; }
    /// Drops the parsed document.
    virtual void Discard() = 0;
};

using XmlReaders = std::vector<std::unique_ptr<IXmlReader>>;

XmlReaders MakeOwnReaders(const BenchDocument& document);
XmlReaders MakePugixmlReaders(const BenchDocument& document);
XmlReaders MakeRapidXmlReaders(const BenchDocument& document);
XmlReaders MakeTinyXml2Readers(const BenchDocument& document);
XmlReaders MakeLibxml2Readers(const BenchDocument& document);
XmlReaders MakeExpatReaders(const BenchDocument& document);

/// All of them, ours first.
XmlReaders MakeXmlReaders(const BenchDocument& document);
