#pragma once
#include "configuration/Configuration.h"

#include <boost/shared_ptr.hpp>
#include <map>
#include <vector>

namespace VLT
{
/// A document of configuration records in memory, with an XML text form and a file form.
///
/// A vector holds the records in the order in which they were added. A map holds them by identifier; of several records
/// with one identifier it holds the first. Records are shared with whoever else holds them. Use a storage from one
/// thread at a time. Text arguments are NUL-terminated UTF-16; null counts as the empty text. Results of type int: 1
/// for success, 0 for failure.
class VLT_API CStorage
{
public:
    CStorage(); ///< An empty storage.
    /// Copies the list, not the records: both storages hold the same records, and add and remove them independently.
    CStorage(const CStorage& other);
    /// As the copy constructor.
    CStorage& operator=(const CStorage& other);
    virtual ~CStorage();

    /// Replaces the content of target by copies of the records in the vector, in this order. Nothing changes if target
    /// is this storage.
    void MakeDeepCopy(CStorage& target);

    /// Returns `<storage>`, the elements of the records in the order of the vector, and `</storage>`, in one line
    /// without anything in between.
    CString GetXML();
    /// Replaces the content by the records of the first top-level `<storage>` element. The text may be damaged: every
    /// element that can still be recognised is read. Returns 0 if there is no such element; the storage is then empty.
    int ParseXML(const WCHAR* pXml);

    /// Returns the member itself, for reading and changing. Empty pointers in it are ignored.
    std::vector<boost::shared_ptr<CConfiguration>>* GetConfigurationVector();
    /// Returns the member itself, for reading and changing. A key is the identifier under which the record was added.
    std::map<CString, boost::shared_ptr<CConfiguration>>* GetConfigurationMapById();
    /// Returns the map's record for pId, compared exactly, or an empty pointer.
    boost::shared_ptr<CConfiguration> GetConfigurationById(const WCHAR* pId);

    /// Appends the record to the vector, and adds it to the map unless its identifier is there. Ignores an empty
    /// pointer.
    void AddConfiguration(boost::shared_ptr<CConfiguration> pConfiguration);
    /// Removes the first occurrence of this record object from the vector, and from the map the entry of the identifier
    /// that the record has now, whichever record that entry holds, even if the vector does not hold the record. Ignores
    /// an empty pointer.
    void RemoveConfiguration(boost::shared_ptr<CConfiguration> pConfiguration);
    void Clear(); ///< Empties vector and map.

    /// Reads a UTF-8 file as ParseXML does, but accepts only faultless text. Returns 0 and leaves the storage unchanged
    /// if the file cannot be read, is empty or has a fault. Returns 0 and empties the storage if the root element is
    /// another.
    int Load(const WCHAR* pPath);
    /// Writes the text of GetXML to a file, in UTF-8 without a byte-order mark, and replaces what the file held.
    /// Returns 0 if the file cannot be opened, or if it cannot be written whole and is left cut off. CStorageFile is
    /// the safe way.
    int Save(const WCHAR* pPath);

private:
    std::vector<boost::shared_ptr<CConfiguration>> m_configurationVector;
    std::map<CString, boost::shared_ptr<CConfiguration>> m_configurationMapById;
};
} // namespace VLT
