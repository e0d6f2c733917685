#pragma once
/// Everything that differs between compilers: GCC, clang, and Microsoft's, whose headers and predefined macros clang
/// also has in its Microsoft mode.
#ifdef _MSC_VER
#include <intrin.h>
#endif

/// In place of inline: a function that is compiled into each caller, for the caller's processor.
/// VELTRANO_NO_INLINE: a function that is never compiled into a caller.
/// VELTRANO_TARGET_AVX2: a function that may use AVX2, BMI and PCLMULQDQ; call it only if HasAvx2. Microsoft's compiler
/// accepts these instructions everywhere.
#ifdef _MSC_VER
#define VELTRANO_FORCE_INLINE __forceinline
#define VELTRANO_NO_INLINE __declspec(noinline)
#else
#define VELTRANO_FORCE_INLINE inline __attribute__((always_inline))
#define VELTRANO_NO_INLINE __attribute__((noinline))
#endif
#if defined(_MSC_VER) && !defined(__clang__)
#define VELTRANO_TARGET_AVX2
#define VELTRANO_TARGET_XSAVE
#else
#define VELTRANO_TARGET_AVX2 __attribute__((target("avx2,bmi,pclmul")))
#define VELTRANO_TARGET_XSAVE __attribute__((target("xsave")))
#endif

/// How a shared library gives out a symbol, takes one, and keeps one to itself.
#ifdef _WIN32
#define VELTRANO_EXPORT __declspec(dllexport)
#define VELTRANO_IMPORT __declspec(dllimport)
#define VELTRANO_HIDDEN
#else
#define VELTRANO_EXPORT __attribute__((visibility("default")))
#define VELTRANO_IMPORT __attribute__((visibility("default")))
#define VELTRANO_HIDDEN __attribute__((visibility("hidden")))
#endif

/// A function that reads more than an object's own bytes on purpose, within a page.
#ifdef _MSC_VER
#define VELTRANO_NO_SANITIZE_ADDRESS __declspec(no_sanitize_address)
#else
#define VELTRANO_NO_SANITIZE_ADDRESS __attribute__((no_sanitize("address")))
#endif

#ifdef _MSC_VER
/// Whether processor and system have AVX2, BMI1 and PCLMULQDQ. Slow in a virtual machine: ask once.
/// Bits: Intel's Software Developer's Manual, volume 2, CPUID; volume 1, 14.3 for the state that the system saves.
VELTRANO_TARGET_XSAVE inline bool HasAvx2()
{
    constexpr unsigned osxsave = 1U << 27;
    constexpr unsigned pclmulqdq = 1U << 1;
    constexpr unsigned bmi1AndAvx2 = 1U << 3 | 1U << 5;
    constexpr unsigned long long vectorState = 6; // SSE and AVX registers
    int registers[4];
    __cpuid(registers, 0);
    if (registers[0] < 7)
        return false;
    __cpuid(registers, 1);
    const auto features = static_cast<unsigned>(registers[2]);
    if ((features & osxsave) == 0 || (features & pclmulqdq) == 0 || (_xgetbv(0) & vectorState) != vectorState)
        return false;
    __cpuidex(registers, 7, 0);
    return (static_cast<unsigned>(registers[1]) & bmi1AndAvx2) == bmi1AndAvx2;
}

/// Whether the processor is one of Intel's.
inline bool IsIntelProcessor()
{
    int registers[4];
    __cpuid(registers, 0);
    return registers[1] == 0x756E6547 && registers[3] == 0x49656E69 && registers[2] == 0x6C65746E; // GenuineIntel
}
#else
inline bool HasAvx2()
{
    return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("bmi") != 0 &&
           __builtin_cpu_supports("pclmul") != 0;
}

inline bool IsIntelProcessor()
{
    return __builtin_cpu_is("intel") != 0;
}
#endif
