// Memory that processes share.
#pragma once

#include <cstddef>
#include <memory>

#include "../frame/export.h"
#include "../platform/winapi.h"

// A named block of memory, which holds nothing but what its users write. One process makes it with
// Create, the others reach it with Open; each then copies to and from its start.
//
//     RVSharedMemory block;
//     if (block.Create("Progress", sizeof progress)) block.Write(&progress, sizeof progress);
//
// Each Read and each Write is one copy that no other one, of any block in any process, comes
// between: they wait for each other without limit. Whether there is something to read yet is not
// told; Create and Open do not wait. The block and its contents end with the last object on it in
// any process, also when that is killed.
//
// A block is the user's own; with a name that begins with "Global\" it is that of all users. Names
// are 1 to MAX_PATH - 1 characters, case counts, and have no other backslash. What any of its users
// writes, the others read: bytes that come from elsewhere need a look.
//
// Copies share one view and one handle, which the last of them releases.
//
// Failures give false and, unless the object is quiet, show the user a box with the title
// "RVDEBUG", which stops the calling thread until it is dismissed. An object belongs to one thread
// at a time.
class RVUTILS_API RVSharedMemory {
public:
    // `quiet`: failures show nothing.
    explicit RVSharedMemory(bool quiet = false) noexcept;
    RVSharedMemory(const RVSharedMemory& other) noexcept;
    // Lets go of what the object had before.
    RVSharedMemory& operator=(const RVSharedMemory& other) noexcept;
    ~RVSharedMemory();

    // Makes a block, or reaches the one that is there, and fills `size` bytes with zeros. `size` is
    // more than 0; a block that is there has to have as many bytes. What the object had before it
    // lets go first, whatever comes of it.
    //   "Cannot create shared memory"  there is no such block, and none can be made
    //   "Cannot map shared memory"     it cannot be mapped, or is smaller than that
    bool Create(const char* name, ULONG size);
    // Reaches a block that is there; what the object had before it lets go first. True also when
    // the block cannot be mapped: Read and Write then give false.
    //   "Cannot open shared memory"    there is no such block
    bool Open(const char* name);

    // Copies `count` bytes from the start of the block to `buffer`, or from there to the start of
    // the block. False, with nothing copied, without a block, for more than the block has, counted
    // in whole pages, and when the lock of all blocks cannot be had.
    bool Read(void* buffer, ULONG count);
    bool Write(const void* buffer, ULONG count);

private:
    bool Map();
    void Let_Go() noexcept;
    bool Fail(const char* message) const;

    std::shared_ptr<void> m_View;
    std::shared_ptr<void> m_Mapping;
    ULONG m_Size = 0;  // as given to Create, 0 after Open
    bool m_IsQuiet;
    std::size_t m_Room = 0;  // of the view, in bytes
};
