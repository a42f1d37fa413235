// The files that named objects are.
#pragma once

#include <string_view>

#include "types.h"

namespace rv {

// As files tell it.
enum class ObjectKind : std::uint32_t { kMutex = 1, kBlock = 2 };

// The name of an object, without its prefix.
struct ObjectName {
    bool is_global = false;  // for all users, else for the own one
    std::string_view text;
};

// Takes a name apart: 1 to MAX_PATH - 1 characters, of which a backslash stands only in a leading
// "Global\" or "Local\". ERROR_INVALID_NAME for null or the empty name, ERROR_FILENAME_EXCED_RANGE,
// ERROR_PATH_NOT_FOUND for any other backslash.
[[nodiscard]] DWORD Parse_Object_Name(LPCSTR text, ObjectName& name) noexcept;

// What a name stands for, and what to do about one that nobody holds.
struct ObjectRequest {
    ObjectKind kind;
    bool make;
    ULONGLONG size;  // of a new block, in bytes
};

// An object's file, which this process holds.
//
// The first page tells what the object is, and ends with a mutex's word. A block's bytes follow.
// The object lives as long as a process has a lock on the file. The system releases the lock when
// the process ends, in whatever way; a child that fork made has to close the descriptor, since it
// has its part in the lock. A file that is locked by nobody is swept away, or made anew, by the
// next that comes upon it.
struct SharedFile {
    int descriptor = -1;
    ULONGLONG size = 0;  // of a block: whole pages
};

[[nodiscard]] std::size_t Page_Size() noexcept;

// Holds the object, which is new and all zeros unless another process holds it already. Gives
// ERROR_SUCCESS or what keeps it from that: ERROR_FILE_NOT_FOUND when it may not be made,
// ERROR_INVALID_HANDLE when it is of another kind, ERROR_ACCESS_DENIED when it is not the user's,
// ERROR_FILE_CORRUPT when it is none of ours, or what the system tells.
[[nodiscard]] DWORD Attach_Shared_File(const ObjectName& name, const ObjectRequest& request,
                                       SharedFile& file) noexcept;

// Gives up the hold, and takes the file away when no other process holds it.
void Detach_Shared_File(const ObjectName& name, SharedFile& file) noexcept;

// Takes away the files that nobody holds and that are this user's.
void Sweep_Shared_Files() noexcept;

}  // namespace rv
