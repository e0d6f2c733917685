#pragma once
/// Finds an attribute in a start tag as nearly all are: white space, a name and ="value" behind it, again and again.
/// What it finds, and what it finds missing, is what ScanAttribute does; it goes over the tag a block at a time.
#include "platform/text.h"

struct PlainAttribute
{
    enum Outcome
    {
        Found, ///< the value goes up to the next ", unless a NUL comes first
        Missing,
        NotPlain ///< the tag or the name asked for is unlike that, or it stands in the text's last units
    };
    Outcome outcome;
    int first = 0; ///< offset of the value's first unit
};

/// pText: length units and a NUL. tagName: the offset behind the < of a start tag.
PlainAttribute FindPlainAttribute(const WCHAR* pText, int length, int tagName, const WCHAR* pName);
