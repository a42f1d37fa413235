// Blocks of memory that processes share by name.
#pragma once

#include "../export.h"
#include "types.h"

struct SECURITY_ATTRIBUTES;

inline constexpr DWORD PAGE_READWRITE = 4;
inline constexpr DWORD FILE_MAP_ALL_ACCESS = 0xF001F;
inline constexpr DWORD MEM_COMMIT = 0x1000;
inline constexpr DWORD MEM_MAPPED = 0x40000;

// Reaches the block `name`, which is made, all zeros, when it is not there yet. One that is there
// keeps its size and its contents. Names are as with CreateMutexA.
//
// `file`: INVALID_HANDLE_VALUE. `security`: null. `protection`: PAGE_READWRITE.
// `size_high`, `size_low`: of a new block, in bytes, more than 0. It is rounded up to whole pages,
// and the memory is reserved at once.
//
// A block and its contents end with the last handle to it and view of it in any process, however
// the process ends; the next use of the name starts anew. What a killed process leaves in /dev/shm
// goes with that, or with the next process of the user that uses any name. A child process that
// fork made without exec has none of its parent's handles and views: once the parent has let go of
// a block, it may not touch its view any more.
//
// Null on failure: ERROR_INVALID_HANDLE when a mutex has the name, or had it in another process
// that keeps it for its next use; ERROR_INVALID_PARAMETER for arguments that are not served,
// ERROR_NOT_ENOUGH_MEMORY, ERROR_DISK_FULL when there is no shared memory left, or as CreateMutexA.
// Any thread.
[[nodiscard]] RVPLATFORM_API HANDLE CreateFileMappingA(HANDLE file, SECURITY_ATTRIBUTES* security,
                                                       DWORD protection, DWORD size_high,
                                                       DWORD size_low, LPCSTR name) noexcept;

// The same for a block that is there: null with ERROR_FILE_NOT_FOUND otherwise.
// `access`: FILE_MAP_ALL_ACCESS. `inherited`: FALSE.
[[nodiscard]] RVPLATFORM_API HANDLE OpenFileMappingA(DWORD access, BOOL inherited,
                                                     LPCSTR name) noexcept;

// Maps the whole block. Each view has an address of its own and ends with UnmapViewOfFile; until
// then its memory stays, also without a handle. Null on failure.
// `access`: FILE_MAP_ALL_ACCESS. `offset_high`, `offset_low`, `size`: 0.
[[nodiscard]] RVPLATFORM_API void* MapViewOfFile(HANDLE mapping, DWORD access, DWORD offset_high,
                                                 DWORD offset_low, std::size_t size) noexcept;

// FALSE with ERROR_INVALID_ADDRESS when there is no such view.
RVPLATFORM_API BOOL UnmapViewOfFile(LPCVOID view) noexcept;

struct MEMORY_BASIC_INFORMATION {
    PVOID BaseAddress;
    PVOID AllocationBase;
    DWORD AllocationProtect;
    std::size_t RegionSize;
    DWORD State;
    DWORD Protect;
    DWORD Type;
};

// Tells of a view by its address how large it is: RegionSize, in bytes, whole pages. Gives the size
// of what it wrote; 0, with ERROR_INVALID_PARAMETER, for any other address.
RVPLATFORM_API std::size_t VirtualQuery(LPCVOID view, MEMORY_BASIC_INFORMATION* information,
                                        std::size_t size) noexcept;
