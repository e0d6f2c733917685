#include "tools/vltconfig/Json.h"

#include "platform/win32/utf8.h"

#include <cstdio>
#include <optional>

std::string JsonString(TextView text)
{
    WString escaped(1, TEXT('"'));
    const auto isAt = [&](size_t at, WCHAR first)
    { return at < text.size() && text[at] >= first && text[at] < first + 0x400; };
    for (size_t i = 0; i < text.size(); ++i)
    {
        const WCHAR unit = text[i];
        if (isAt(i, 0xD800) && isAt(i + 1, 0xDC00))
        {
            escaped.append(text.substr(i++, 2));
        }
        else if (unit == TEXT('"') || unit == TEXT('\\'))
        {
            escaped += {TEXT('\\'), unit};
        }
        else if (unit == TEXT('\n'))
        {
            escaped += TEXT("\\n");
        }
        else if (unit < TEXT(' ') || (unit >= 0x7F && unit < 0xA0) || isAt(i, 0xD800) || isAt(i, 0xDC00))
        {
            char escape[8];
            const int length = std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(unit));
            escaped.append(escape, escape + length);
        }
        else
        {
            escaped += unit;
        }
    }
    return ToUtf8(escaped += TEXT('"'));
}

CJsonObject& CJsonObject::AddRaw(const char* pName, const std::string& json)
{
    m_text += m_text.empty() ? "\"" : ", \"";
    m_text.append(pName).append("\": ").append(json);
    return *this;
}

void CJsonArray::Print(const std::string& element)
{
    std::printf("%s%s", m_hasElements ? ",\n    " : "[\n    ", element.c_str());
    m_hasElements = true;
}

void CJsonArray::End()
{
    std::fputs(m_hasElements ? "\n]\n" : "[]\n", stdout);
}

namespace
{
/// A cursor in the text. Each Read or Take operation skips white space before it.
class CJsonReader
{
public:
    explicit CJsonReader(std::string_view bytes) : m_bytes(bytes) {}

    bool TakeIf(char wanted)
    {
        m_at = std::min(m_bytes.find_first_not_of(" \t\r\n", m_at), m_bytes.size());
        const bool isThere = m_at < m_bytes.size() && m_bytes[m_at] == wanted;
        m_at += isThere ? 1 : 0;
        return isThere;
    }
    void Take(char wanted)
    {
        if (!TakeIf(wanted))
            Fail(std::string("'") + wanted + "' is missing");
    }
    WString ReadString()
    {
        Take('"');
        WString text;
        for (;;)
        {
            const size_t end = m_bytes.find_first_of("\"\\", m_at);
            if (end == std::string_view::npos)
                Fail("the end of a string is missing");
            const std::string_view plain = m_bytes.substr(m_at, end - m_at);
            for (size_t i = 0; i < plain.size(); ++i)
                if (static_cast<unsigned char>(plain[i]) < ' ')
                    throw CJsonError("a control character that is not escaped", m_at + i);
            text += FromUtf8(plain);
            m_at = end + 1;
            if (m_bytes[end] == '"')
                return text;
            text += ReadEscape();
        }
    }
    void ExpectEnd()
    {
        TakeIf('\0');
        if (m_at != m_bytes.size())
            Fail("something follows");
    }
    [[noreturn]] void Fail(const std::string& what) const { throw CJsonError(what, m_at); }

private:
    WCHAR ReadEscape()
    {
        constexpr std::string_view letters = "\"\\/bfnrt";
        constexpr std::string_view meanings = "\"\\/\b\f\n\r\t";
        const char letter = m_at < m_bytes.size() ? m_bytes[m_at] : ' ';
        if (const size_t known = letters.find(letter); known != std::string_view::npos)
        {
            ++m_at;
            return static_cast<WCHAR>(meanings[known]);
        }
        if (letter != 'u')
            Fail("an unknown escape");
        const std::string_view digits = m_bytes.substr(m_at + 1, 4);
        if (digits.size() != 4 || digits.find_first_not_of("0123456789abcdefABCDEF") != std::string_view::npos)
            Fail("\\u without four hexadecimal digits");
        const auto unit = static_cast<WCHAR>(std::stoul(std::string(digits), nullptr, 16));
        if (unit == 0)
            Fail("a NUL, which no record can hold,");
        m_at += 5;
        return unit;
    }

    std::string_view m_bytes;
    size_t m_at = 0;
};
} // namespace

void ReadJsonRecords(std::string_view bytes, const std::function<void(const WString& id, const WString& cfg)>& handler)
{
    if (const size_t invalid = FindInvalidUtf8(bytes); invalid != std::string_view::npos)
        throw CJsonError("a byte that is not UTF-8", invalid);
    CJsonReader reader(bytes);
    reader.Take('[');
    if (!reader.TakeIf(']'))
    {
        do
        {
            std::optional<WString> id;
            std::optional<WString> cfg;
            reader.Take('{');
            do
            {
                const WString name = reader.ReadString();
                auto* pField = name == TEXT("id") ? &id : name == TEXT("cfg") ? &cfg : nullptr;
                if (pField == nullptr || pField->has_value())
                    reader.Fail("a name other than \"id\" and \"cfg\", or one of them twice,");
                reader.Take(':');
                *pField = reader.ReadString();
            } while (reader.TakeIf(','));
            reader.Take('}');
            if (!id || !cfg)
                reader.Fail("a record without \"id\" or \"cfg\"");
            handler(*id, *cfg);
        } while (reader.TakeIf(','));
        reader.Take(']');
    }
    reader.ExpectEnd();
}
