#pragma once
#include "tools/vltconfig/Output.h"

#include <functional>
#include <stdexcept>

/// A JSON string of any units: ASCII control characters, C1 controls and lone surrogates as \u escapes, all else as
/// UTF-8.
std::string JsonString(TextView text);

/// One JSON object on one line.
class CJsonObject
{
public:
    CJsonObject& Add(const char* pName, TextView text) { return AddRaw(pName, JsonString(text)); }
    CJsonObject& Add(const char* pName, int number) { return AddRaw(pName, std::to_string(number)); }
    CJsonObject& Add(const char* pName, bool value) { return AddRaw(pName, value ? "true" : "false"); }
    CJsonObject& AddRaw(const char* pName, const std::string& json);
    std::string GetText() const { return std::string(1, '{').append(m_text).append(1, '}'); }

private:
    std::string m_text;
};

/// Prints a JSON array with one element to a line, as the elements come.
class CJsonArray
{
public:
    void Print(const std::string& element);
    void End();

private:
    bool m_hasElements = false;
};

/// What is wrong with a JSON text and where, in bytes.
class CJsonError : public std::runtime_error
{
public:
    CJsonError(const std::string& what, size_t offset)
        : std::runtime_error(what + " at byte " + std::to_string(offset) + " of the JSON")
    {
    }
};

/// Hands out the records of [{"id": "...", "cfg": "..."}, ...], in UTF-8. Throws CJsonError for any other text, and for
/// a NUL in a string, which no record can hold.
void ReadJsonRecords(std::string_view bytes, const std::function<void(const WString& id, const WString& cfg)>& handler);
