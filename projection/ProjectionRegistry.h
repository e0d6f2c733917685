#pragma once
#include "platform/text.h"
#include <afxstr.h>

#include <boost/shared_ptr.hpp>
#include <vector>

/// What is shown for one entity, and where. The numbers are used as flags, but any number is kept.
class CProjectionDefinition
{
public:
    virtual ~CProjectionDefinition() = default;

    /// The definition's element, with its texts in base64; no line break.
    CString GetXML();

    CString m_name;
    int m_showInLS = 0; ///< in the longitudinal section
    int m_showInCS = 0; ///< in cross sections
    int m_showInEditor = 0;
    CString m_layerName;
    CString m_entityId; ///< of the picked entity; carried, not interpreted
    int m_isActive = 0;
};

/// The list of projection definitions with its XML text, the value of one configuration.
class CProjectionRegistry
{
public:
    virtual ~CProjectionRegistry() = default;

    /// The identifier under which the text is loaded and saved.
    static CString GetConfigurationId();

    /// The definitions' elements in order, within <projectionRegistry>: one line of ASCII, nothing between.
    CString GetXML();
    /// Replaces the list with the definitions of the first top-level <projectionRegistry> of a NUL-terminated text,
    /// which may be damaged: what its elements still say is read. An attribute that is not there gives its field's
    /// default. Null counts as the empty text. 0: there is no such element, and the list is empty; else 1.
    int ParseXML(const WCHAR* pXml);

    /// In the order of the text; two of one name may stand in it. Holds no empty pointer.
    std::vector<boost::shared_ptr<CProjectionDefinition>> m_definitions;
};
