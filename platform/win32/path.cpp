// Paths of callers into native ones.
#include "path.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string_view>
#include <utility>

#include "error.h"
#include "native_path.h"

namespace {

constexpr char kSeparator = '/';

bool Is_Directory(const char* path) noexcept {
    struct stat status;
    return ::stat(path, &status) == 0 && S_ISDIR(status.st_mode);
}

char Other_Case(char letter) noexcept {
    return static_cast<char>(letter ^ 0x20);
}

bool Is_Letter(char character) noexcept {
    const char lower = static_cast<char>(character | 0x20);
    return lower >= 'a' && lower <= 'z';
}

// The parts that a text is put together from, in memory that is taken once.
class Builder {
public:
    bool Reserve(std::size_t length) noexcept {
        m_Text.reset(static_cast<char*>(rv::Heap_Allocate(length + 1)));
        if (m_Text) m_Text[0] = '\0';
        return m_Text != nullptr;
    }
    void Add(std::string_view part) noexcept {
        part.copy(m_Text.get() + m_Length, part.size());
        m_Length += part.size();
        m_Text[m_Length] = '\0';
    }
    void Separate() noexcept {
        if (m_Length == 0 || m_Text[m_Length - 1] != kSeparator) Add({&kSeparator, 1});
    }
    char* Text() const noexcept { return m_Text.get(); }
    std::size_t Length() const noexcept { return m_Length; }
    rv::HeapText Take() noexcept { return std::move(m_Text); }

private:
    rv::HeapText m_Text;
    std::size_t m_Length = 0;
};

std::string_view Environment(const char* name) noexcept {
    // A program with the rights of another user is not steered by the environment.
    const char* const value = ::secure_getenv(name);
    return value ? value : std::string_view();
}

// Adds the directory of a drive.
bool Add_Drive(char drive, std::string_view drives, Builder& path) noexcept {
    if (drive == 'C') {
        path.Add({&kSeparator, 1});
        return true;
    }
    if (drives.empty()) return false;
    path.Add(drives);
    path.Separate();
    path.Add({&drive, 1});
    if (Is_Directory(path.Text())) return true;
    char& letter = path.Text()[path.Length() - 1];
    letter = Other_Case(letter);
    return Is_Directory(path.Text());
}

// The current directory, null with the last error set.
rv::HeapText Current_Directory() noexcept {
    for (std::size_t room = 256;; room *= 2) {
        rv::HeapText text(static_cast<char*>(rv::Heap_Allocate(room)));
        if (!text) SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        if (!text || ::getcwd(text.get(), room)) return text;
        if (errno != ERANGE) {
            SetLastError(rv::Error_From_Errno(errno));
            return nullptr;
        }
    }
}

// Takes the levels that say nothing, empty ones and ".", out of an absolute path. A separator at
// the end stays.
void Tidy(char* path) noexcept {
    const bool closed = path[std::strlen(path) - 1] == kSeparator;
    const char* from = path;
    char* to = path;
    while (*(from += std::strspn(from, "/"))) {
        const std::string_view level(from, std::strcspn(from, "/"));
        from += level.size();
        if (level == ".") continue;
        *to++ = kSeparator;
        std::memmove(to, level.data(), level.size());
        to += level.size();
    }
    if (closed || to == path) *to++ = kSeparator;
    *to = '\0';
}

// The absolute form of a path that is not empty, null with the last error set. `closing` adds the
// separator at the end.
rv::HeapText Absolute_Path(const char* path, bool closing) noexcept {
    rv::HeapText native;
    if (const DWORD error = rv::Native_Path(path, native); error != ERROR_SUCCESS) {
        SetLastError(error);
        return nullptr;
    }
    rv::HeapText current;
    if (native[0] != kSeparator) {
        current = Current_Directory();
        if (!current) return nullptr;
    }
    const std::string_view base = current ? current.get() : std::string_view();
    const std::string_view rest = native.get();
    Builder absolute;
    if (!absolute.Reserve(base.size() + rest.size() + 2)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    absolute.Add(base);
    if (current) absolute.Separate();
    absolute.Add(rest);
    if (closing) absolute.Separate();
    Tidy(absolute.Text());
    return absolute.Take();
}

// The published results: the length, or the room that it takes.
DWORD Hand_Out(std::string_view text, DWORD room, char* buffer) noexcept {
    if (text.size() >= std::numeric_limits<DWORD>::max()) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return 0;
    }
    const auto length = static_cast<DWORD>(text.size());
    if (!buffer || room <= length) return length + 1;
    text.copy(buffer, length);
    buffer[length] = '\0';
    return length;
}

}  // namespace

char rv::Drive_Of(std::string_view path) noexcept {
    if (path.size() < 2 || path[1] != ':' || !Is_Letter(path[0])) return '\0';
    return static_cast<char>(path[0] & ~0x20);
}

DWORD rv::Native_Path(const char* path, HeapText& native) noexcept {
    std::string_view rest = path ? path : "";
    const char drive = Drive_Of(rest);
    const std::string_view drives =
        drive && drive != 'C' ? Environment("RVUTILS_DRIVES") : std::string_view();
    Builder text;
    if (!text.Reserve(drives.size() + rest.size() + 2)) return ERROR_NOT_ENOUGH_MEMORY;
    if (drive) {
        if (!Add_Drive(drive, drives, text)) return ERROR_PATH_NOT_FOUND;
        rest.remove_prefix(2);
        if (!rest.empty()) text.Separate();
    }
    const std::size_t first = text.Length();
    text.Add(rest);
    std::replace(text.Text() + first, text.Text() + text.Length(), '\\', kSeparator);
    native = text.Take();
    return ERROR_SUCCESS;
}

bool rv::Is_Native_Path(const char* path) noexcept {
    return !Drive_Of(path) && !std::strchr(path, '\\');
}

DWORD rv::Missing_File_Error(char* native) noexcept {
    std::size_t length = std::strlen(native);
    while (length > 1 && native[length - 1] == kSeparator)
        --length;
    if (length == 0) return ERROR_PATH_NOT_FOUND;
    while (length > 0 && native[length - 1] != kSeparator)
        --length;
    native[length] = '\0';
    return length == 0 || Is_Directory(native) ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
}

DWORD GetFullPathNameA(LPCSTR path, DWORD room, LPSTR buffer, LPSTR* name) noexcept {
    if (!path || !*path) {
        SetLastError(ERROR_INVALID_NAME);
        return 0;
    }
    const rv::HeapText absolute = Absolute_Path(path, false);
    if (!absolute) return 0;
    const DWORD length = Hand_Out(absolute.get(), room, buffer);
    if (name && length != 0 && buffer && length < room) {
        char* const last = std::strrchr(buffer, kSeparator) + 1;
        *name = *last ? last : nullptr;
    }
    return length;
}

DWORD GetTempPathA(DWORD room, LPSTR buffer) noexcept {
    const std::string_view directory = Environment("TMPDIR");
    const rv::HeapText absolute =
        Absolute_Path(directory.empty() ? "/tmp" : directory.data(), true);
    return absolute ? Hand_Out(absolute.get(), room, buffer) : 0;
}
