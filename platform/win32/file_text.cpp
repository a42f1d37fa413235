#include "file_text.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "descriptor.h"
#include "error.h"

int rv::Open_Text_File(const char* native, DWORD& error) noexcept {
    Descriptor file(open(native, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
    struct stat facts;
    if (file.Value() == -1 || fstat(file.Value(), &facts) != 0)
        error = Error_From_Errno(errno);
    else if (!S_ISREG(facts.st_mode))
        error = ERROR_ACCESS_DENIED;
    else
        return file.Give_Up();
    return -1;
}

DWORD rv::Read_Text_File(int descriptor, FileText& text) noexcept {
    struct stat facts;
    if (fstat(descriptor, &facts) != 0) return Error_From_Errno(errno);
    const auto room = static_cast<std::size_t>(facts.st_size);
    if (room > kLargestTextFile) return ERROR_FILE_TOO_LARGE;
    text.size = 0;
    text.bytes.reset(static_cast<char*>(Heap_Allocate(room)));
    if (!text.bytes) return ERROR_NOT_ENOUGH_MEMORY;
    while (text.size < room) {
        const ssize_t got = pread(descriptor, text.bytes.get() + text.size, room - text.size,
                                  static_cast<off_t>(text.size));
        if (got < 0 && errno != EINTR) return Error_From_Errno(errno);
        if (got == 0) break;  // somebody cut it meanwhile
        if (got > 0) text.size += static_cast<std::size_t>(got);
    }
    return ERROR_SUCCESS;
}
