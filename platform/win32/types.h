// The Win32 type names and constants, for systems without Win32.
//
// Widths are those of 64-bit Windows: LONG, ULONG, DWORD and HRESULT are 32 bits wide, handles and
// message words are pointer-sized, a wide character is the platform's wchar_t.
#pragma once

#include <cstddef>
#include <cstdint>

using BOOL = int;
using CHAR = char;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using INT = int;
using UINT = unsigned int;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using INT_PTR = std::intptr_t;
using UINT_PTR = std::uintptr_t;
using HRESULT = std::int32_t;
using LCID = DWORD;
using ATOM = WORD;

using LPSTR = char*;
using LPCSTR = const char*;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;
using PVOID = void*;
using LPVOID = void*;
using LPCVOID = const void*;
using HANDLE = void*;
using HICON = struct HICON__*;
using HCURSOR = HICON;
using HBRUSH = struct HBRUSH__*;

#ifndef FALSE
#define FALSE 0
#endif
#ifndef TRUE
#define TRUE 1
#endif
#define MAX_PATH 260
#define CALLBACK  // every call is of one kind

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005);
inline constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000E);
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057);
