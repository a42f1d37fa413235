#include "window_registry.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <bitset>
#include <cstdio>
#include <mutex>
#include <span>

#include "byte_lock.h"

namespace {

using rv::window_registry::kCapacity;
using rv::window_registry::kLongestName;
using rv::window_registry::State;

// Handles as all processes spell them. The place in the table is in the low bits; those above are
// of a clock, so that a handle is not given again when the table was gone in between.
using Handle = std::uint64_t;
constexpr int kPlaceBits = 10;
static_assert(std::size_t{1} << kPlaceBits == kCapacity);

struct Entry {
    Handle handle;             // 0: the place is free
    Handle owner;              // 0: none
    std::uint64_t activation;  // 0: never was active
    State state;
    std::uint16_t name_length;
    char name[kLongestName];
};

// The shared file holds one. It begins as zeros.
struct Table {
    std::uint64_t last_clock;
    std::uint64_t activations;
    Handle foreground;
    Entry entries[kCapacity];
};

// Its bytes are locked for what they stand for: the first one while the table is in use, one more
// for each place while the process of its window lives. The system unlocks what a dead process
// held.
constexpr off_t kTableByte = 0;
constexpr off_t kFirstPlaceByte = 1;

bool Set_Lock(int file, off_t byte, short kind) noexcept {
    return rv::Set_Byte_Lock(file, F_SETLKW, byte, kind);
}

bool Is_Locked_By_Another(int file, off_t byte) noexcept {
    struct flock lock = rv::Byte_Lock(byte, F_WRLCK);
    return fcntl(file, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

struct FilePath {
    FilePath() noexcept {
        std::snprintf(text, sizeof text, "/dev/shm/rvutils-windows-%u",
                      static_cast<unsigned>(geteuid()));
    }
    char text[48];
};

// What this process has of the file. Nothing while it has no window in it.
struct Mapping {
    int file = -1;
    Table* table = nullptr;
    pid_t process = 0;           // a child of it shares the memory, but none of its windows
    std::bitset<kCapacity> own;  // places
};

constinit std::mutex g_Mutex;
constinit Mapping g_Mapping;

void Let_Go() noexcept {
    if (g_Mapping.table) munmap(g_Mapping.table, sizeof(Table));
    if (g_Mapping.file != -1) close(g_Mapping.file);
    g_Mapping = {};
}

enum class Outcome { kDone, kRetry };
enum class Absent { kMake, kLeave };  // what to do when there is no file yet

// Nobody else's file, and none that somebody put there to be waited for.
bool Is_Ours(const struct stat& facts) noexcept {
    return S_ISREG(facts.st_mode) && facts.st_uid == geteuid();
}

// The memory is reserved at once: a full file system is told here, not by a signal later.
bool Has_Its_Length(int file, const struct stat& facts) noexcept {
    if (facts.st_size == 0) return posix_fallocate(file, 0, sizeof(Table)) == 0;
    return facts.st_size == sizeof(Table);
}

// Locks and maps the file.
Outcome Take(int file) noexcept {
    struct stat facts;
    if (fstat(file, &facts) != 0 || !Is_Ours(facts) || !Set_Lock(file, kTableByte, F_WRLCK) ||
        fstat(file, &facts) != 0)
        return Outcome::kDone;
    if (facts.st_nlink == 0) return Outcome::kRetry;  // it was taken away while this process waited
    if (!Has_Its_Length(file, facts)) return Outcome::kDone;
    void* const memory = mmap(nullptr, sizeof(Table), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (memory != MAP_FAILED) g_Mapping.table = static_cast<Table*>(memory);
    return Outcome::kDone;
}

Outcome Open(Absent absent) noexcept {
    const int create = absent == Absent::kMake ? O_CREAT : 0;
    g_Mapping.process = getpid();
    g_Mapping.file = open(FilePath().text, O_RDWR | O_CLOEXEC | O_NOFOLLOW | create, 0600);
    if (g_Mapping.file == -1) return Outcome::kDone;
    const Outcome outcome = Take(g_Mapping.file);
    if (!g_Mapping.table) Let_Go();
    return outcome;
}

// One turn at the table; other threads and processes wait meanwhile.
class Turn {
public:
    explicit Turn(Absent absent = Absent::kLeave) noexcept : m_Lock(g_Mutex) {
        if (g_Mapping.process != getpid()) Let_Go();
        if (g_Mapping.table) {
            Set_Lock(g_Mapping.file, kTableByte, F_WRLCK);
        } else {
            while (Open(absent) == Outcome::kRetry)
                continue;
        }
    }

    // Who has no window keeps nothing; who leaves last takes the file away.
    ~Turn() {
        if (!g_Mapping.table) return;
        if (g_Mapping.own.any()) {
            Set_Lock(g_Mapping.file, kTableByte, F_UNLCK);
            return;
        }
        if (std::ranges::none_of(Entries(), Lives)) unlink(FilePath().text);
        Let_Go();
    }

    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

    // Null without a table.
    Table* Shared() const noexcept { return g_Mapping.table; }

    std::span<Entry> Entries() const noexcept {
        return g_Mapping.table ? std::span<Entry>(g_Mapping.table->entries) : std::span<Entry>();
    }

    // Null when it is no window of a process that lives.
    Entry* Find(Handle handle) const noexcept {
        if (!g_Mapping.table || handle == 0) return nullptr;
        Entry& entry = g_Mapping.table->entries[handle % kCapacity];
        return entry.handle == handle && Lives(entry) ? &entry : nullptr;
    }

    static off_t Place_Of(const Entry& entry) noexcept { return &entry - g_Mapping.table->entries; }

    // Whether the place is taken by a window whose process lives; any other is free from now on.
    static bool Lives(Entry& entry) noexcept {
        const off_t place = Place_Of(entry);
        if (entry.handle != 0 && !g_Mapping.own[static_cast<std::size_t>(place)] &&
            !Is_Locked_By_Another(g_Mapping.file, kFirstPlaceByte + place))
            entry.handle = 0;
        return entry.handle != 0;
    }

private:
    std::lock_guard<std::mutex> m_Lock;
};

Handle Value_Of(HWND window) noexcept {
    return reinterpret_cast<Handle>(window);
}

HWND Window_Of(Handle handle) noexcept {
    return reinterpret_cast<HWND>(handle);
}

std::uint64_t Microseconds() noexcept {
    timespec now;
    clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1000000 +
           static_cast<std::uint64_t>(now.tv_nsec) / 1000;
}

bool Has_Name(const Entry& entry, std::string_view name) noexcept {
    return std::ranges::equal(std::string_view(entry.name, entry.name_length), name, {}, {},
                              rv::Folded);
}

// The one outside of all owners; bounded, in case that the owners go round.
Handle Root_Owner(const Turn& turn, const Entry& entry) noexcept {
    const Entry* at = &entry;
    for (std::size_t steps = 0; steps < kCapacity; ++steps) {
        const Entry* const owner = turn.Find(at->owner);
        if (!owner) break;
        at = owner;
    }
    return at->handle;
}

void Make_Active(Table& table, Entry& entry) noexcept {
    entry.activation = ++table.activations;
    table.foreground = entry.handle;
}

}  // namespace

namespace rv::window_registry {

HWND Add(std::string_view class_name, HWND owner) noexcept {
    const Turn turn(Absent::kMake);
    Table* const table = turn.Shared();
    const auto entries = turn.Entries();
    const auto entry = std::ranges::find_if_not(entries, Turn::Lives);
    if (!table || class_name.size() > kLongestName || entry == entries.end()) return nullptr;
    const off_t place = Turn::Place_Of(*entry);
    if (!Set_Lock(g_Mapping.file, kFirstPlaceByte + place, F_WRLCK)) return nullptr;
    g_Mapping.own.set(static_cast<std::size_t>(place));
    table->last_clock = std::max(table->last_clock + 1, Microseconds());
    *entry = {};
    entry->owner = Value_Of(owner);
    entry->name_length = static_cast<std::uint16_t>(class_name.size());
    std::ranges::transform(class_name, entry->name, rv::Folded);
    // Last: whoever is killed before this has left a free place.
    entry->handle = table->last_clock << kPlaceBits | static_cast<Handle>(place);
    return Window_Of(entry->handle);
}

void Remove(HWND window) noexcept {
    const Turn turn;
    Entry* const entry = turn.Find(Value_Of(window));
    if (!entry) return;
    const off_t place = Turn::Place_Of(*entry);
    if (!g_Mapping.own[static_cast<std::size_t>(place)]) return;
    entry->handle = 0;
    g_Mapping.own.reset(static_cast<std::size_t>(place));
    Set_Lock(g_Mapping.file, kFirstPlaceByte + place, F_UNLCK);
}

std::optional<State> Get_State(HWND window) noexcept {
    const Turn turn;
    const Entry* const entry = turn.Find(Value_Of(window));
    return entry ? std::optional(entry->state) : std::nullopt;
}

std::optional<bool> Show(HWND window, const Showing& showing) noexcept {
    const Turn turn;
    Entry* const entry = turn.Find(Value_Of(window));
    if (!entry) return std::nullopt;
    const State before = entry->state;
    entry->state = {showing.visible, showing.iconic.value_or(before.iconic)};
    if (showing.activate)
        Make_Active(*turn.Shared(), *entry);
    else if (turn.Shared()->foreground == entry->handle)
        turn.Shared()->foreground = 0;
    return before.visible;
}

bool Activate(HWND window) noexcept {
    const Turn turn;
    Entry* const entry = turn.Find(Value_Of(window));
    if (entry) Make_Active(*turn.Shared(), *entry);
    return entry != nullptr;
}

HWND Find(std::string_view class_name) noexcept {
    const Turn turn;
    const Entry* found = nullptr;
    for (Entry& entry : turn.Entries()) {
        if (entry.handle != 0 && Has_Name(entry, class_name) && Turn::Lives(entry) &&
            (!found || entry.activation > found->activation))
            found = &entry;
    }
    return Window_Of(found ? found->handle : 0);
}

HWND Last_Active_Popup(HWND window) noexcept {
    const Turn turn;
    const Entry* last = turn.Find(Value_Of(window));
    if (!last || turn.Find(last->owner)) return last ? window : nullptr;
    const Handle root = last->handle;
    for (Entry& entry : turn.Entries()) {
        if (entry.handle != 0 && entry.activation > last->activation && Turn::Lives(entry) &&
            Root_Owner(turn, entry) == root)
            last = &entry;
    }
    return Window_Of(last->handle);
}

HWND Foreground() noexcept {
    const Turn turn;
    const Entry* const entry = turn.Shared() ? turn.Find(turn.Shared()->foreground) : nullptr;
    return Window_Of(entry ? entry->handle : 0);
}

}  // namespace rv::window_registry
