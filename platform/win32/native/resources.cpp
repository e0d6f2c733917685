#include "platform/win32/native/resources.h"

#include "platform/win32/native/kernel.h"
#include "platform/win32/native/resourcereader.h"

#include <algorithm>
#include <span>

#include <unicode/uchar.h>

namespace
{
std::vector<const CModuleResources*> s_modules;

/// Reads one entry and moves to the next. Returns false at the end and at a damaged entry.
bool ReadEntry(CResourceReader& reader, const BYTE* pBegin, CResource& resource)
{
    const size_t start = reader.GetPosition();
    resource.size = reader.ReadDword();
    const DWORD headerSize = reader.ReadDword();
    resource.type = reader.ReadName();
    resource.name = reader.ReadName();
    reader.Align();
    reader.Skip(sizeof(DWORD) + sizeof(WORD)); // data version, memory flags
    resource.language = reader.ReadWord();
    reader.Skip(2 * sizeof(DWORD)); // version, characteristics

    // The header's size must match what was read: the data follows the header.
    if (reader.HasFailed() || reader.GetPosition() - start != headerSize)
        return false;
    resource.pBytes = pBegin + reader.GetPosition();
    reader.Skip(resource.size);
    reader.Align();
    return !reader.HasFailed();
}

/// Converts a name as the resource compiler does: to upper case.
CResourceName NameOf(LPCWSTR pName)
{
    if (IS_INTRESOURCE(pName))
        return {static_cast<WORD>(reinterpret_cast<ULONG_PTR>(pName)), {}};
    CResourceName name{0, pName};
    std::transform(name.text.begin(), name.text.end(), name.text.begin(),
                   [](WCHAR unit) { return static_cast<WCHAR>(u_toupper(unit)); });
    return name;
}

std::span<const CResource> ResourcesOf(HMODULE module)
{
    const auto found = std::find_if(s_modules.begin(), s_modules.end(),
                                    [module](const auto* pModule) { return pModule->GetModule() == module; });
    if (found == s_modules.end())
        return {};
    return (*found)->GetResources();
}

/// How well a resource's language matches the requested one: 0 is best, NoMatch not at all.
constexpr int NoMatch = 0x20000;
int LanguageRank(WORD language, WORD wanted)
{
    if (language == wanted)
        return 0;
    if (language == MAKELANGID(PRIMARYLANGID(wanted), SUBLANG_NEUTRAL))
        return 1;
    if (language == MAKELANGID(LANG_NEUTRAL, SUBLANG_NEUTRAL))
        return 2;
    if (PRIMARYLANGID(wanted) != LANG_NEUTRAL)
        return NoMatch;
    return language == MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US) ? 3 : 4 + language;
}

HRSRC Missing(DWORD code)
{
    SetLastError(code);
    return nullptr;
}

const CResource* ResourceOf(HRSRC resource)
{
    return reinterpret_cast<const CResource*>(resource);
}
} // namespace

CModuleResources::CModuleResources(HINSTANCE module, const BYTE* pBegin, const BYTE* pEnd) : m_module(module)
{
    CResourceReader reader(pBegin, static_cast<size_t>(pEnd - pBegin));
    for (CResource resource; ReadEntry(reader, pBegin, resource);)
        m_resources.push_back(resource);
    s_modules.push_back(this);
}

CModuleResources::~CModuleResources()
{
    std::erase(s_modules, this);
}

HRSRC FindResourceExW(HMODULE module, LPCWSTR pType, LPCWSTR pName, WORD language)
{
    const CResourceName type = NameOf(pType);
    const CResourceName name = NameOf(pName);
    const std::span<const CResource> resources = ResourcesOf(module);
    bool typeFound = false;
    bool nameFound = false;
    int bestRank = NoMatch;
    const CResource* pBest = nullptr;
    for (const CResource& resource : resources)
    {
        if (resource.type != type)
            continue;
        typeFound = true;
        if (resource.name != name)
            continue;
        nameFound = true;
        const int rank = LanguageRank(resource.language, language);
        if (rank >= bestRank)
            continue;
        bestRank = rank;
        pBest = &resource;
    }
    if (resources.empty())
        return Missing(ERROR_RESOURCE_DATA_NOT_FOUND);
    if (!typeFound)
        return Missing(ERROR_RESOURCE_TYPE_NOT_FOUND);
    if (!nameFound)
        return Missing(ERROR_RESOURCE_NAME_NOT_FOUND);
    if (pBest == nullptr)
        return Missing(ERROR_RESOURCE_LANG_NOT_FOUND);
    return reinterpret_cast<HRSRC>(const_cast<CResource*>(pBest));
}

HRSRC FindResourceW(HMODULE module, LPCWSTR pName, LPCWSTR pType)
{
    return FindResourceExW(module, pType, pName, MAKELANGID(LANG_NEUTRAL, SUBLANG_NEUTRAL));
}

HGLOBAL LoadResource(HMODULE, HRSRC resource)
{
    return resource == nullptr ? nullptr : const_cast<BYTE*>(ResourceOf(resource)->pBytes);
}

LPVOID LockResource(HGLOBAL data)
{
    return data;
}

DWORD SizeofResource(HMODULE, HRSRC resource)
{
    return resource == nullptr ? 0 : ResourceOf(resource)->size;
}

int LoadStringW(HINSTANCE module, UINT id, LPWSTR pBuffer, int size)
{
    constexpr UINT TextsPerBlock = 16;
    const UINT number = LOWORD(id);
    const HRSRC block = FindResourceW(module, MAKEINTRESOURCEW(number / TextsPerBlock + 1), RT_STRING);
    if (block == nullptr || size < 0)
        return 0;
    // A block stores each string as its length in units and the units; a missing string has length 0.
    CResourceReader reader(ResourceOf(block)->pBytes, ResourceOf(block)->size);
    for (UINT i = 0; i < number % TextsPerBlock; ++i)
        reader.Skip(reader.ReadWord() * sizeof(WCHAR));
    const WORD length = reader.ReadWord();
    const BYTE* pText = ResourceOf(block)->pBytes + reader.GetPosition();
    reader.Skip(length * sizeof(WCHAR));
    if (reader.HasFailed())
        return 0;

    if (size == 0)
    {
        *reinterpret_cast<const BYTE**>(pBuffer) = pText;
        return length;
    }
    const int copied = std::min<int>(length, size - 1);
    std::memcpy(pBuffer, pText, static_cast<size_t>(copied) * sizeof(WCHAR));
    pBuffer[copied] = 0;
    return copied;
}
