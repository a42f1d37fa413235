// Locks of single bytes of a file, by which processes agree. The system unlocks what a dead process
// held.
#pragma once

#include <fcntl.h>

#include <cerrno>

namespace rv {

// As fcntl takes it; `kind` is F_RDLCK, F_WRLCK or F_UNLCK.
inline struct flock Byte_Lock(off_t byte, short kind) noexcept {
    struct flock lock = {};
    lock.l_type = kind;
    lock.l_whence = SEEK_SET;
    lock.l_start = byte;
    lock.l_len = 1;
    return lock;
}

// `command` says whose lock it is, and whether to wait: F_SETLK and F_SETLKW for one of the
// process, F_OFD_SETLK and F_OFD_SETLKW for one of the open file. A signal does not end the wait.
inline bool Set_Byte_Lock(int file, int command, off_t byte, short kind) noexcept {
    struct flock lock = Byte_Lock(byte, kind);
    int result;
    do
        result = fcntl(file, command, &lock);
    while (result == -1 && errno == EINTR);
    return result == 0;
}

}  // namespace rv
