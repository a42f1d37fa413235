// The example window, by the pictures that it writes without a screen.

#include <cstdlib>
#include <filesystem>
#include <string>

#include "environment.h"
#include "image.h"
#include "scratch.h"

namespace {

namespace fs = std::filesystem;
using rv_test::Image;

class Workbench : public testing::Test {
protected:
    // Its exit code; `arguments` stand behind the document.
    int Call(const std::string& arguments) {
        const std::string line = "cd " WORKBENCH_LANGUAGES " && " WORKBENCH_PROGRAM
                                 " ../document.xml " +
                                 arguments + " 2>/dev/null";
        return std::system(line.c_str()) >> 8;
    }

    std::string Path(const std::string& name) const { return (m_Scratch.Path() / name).string(); }

    Image Picture(const std::string& columns = "") {
        const std::string path = Path("picture.png");
        EXPECT_EQ(Call(path + " " + columns), 0);
        return Image(path);
    }

    rv_test::ScratchDirectory m_Scratch;
    const rv_test::Environment m_Registry{"RVUTILS_REGISTRY", Path("registry.reg")};
    const rv_test::Environment m_All{"LC_ALL", ""}, m_Messages{"LC_MESSAGES", ""},
        m_Language{"LANG", "en_US.UTF-8"};
};

struct Box {
    std::size_t left, top, right, bottom;
};

// What has changed from one picture to the other; all of it where nothing has.
Box Change_Of(const Image& before, const Image& after) {
    Box box = {before.header.width, before.header.height, 0, 0};
    for (std::size_t y = 0; y < before.header.height; ++y) {
        for (std::size_t x = 0; x < before.header.width; ++x) {
            if (before.At(x, y) == after.At(x, y)) continue;
            box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x + 1),
                   std::max(box.bottom, y + 1)};
        }
    }
    return box;
}

TEST_F(Workbench, AClickOnAHeaderChangesTheListAlone) {
    const Image before = Picture(), after = Picture("3"), turned = Picture("3 3");
    ASSERT_EQ(before.header.width, 660U);
    ASSERT_EQ(before.header.height, 360U);
    ASSERT_EQ(after.bytes.size(), before.bytes.size());
    // From the frame and the title to the list's corners.
    constexpr Box kList = {12 + 3, 42 + 20, 432 + 3, 312 + 26};
    for (const Image* other : {&after, &turned}) {
        const Box change = Change_Of(before, *other);
        EXPECT_GE(change.left, kList.left);
        EXPECT_GE(change.top, kList.top);
        EXPECT_LE(change.right, kList.right);
        EXPECT_LE(change.bottom, kList.bottom);
        EXPECT_GT(change.bottom, change.top + 100) << "rows have moved";
    }
    EXPECT_NE(after.bytes, turned.bytes);
}

TEST_F(Workbench, SpeaksTheUsersLanguage) {
    const Image english = Picture();
    const rv_test::Environment language("LANG", "de_DE.UTF-8");
    const Box change = Change_Of(english, Picture());
    EXPECT_LT(change.top, 20U) << "the title";
    EXPECT_GT(change.bottom, 290U) << "the buttons";
}

TEST_F(Workbench, RefusesWhatItCannotShow) {
    for (const char* arguments :
         {"", "picture.png/no/such/folder", "picture.png 4", "picture.png x"})
        EXPECT_EQ(Call(arguments), 1) << arguments;
}

}  // namespace
