// PNG files, read by an independent reader.
#pragma once

#include <RVUtils/winapi.h>
#include <gtest/gtest.h>
#include <png.h>

#include <filesystem>
#include <vector>

namespace rv_test {

struct Image {
    explicit Image(const std::filesystem::path& path) {
        header.version = PNG_IMAGE_VERSION;
        EXPECT_TRUE(png_image_begin_read_from_file(&header, path.c_str())) << header.message;
        header.format = PNG_FORMAT_RGB;
        bytes.resize(PNG_IMAGE_SIZE(header));
        EXPECT_TRUE(png_image_finish_read(&header, nullptr, bytes.data(), 0, nullptr))
            << header.message;
    }
    COLORREF At(std::size_t x, std::size_t y) const {
        const png_byte* const at = &bytes[(y * header.width + x) * 3];
        return RGB(at[0], at[1], at[2]);
    }

    png_image header = {};
    std::vector<png_byte> bytes;
};

}  // namespace rv_test
