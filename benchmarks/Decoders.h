#pragma once
/// Base64 decoders of other libraries under one form: what an operator() gives is good until its next call.
#include <modp_b64.h>
#include <openssl/evp.h>
#include <string>
#include <string_view>

/// Wants whole groups, and leaves the bytes of the padding in.
class COpenSslDecoder
{
public:
    static constexpr const char* Name = "OpenSSL";
    std::string_view operator()(std::string_view value)
    {
        m_bytes.resize(value.size());
        const int count =
            EVP_DecodeBlock(reinterpret_cast<unsigned char*>(m_bytes.data()),
                            reinterpret_cast<const unsigned char*>(value.data()), static_cast<int>(value.size()));
        const size_t padding = value.ends_with("==") ? 2 : value.ends_with('=') ? 1 : 0;
        return {m_bytes.data(), static_cast<size_t>(count) - padding};
    }

private:
    std::string m_bytes;
};

class CModpDecoder
{
public:
    static constexpr const char* Name = "libmodpbase64";
    std::string_view operator()(std::string_view value)
    {
        m_bytes.resize(modp_b64_decode_len(value.size()));
        return {m_bytes.data(), modp_b64_decode(m_bytes.data(), value.data(), value.size())};
    }

private:
    std::string m_bytes;
};
