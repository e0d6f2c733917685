#include "configuration/ConfigurationElement.h"
#include "platform/win32/errortext.h"
#include "platform/win32/utf8.h"
#include "projection/base64/Base64.h"
#include "sdk/FileAccess.h"
#include "tools/vltconfig/Output.h"
#include "tools/vltconfig/Progress.h"
#include "tools/vltconfig/StorageReader.h"

namespace
{
/// Collects the records of a damaged text, wherever its elements have come to lie, and names what is left over.
class CRepair
{
public:
    explicit CRepair(CXmlDocument& document) : m_document(document), m_text(ViewOf(document.m_text)) {}

    void Run()
    {
        CProgress progress("repairing");
        m_bytes = "<storage>";
        m_document.FindElement(nullptr); // attributes are read while the cursor is on any element
        for (int i = 1; i < m_document.m_usedPositions; ++i)
        {
            const XmlElementPosition& element = m_document.At(i);
            const auto start = static_cast<size_t>(element.start);
            const size_t length = LengthOfStartTag(element);
            if (!IsConfiguration(start, length))
                continue;
            NameLost(m_end, start);
            m_end = start + length;
            TakeRecord(i, start);
            progress.Show(element.start, m_document.m_text.GetLength());
        }
        NameLost(m_end, m_text.size());
        m_bytes += "</storage>";
    }
    const std::string& GetBytes() const { return m_bytes; }
    size_t GetRecordCount() const { return m_records; }
    size_t GetLossCount() const { return m_losses; }

private:
    /// The table has the length's low bits. A value that makes a tag longer is base64, which holds no '>'.
    size_t LengthOfStartTag(const XmlElementPosition& element) const
    {
        const size_t start = static_cast<size_t>(element.start);
        const size_t lowBits = element.tagLengths & StartTagLengthMask;
        for (size_t length = lowBits; length <= m_text.size() - start; length += size_t{StartTagLengthMask} + 1)
            if (length > 0 && m_text[start + length - 1] == TEXT('>'))
                return length;
        return lowBits;
    }

    bool IsConfiguration(size_t start, size_t length) const
    {
        const TextView tag = m_text.substr(start, length);
        const TextView name = TEXT("<configuration");
        return tag.starts_with(name) && tag.size() > name.size() &&
               TextView(TEXT(" \t\r\n/>")).find(tag[name.size()]) != TextView::npos;
    }

    void TakeRecord(int position, size_t start)
    {
        VLT::CConfiguration record;
        record.SetId(ReadValue(position, TEXT("id"), start));
        record.SetCfg(ReadValue(position, TEXT("cfg"), start));
        CString element;
        VLT::AppendConfigurationElement(record, element);
        m_bytes += ToUtf8(ViewOf(element));
        ++m_records;
    }

    /// Decoding ends at the first character that is not base64: what follows is lost.
    CString ReadValue(int position, const WCHAR* pName, size_t start)
    {
        const CString value = m_document.GetAttributeAt(position, pName);
        size_t end = 0;
        for (; end < static_cast<size_t>(value.GetLength()); ++end)
            if (!IsBase64(value.GetAt(static_cast<int>(end))))
                break;
        TextView padding = ViewOf(value).substr(end);
        while (padding.starts_with(TEXT('=')))
            padding.remove_prefix(1);
        if (!padding.empty())
            Name(start, "the end of a value,", padding);
        return DecodeTextValue(value);
    }

    static bool IsBase64(WCHAR unit)
    {
        return (unit >= TEXT('A') && unit <= TEXT('Z')) || (unit >= TEXT('a') && unit <= TEXT('z')) ||
               (unit >= TEXT('0') && unit <= TEXT('9')) || unit == TEXT('+') || unit == TEXT('/');
    }

    /// Passes over what a storage file may hold between two records.
    void NameLost(size_t start, size_t end)
    {
        while (start < end)
        {
            const TextView rest = m_text.substr(start, end - start);
            const size_t known = LengthOfKnown(rest);
            if (known != 0)
            {
                start += known;
                continue;
            }
            const size_t next = std::min(rest.find(TEXT('<'), 1), rest.size());
            Name(start, "not readable,", rest.substr(0, next));
            start += next;
        }
    }

    static size_t LengthOfKnown(TextView text)
    {
        const size_t blank = std::min(text.find_first_not_of(TEXT(" \t\r\n\xFEFF")), text.size());
        if (blank != 0)
            return blank;
        for (const TextView tag : {TEXT("<storage>"), TEXT("</storage>"), TEXT("</configuration>")})
            if (text.starts_with(tag))
                return tag.size();
        for (const auto& [opening, closing] :
             {std::pair<TextView, TextView>(TEXT("<!--"), TEXT("-->")), {TEXT("<?"), TEXT("?>")}})
            if (text.starts_with(opening) && text.find(closing) != TextView::npos)
                return text.find(closing) + closing.size();
        return 0;
    }

    void Name(size_t offset, const char* pWhat, TextView lost)
    {
        constexpr size_t mostNamed = 100;
        constexpr size_t shownUnits = 60;
        if (++m_losses > mostNamed)
            return;
        CProgress::GiveWayToOutput();
        int line = 0;
        int column = 0;
        FindPlace(m_document.m_text, static_cast<int>(offset), line, column);
        std::printf("lost at %d:%d, %s %s: %s\n", line, column, pWhat, Count(lost.size(), "character").c_str(),
                    ToOneLine(lost, shownUnits).c_str());
    }

    CXmlDocument& m_document;
    const TextView m_text;
    std::string m_bytes;
    size_t m_end = 0; ///< of the last element that was taken
    size_t m_records = 0;
    size_t m_losses = 0;
};

/// Makes the new file, with the rights of the old one.
DWORD WriteRepaired(const WString& path, const WString& outputPath, const std::string& bytes)
{
    const CProgress progress("writing");
    VLT::CFileSecurity security;
    const DWORD error = security.Read(path.c_str());
    return error == ERROR_SUCCESS ? VLT::WriteNewFile(outputPath.c_str(), bytes, security) : error;
}
} // namespace

int RepairFile(const WString& path, const WString& output)
{
    const WString outputPath = output.empty() ? path + TEXT(".repaired") : output;
    CStorageReader reader;
    if (!reader.Open(path))
        return Complain(path, ViewOf(reader.GetFault().message));
    CRepair repair(reader.GetDocument());
    repair.Run();
    const DWORD error = WriteRepaired(path, outputPath, repair.GetBytes());
    if (error == ERROR_FILE_EXISTS)
        return Complain(outputPath, TEXT("exists already and is not overwritten; --output names another file"));
    if (error != ERROR_SUCCESS)
        return Complain(outputPath, TEXT("cannot be written: ") + SystemErrorText(error));
    std::printf("%s: %s, %s\n", Printable(outputPath).c_str(), Count(repair.GetRecordCount(), "record").c_str(),
                repair.GetLossCount() == 0 ? "nothing lost"
                                           : (Count(repair.GetLossCount(), "piece") + " lost").c_str());
    return ExitFine;
}
