#include "directory.h"

#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <string_view>

#include "error.h"
#include "native_path.h"

namespace {

constexpr int kDriveOfTheRoot = 'C' - '@';
constexpr mode_t kMode = 0777;  // what the process's mask leaves of it

std::atomic<int> g_Drive = kDriveOfTheRoot;

// Runs a call of the system on the native form of a path; -1 with errno.
template <class Call>
int On_Native_Path(const char* path, Call call) noexcept {
    rv::HeapText native;
    const DWORD error = rv::Native_Path(path, native);
    if (error == ERROR_SUCCESS) return call(native.get());
    errno = error == ERROR_NOT_ENOUGH_MEMORY ? ENOMEM : ENOENT;
    return -1;
}

// One part of a path on its way out.
struct Part {
    std::string_view text;
    char* buffer;
    std::size_t room;
};

}  // namespace

char* _getcwd(char* buffer, int room) noexcept {
    return ::getcwd(buffer, static_cast<std::size_t>(room));
}

int _getdrive() noexcept {
    return g_Drive;
}

int _chdrive(int drive) noexcept {
    if (drive == g_Drive) return 0;
    const char path[] = {static_cast<char>('@' + drive), ':', '\\', '\0'};
    if (drive < 1 || drive > 26 || _chdir(path) != 0) {
        errno = EACCES;
        return -1;
    }
    g_Drive = drive;
    return 0;
}

int _chdir(const char* path) noexcept {
    return On_Native_Path(path, [](const char* native) { return ::chdir(native); });
}

int _mkdir(const char* path) noexcept {
    return On_Native_Path(path, [](const char* native) { return ::mkdir(native, kMode); });
}

int _splitpath_s(const char* path, char* drive, std::size_t drive_room, char* directory,
                 std::size_t directory_room, char* name, std::size_t name_room, char* extension,
                 std::size_t extension_room) noexcept {
    const std::string_view whole(path);
    const std::string_view rest = whole.substr(rv::Drive_Of(whole) ? 2 : 0);
    const std::size_t levels = rest.find_last_of("/\\") + 1;  // 0 for none
    const std::string_view last = rest.substr(levels);
    const std::size_t point = last.rfind('.');
    const Part parts[] = {
        {whole.substr(0, whole.size() - rest.size()), drive, drive_room},
        {rest.substr(0, levels), directory, directory_room},
        {last.substr(0, point), name, name_room},
        {point == last.npos ? "" : last.substr(point), extension, extension_room}};
    int error = 0;
    for (const Part& part : parts)
        if (part.text.size() >= part.room) error = ERANGE;
    for (const Part& part : parts)
        part.buffer[error ? 0 : part.text.copy(part.buffer, part.room)] = '\0';
    return error;
}

DWORD rv::Make_Directories(char* path) noexcept {
    const auto make = [path] {
        if (::mkdir(path, kMode) == 0) return ERROR_SUCCESS;
        if (errno != EEXIST)
            return errno == ENOENT ? ERROR_PATH_NOT_FOUND : Error_From_Errno(errno);
        struct stat status;
        const bool there = ::stat(path, &status) == 0 && S_ISDIR(status.st_mode);
        return there ? ERROR_ALREADY_EXISTS : ERROR_DIRECTORY;
    };
    DWORD error = make();
    if (error != ERROR_PATH_NOT_FOUND) return error;
    for (char* at = path; (at = std::strchr(at + 1, '/'));) {
        *at = '\0';
        error = make();
        *at = '/';
        if (error == ERROR_DIRECTORY) return ERROR_PATH_NOT_FOUND;
        if (error != ERROR_SUCCESS && error != ERROR_ALREADY_EXISTS) return error;
    }
    // One with a separator at its end is made by now.
    error = make();
    return error == ERROR_ALREADY_EXISTS ? ERROR_SUCCESS : error;
}
