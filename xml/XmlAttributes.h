#pragma once
/// Reads attributes out of start tags, token by token. It accepts any text; common tags have a faster way
/// (XmlVectorLoops::pFindAttribute). Offsets and lengths count UTF-16 code units.
#include "xml/XmlRunOnSearches.h"
#include "xml/XmlScanner.h"

/// Looks for an attribute by name, from scanner.next on, which is the offset after the < of a start tag. True: the
/// scanner's token is the value, without quotes and not decoded; an attribute without = has its own name as value. The
/// first of several wins. False: the tag has no such attribute.
bool ScanAttribute(XmlScanner& scanner, const WCHAR* pName);
/// The same for one of many tags. tagEnd: offset after the tag's >. searches: those in this text so far.
bool ScanAttribute(XmlScanner& scanner, const WCHAR* pName, int tagEnd, CRunOnSearches& searches);

/// Returns the text with its five named entities and its numeric references replaced; what cannot be decoded stays.
/// A reference gives one unit, the low 16 bits of its number.
/// pSource: length units, not null, with a NUL somewhere after them: the ; of a numeric reference is sought there too.
CString DecodeEntities(const WCHAR* pSource, int length);
