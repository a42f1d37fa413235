// The pixels in files of bitmaps, icons and cursors.
//
// What is read: 1, 4, 8, 16, 24 and 32 bits a pixel, uncompressed or with fields of bits, rows from
// the bottom up or from the top down, headers of every age. Compressed rows and PNG images are
// refused. Nothing here takes memory, throws, or reads outside of the bytes that it is given. Any
// thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "export.h"

namespace rv {

using FileBytes = std::span<const std::uint8_t>;

// An image inside of a file's bytes, which have to outlive it.
struct FileImage {
    int width;   // 1 to 32767
    int height;  // the same
    int depth;   // bits a pixel
    bool bottom_up;
    const std::uint8_t* bits;
    const std::uint8_t* mask;  // one bit a pixel, rows from the bottom up; null for a bitmap
    const std::uint8_t* colors;
    unsigned color_count;     // 0 without a table
    unsigned color_size;      // bytes an entry
    std::uint32_t fields[3];  // red, green and blue of a pixel of 16 or 32 bits
    int hot_x;                // of a cursor
    int hot_y;

    std::size_t Pixel_Count() const noexcept {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
};

enum class IconKind : std::uint16_t { kIcon = 1, kCursor = 2 };

// Both give null when there is an image, which they store; else what is wrong with the file and
// what to do, in a form to follow "file: ", with static lifetime. `image` is then undefined.
//
// A file of icons holds one or more; the one whose width is nearest to `width` is found, of equal
// ones the one with the most colours.
[[nodiscard]] RVPLATFORM_API const char* Find_Bitmap(FileBytes file, FileImage& image) noexcept;
[[nodiscard]] RVPLATFORM_API const char* Find_Icon(FileBytes file, IconKind kind, int width,
                                                   FileImage& image) noexcept;

// Writes Pixel_Count() pixels, rows from the top down, each 0x00RRGGBB; of 32 bits, the top byte is
// as the file has it.
RVPLATFORM_API void Read_Pixels(const FileImage& image, std::uint32_t* pixels) noexcept;
// The same of a mask: white where what is behind the image shows through, else 0.
RVPLATFORM_API void Read_Mask(const FileImage& image, std::uint32_t* pixels) noexcept;

}  // namespace rv
