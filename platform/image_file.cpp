#include "image_file.h"

#include <bit>
#include <cstdlib>

namespace {

using rv::FileBytes;
using rv::FileImage;

constexpr char kCut[] = "the file is cut off; take a whole copy";
constexpr char kDamaged[] = "the file is damaged; take another copy";
constexpr char kCompressed[] = "the image is compressed; save it uncompressed";

constexpr std::size_t kFileHeader = 14;
constexpr std::size_t kCoreHeader = 12;
constexpr std::size_t kInfoHeader = 40;
constexpr std::size_t kLargestHeader = 124;
constexpr int kLargestSide = 32767;

// Numbers of the file, low byte first.
std::uint32_t Number_At(FileBytes bytes, std::size_t at, int count) noexcept {
    std::uint32_t number = 0;
    while (count-- > 0)
        number = number << 8 | bytes[at + static_cast<std::size_t>(count)];
    return number;
}
std::uint32_t Word_At(FileBytes bytes, std::size_t at) noexcept {
    return Number_At(bytes, at, 2);
}
std::uint32_t Long_At(FileBytes bytes, std::size_t at) noexcept {
    return Number_At(bytes, at, 4);
}

// Rows begin at multiples of four bytes.
std::size_t Row_Size(const FileImage& image, int depth) noexcept {
    return (static_cast<std::size_t>(image.width) * static_cast<std::size_t>(depth) + 31) / 32 * 4;
}

bool Is_Depth(std::uint32_t depth) noexcept {
    return depth == 1 || depth == 4 || depth == 8 || depth == 16 || depth == 24 || depth == 32;
}

// Takes an image's header in and moves `at`, in bytes of the header, behind all that is in front of
// the rows.
const char* Read_Core_Header(FileBytes dib, FileImage& image, std::size_t& at) noexcept {
    image.width = static_cast<int>(Word_At(dib, 4));
    image.height = static_cast<int>(Word_At(dib, 6));
    image.depth = static_cast<int>(Word_At(dib, 10));
    image.color_count = image.depth <= 8 ? 1U << image.depth : 0;
    image.color_size = 3;
    at = kCoreHeader;
    return nullptr;
}

const char* Read_Info_Header(FileBytes dib, FileImage& image, std::size_t& at) noexcept {
    constexpr std::uint32_t kPlain = 0, kFields = 3;
    const std::uint32_t compression = Long_At(dib, 16);
    image.width = static_cast<int>(Long_At(dib, 4));
    image.height = static_cast<int>(Long_At(dib, 8));
    image.bottom_up = image.height >= 0;
    if (!image.bottom_up && image.height >= -kLargestSide) image.height = -image.height;
    image.depth = static_cast<int>(Word_At(dib, 14));
    image.color_count = Long_At(dib, 32);
    if (image.color_count == 0 && image.depth <= 8) image.color_count = 1U << image.depth;
    image.color_size = 4;
    if (image.color_count > 256) return kDamaged;
    at = Long_At(dib, 0);
    if (compression == kPlain) return nullptr;
    if (compression != kFields) return kCompressed;
    if (image.depth != 16 && image.depth != 32) return kDamaged;
    // They stand behind the oldest header, inside of the later ones.
    constexpr std::size_t kFieldsSize = sizeof image.fields;
    if (at == kInfoHeader) at += kFieldsSize;
    if (dib.size() < kInfoHeader + kFieldsSize) return kCut;
    for (std::size_t i = 0; i < 3; ++i)
        image.fields[i] = Long_At(dib, kInfoHeader + 4 * i);
    return nullptr;
}

const char* Read_Header(FileBytes dib, FileImage& image, std::size_t& at) noexcept {
    if (dib.size() < kCoreHeader) return kCut;
    const std::uint32_t size = Long_At(dib, 0);
    const bool is_core = size == kCoreHeader;
    if (!is_core && (size < kInfoHeader || size > kLargestHeader)) return kDamaged;
    if (dib.size() < size) return kCut;
    const std::uint32_t depth = Word_At(dib, is_core ? 10 : 14);
    const std::uint32_t planes = Word_At(dib, is_core ? 8 : 12);
    if (!Is_Depth(depth) || planes != 1) return kDamaged;
    image = {};
    image.bottom_up = true;
    if (depth == 16)
        image.fields[0] = 0x7C00, image.fields[1] = 0x03E0, image.fields[2] = 0x001F;
    else
        image.fields[0] = 0xFF0000, image.fields[1] = 0x00FF00, image.fields[2] = 0x0000FF;
    const char* const wrong =
        is_core ? Read_Core_Header(dib, image, at) : Read_Info_Header(dib, image, at);
    if (wrong) return wrong;
    if (image.width < 1 || image.width > kLargestSide || image.height < 1 ||
        image.height > 2 * kLargestSide)
        return kDamaged;
    image.colors = dib.data() + at;
    at += std::size_t{image.color_count} * image.color_size;
    return at <= dib.size() ? nullptr : kCut;
}

// The red, green or blue of a pixel, in 8 bits.
std::uint32_t Field_Of(std::uint32_t pixel, std::uint32_t field) noexcept {
    if (field == 0) return 0;
    const int shift = std::countr_zero(field);
    const std::uint64_t most = field >> shift;
    return static_cast<std::uint32_t>(((pixel & field) >> shift) * std::uint64_t{255} / most);
}

std::uint32_t Color_Of(const FileImage& image, unsigned index) noexcept {
    if (index >= image.color_count) return 0;
    const std::uint8_t* const color = image.colors + std::size_t{index} * image.color_size;
    return std::uint32_t{color[2]} << 16 | std::uint32_t{color[1]} << 8 | color[0];
}

std::uint32_t Pixel_Of(const FileImage& image, const std::uint8_t* row, int x) noexcept {
    const auto bit = static_cast<std::size_t>(x) * static_cast<std::size_t>(image.depth);
    const auto depth = static_cast<unsigned>(image.depth);
    const std::uint8_t* const at = row + bit / 8;
    if (depth <= 8) return Color_Of(image, at[0] >> (8 - depth - bit % 8) & ((1U << depth) - 1));
    const std::uint32_t pixel = Number_At({at, depth / 8}, 0, image.depth / 8);
    if (depth == 24) return pixel;
    const bool is_plain = depth == 32 && image.fields[0] == 0xFF0000 &&
                          image.fields[1] == 0x00FF00 && image.fields[2] == 0x0000FF;
    if (is_plain) return pixel;
    return Field_Of(pixel, image.fields[0]) << 16 | Field_Of(pixel, image.fields[1]) << 8 |
           Field_Of(pixel, image.fields[2]);
}

const std::uint8_t* Row_Of(const FileImage& image, int y) noexcept {
    const int from_first = image.bottom_up ? image.height - 1 - y : y;
    return image.bits + static_cast<std::size_t>(from_first) * Row_Size(image, image.depth);
}

struct IconEntry {
    int width;
    std::uint32_t size;
    std::uint32_t offset;
    int hot_x;
    int hot_y;
};

IconEntry Entry_At(FileBytes file, std::size_t at) noexcept {
    const int width = file[at];
    return {width ? width : 256, Long_At(file, at + 8), Long_At(file, at + 12),
            static_cast<int>(Word_At(file, at + 4)), static_cast<int>(Word_At(file, at + 6))};
}

bool Is_Png(FileBytes bytes) noexcept {
    return bytes.size() >= 4 && Long_At(bytes, 0) == 0x474E5089;
}

// The colours and, behind them, the mask stand as one image of twice the height.
const char* Read_Icon(FileBytes dib, FileImage& image) noexcept {
    std::size_t at = 0;
    if (const char* const wrong = Read_Header(dib, image, at)) return wrong;
    if (image.height % 2 != 0 || !image.bottom_up) return kDamaged;
    image.height /= 2;
    const auto rows = static_cast<std::size_t>(image.height);
    const std::size_t colors = rows * Row_Size(image, image.depth);
    if (dib.size() - at < colors + rows * Row_Size(image, 1)) return kCut;
    image.bits = dib.data() + at;
    image.mask = image.bits + colors;
    return nullptr;
}

}  // namespace

const char* rv::Find_Bitmap(FileBytes file, FileImage& image) noexcept {
    if (file.size() < 2 || file[0] != 'B' || file[1] != 'M')
        return "the file is no bitmap; save the image in the format BMP";
    if (file.size() < kFileHeader) return kCut;
    std::size_t at = 0;
    if (const char* const wrong = Read_Header(file.subspan(kFileHeader), image, at)) return wrong;
    if (image.height > kLargestSide) return kDamaged;
    const std::size_t bits = Long_At(file, 10);
    if (bits < kFileHeader + at) return kDamaged;
    const std::size_t size = static_cast<std::size_t>(image.height) * Row_Size(image, image.depth);
    if (bits > file.size() || file.size() - bits < size) return kCut;
    image.bits = file.data() + bits;
    return nullptr;
}

const char* rv::Find_Icon(FileBytes file, IconKind kind, int width, FileImage& image) noexcept {
    constexpr std::size_t kDirectory = 6, kEntry = 16;
    if (file.size() < kDirectory || Word_At(file, 0) != 0 ||
        Word_At(file, 2) != static_cast<std::uint32_t>(kind))
        return kind == IconKind::kIcon ? "the file is no icon; save the image in the format ICO"
                                       : "the file is no cursor; save the image in the format CUR";
    const std::size_t count = Word_At(file, 4);
    if (count == 0) return kDamaged;
    if (file.size() < kDirectory + count * kEntry) return kCut;
    bool found = false;
    for (std::size_t i = 0; i < count; ++i) {
        const IconEntry entry = Entry_At(file, kDirectory + i * kEntry);
        if (entry.offset > file.size() || file.size() - entry.offset < entry.size) return kCut;
        const FileBytes bytes = file.subspan(entry.offset, entry.size);
        if (Is_Png(bytes)) continue;
        FileImage candidate;
        if (const char* const wrong = Read_Icon(bytes, candidate)) return wrong;
        const int distance = std::abs(candidate.width - width);
        const int best = found ? std::abs(image.width - width) : distance;
        if (found && (distance > best || (distance == best && candidate.depth <= image.depth)))
            continue;
        image = candidate;
        image.hot_x = entry.hot_x;
        image.hot_y = entry.hot_y;
        found = true;
    }
    return found ? nullptr : "the file holds PNG images alone; save an uncompressed one in it, too";
}

void rv::Read_Pixels(const FileImage& image, std::uint32_t* pixels) noexcept {
    for (int y = 0; y < image.height; ++y) {
        const std::uint8_t* const row = Row_Of(image, y);
        for (int x = 0; x < image.width; ++x)
            *pixels++ = Pixel_Of(image, row, x);
    }
}

void rv::Read_Mask(const FileImage& image, std::uint32_t* pixels) noexcept {
    const std::size_t row_size = Row_Size(image, 1);
    for (int y = 0; y < image.height; ++y) {
        const std::uint8_t* const row =
            image.mask + static_cast<std::size_t>(image.height - 1 - y) * row_size;
        for (int x = 0; x < image.width; ++x)
            *pixels++ = row[x / 8] >> (7 - x % 8) & 1 ? 0xFFFFFF : 0;
    }
}
