#include "benchmarks/Jobs.h"
#include "projection/base64/Base64.h"

#include <glib.h>
#include <modp_b64.h>
#include <openssl/evp.h>

namespace
{
constexpr size_t ValueBytes = 4096;
constexpr size_t CodedBytes = (ValueBytes + 2) / 3 * 4;

/// The document's text in pieces of 4 KB, and the base64 value of each.
class CValues
{
public:
    explicit CValues(const BenchDocument& document)
    {
        for (size_t i = 0; i + ValueBytes <= document.narrowText.size(); i += ValueBytes)
            texts.push_back(document.narrowText.substr(i, ValueBytes));
        for (const std::string& text : texts)
        {
            values.push_back(Base64EncodeBytes(text.data(), ValueBytes));
            textTotals.Add(text.data(), text.size());
            valueTotals.Add(values.back().data(), CodedBytes);
        }
    }

    std::vector<std::string> texts;
    std::vector<std::string> values;
    ValueTotals textTotals;
    ValueTotals valueTotals;
};
using ValuesPointer = std::shared_ptr<const CValues>;

/// Codes all of them and adds up the results.
template <typename Coder>
class CCodeValues : public IContestant
{
public:
    CCodeValues(ValuesPointer pValues, bool isEncoder, Role role)
        : m_coder(isEncoder ? pValues->texts : pValues->values),
          m_expected(isEncoder ? pValues->valueTotals : pValues->textTotals),
          m_isEncoder(isEncoder),
          m_role(role)
    {
    }

    std::string GetName() const override { return Coder::Name; }
    Role GetRole() const override { return m_role; }
    void Run() override { m_isEncoder ? m_coder.Encode(m_totals) : m_coder.Decode(m_totals); }
    bool Finish() override { return std::exchange(m_totals, {}) == m_expected; }

private:
    Coder m_coder;
    ValueTotals m_expected;
    ValueTotals m_totals;
    bool m_isEncoder;
    Role m_role;
};

class COwnCoder
{
public:
    static constexpr const char* Name = "EncodeTextValue, DecodeTextValue";
    explicit COwnCoder(const std::vector<std::string>& inputs)
    {
        for (const std::string& input : inputs)
            m_inputs.emplace_back(input.begin(), input.end());
    }
    void Encode(ValueTotals& totals) const { Code(EncodeTextValue, totals); }
    void Decode(ValueTotals& totals) const { Code(DecodeTextValue, totals); }

private:
    void Code(CString (*code)(const WCHAR*), ValueTotals& totals) const
    {
        for (const WString& input : m_inputs)
        {
            const CString output = code(input.c_str());
            totals.Add(output.GetString(), static_cast<size_t>(output.GetLength()));
        }
    }
    std::vector<WString> m_inputs;
};

/// Bytes to bytes, into one buffer.
class CBlockCoder
{
public:
    explicit CBlockCoder(const std::vector<std::string>& inputs) : m_inputs(inputs), m_output(2 * ValueBytes) {}

protected:
    const std::vector<std::string>& m_inputs;
    std::vector<unsigned char> m_output;
};

const unsigned char* Unsigned(const std::string& text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

class COpenSslCoder : public CBlockCoder
{
public:
    static constexpr const char* Name = "OpenSSL, on bytes";
    using CBlockCoder::CBlockCoder;
    void Encode(ValueTotals& totals)
    {
        for (const std::string& input : m_inputs)
        {
            const int length = EVP_EncodeBlock(m_output.data(), Unsigned(input), static_cast<int>(input.size()));
            totals.Add(m_output.data(), static_cast<size_t>(length));
        }
    }
    void Decode(ValueTotals& totals)
    {
        for (const std::string& input : m_inputs)
        {
            const int length = EVP_DecodeBlock(m_output.data(), Unsigned(input), static_cast<int>(input.size()));
            totals.Add(m_output.data(), static_cast<size_t>(length) - 2); // it counts the padding
        }
    }
};
static_assert(ValueBytes % 3 == 1);

class CModpCoder : public CBlockCoder
{
public:
    static constexpr const char* Name = "libmodpbase64, on bytes";
    using CBlockCoder::CBlockCoder;
    void Encode(ValueTotals& totals) { Code(modp_b64_encode, totals); }
    void Decode(ValueTotals& totals) { Code(modp_b64_decode, totals); }

private:
    void Code(size_t (*code)(char*, const char*, size_t), ValueTotals& totals)
    {
        for (const std::string& input : m_inputs)
        {
            const size_t length = code(reinterpret_cast<char*>(m_output.data()), input.data(), input.size());
            totals.Add(m_output.data(), length);
        }
    }
};

class CGlibCoder : public CBlockCoder
{
public:
    static constexpr const char* Name = "GLib, on bytes";
    using CBlockCoder::CBlockCoder;
    void Encode(ValueTotals& totals)
    {
        for (const std::string& input : m_inputs)
        {
            int state = 0;
            int save = 0;
            auto* const pOutput = reinterpret_cast<char*>(m_output.data());
            size_t length = g_base64_encode_step(Unsigned(input), input.size(), FALSE, pOutput, &state, &save);
            length += g_base64_encode_close(FALSE, pOutput + length, &state, &save);
            totals.Add(m_output.data(), length);
        }
    }
    void Decode(ValueTotals& totals)
    {
        for (const std::string& input : m_inputs)
        {
            int state = 0;
            unsigned save = 0;
            totals.Add(m_output.data(),
                       g_base64_decode_step(input.data(), input.size(), m_output.data(), &state, &save));
        }
    }
};

template <bool IsEncoder>
Contestants MakeCoders(const BenchDocument& document)
{
    static ValuesPointer s_pValues; // one set for all contestants of a race
    s_pValues = std::make_shared<CValues>(document);
    Contestants contestants;
    contestants.push_back(std::make_unique<CCodeValues<COwnCoder>>(s_pValues, IsEncoder, Role::Ours));
    contestants.push_back(std::make_unique<CCodeValues<COpenSslCoder>>(s_pValues, IsEncoder, Role::Peer));
    contestants.push_back(std::make_unique<CCodeValues<CModpCoder>>(s_pValues, IsEncoder, Role::Peer));
    contestants.push_back(std::make_unique<CCodeValues<CGlibCoder>>(s_pValues, IsEncoder, Role::Peer));
    return contestants;
}
} // namespace

std::vector<Job> Base64Jobs()
{
    return {{"encode 4 KB values", 'D', MakeCoders<true>, 2}, {"decode 4 KB values", 'D', MakeCoders<false>, 2}};
}
