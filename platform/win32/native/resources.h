#pragma once
/// Resources of this process's binaries, read from their compiled form (.res), and the calls that find them.
#include "platform/win32/native/types.h"

#include <vector>

using HRSRC = struct HRSRC__*;
using HGLOBAL = void*;

#define IS_INTRESOURCE(name) ((reinterpret_cast<ULONG_PTR>(name) >> 16) == 0)
#define RT_DIALOG MAKEINTRESOURCEW(5)
#define RT_STRING MAKEINTRESOURCEW(6)
#define RT_RCDATA MAKEINTRESOURCEW(10)
#define RT_VERSION MAKEINTRESOURCEW(16)
#define RT_MANIFEST MAKEINTRESOURCEW(24)

#define MAKELANGID(primary, sub) (static_cast<WORD>(static_cast<WORD>(sub) << 10 | static_cast<WORD>(primary)))
#define PRIMARYLANGID(language) (static_cast<WORD>((language)&0x3FF))
constexpr WORD LANG_NEUTRAL = 0x00;
constexpr WORD LANG_ENGLISH = 0x09;
constexpr WORD SUBLANG_NEUTRAL = 0;
constexpr WORD SUBLANG_ENGLISH_US = 1;
constexpr WORD SUBLANG_ENGLISH_UK = 2;

/// Its address identifies the binary that it is linked into, as on Windows.
struct IMAGE_DOS_HEADER
{
    int unused;
};
extern "C" IMAGE_DOS_HEADER __ImageBase;

/// A resource's type or name: a number, or a text if the number is 0.
struct CResourceName
{
    WORD number = 0;
    WString text;
    bool operator==(const CResourceName&) const = default;
};

/// One entry of a .res file. The bytes belong to the file.
struct CResource
{
    CResourceName type;
    CResourceName name;
    WORD language = 0;
    const BYTE* pBytes = nullptr;
    DWORD size = 0; // bytes
};

/// Registers the resources of one binary for the lifetime of the object. The bytes are borrowed and aligned to 4, as
/// the entries inside are. Reading stops at the first damaged entry and keeps those before it.
/// Not synchronised with the calls below: load and unload binaries while no other thread uses resources.
class CModuleResources
{
public:
    CModuleResources(HINSTANCE module, const BYTE* pBegin, const BYTE* pEnd);
    ~CModuleResources();
    CModuleResources(const CModuleResources&) = delete;
    CModuleResources& operator=(const CModuleResources&) = delete;

    HINSTANCE GetModule() const { return m_module; }
    const std::vector<CResource>& GetResources() const { return m_resources; }

private:
    HINSTANCE m_module;
    std::vector<CResource> m_resources;
};

/// Type and name: a text, compared without regard to case, or MAKEINTRESOURCEW of a number. module: the address of its
/// __ImageBase; null finds nothing. Language 0 accepts any language: English (United States) first, then the lowest
/// number. Any other accepts the language itself, then its neutral form, then the neutral language.
/// Returns null if not found, with ERROR_RESOURCE_DATA_NOT_FOUND (the module has no resources),
/// ERROR_RESOURCE_TYPE_NOT_FOUND, ERROR_RESOURCE_NAME_NOT_FOUND or ERROR_RESOURCE_LANG_NOT_FOUND.
HRSRC FindResourceExW(HMODULE module, LPCWSTR pType, LPCWSTR pName, WORD language);
/// FindResourceExW in language 0. Name and type are in the opposite order, as on Windows.
HRSRC FindResourceW(HMODULE module, LPCWSTR pName, LPCWSTR pType);
/// Returns the resource's bytes, owned by the module; null for a null resource.
HGLOBAL LoadResource(HMODULE module, HRSRC resource);
LPVOID LockResource(HGLOBAL data);
/// Returns the size in bytes; 0 for a null resource.
DWORD SizeofResource(HMODULE module, HRSRC resource);

/// Copies a string, cut to size - 1 units. Returns its length in units without the NUL, 0 if there is no such string.
/// If the whole block of 16 strings is missing, the buffer is not changed. size 0: pBuffer is an LPWSTR*, which
/// receives the address of the string in the resource, without a NUL.
int LoadStringW(HINSTANCE module, UINT id, LPWSTR pBuffer, int size);
