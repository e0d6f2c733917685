#pragma once
/// Readers of XML under one interface, so that each job is written once.
#include "benchmarks/Documents.h"
#include "benchmarks/Harness.h"
#include "benchmarks/StoredRecords.h"

#include <memory>
#include <vector>

/// One reader with one document. The document given at construction must outlive it; the reader keeps it in whatever
/// form it reads.
class IXmlReader
{
public:
    virtual ~IXmlReader() = default;
    virtual std::string GetName() const = 0;
    virtual Role GetRole() const = 0;
    /// Puts back a text that the last parse has written into.
    virtual void Restore() {}
    /// From the text in place to a document that can be walked. False: refused.
    virtual bool Parse() = 0;
    /// Of the parsed document, the root included.
    virtual int64_t CountElements() = 0;
    /// Goes over all children of the root and makes a string of each of two attributes of each. Readers without a
    /// document give empty totals.
    virtual ValueTotals ReadAttributes() = 0;
    /// The same attributes of the same children, decoded from base64. Only of the readers that are measured by it.
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
