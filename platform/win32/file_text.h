// Whole files of text that programs and people write.
#pragma once

#include <string_view>

#include "../heap.h"
#include "types.h"

namespace rv {

// The bytes of a file, whatever they are.
struct FileText {
    HeapText bytes;
    std::size_t size = 0;

    std::string_view View() const noexcept { return {bytes.get(), size}; }
};

constexpr std::size_t kLargestTextFile = std::size_t{256} << 20;

// Opens the file `native` for reading, if it is a regular one, without waiting for anything. -1
// with `error` set.
[[nodiscard]] int Open_Text_File(const char* native, DWORD& error) noexcept;

// Reads an open regular file, up to that size, from its beginning. ERROR_SUCCESS, or why not:
// ERROR_FILE_TOO_LARGE, ERROR_NOT_ENOUGH_MEMORY, or what the system tells.
[[nodiscard]] DWORD Read_Text_File(int descriptor, FileText& text) noexcept;

}  // namespace rv
