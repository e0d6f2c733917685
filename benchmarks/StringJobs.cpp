// A string table of 100,000 numbered texts: loaded from a file in each encoding, and looked up. One peer is ICU's
// reader of text files with a map. Two peers use a file compiled beforehand: gettext's catalogue and ICU's resource
// bundle. They map that file into memory and find a text when it is asked for, so the job to compare is loading and
// reading every text. Both keep the file mapped between runs, which is to their advantage.
#include "benchmarks/Jobs.h"
#include "benchmarks/TemporaryFile.h"
#include "uistrings/UIStrings.h"
#include <afxstr.h>

#include <algorithm>
#include <boost/make_shared.hpp>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <libintl.h>
#include <map>
#include <random>
#include <stdexcept>
#include <unicode/ures.h>
#include <unicode/ustdio.h>
#include <unicode/ustring.h>

extern "C" int _nl_msg_cat_cntr; // of gettext: a change makes it forget what it has found

namespace
{
constexpr unsigned StringCount = 100000;
constexpr size_t LookUps = 1000000;
const WString Language = TEXT("en");

// Each load needs an empty table, and the class has no operation for that. An explicit instantiation may name a private
// member.
std::map<WString, UIStringMapPtr>& Languages();
template <auto* pLanguages>
struct CLanguagesAccess
{
    friend std::map<WString, UIStringMapPtr>& Languages() { return *pLanguages; }
};
template struct CLanguagesAccess<&CUIStrings::m_languages>;

/// Texts of 10 to 60 characters, one in ten of them not ASCII. Text i has the number i + 1.
class CTexts
{
public:
    CTexts()
    {
        std::mt19937 random(20);
        const auto number = [&](int least, int most) { return std::uniform_int_distribution(least, most)(random); };
        const WString others = TEXT("\u00e4\u00f6\u00fc\u00df\u00e9\u00ed");
        for (WString& text : texts)
        {
            text.resize(static_cast<size_t>(number(10, 60)));
            for (WCHAR& unit : text)
                unit = number(0, 9) == 0 ? others[static_cast<size_t>(number(0, 5))]
                                         : static_cast<WCHAR>(number('a', 'z'));
        }
        for (unsigned& id : ids)
            id = static_cast<unsigned>(number(1, StringCount));
    }

    std::vector<WString> texts = std::vector<WString>(StringCount);
    std::vector<unsigned> ids = std::vector<unsigned>(LookUps); ///< what is looked up
};

const CTexts& Texts()
{
    static const CTexts s_texts;
    return s_texts;
}

std::string Utf8(const WString& text)
{
    std::string bytes(text.size() * 3, 0);
    int32_t length = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strToUTF8(bytes.data(), static_cast<int32_t>(bytes.size()), &length, text.data(),
                static_cast<int32_t>(text.size()), &status);
    bytes.resize(static_cast<size_t>(length));
    return bytes;
}

// The files.

enum class Encoding
{
    Ansi,
    Utf8,
    Utf16LittleEndian,
    Utf16BigEndian
};

const char* NameOf(Encoding encoding)
{
    const char* const names[] = {"ANSI", "UTF-8", "UTF-16 LE", "UTF-16 BE"};
    return names[static_cast<int>(encoding)];
}

/// ICU's name of the encoding.
const char* ConverterOf(Encoding encoding)
{
    const char* const names[] = {"windows-1252", "UTF-8", "UTF-16", "UTF-16"};
    return names[static_cast<int>(encoding)];
}

/// The lines "NUMBER TEXT" in the encoding, after its mark.
std::string StringFile(Encoding encoding)
{
    WString lines(encoding == Encoding::Ansi ? 0 : 1, TEXT('\ufeff'));
    for (unsigned i = 0; i < StringCount; ++i)
    {
        const std::string number = std::to_string(i + 1);
        lines.append(number.begin(), number.end()).append(1, TEXT(' ')).append(Texts().texts[i]).append(TEXT("\r\n"));
    }
    if (encoding == Encoding::Utf8)
        return Utf8(lines);
    std::string bytes;
    for (const WCHAR unit : lines)
    {
        const auto high = static_cast<char>(unit >> 8);
        const auto low = static_cast<char>(unit);
        if (encoding == Encoding::Utf16BigEndian)
            bytes += high;
        bytes += low;
        if (encoding == Encoding::Utf16LittleEndian)
            bytes += high;
    }
    return bytes;
}

void Require(bool holds, const char* pWhat)
{
    if (!holds)
        throw std::runtime_error(pWhat);
}

/// A temporary folder, removed with the object.
class CFolder
{
public:
    CFolder() { Require(mkdtemp(m_path.data()) != nullptr, "cannot make a folder in /tmp"); }
    CFolder(const CFolder&) = delete;
    CFolder& operator=(const CFolder&) = delete;
    ~CFolder() { std::filesystem::remove_all(m_path); }
    const std::string& GetPath() const { return m_path; }

private:
    std::string m_path = "/tmp/bench-strings-XXXXXX";
};

/// The texts for gettext and for ICU, compiled by their tools.
class CCompiledTexts
{
public:
    CCompiledTexts()
    {
        std::fprintf(stderr, "compiling the texts for gettext and ICU\n");
        const std::string& folder = m_folder.GetPath();
        std::ofstream catalogue(folder + "/strings.po");
        std::ofstream bundle(folder + "/root.txt");
        catalogue << "msgid \"\"\nmsgstr \"Content-Type: text/plain; charset=UTF-8\\n\"\n";
        bundle << "\xEF\xBB\xBFroot {\n";
        for (unsigned i = 0; i < StringCount; ++i)
        {
            keys.push_back(std::to_string(i + 1));
            bundleKeys.push_back("s" + keys.back());
            catalogue << "msgid \"" << keys[i] << "\"\nmsgstr \"" << Utf8(Texts().texts[i]) << "\"\n";
        }
        // genrb keeps a sorted list, which it searches from the front: the last key has to come first.
        std::map<std::string, unsigned, std::greater<>> sorted;
        for (unsigned i = 0; i < StringCount; ++i)
            sorted.emplace(bundleKeys[i], i);
        for (const auto& [key, i] : sorted)
            bundle << key << " { \"" << Utf8(Texts().texts[i]) << "\" }\n";
        bundle << "}\n";
        Require(catalogue.flush() && bundle.flush(), "cannot write the peers' texts in /tmp");
        std::filesystem::create_directories(folder + "/C.UTF-8/LC_MESSAGES");
        Run("msgfmt -o " + folder + "/C.UTF-8/LC_MESSAGES/strings.mo " + folder + "/strings.po");
        Run("genrb -q -s " + folder + " -d " + folder + " root.txt");
    }
    const std::string& GetFolder() const { return m_folder.GetPath(); }

    std::vector<std::string> keys; ///< of text i
    std::vector<std::string> bundleKeys;

private:
    static void Run(const std::string& command) { Require(std::system(command.c_str()) == 0, command.c_str()); }
    CFolder m_folder;
};

const CCompiledTexts& CompiledTexts()
{
    static const CCompiledTexts s_texts;
    return s_texts;
}

// The tables. Open loads the texts; Get returns text i as the module's string.

class COwnTable
{
public:
    static constexpr const char* Name = "CUIStrings";
    COwnTable()
    {
        m_file.Write(StringFile(Encoding::Utf8));
        CUIStrings::m_currentLanguage = Language;
    }
    void Open()
    {
        Languages().clear();
        CUIStrings::LoadFile(Language.c_str(), m_file.GetPath());
    }
    CString Get(unsigned i) const { return m_pStrings->GetString(i + 1); }

private:
    CTemporaryFile m_file;
    CUIStrings* m_pStrings = CUIStrings::Instance();
};

class CGettextTable
{
public:
    static constexpr const char* Name = "gettext";
    CGettextTable()
    {
        unsetenv("LANGUAGE"); // which would go before the locale
        Require(std::setlocale(LC_ALL, "C.UTF-8") != nullptr, "the locale C.UTF-8 is missing");
        bindtextdomain(Domain, CompiledTexts().GetFolder().c_str());
        bind_textdomain_codeset(Domain, "UTF-8");
    }
    CGettextTable(const CGettextTable&) = delete;
    CGettextTable& operator=(const CGettextTable&) = delete;
    ~CGettextTable() { std::setlocale(LC_ALL, "C"); }
    void Open() { ++_nl_msg_cat_cntr; }
    CString Get(unsigned i) const
    {
        const std::string_view text = dgettext(Domain, CompiledTexts().keys[i].c_str());
        const auto room = static_cast<int32_t>(text.size());
        CString wide;
        int32_t length = 0;
        UErrorCode status = U_ZERO_ERROR;
        u_strFromUTF8(wide.GetBuffer(room), room, &length, text.data(), room, &status);
        wide.ReleaseBufferSetLength(length);
        return wide;
    }

private:
    static constexpr const char* Domain = "strings";
};

class CBundleTable
{
public:
    static constexpr const char* Name = "ICU resource bundle";
    void Open()
    {
        UErrorCode status = U_ZERO_ERROR;
        m_pBundle.reset(ures_openDirect(CompiledTexts().GetFolder().c_str(), "root", &status));
    }
    CString Get(unsigned i) const
    {
        UErrorCode status = U_ZERO_ERROR;
        int32_t length = 0;
        const UChar* const pText =
            ures_getStringByKey(m_pBundle.get(), CompiledTexts().bundleKeys[i].c_str(), &length, &status);
        return {pText, length};
    }

private:
    struct CCloser
    {
        void operator()(UResourceBundle* pBundle) const { ures_close(pBundle); }
    };
    std::unique_ptr<UResourceBundle, CCloser> m_pBundle;
};

/// The least work with such a table: a descent in each map and one copy.
class CMapTable
{
public:
    static constexpr const char* Name = "two maps and a copy";
    void Open()
    {
        const auto pStrings = boost::make_shared<UIStringMap>();
        for (unsigned i = 0; i < StringCount; ++i)
            pStrings->emplace_hint(pStrings->end(), i + 1, boost::make_shared<UIStringEntry>(i + 1, Texts().texts[i]));
        m_languages = {{Language, pStrings}};
    }
    CString Get(unsigned i) const
    {
        const WString& text = m_languages.find(Language)->second->find(i + 1)->second->second;
        return {text.data(), static_cast<int>(text.size())};
    }

private:
    std::map<WString, UIStringMapPtr> m_languages;
};

// The contestants.

size_t UnitsOf(const CString& text)
{
    return static_cast<size_t>(text.GetLength());
}

/// Loads the table and reads every text once.
template <typename Table, Role TableRole>
class CLoadAndRead : public IContestant
{
public:
    std::string GetName() const override { return Table::Name; }
    Role GetRole() const override { return TableRole; }
    void Run() override
    {
        m_table.Open();
        m_units = 0;
        for (unsigned i = 0; i < StringCount; ++i)
            m_units += UnitsOf(m_table.Get(i));
    }
    bool Finish() override
    {
        size_t units = 0;
        for (const WString& text : Texts().texts)
            units += text.size();
        return m_units == units && m_table.Get(7) == Texts().texts[7].c_str();
    }

private:
    Table m_table;
    size_t m_units = 0;
};

template <typename Table, Role TableRole>
class CLookUp : public IContestant
{
public:
    CLookUp() { m_table.Open(); }
    std::string GetName() const override { return Table::Name; }
    Role GetRole() const override { return TableRole; }
    void Run() override
    {
        m_units = 0;
        for (const unsigned id : Texts().ids)
            m_units += UnitsOf(m_table.Get(id - 1));
    }
    bool Finish() override
    {
        size_t units = 0;
        for (const unsigned id : Texts().ids)
            units += Texts().texts[id - 1].size();
        return m_units == units;
    }

private:
    Table m_table;
    size_t m_units = 0;
};

template <template <typename, Role> typename Job>
Contestants MakeTables()
{
    Contestants contestants;
    contestants.push_back(std::make_unique<Job<COwnTable, Role::Ours>>());
    contestants.push_back(std::make_unique<Job<CGettextTable, Role::Peer>>());
    contestants.push_back(std::make_unique<Job<CBundleTable, Role::Peer>>());
    return contestants;
}

Contestants MakeLookUps()
{
    Contestants contestants = MakeTables<CLookUp>();
    contestants.push_back(std::make_unique<CLookUp<CMapTable, Role::Limit>>());
    return contestants;
}

/// Loads a file of lines into a table.
class CLoadLines : public IContestant
{
public:
    explicit CLoadLines(Encoding encoding) : m_encoding(encoding) { m_file.Write(StringFile(encoding)); }

protected:
    Encoding m_encoding;
    CTemporaryFile m_file;
};

class COwnLoadLines : public CLoadLines
{
public:
    using CLoadLines::CLoadLines;
    std::string GetName() const override { return "CUIStrings::LoadFile"; }
    Role GetRole() const override { return Role::Ours; }
    void Run() override { CUIStrings::LoadFile(Language.c_str(), m_file.GetPath()); }
    bool Finish() override
    {
        const UIStringMap& strings = *Languages()[Language];
        bool isRight = strings.size() == StringCount;
        for (const auto& [id, pEntry] : strings)
            isRight = isRight && pEntry->second == Texts().texts[id - 1];
        Languages().clear();
        return isRight;
    }
};

class CIcuLoadLines : public CLoadLines
{
public:
    using CLoadLines::CLoadLines;
    std::string GetName() const override { return "u_fgets, std::map"; }
    Role GetRole() const override { return Role::Peer; }
    void Run() override
    {
        UFILE* const pFile = u_fopen(m_file.GetNativePath().c_str(), "rb", nullptr, ConverterOf(m_encoding));
        UChar line[1024];
        while (u_fgets(line, static_cast<int32_t>(std::size(line)), pFile) != nullptr)
            Add(line);
        u_fclose(pFile);
    }
    bool Finish() override
    {
        bool isRight = m_strings.size() == StringCount;
        for (const auto& [id, text] : m_strings)
            isRight = isRight && text == Texts().texts[id - 1];
        m_strings.clear();
        return isRight;
    }

private:
    void Add(const UChar* pLine)
    {
        unsigned id = 0;
        pLine += *pLine == u'\ufeff' ? 1 : 0; // a byte-order mark
        for (; *pLine >= u'0' && *pLine <= u'9'; ++pLine)
            id = id * 10 + (*pLine - u'0');
        const UChar* const pEnd = u_strpbrk(++pLine, u"\r\n");
        m_strings.emplace_hint(m_strings.end(), id, WString(pLine, pEnd));
    }
    std::map<unsigned, WString> m_strings;
};

Contestants MakeLoadLines(Encoding encoding)
{
    Contestants contestants;
    contestants.push_back(std::make_unique<COwnLoadLines>(encoding));
    contestants.push_back(std::make_unique<CIcuLoadLines>(encoding));
    return contestants;
}
} // namespace

void RunStringRaces(const BenchOptions& options, CReport& report)
{
    constexpr double goal = 2;
    for (const Encoding encoding :
         {Encoding::Ansi, Encoding::Utf8, Encoding::Utf16LittleEndian, Encoding::Utf16BigEndian})
    {
        const std::string title = std::string("strings load ") + NameOf(encoding);
        if (IsSelected(options, title))
            report.AddRace(title, StringCount, Compete(MakeLoadLines(encoding), options), goal, 0);
    }
    const std::string loadTitle = "strings load and read all";
    if (IsSelected(options, loadTitle))
        report.AddRace(loadTitle, StringCount, Compete(MakeTables<CLoadAndRead>(), options), goal, 0);
    const std::string lookUpTitle = "strings look up";
    if (IsSelected(options, lookUpTitle))
        report.AddRace(lookUpTitle, LookUps, Compete(MakeLookUps(), options), 0, 1);
}
