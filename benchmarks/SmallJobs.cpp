// Documents of the size that projects have, where fixed costs count. Every contestant fills the module's own objects,
// so that all give the same result, and each run is timed whole: the copy of the text for readers that write into it,
// and dropping the document.
#include "benchmarks/Decoders.h"
#include "benchmarks/Jobs.h"
#include "benchmarks/SmallReaders.h"
#include "benchmarks/XmlPeers.h"
#include "configuration/ConfigurationElement.h"
#include "configuration/Storage.h"
#include "projection/ProjectionRegistry.h"
#include "xml/XmlDocument.h"

#include <algorithm>
#include <boost/make_shared.hpp>
#include <charconv>
#include <cstdio>
#include <tinyxml2.h>

namespace
{
// Making and dropping a document.

template <typename Document>
class CMakeDocument : public IContestant
{
public:
    CMakeDocument(const char* pName, Role role) : m_pName(pName), m_role(role) {}
    std::string GetName() const override { return m_pName; }
    Role GetRole() const override { return m_role; }
    void Run() override
    {
        const Document document;
        m_pSeen = &document; // keeps the compiler from leaving it out
    }
    bool Finish() override { return m_pSeen != nullptr; }

private:
    const char* m_pName;
    Role m_role;
    const void* volatile m_pSeen = nullptr;
};

Contestants MakeDocuments()
{
    Contestants contestants;
    contestants.push_back(std::make_unique<CMakeDocument<CXmlDocument>>("CXmlDocument", Role::Ours));
    contestants.push_back(std::make_unique<CMakeDocument<pugi::xml_document>>("pugixml", Role::Peer));
    contestants.push_back(std::make_unique<CMakeDocument<rapidxml::xml_document<char>>>("RapidXML", Role::Peer));
    contestants.push_back(std::make_unique<CMakeDocument<tinyxml2::XMLDocument>>("tinyxml2", Role::Peer));
    return contestants;
}

// All attributes as strings.

CString Widened(std::string_view value)
{
    const auto* const pBytes = reinterpret_cast<const unsigned char*>(value.data());
    const auto length = static_cast<int>(value.size());
    CString text;
    std::copy(pBytes, pBytes + value.size(), text.GetBuffer(length));
    text.ReleaseBufferSetLength(length);
    return text;
}

CString Widened(std::u16string_view value)
{
    return {value.data(), static_cast<int>(value.size())};
}

class CReadStrings : public IContestant
{
public:
    explicit CReadStrings(const BenchDocument& document)
        : m_document(document), m_names(document.attributeNames.begin(), document.attributeNames.end())
    {
    }
    bool Finish() override { return m_totals == m_document.allAttributes; }

protected:
    void Start() { m_totals = {}; }
    void Take(const CString& value) { m_totals.Add(value.GetString(), static_cast<size_t>(value.GetLength())); }

    const BenchDocument& m_document;
    std::vector<AttributeName> m_names;

private:
    ValueTotals m_totals;
};

class COwnStrings : public CReadStrings
{
public:
    using CReadStrings::CReadStrings;
    std::string GetName() const override { return "CXmlDocument, text in place"; }
    Role GetRole() const override { return Role::Ours; }
    void Run() override
    {
        Start();
        CXmlDocument document;
        document.ParseInPlace(m_document.text);
        document.FindElement(nullptr);
        document.EnterElement();
        while (document.FindElement(nullptr))
            for (const AttributeName& name : m_names)
                Take(document.GetAttribute(name.wide.c_str()));
    }
};

template <typename Reader>
class CPeerStrings : public CReadStrings
{
public:
    explicit CPeerStrings(const BenchDocument& document) : CReadStrings(document), m_reader(document.narrowText) {}
    std::string GetName() const override { return Reader::GetName(); }
    Role GetRole() const override { return Role::Peer; }
    void Run() override
    {
        Start();
        m_reader.ForEachChild(
            [&](const auto& child)
            {
                for (const AttributeName& name : m_names)
                    Take(Widened(child.Get(name)));
            });
    }

private:
    Reader m_reader;
};

Contestants MakeReadStrings(const BenchDocument& document)
{
    Contestants contestants;
    contestants.push_back(std::make_unique<COwnStrings>(document));
    contestants.push_back(std::make_unique<CPeerStrings<CPugixmlChildren<pugi::parse_default>>>(document));
    contestants.push_back(std::make_unique<CPeerStrings<CPugixmlChildren<pugi::parse_minimal>>>(document));
    contestants.push_back(std::make_unique<CPeerStrings<CRapidXmlChildren<char, false>>>(document));
    contestants.push_back(std::make_unique<CPeerStrings<CRapidXmlChildren<char, true>>>(document));
    contestants.push_back(std::make_unique<CPeerStrings<CRapidXmlChildren<char16_t, false>>>(document));
    contestants.push_back(std::make_unique<CPeerStrings<CRapidXmlChildren<char16_t, true>>>(document));
    return contestants;
}

// The whole of ParseXML. Result: a CProjectionRegistry or a CStorage, whose GetXML must give the document back.

template <typename Result>
class CReadObjects : public IContestant
{
public:
    explicit CReadObjects(const BenchDocument& document) : m_document(document) {}
    bool Finish() override { return m_document.text == m_result.GetXML().GetString(); }

protected:
    const BenchDocument& m_document;
    Result m_result;
};

template <typename Result>
class COwnObjects : public CReadObjects<Result>
{
public:
    using CReadObjects<Result>::CReadObjects;
    std::string GetName() const override { return "ParseXML"; }
    Role GetRole() const override { return Role::Ours; }
    void Run() override { this->m_result.ParseXML(this->m_document.text.c_str()); }
};

template <typename Decoder>
class CPeerObjectMaker
{
public:
    explicit CPeerObjectMaker(const std::vector<std::string>& names) : m_names(names.begin(), names.end()) {}

    template <typename Child>
    void Add(const Child& child, CProjectionRegistry& registry)
    {
        auto pDefinition = boost::make_shared<CProjectionDefinition>();
        pDefinition->m_name = Text(child, 0);
        pDefinition->m_showInLS = Number(child, 1);
        pDefinition->m_showInCS = Number(child, 2);
        pDefinition->m_showInEditor = Number(child, 3);
        pDefinition->m_layerName = Text(child, 4);
        pDefinition->m_entityId = Text(child, 5);
        pDefinition->m_isActive = Number(child, 6);
        registry.m_definitions.push_back(std::move(pDefinition));
    }
    template <typename Child>
    void Add(const Child& child, VLT::CStorage& storage)
    {
        auto pRecord = boost::make_shared<VLT::CConfiguration>();
        VLT::ConfigurationFields::Id(*pRecord) = Text(child, 0);
        VLT::ConfigurationFields::Cfg(*pRecord) = Text(child, 1);
        storage.AddConfiguration(std::move(pRecord));
    }

private:
    template <typename Child>
    CString Text(const Child& child, size_t name)
    {
        return Widened(m_decode(child.Get(m_names[name])));
    }
    template <typename Child>
    int Number(const Child& child, size_t name) const
    {
        const std::string_view value = child.Get(m_names[name]);
        int number = 0;
        std::from_chars(value.data(), value.data() + value.size(), number);
        return number;
    }

    Decoder m_decode;
    std::vector<AttributeName> m_names;
};

void Empty(CProjectionRegistry& registry)
{
    registry.m_definitions.clear();
}

void Empty(VLT::CStorage& storage)
{
    storage.Clear();
}

template <typename Result, typename Reader, typename Decoder>
class CPeerObjects : public CReadObjects<Result>
{
public:
    explicit CPeerObjects(const BenchDocument& document)
        : CReadObjects<Result>(document), m_reader(document.narrowText), m_maker(document.attributeNames)
    {
    }
    std::string GetName() const override { return Reader::GetName() + ", " + Decoder::Name; }
    Role GetRole() const override { return Role::Peer; }
    void Run() override
    {
        Empty(this->m_result);
        m_reader.ForEachChild([&](const auto& child) { m_maker.Add(child, this->m_result); });
    }

private:
    Reader m_reader;
    CPeerObjectMaker<Decoder> m_maker;
};

template <typename Result, typename Reader>
void AddPeerObjects(const BenchDocument& document, Contestants& contestants)
{
    contestants.push_back(std::make_unique<CPeerObjects<Result, Reader, COpenSslDecoder>>(document));
    contestants.push_back(std::make_unique<CPeerObjects<Result, Reader, CModpDecoder>>(document));
}

template <typename Result>
Contestants MakeReadObjects(const BenchDocument& document)
{
    Contestants contestants;
    contestants.push_back(std::make_unique<COwnObjects<Result>>(document));
    AddPeerObjects<Result, CPugixmlChildren<pugi::parse_default>>(document, contestants);
    AddPeerObjects<Result, CPugixmlChildren<pugi::parse_minimal>>(document, contestants);
    AddPeerObjects<Result, CRapidXmlChildren<char, false>>(document, contestants);
    AddPeerObjects<Result, CRapidXmlChildren<char, true>>(document, contestants);
    return contestants;
}

// The whole of GetXML. Source: a CProjectionRegistry or a CStorage.

template <typename Source>
class CWriteText : public IContestant
{
public:
    explicit CWriteText(const BenchDocument& document) : m_document(document)
    {
        m_source.ParseXML(document.text.c_str());
    }
    bool Finish() override { return m_document.text == m_text.GetString(); }

protected:
    const BenchDocument& m_document;
    Source m_source;
    CString m_text;
};

template <typename Source>
class COwnText : public CWriteText<Source>
{
public:
    using CWriteText<Source>::CWriteText;
    std::string GetName() const override { return "GetXML"; }
    Role GetRole() const override { return Role::Ours; }
    void Run() override { this->m_text = this->m_source.GetXML(); }
};

struct COpenSslEncoder
{
    static constexpr const char* Name = "OpenSSL";
    static void Encode(const std::string& bytes, char* pValue)
    {
        EVP_EncodeBlock(reinterpret_cast<unsigned char*>(pValue), reinterpret_cast<const unsigned char*>(bytes.data()),
                        static_cast<int>(bytes.size()));
    }
};

struct CModpEncoder
{
    static constexpr const char* Name = "libmodpbase64";
    static void Encode(const std::string& bytes, char* pValue) { modp_b64_encode(pValue, bytes.data(), bytes.size()); }
};

/// Writes 8-bit text with snprintf and widens it at the end.
template <typename Source, typename Encoder>
class CPeerText : public CWriteText<Source>
{
public:
    using CWriteText<Source>::CWriteText;
    std::string GetName() const override { return std::string("snprintf, ") + Encoder::Name; }
    Role GetRole() const override { return Role::Peer; }
    void Run() override
    {
        m_narrow.clear();
        Write(this->m_source);
        this->m_text = Widened(m_narrow);
    }

private:
    void Write(CProjectionRegistry& registry)
    {
        m_narrow += "<projectionRegistry>";
        for (const auto& pDefinition : registry.m_definitions)
            Print("<projectionDefinition name=\"%s\" showInLS=\"%d\" showInCS=\"%d\" showInEditor=\"%d\" "
                  "layerName=\"%s\" entityId=\"%s\" isActive=\"%d\" />",
                  Value(0, pDefinition->m_name), pDefinition->m_showInLS, pDefinition->m_showInCS,
                  pDefinition->m_showInEditor, Value(1, pDefinition->m_layerName), Value(2, pDefinition->m_entityId),
                  pDefinition->m_isActive);
        m_narrow += "</projectionRegistry>";
    }
    void Write(VLT::CStorage& storage)
    {
        m_narrow += "<storage>";
        for (const auto& pRecord : *storage.GetConfigurationVector())
            Print("<configuration id=\"%s\" cfg=\"%s\" />", Value(0, VLT::ConfigurationFields::Id(*pRecord)),
                  Value(1, VLT::ConfigurationFields::Cfg(*pRecord)));
        m_narrow += "</storage>";
    }

    /// The text in base64, in the buffer of that number.
    const char* Value(size_t buffer, const CString& text)
    {
        m_bytes.assign(text.GetString(), text.GetString() + text.GetLength());
        std::string& value = m_values[buffer];
        value.resize((m_bytes.size() + 2) / 3 * 4 + 1);
        Encoder::Encode(m_bytes, value.data());
        return value.c_str();
    }
    template <typename... Arguments>
    void Print(const char* pFormat, Arguments... arguments)
    {
        m_element.resize(m_element.capacity());
        const int length = std::snprintf(m_element.data(), m_element.size(), pFormat, arguments...);
        if (static_cast<size_t>(length) >= m_element.size())
        {
            m_element.resize(static_cast<size_t>(length) + 1);
            return Print(pFormat, arguments...);
        }
        m_narrow.append(m_element.data(), static_cast<size_t>(length));
    }

    std::string m_narrow;
    std::string m_bytes;
    std::string m_values[3];
    std::string m_element;
};

template <typename Source>
Contestants MakeWriteText(const BenchDocument& document)
{
    Contestants contestants;
    contestants.push_back(std::make_unique<COwnText<Source>>(document));
    contestants.push_back(std::make_unique<CPeerText<Source, COpenSslEncoder>>(document));
    contestants.push_back(std::make_unique<CPeerText<Source, CModpEncoder>>(document));
    return contestants;
}

// The table of jobs.

constexpr int Counts[] = {1, 3, 30, 300};

struct SmallJob
{
    std::string name;
    char document;
    Contestants (*make)(const BenchDocument&);
    std::vector<double> goals; ///< for the counts, of the warm rows
};

std::vector<SmallJob> SmallJobs()
{
    return {{"parse", 'B', MakeParse, {1.5, 2, 3, 4}},
            {"attributes", 'B', MakeReadStrings, {1.2, 1.3, 1.4, 1.4}},
            {"read registry", 'B', MakeReadObjects<CProjectionRegistry>, {1.3, 1.5, 1.5, 1.5}},
            {"write registry", 'B', MakeWriteText<CProjectionRegistry>, {1.5, 2, 2, 2}},
            {"parse", 'A', MakeParse, {0, 0, 0}},
            {"attributes", 'A', MakeReadStrings, {0, 0, 0}},
            {"read storage", 'A', MakeReadObjects<VLT::CStorage>, {0, 0, 0}},
            {"write storage", 'A', MakeWriteText<VLT::CStorage>, {0, 0, 0}}};
}

std::string TitleOf(const SmallJob& job, int count, bool isCold)
{
    const std::string noun = job.document == 'A' ? " record" : " definition";
    return "small " + job.name + ", " + std::to_string(count) + noun + (count == 1 ? "" : "s") +
           (isCold ? ", cold" : "");
}

/// Batches of some ten microseconds.
int BatchFor(int64_t characters)
{
    return static_cast<int>(8 + 20000 / characters);
}
} // namespace

void RunSmallRaces(const BenchOptions& options, CReport& report)
{
    BenchOptions shortTurns = options;
    shortTurns.turnSeconds = options.turnSeconds / 5;
    for (const bool isCold : {false, true})
    {
        const std::string emptyTitle = std::string("small document made and dropped") + (isCold ? ", cold" : "");
        if (IsSelected(options, emptyTitle))
            report.AddRace(emptyTitle, 0, Compete(MakeDocuments(), shortTurns, {BatchFor(100), isCold}), 0, 0);
        for (const SmallJob& job : SmallJobs())
            for (size_t i = 0; i < job.goals.size(); ++i)
            {
                const std::string title = TitleOf(job, Counts[i], isCold);
                if (!IsSelected(options, title))
                    continue;
                const BenchDocument document = MakeSmallDocument(job.document, Counts[i]);
                const Timing timing{isCold ? 1 : BatchFor(document.GetLength()), isCold};
                report.AddRace(title, document.GetLength(), Compete(job.make(document), shortTurns, timing),
                               isCold ? 0 : job.goals[i], 0);
            }
    }
}
