#include "shared_file.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <memory>

#include "byte_lock.h"
#include "descriptor.h"
#include "error.h"

namespace {

using rv::Descriptor;
using rv::ObjectKind;
using rv::ObjectName;
using rv::ObjectRequest;

constexpr char kDirectory[] = "/dev/shm";
constexpr std::string_view kFilePrefix = "rvutils-object-";

constexpr mode_t kOwnMode = 0600;
constexpr mode_t kGlobalMode = 0666;

// Changes with the layout of the first page.
constexpr std::string_view kMagic = "RVOBJ 01";

// The first page begins with one.
struct Header {
    char magic[kMagic.size()];
    ObjectKind kind;
    std::uint32_t name_length;
    ULONGLONG size;  // of a block
    char name[MAX_PATH];
};

// Bytes of the file that are locked for what they stand for: the first one while somebody looks
// whether the object lives, and makes it or takes it away; the second one, shared, by each process
// that holds the object. The locks belong to the open file, so that whoever else in this process
// opens and closes it does not release them.
constexpr off_t kSetupByte = 0;
constexpr off_t kHolderByte = 1;

enum class Patience { kWait, kTry };

bool Set_Lock(int file, off_t byte, short kind, Patience patience) noexcept {
    const int command = patience == Patience::kWait ? F_OFD_SETLKW : F_OFD_SETLK;
    return rv::Set_Byte_Lock(file, command, byte, kind);
}

bool Is_Held_By_Another(int file) noexcept {
    struct flock lock = rv::Byte_Lock(kHolderByte, F_WRLCK);
    // In doubt somebody does.
    return fcntl(file, F_OFD_GETLK, &lock) != 0 || lock.l_type != F_UNLCK;
}

std::uint64_t Hash_Of(std::string_view text) noexcept {
    std::uint64_t hash = 0xCBF29CE484222325;  // FNV-1a
    for (const char character : text)
        hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001B3;
    return hash;
}

bool Stands_For_Itself(char character) noexcept {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z') || character == '-' || character == '_' ||
           character == '.';
}

// Where an object's file is. Whatever is no letter, digit, hyphen, underscore or full stop is a
// percent sign and two digits; what does not fit is replaced by a tilde and a hash of the name.
class FilePath {
public:
    explicit FilePath(const ObjectName& name) noexcept {
        Add("%s/%s", kDirectory, kFilePrefix.data());
        name.is_global ? Add("%s", "global-") : Add("%u-", static_cast<unsigned>(geteuid()));
        for (const char character : name.text) {
            if (m_Length > kMost) {
                m_Length = kMost;
                Add("~%016llx", static_cast<unsigned long long>(Hash_Of(name.text)));
                return;
            }
            Add(Stands_For_Itself(character) ? "%c" : "%%%02X",
                static_cast<unsigned char>(character));
        }
    }

    const char* Text() const noexcept { return m_Text; }

private:
    static constexpr std::size_t kMost = sizeof kDirectory + NAME_MAX - 24;

    template <class... Values>
    void Add(const char* format, Values... values) noexcept {
        m_Length += static_cast<std::size_t>(
            std::snprintf(m_Text + m_Length, sizeof m_Text - m_Length, format, values...));
    }

    std::size_t m_Length = 0;
    char m_Text[sizeof kDirectory + NAME_MAX + 1];
};

constexpr int kOpenFlags = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;

// The one that is there before the new one: opening somebody else's with O_CREAT is refused in a
// directory for all.
int Open(const char* path, const ObjectName& name, bool make) noexcept {
    for (;;) {
        const int there = open(path, kOpenFlags);
        if (there != -1 || errno != ENOENT || !make) return there;
        const mode_t mode = name.is_global ? kGlobalMode : kOwnMode;
        const int made = open(path, kOpenFlags | O_CREAT | O_EXCL, mode);
        if (made != -1) fchmod(made, mode);  // whatever the user's mask
        if (made != -1 || errno != EEXIST) return made;
    }
}

// Not for what somebody put there to be taken for an object.
bool Is_Acceptable(const struct stat& facts, const ObjectName& name) noexcept {
    return S_ISREG(facts.st_mode) && facts.st_nlink <= 1 &&
           (name.is_global || facts.st_uid == geteuid());
}

ULONGLONG In_Whole_Pages(ULONGLONG size) noexcept {
    const ULONGLONG page = rv::Page_Size();
    return (size + page - 1) / page * page;
}

// Whether the limit of a file's size permits it; going beyond it ends the process.
bool May_Have(off_t length) noexcept {
    struct rlimit limit;
    return getrlimit(RLIMIT_FSIZE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY ||
           static_cast<rlim_t>(length) <= limit.rlim_cur;
}

// The memory is reserved at once: that there is none is told here, not by a signal later.
int Reserve(int file, off_t length) noexcept {
    if (!May_Have(length)) return EFBIG;
    if (ftruncate(file, 0) != 0) return errno;
    int error;
    do
        error = posix_fallocate(file, 0, length);
    while (error == EINTR);
    return error;
}

// Makes the file an object that nobody has used, whatever it was.
DWORD Initialise(int file, const ObjectName& name, const ObjectRequest& request,
                 ULONGLONG& size) noexcept {
    Header header = {};
    kMagic.copy(header.magic, sizeof header.magic);
    header.kind = request.kind;
    header.name_length = static_cast<std::uint32_t>(name.text.size());
    name.text.copy(header.name, sizeof header.name);
    header.size = size = In_Whole_Pages(request.size);
    const auto length = static_cast<off_t>(rv::Page_Size() + size);
    if (const int error = Reserve(file, length)) return rv::Error_From_Errno(error);
    const ssize_t written = pwrite(file, &header, sizeof header, 0);
    return written == sizeof header ? ERROR_SUCCESS : rv::Error_From_Errno(errno);
}

// Looks whether the file is the object that is asked for.
DWORD Check(int file, const ObjectName& name, const ObjectRequest& request,
            ULONGLONG& size) noexcept {
    Header header;
    struct stat facts;
    if (pread(file, &header, sizeof header, 0) != sizeof header || fstat(file, &facts) != 0 ||
        std::string_view(header.magic, sizeof header.magic) != kMagic ||
        header.name_length > sizeof header.name ||
        std::string_view(header.name, header.name_length) != name.text ||
        In_Whole_Pages(header.size) != header.size ||
        static_cast<ULONGLONG>(facts.st_size) != rv::Page_Size() + header.size)
        return ERROR_FILE_CORRUPT;
    if (header.kind != request.kind) return ERROR_INVALID_HANDLE;
    size = header.size;
    return ERROR_SUCCESS;
}

// While this process has the setup byte.
DWORD Hold(int file, const char* path, const ObjectName& name, const ObjectRequest& request,
           ULONGLONG& size) noexcept {
    DWORD error;
    if (Is_Held_By_Another(file)) {
        error = Check(file, name, request, size);
    } else {
        error = request.make ? Initialise(file, name, request, size) : ERROR_FILE_NOT_FOUND;
        if (error != ERROR_SUCCESS) unlink(path);
    }
    if (error != ERROR_SUCCESS || Set_Lock(file, kHolderByte, F_RDLCK, Patience::kTry))
        return error;
    return rv::Error_From_Errno(errno);
}

bool Is_Gone(int file) noexcept {
    struct stat facts;
    return fstat(file, &facts) == 0 && facts.st_nlink == 0;
}

// Without the right to take it away it keeps no memory at least.
void Remove(const char* path, int file) noexcept {
    if (unlink(path) != 0 && ftruncate(file, 0) != 0) return;
}

}  // namespace

DWORD rv::Parse_Object_Name(LPCSTR text, ObjectName& name) noexcept {
    constexpr std::string_view kGlobal = "Global\\", kLocal = "Local\\";
    name.text = text ? std::string_view(text, strnlen(text, MAX_PATH)) : std::string_view();
    if (name.text.size() == MAX_PATH) return ERROR_FILENAME_EXCED_RANGE;
    name.is_global = name.text.starts_with(kGlobal);
    if (name.is_global)
        name.text.remove_prefix(kGlobal.size());
    else if (name.text.starts_with(kLocal))
        name.text.remove_prefix(kLocal.size());
    if (name.text.empty()) return ERROR_INVALID_NAME;
    return name.text.find('\\') == name.text.npos ? ERROR_SUCCESS : ERROR_PATH_NOT_FOUND;
}

std::size_t rv::Page_Size() noexcept {
    static const auto s_Size = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    return s_Size;
}

DWORD rv::Attach_Shared_File(const ObjectName& name, const ObjectRequest& request,
                             SharedFile& file) noexcept {
    const FilePath path(name);
    for (;;) {
        Descriptor descriptor(Open(path.Text(), name, request.make));
        struct stat facts;
        if (descriptor.Value() == -1 || fstat(descriptor.Value(), &facts) != 0)
            return Error_From_Errno(errno);
        if (!Is_Acceptable(facts, name)) return ERROR_ACCESS_DENIED;
        if (!Set_Lock(descriptor.Value(), kSetupByte, F_WRLCK, Patience::kWait))
            return Error_From_Errno(errno);
        if (Is_Gone(descriptor.Value())) continue;  // while this process waited
        const DWORD error = Hold(descriptor.Value(), path.Text(), name, request, file.size);
        if (error != ERROR_SUCCESS) return error;
        Set_Lock(descriptor.Value(), kSetupByte, F_UNLCK, Patience::kTry);
        file.descriptor = descriptor.Give_Up();
        return ERROR_SUCCESS;
    }
}

void rv::Detach_Shared_File(const ObjectName& name, SharedFile& file) noexcept {
    const Descriptor descriptor(std::exchange(file.descriptor, -1));
    if (Set_Lock(descriptor.Value(), kSetupByte, F_WRLCK, Patience::kWait) &&
        !Is_Held_By_Another(descriptor.Value()) && !Is_Gone(descriptor.Value()))
        Remove(FilePath(name).Text(), descriptor.Value());
}

void rv::Sweep_Shared_Files() noexcept {
    const std::unique_ptr<DIR, int (*)(DIR*)> directory(opendir(kDirectory), &closedir);
    if (!directory) return;
    while (const dirent* const entry = readdir(directory.get())) {
        if (!std::string_view(entry->d_name).starts_with(kFilePrefix)) continue;
        const int place = dirfd(directory.get());
        const Descriptor file(openat(place, entry->d_name, kOpenFlags));
        struct stat facts;
        if (file.Value() == -1 || fstat(file.Value(), &facts) != 0 || !S_ISREG(facts.st_mode) ||
            facts.st_uid != geteuid() ||
            !Set_Lock(file.Value(), kSetupByte, F_WRLCK, Patience::kTry))
            continue;
        if (!Is_Held_By_Another(file.Value()) && !Is_Gone(file.Value()))
            unlinkat(place, entry->d_name, 0);
    }
}
