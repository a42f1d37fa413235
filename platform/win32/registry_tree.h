// Keys and values of a registry, in memory.
#pragma once

#include <map>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "../heap.h"
#include "types.h"

namespace rv::registry {

// The memory of the house for standard containers; throws std::bad_alloc.
template <class T>
struct Allocator {
    using value_type = T;

    Allocator() = default;
    template <class U>
    Allocator(const Allocator<U>&) noexcept {}

    T* allocate(std::size_t count) {
        void* const block = Heap_Allocate(count * sizeof(T));
        if (!block) throw std::bad_alloc();
        return static_cast<T*>(block);
    }
    void deallocate(T* block, std::size_t) noexcept { Heap_Free(block); }

    template <class U>
    bool operator==(const Allocator<U>&) const noexcept {
        return true;
    }
};

using Text = std::basic_string<char, std::char_traits<char>, Allocator<char>>;

// By lower-case bytes: names do not regard the case of ASCII letters.
struct FoldedLess {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const noexcept;
};

template <class T>
using Named = std::map<Text, T, FoldedLess, Allocator<std::pair<const Text, T>>>;

struct Value {
    DWORD type;
    Text data;  // any bytes

    bool operator==(const Value&) const = default;
};

struct Key {
    Named<Value> values;
    Named<Key> keys;
};

// What is published of names, in bytes.
constexpr std::size_t kLongestKeyName = 255;
constexpr std::size_t kLongestValueName = 16383;
constexpr int kMostLevels = 512;

// The path, from the top of all keys, of one of the roots; classes stand among the local machine's
// keys. Null bytes for a name that is none of them.
[[nodiscard]] std::string_view Root_Path(std::string_view name) noexcept;

// Whether each level of a path below a root can be a key's name; there may be none.
[[nodiscard]] bool Is_Path(std::string_view path) noexcept;
// Whether a name can stand in a line.
[[nodiscard]] bool Is_Value_Name(std::string_view name) noexcept;

// Takes the first level, and the backslash behind it, off a path.
[[nodiscard]] std::string_view Take_Level(std::string_view& path) noexcept;

// The key at a path, null when there is none; the empty path is `top`.
[[nodiscard]] Key* Find(Key& top, std::string_view path) noexcept;
// The same with all levels that are missing. May throw std::bad_alloc.
Key& Make(Key& top, std::string_view path);
// Takes the key at a path of one level or more away, with all that is in it.
void Remove(Key& top, std::string_view path) noexcept;

// A registry without anything but its roots. May throw std::bad_alloc.
[[nodiscard]] Key Empty_Registry();

}  // namespace rv::registry
