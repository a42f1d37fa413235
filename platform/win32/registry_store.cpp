#include "registry_store.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <mutex>

#include "descriptor.h"
#include "error.h"
#include "file.h"
#include "file_text.h"
#include "handle.h"
#include "native_path.h"
#include "registry_text.h"

namespace rv::registry {
namespace {

using std::string_view;

// What tells a file from another, and from itself with other bytes. While its descriptor is held,
// no other file gets its number.
struct Facts {
    explicit Facts(const struct stat& status = {}) noexcept
        : device(status.st_dev),
          number(status.st_ino),
          size(status.st_size),
          modified{status.st_mtim.tv_sec, status.st_mtim.tv_nsec},
          changed{status.st_ctim.tv_sec, status.st_ctim.tv_nsec} {}
    bool operator==(const Facts&) const = default;

    struct Time {
        bool operator==(const Time&) const = default;
        time_t seconds;
        long nanoseconds;
    };

    dev_t device;
    ino_t number;
    off_t size;
    Time modified, changed;
};

// What this process has read.
struct Cache {
    enum class State { kNothing, kNoFile, kRead, kDamaged };

    void Forget() noexcept {
        state = State::kNothing;
        top = Key();
    }

    State state = State::kNothing;
    Descriptor file;
    Facts facts;
    Key top;
};

std::mutex g_Mutex;

// Never destroyed: destructors at the end of the process use the registry, too.
Cache& The_Cache() {
    alignas(Cache) static std::byte room[sizeof(Cache)];
    static Cache& cache = *new (room) Cache;
    return cache;
}

string_view Environment(const char* name) noexcept {
    // A program with the rights of another user is not steered by the environment.
    const char* const value = secure_getenv(name);
    return value ? value : string_view();
}

// The path as the environment tells it; empty when it does not.
Text Named_Path() {
    if (const string_view named = Environment("RVUTILS_REGISTRY"); !named.empty())
        return Text(named);
    Text path(Environment("XDG_CONFIG_HOME"));
    if (!path.starts_with('/')) {
        path = Environment("HOME");
        if (path.empty()) return path;
        path += "/.config";
    }
    return path += "/rvutils/registry.reg";
}

// The native path of the file, or of what a link that stands for it leads to.
DWORD Find_Path(Text& path) {
    path = Named_Path();
    if (path.empty()) return ERROR_PATH_NOT_FOUND;
    HeapText native;
    if (const DWORD error = Native_Path(path.c_str(), native); error != ERROR_SUCCESS) return error;
    char real[PATH_MAX];
    path = realpath(native.get(), real) ? real : native.get();
    return ERROR_SUCCESS;
}

void Report(const Text& path, const Fault& fault) noexcept {
    std::fprintf(stderr, "registry: %s, line %zu %s. It stays as it is, and is not used.\n",
                 path.c_str(), fault.line, fault.what);
}

DWORD Parse(Cache& cache, const Text& path) {
    FileText text;
    if (const DWORD error = Read_Text_File(cache.file.Value(), text); error != ERROR_SUCCESS)
        return error;
    cache.top = Empty_Registry();
    const Fault fault = Read_Text(text.View(), cache.top);
    cache.state = fault.what ? Cache::State::kDamaged : Cache::State::kRead;
    if (!fault.what) return ERROR_SUCCESS;
    cache.top = Key();
    Report(path, fault);
    return ERROR_REGISTRY_CORRUPT;
}

DWORD Read(Cache& cache, const Text& path) {
    DWORD error = ERROR_SUCCESS;
    cache.Forget();
    Descriptor file(Open_Text_File(path.c_str(), error));
    struct stat status;
    if (file.Value() == -1) return error;
    if (fstat(file.Value(), &status) != 0) return Error_From_Errno(errno);
    cache.file = std::move(file);
    cache.facts = Facts(status);
    return Parse(cache, path);
}

// Makes the cache what the file is now.
DWORD Refresh(Cache& cache, const Text& path) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0) {
        if (errno != ENOENT) return Error_From_Errno(errno);
        if (cache.state == Cache::State::kNoFile) return ERROR_SUCCESS;
        cache.Forget();
        cache.top = Empty_Registry();
        cache.state = Cache::State::kNoFile;
        return ERROR_SUCCESS;
    }
    if (Facts(status) == cache.facts) {
        if (cache.state == Cache::State::kRead) return ERROR_SUCCESS;
        if (cache.state == Cache::State::kDamaged) return ERROR_REGISTRY_CORRUPT;
    }
    return Read(cache, path);
}

Text Directory_Of(const Text& path) {
    const std::size_t end = path.rfind('/');
    return end == path.npos ? Text(".") : path.substr(0, end + 1);
}

void Make_Directories(Text path) noexcept {
    // Whether it works is told by what is made in the last of them.
    for (std::size_t end = 1; (end = path.find('/', end)) != path.npos; ++end) {
        path[end] = '\0';
        mkdir(path.c_str(), 0700);
        path[end] = '/';
    }
}

DWORD Write_New(const Text& path, const Text& text) noexcept {
    HANDLE const file = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_ATTRIBUTE_TEMPORARY, nullptr);
    if (file == INVALID_HANDLE_VALUE) return GetLastError();
    DWORD written = 0;
    DWORD error = ERROR_SUCCESS;
    if (!WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr))
        error = GetLastError();
    if (!CloseHandle(file) && error == ERROR_SUCCESS) error = GetLastError();
    return error;
}

bool Sync(int descriptor) noexcept {
    return descriptor != -1 && fsync(descriptor) == 0;
}

// Puts the new file, which is whole, in the place of the old one, and makes it what was read.
DWORD Put_In_Place(Cache& cache, const Text& path, const Text& temporary) noexcept {
    Descriptor file(open(temporary.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW));
    if (struct stat before; stat(path.c_str(), &before) == 0)
        fchmod(file.Value(), before.st_mode & 0777);
    if (!Sync(file.Value()) || rename(temporary.c_str(), path.c_str()) != 0)
        return Error_From_Errno(errno);
    struct stat status;
    if (fstat(file.Value(), &status) != 0) return Error_From_Errno(errno);
    cache.file = std::move(file);
    cache.facts = Facts(status);
    cache.state = Cache::State::kRead;
    return ERROR_SUCCESS;
}

}  // namespace

Session::Session(Purpose purpose) : m_Purpose(purpose) {
    // Given back by the destructor, which does not run behind an exception from here.
    g_Mutex.lock();
    try {
        m_Error = Begin();
    } catch (...) {
        The_Cache().Forget();
        if (m_Lock != -1) close(m_Lock);
        g_Mutex.unlock();
        throw;
    }
}

Session::~Session() {
    if (m_Purpose == Purpose::kChange && m_Error == ERROR_SUCCESS && !m_IsKept)
        The_Cache().Forget();
    if (m_Lock != -1) close(m_Lock);
    g_Mutex.unlock();
}

Key& Session::Top() const noexcept {
    return The_Cache().top;
}

DWORD Session::Begin() {
    if (const DWORD error = Find_Path(m_Path); error != ERROR_SUCCESS) return error;
    if (m_Purpose == Purpose::kChange)
        if (const DWORD error = Lock(); error != ERROR_SUCCESS) return error;
    return Refresh(The_Cache(), m_Path);
}

DWORD Session::Lock() {
    Make_Directories(m_Path);
    const Text path = m_Path + ".lock";
    m_Lock = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
    if (m_Lock == -1) return errno == ENOENT ? ERROR_PATH_NOT_FOUND : Error_From_Errno(errno);
    int result;
    do
        result = flock(m_Lock, LOCK_EX);
    while (result != 0 && errno == EINTR);
    return result == 0 ? ERROR_SUCCESS : Error_From_Errno(errno);
}

DWORD Session::Keep() {
    // One name will do, since only who has the lock writes; what is there now, a killed process
    // left.
    const Text temporary = m_Path + ".new";
    const Text text = Written_Text(Top());
    const Text directory = Directory_Of(m_Path);
    if (text.size() > kLargestTextFile) return ERROR_FILE_TOO_LARGE;
    unlink(temporary.c_str());
    DWORD error = Write_New(temporary, text);
    if (error == ERROR_SUCCESS) error = Put_In_Place(The_Cache(), m_Path, temporary);
    m_IsKept = error == ERROR_SUCCESS;
    if (m_IsKept)
        Sync(Descriptor(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)).Value());
    else
        unlink(temporary.c_str());
    return error;
}

}  // namespace rv::registry
