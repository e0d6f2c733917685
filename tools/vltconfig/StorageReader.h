#pragma once
#include "platform/text.h"
#include "xml/XmlDocument.h"

#include <functional>

/// Where the first fault of a storage file is and what it is.
struct StorageFault
{
    CString message;
    int offset = 0; ///< UTF-16 units from the start of the text
    int line = 1;
    int column = 1; ///< UTF-16 units from the start of the line, counted from 1
};

/// Reads a storage file record by record, a faulty one as far as it goes. Holds the text once and one record at a time.
class CStorageReader
{
public:
    /// Decoded identifier and text of a record.
    using RecordHandler = std::function<void(const CString& id, const CString& cfg)>;

    /// Reads a file or pipe. False if it cannot be read at all; GetFault().message then says why.
    bool Open(const WString& path);
    /// Whether the text is faultless and its root element is a storage.
    bool IsFaultless() const { return m_isFaultless; }
    const StorageFault& GetFault() const { return m_fault; }
    /// The parsed document, with its cursor before the first element until ReadRecords was called.
    CXmlDocument& GetDocument() { return m_document; }

    /// Hands out the records in document order, once.
    /// Returns how many there were.
    int ReadRecords(const RecordHandler& handler);

private:
    bool ReadText(const WString& path);
    void FindFault();

    CXmlDocument m_document;
    bool m_isFaultless = false;
    StorageFault m_fault;
};

/// Line and column of an offset in the text, each from 1.
void FindPlace(const CString& text, int offset, int& line, int& column);
