#pragma once
#include "configuration/Configuration.h"

#include <boost/shared_ptr.hpp>
#include <map>
#include <vector>

namespace VLT
{
/// A document of configuration records in memory, with an XML text form and files of it.
/// Holds every record twice: in order of arrival, and by identifier, where only the first of several with one
/// identifier stands. Records are shared with whoever else holds them. One storage is for one thread at a time.
/// Texts given in are NUL-terminated UTF-16; null counts as the empty text. int results: 1 for success, 0 for failure.
class VLT_API CStorage
{
public:
    CStorage();
    /// Shallow: both storages hold the same records from here on, but add and remove them on their own.
    CStorage(const CStorage& other);
    CStorage& operator=(const CStorage& other);
    virtual ~CStorage();

    /// Replaces the target's content with new records equal to these, in this order. Reads the vector, not the map.
    /// Onto itself it changes nothing.
    void MakeDeepCopy(CStorage& target);

    /// <storage>, the records' elements in the vector's order, </storage>: one line, nothing between.
    CString GetXML();
    /// Replaces the content with the records of the first top-level <storage> of a text, which may be damaged: what its
    /// elements still say is read. 0: there is no such element, and the storage is empty.
    int ParseXML(const WCHAR* pXml);

    /// The member itself, to be read and changed. Empty pointers in it are passed over.
    std::vector<boost::shared_ptr<CConfiguration>>* GetConfigurationVector();
    /// The member itself, to be read and changed. A key is the identifier with which its record arrived.
    std::map<CString, boost::shared_ptr<CConfiguration>>* GetConfigurationMapById();
    /// The map's record for that identifier, compared exactly; empty if there is none.
    boost::shared_ptr<CConfiguration> GetConfigurationById(const WCHAR* pId);

    /// Appends the record; enters it in the map unless its identifier is there already. Empty: nothing happens.
    void AddConfiguration(boost::shared_ptr<CConfiguration> pConfiguration);
    /// Takes this very record out of the vector, at its first place, and the map's entry for the identifier that it has
    /// now, whichever record that is, even if the vector does not hold it. Empty: nothing happens.
    void RemoveConfiguration(boost::shared_ptr<CConfiguration> pConfiguration);
    void Clear();

    /// Reads a UTF-8 file as ParseXML does, but only faultless text: with a file that cannot be read, is empty or has
    /// a fault, the result is 0 and the storage unchanged. With another root element it is 0 and the storage empty.
    int Load(const WCHAR* pPath);
    /// Writes GetXML to a file in UTF-8, without a byte order mark, replacing the file. 0: the file could not be
    /// opened, or not be written whole and is shortened.
    int Save(const WCHAR* pPath);

private:
    std::vector<boost::shared_ptr<CConfiguration>> m_configurationVector;
    std::map<CString, boost::shared_ptr<CConfiguration>> m_configurationMapById;
};
} // namespace VLT
