#pragma once
#include "platform/text.h"

#include <array>
#include <vector>

/// What a storage file holds, decoded. It reads through the module's exported classes, as a plug-in would.
class CStorageContents
{
public:
    struct CRecord
    {
        WString id;
        WString text;
    };

    explicit CStorageContents(const WString& path) : m_path(path) {}

    /// Reads the file if it has changed since the last call, or always with isForced. Returns whether it was read. A
    /// file that cannot be read gives no records and an error text.
    bool Update(bool isForced = false);

    const std::vector<CRecord>& GetRecords() const { return m_records; }
    const WString& GetErrorText() const { return m_errorText; }

private:
    WString m_path;
    uint64_t m_stamp = 0; ///< of the file when it was read: time of its last change and its size
    std::vector<CRecord> m_records;
    WString m_errorText;
};

/// The fields of a projection definition as text: name, three places where it is shown, layer, entity, active.
using CDefinitionRow = std::array<WString, 7>;

/// The captions of those fields.
extern const CDefinitionRow s_definitionFields;

/// The definitions of the text that is stored under PRJ_REGISTRY, in its order; empty for another text.
std::vector<CDefinitionRow> ReadDefinitions(const WString& registryText);
