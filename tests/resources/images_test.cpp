// Resources of a module, and images out of files.
#include <RVUtils/CBitmap.h>
#include <RVUtils/RVString.h>
#include <RVUtils/XmlParser.h>
#include <RVUtils/image_file.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "allocation_sweep.h"
#include "picture.h"
#include "scratch.h"
#include "test_ids.h"

namespace {

using rv_test::Picture_Of;
using rv_test::ScratchDirectory;

constexpr char kFlag[] =
    "bbbww\n"
    "bbwwr\n"
    "bwwrr\n";

HINSTANCE Own_Module() {
    return GetModuleHandleA(nullptr);
}

TEST(Resources, StringsOfTheModule) {
    constexpr struct {
        unsigned int id;
        const char* text;
    } kTexts[] = {{IDS_FIRST, "the first"},
                  {IDS_ESCAPES, "a\tb\\c \"d\"\r\nAA??"},
                  {IDS_JOINED, "one text of two"},
                  {IDS_LAST, "the last"}};
    for (const auto& row : kTexts) {
        RVString text;
        EXPECT_TRUE(text.Load_String(Own_Module(), row.id)) << row.id;
        EXPECT_STREQ(text, row.text);
        EXPECT_TRUE(text.Load_String(nullptr, row.id)) << "null is the application";
    }
    RVString text("as it was");
    for (const unsigned int missing : {0U, 3U, 101U, 65534U})
        EXPECT_FALSE(text.Load_String(Own_Module(), missing)) << missing;
    EXPECT_STREQ(text, "as it was");
    char cut[4];
    EXPECT_EQ(LoadStringA(Own_Module(), IDS_FIRST, cut, 4), 3);
    EXPECT_STREQ(cut, "the");
    // In the encoding of the platform: one byte a letter, or UTF-8.
    EXPECT_TRUE(text.Load_String(Own_Module(), IDS_UMLAUTS));
    EXPECT_TRUE(text ==
                    "Gr\xF6\xDF"
                    "e" ||
                text ==
                    "Gr\xC3\xB6\xC3\x9F"
                    "e")
        << text.GetString();
}

TEST(Resources, ImagesOfTheModule) {
    HBITMAP const bitmap = LoadBitmapA(Own_Module(), MAKEINTRESOURCEA(IDB_FLAG));
    EXPECT_EQ(Picture_Of(bitmap), kFlag);
    HBITMAP const other = LoadBitmapA(Own_Module(), MAKEINTRESOURCEA(IDB_FLAG));
    EXPECT_NE(bitmap, other) << "each is the caller's own";
    EXPECT_TRUE(DeleteObject(bitmap));
    EXPECT_FALSE(DeleteObject(bitmap)) << "it is no more";
    EXPECT_EQ(Picture_Of(bitmap), "(none)");
    CBitmap owner, second;
    EXPECT_FALSE(owner.Attach(nullptr));
    EXPECT_TRUE(owner.Attach(other));
    EXPECT_FALSE(owner.Attach(other)) << "it has one";
    EXPECT_EQ(static_cast<HBITMAP>(owner), other);
    EXPECT_TRUE(second.Attach(owner.Detach()));
    EXPECT_FALSE(owner.DeleteObject());
    EXPECT_TRUE(second.DeleteObject());
    EXPECT_EQ(Picture_Of(other), "(none)");
    EXPECT_EQ(LoadBitmapA(Own_Module(), MAKEINTRESOURCEA(IDI_DISC)), nullptr);
    EXPECT_EQ(LoadIconA(Own_Module(), MAKEINTRESOURCEA(IDB_FLAG)), nullptr);
    EXPECT_EQ(LoadCursorA(Own_Module(), MAKEINTRESOURCEA(IDI_DISC)), nullptr);
    EXPECT_EQ(LoadBitmapA(nullptr, MAKEINTRESOURCEA(IDB_FLAG)), nullptr) << "not the application's";
}

// A row of the mask and of the colours, through the middle.
std::string Row_Of(HBITMAP bitmap, std::size_t row) {
    return Picture_Of(bitmap).substr(row * 33, 32);
}

TEST(Resources, IconsAndCursorsAreShared) {
    HICON const icon = LoadIconA(Own_Module(), MAKEINTRESOURCEA(IDI_DISC));
    ICONINFO info = {};
    ASSERT_TRUE(GetIconInfo(icon, &info));
    EXPECT_TRUE(info.fIcon);
    EXPECT_EQ(info.xHotspot, 16U);
    EXPECT_EQ(Row_Of(info.hbmColor, 15).substr(10, 12), std::string(12, 'b'));
    EXPECT_EQ(Row_Of(info.hbmColor, 16).substr(10, 12), std::string(12, 'r'));
    EXPECT_EQ(Row_Of(info.hbmMask, 15), 'w' + std::string(30, 'B') + 'w');
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);

    HCURSOR const cursor = LoadCursorA(Own_Module(), MAKEINTRESOURCEA(IDC_POINTER));
    ASSERT_TRUE(GetIconInfo(cursor, &info));
    EXPECT_FALSE(info.fIcon);
    EXPECT_EQ(info.xHotspot, 3U);
    EXPECT_EQ(info.yHotspot, 5U);
    EXPECT_EQ(Row_Of(info.hbmMask, 5), std::string("wwwB").append(28, 'w'));
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);

    DestroyIcon(icon);
    EXPECT_EQ(LoadIconA(Own_Module(), MAKEINTRESOURCEA(IDI_DISC)), icon);
    EXPECT_TRUE(GetIconInfo(icon, &info)) << "it lives as long as the module";
    DeleteObject(info.hbmColor);
    DeleteObject(info.hbmMask);
}

TEST(Resources, TheSortArrows) {
    const auto* const address = reinterpret_cast<const char*>(&pBase64_Encode_File);
    HMODULE module = nullptr;
    ASSERT_TRUE(GetModuleHandleExA(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        address, &module));
    EXPECT_NE(module, Own_Module());
    CBitmap arrows;
    ASSERT_TRUE(arrows.Attach(LoadBitmapA(module, MAKEINTRESOURCEA(130))));
    std::string expected;
    for (const char* const row :
         {"................ ................", "................ ................",
          "................ ................", "................ ................",
          "................ ................", "....BBBBBBBB.... .......Bw.......",
          ".....B....w..... .......Bw.......", ".....B....w..... ......B..w......",
          "......B..w...... ......B..w......", "......B..w...... .....B....w.....",
          ".......Bw....... .....B....w.....", ".......Bw....... ....wwwwwwww....",
          "................ ................", "................ ................",
          "................ ................", "................ ................"}) {
        std::string line(row);
        line.erase(16, 1);
        std::ranges::replace(line, '.', 'r');
        expected += line + '\n';
    }
    EXPECT_EQ(Picture_Of(arrows), expected);
}

// ---- images out of files ------------------------------------------------------------------------

void Put(std::string& bytes, std::uint32_t number, int size) {
    for (int i = 0; i < size; ++i)
        bytes += static_cast<char>(number >> 8 * i);
}

// How a bitmap's file is made up.
struct Form {
    const char* label;
    int depth;
    int header = 40;
    bool top_down = false;
    bool fields = false;
};

constexpr Form kForms[] = {
    {"1 bit", 1},
    {"4 bits", 4},
    {"8 bits", 8},
    {"16 bits", 16},
    {"24 bits", 24},
    {"32 bits", 32},
    {"24 bits, from the top down", 24, 40, true},
    {"24 bits, the oldest header", 24, 12},
    {"4 bits, the oldest header", 4, 12},
    {"16 bits, fields", 16, 40, false, true},
    {"32 bits, fields inside of the header", 32, 108, false, true},
};

// The bits of a colour: its place in the table, or the colour itself.
std::uint32_t Bits_Of(const Form& form, char letter) {
    const bool red = letter == 'r' || letter == 'w', blue = letter == 'b' || letter == 'w';
    const bool green = letter == 'w';
    if (form.depth <= 8) return red || blue ? 1 : 0;
    if (form.depth == 16 && form.fields) return red * 0xF800U | green * 0x07E0U | blue * 0x001FU;
    if (form.depth == 16) return red * 0x7C00U | green * 0x03E0U | blue * 0x001FU;
    return red * 0xFF0000U | green * 0x00FF00U | blue * 0x0000FFU;
}

// A file of that form which shows the picture; with a table, its colours are black and white.
std::string Bitmap_File(const Form& form, const std::vector<std::string>& picture) {
    const auto width = static_cast<std::uint32_t>(picture[0].size());
    const auto height = static_cast<std::uint32_t>(picture.size());
    std::string head;
    Put(head, static_cast<std::uint32_t>(form.header), 4);
    const int side = form.header == 12 ? 2 : 4;
    Put(head, width, side);
    Put(head, form.top_down ? 0 - height : height, side);
    Put(head, 1, 2);
    Put(head, static_cast<std::uint32_t>(form.depth), 2);
    if (form.header > 12) Put(head, form.fields ? 3 : 0, 4);
    if (form.header > 12) head.resize(40);
    if (form.fields) {
        for (const char letter : {'r', 'g', 'b'}) {
            const std::uint32_t white = Bits_Of(form, 'w'), red = Bits_Of(form, 'r');
            const std::uint32_t blue = Bits_Of(form, 'b');
            Put(head, letter == 'r' ? red : letter == 'b' ? blue : white & ~red & ~blue, 4);
        }
    }
    if (form.header > 40) head.resize(static_cast<std::size_t>(form.header));
    if (form.depth <= 8) {
        const std::size_t entry = form.header == 12 ? 3 : 4;
        const std::size_t table = head.size();
        head.resize(table + (entry << form.depth));
        for (std::size_t i = 0; i < 3; ++i)
            head[table + entry + i] = '\xFF';
    }
    std::string rows;
    for (std::size_t y = 0; y < height; ++y) {
        const std::string& line = picture[form.top_down ? y : height - 1 - y];
        const std::size_t start = rows.size();
        rows.resize(start + (width * static_cast<std::size_t>(form.depth) + 31) / 32 * 4);
        for (std::size_t x = 0; x < width; ++x) {
            const std::size_t bit = x * static_cast<std::size_t>(form.depth);
            std::uint32_t value = Bits_Of(form, line[x]);
            char* const at = &rows[start + bit / 8];
            if (form.depth < 8) {
                const auto shift = 8 - static_cast<unsigned>(form.depth) - bit % 8;
                *at = static_cast<char>(static_cast<unsigned char>(*at) | value << shift);
                continue;
            }
            for (int i = 0; i < form.depth / 8; ++i, value >>= 8)
                at[i] = static_cast<char>(value);
        }
    }
    std::string file = "BM";
    Put(file, static_cast<std::uint32_t>(14 + head.size() + rows.size()), 4);
    Put(file, 0, 4);
    Put(file, static_cast<std::uint32_t>(14 + head.size()), 4);
    return file + head + rows;
}

rv::FileBytes Bytes_Of(const std::string& file) {
    return {reinterpret_cast<const std::uint8_t*>(file.data()), file.size()};
}

TEST(ImageFiles, BitmapsOfEveryForm) {
    const ScratchDirectory scratch;
    const std::string path = scratch / "image.bmp";
    for (const Form& form : kForms) {
        const bool colorful = form.depth > 8;
        const std::vector<std::string> picture = {colorful ? "rbwBr" : "wBwBB", "BBwww",
                                                  colorful ? "bbbrr" : "wwwBw"};
        const std::string expected = picture[0] + '\n' + picture[1] + '\n' + picture[2] + '\n';
        const std::string file = Bitmap_File(form, picture);
        rv::FileImage image;
        ASSERT_EQ(rv::Find_Bitmap(Bytes_Of(file), image), nullptr) << form.label;
        std::vector<std::uint32_t> pixels(image.Pixel_Count());
        rv::Read_Pixels(image, pixels.data());
        EXPECT_EQ(Picture_Of(pixels, 5), expected) << form.label;

        rv_test::Write_File(path, file);
        CBitmap bitmap;
        bitmap.Attach(LoadImageA(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE));
        // Wine makes black ones of those.
        if (!form.top_down) {
            EXPECT_EQ(Picture_Of(bitmap), expected) << form.label;
        }
    }
}

// Reads what is found, so that a sanitizer sees each byte outside.
bool Reads(const std::string& file, bool is_bitmap) {
    // An exact copy.
    const std::vector<std::uint8_t> exact(file.begin(), file.end());
    rv::FileImage image;
    if (is_bitmap ? rv::Find_Bitmap(exact, image)
                  : rv::Find_Icon(exact, rv::IconKind::kIcon, 32, image))
        return false;
    std::vector<std::uint32_t> pixels(image.Pixel_Count());
    rv::Read_Pixels(image, pixels.data());
    if (image.mask) rv::Read_Mask(image, pixels.data());
    return true;
}

TEST(ImageFiles, DamageIsRefusedAndNeverFollowed) {
    std::vector<std::string> files = {rv_test::Read_File(RESOURCES_DIRECTORY "/disc.ico")};
    for (const Form& form : kForms)
        files.push_back(Bitmap_File(form, {"wBwwB", "BBwww"}));
    for (const std::string& file : files) {
        const bool is_bitmap = &file != &files.front();
        ASSERT_TRUE(Reads(file, is_bitmap));
        for (std::size_t length = 0; length < file.size(); ++length)
            EXPECT_FALSE(Reads(file.substr(0, length), is_bitmap)) << "cut at " << length;
        for (std::size_t at = 0; at < std::min<std::size_t>(file.size(), 70); ++at) {
            for (const int bits : {0x01, 0x80, 0xFF, 0x7F}) {
                std::string damaged = file;
                damaged[at] = static_cast<char>(damaged[at] ^ bits);
                Reads(damaged, is_bitmap);
            }
        }
    }
    constexpr struct {
        const char* label;
        std::size_t at;
        int size;
        std::uint32_t number;
    } kWrong[] = {{"no bitmap", 0, 1, 'C'},
                  {"compressed", 30, 4, 1},
                  {"no width", 18, 4, 0},
                  {"negative width", 18, 4, 0xFFFFFFFF},
                  {"no height", 22, 4, 0},
                  {"height of no number", 22, 4, 0x80000000},
                  {"huge", 18, 4, 0x7FFFFFFF},
                  {"two planes", 26, 2, 2},
                  {"3 bits", 28, 2, 3},
                  {"many colours", 46, 4, 0x40000000},
                  {"rows in the header", 10, 4, 20},
                  {"rows behind the end", 10, 4, 0xFFFFFFF0},
                  {"an odd header", 14, 4, 30},
                  {"a header behind the end", 14, 4, 124}};
    for (const auto& row : kWrong) {
        std::string file = Bitmap_File(kForms[4], {"wBwwB", "BBwww"});
        std::string number;
        Put(number, row.number, row.size);
        file.replace(row.at, number.size(), number);
        rv::FileImage image;
        EXPECT_NE(rv::Find_Bitmap(Bytes_Of(file), image), nullptr) << row.label;
    }
}

TEST(ImageFiles, WhatIsNoImageIsRefused) {
    const ScratchDirectory scratch;
    const std::string path = scratch / "image";
    const auto load = [&path](UINT type) {
        return LoadImageA(nullptr, path.c_str(), type, 0, 0, LR_LOADFROMFILE);
    };
    EXPECT_EQ(load(IMAGE_BITMAP), nullptr) << "no file";
    rv_test::Write_File(path, "");
    EXPECT_EQ(load(IMAGE_ICON), nullptr) << "empty";
    rv_test::Write_File(path, Bitmap_File(kForms[0], {"wB"}));
    EXPECT_EQ(load(IMAGE_CURSOR), nullptr) << "a bitmap";
    HANDLE const bitmap = load(IMAGE_BITMAP);
    EXPECT_FALSE(DestroyIcon(static_cast<HICON>(bitmap)));
    EXPECT_TRUE(DeleteObject(bitmap));
}

TEST(ImageFiles, ExhaustedMemory) {
    const ScratchDirectory scratch;
    const std::string path = scratch / "image";
    for (const UINT type : {IMAGE_BITMAP, IMAGE_ICON}) {
        rv_test::Write_File(path, type == IMAGE_BITMAP
                                      ? Bitmap_File(kForms[0], {"wB"})
                                      : rv_test::Read_File(RESOURCES_DIRECTORY "/disc.ico"));
        rv_test::Sweep_Allocations([&] {
            HANDLE const image = LoadImageA(nullptr, path.c_str(), type, 0, 0, LR_LOADFROMFILE);
            EXPECT_EQ(image == nullptr, rv_test::FailingAllocation::Failed());
            ICONINFO info = {};
            if (type == IMAGE_ICON && GetIconInfo(static_cast<HICON>(image), &info)) {
                DeleteObject(info.hbmColor);
                DeleteObject(info.hbmMask);
            }
            if (image)
                type == IMAGE_BITMAP ? DeleteObject(image) : DestroyIcon(static_cast<HICON>(image));
        });
    }
}

TEST(Resources, ThreadsShareThem) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int round = 0; round < 200; ++round) {
                CBitmap bitmap;
                EXPECT_TRUE(bitmap.Attach(LoadBitmapA(Own_Module(), MAKEINTRESOURCEA(IDB_FLAG))));
                EXPECT_NE(LoadIconA(Own_Module(), MAKEINTRESOURCEA(IDI_DISC)), nullptr);
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

}  // namespace
