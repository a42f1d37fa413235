// The boxes that failures show to the user.
#include <RVUtils/RVRegCategory.h>
#include <RVUtils/RVSharedMemory.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "services_support.h"
#include "test_registry.h"

namespace {

using namespace rv_test;
using Boxes = std::vector<std::string>;  // "title: text" of each

#if defined(_WIN32)

// Dismisses the box that `operation` shows, when it shows one.
template <class Operation>
Boxes Boxes_Of(Operation operation) {
    Boxes boxes;
    std::atomic<bool> ended = false;
    std::thread user([&] {
        while (!ended) {
            HWND const box = FindWindowA("#32770", nullptr);
            HWND const text = box ? GetDlgItem(box, 0xFFFF) : nullptr;
            char title[100] = "", words[100] = "";
            if (text && GetWindowTextA(text, words, sizeof words) > 0) {
                GetWindowTextA(box, title, sizeof title);
                boxes.push_back(std::string(title) + ": " + words);
                while (IsWindow(box)) {
                    PostMessageA(box, WM_COMMAND, IDOK, 0);
                    std::this_thread::sleep_for(std::chrono::milliseconds(5));
                }
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    });
    operation();
    ended = true;
    user.join();
    return boxes;
}

#else

Boxes g_Boxes;

template <class Operation>
Boxes Boxes_Of(Operation operation) {
    g_Boxes.clear();
    const auto before = rv::Set_Message_Box_Hook([](LPCSTR text, LPCSTR title, UINT) {
        g_Boxes.push_back(std::string(title) + ": " + text);
    });
    operation();
    rv::Set_Message_Box_Hook(before);
    return g_Boxes;
}

TEST(MessageBox, IsALineToStandardErrorWithoutAHook) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(MessageBoxA(nullptr, "some text", "a title", MB_OK), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "a title: some text\n");
}

#endif

TEST(RVSharedMemory, TellsOfFailuresUnlessItIsQuiet) {
    RVSharedMemory there(true);
    ASSERT_TRUE(there.Create(kBlockName, 1));
    const struct {
        const char* why;
        bool (*fails)(RVSharedMemory& block);
        const char* text;
    } kRows[] = {
        {"none to open", [](RVSharedMemory& block) { return block.Open("rv_test none"); },
         "RVDEBUG: Cannot open shared memory"},
        {"none to make", [](RVSharedMemory& block) { return block.Create("rv\\test", 1); },
         "RVDEBUG: Cannot create shared memory"},
        {"smaller", [](RVSharedMemory& block) { return block.Create(kBlockName, 5000); },
         "RVDEBUG: Cannot map shared memory"},
    };
    for (const auto& row : kRows) {
        RVSharedMemory loud, quiet(true);
        EXPECT_EQ(Boxes_Of([&] { EXPECT_FALSE(row.fails(loud)); }), Boxes{row.text}) << row.why;
        EXPECT_EQ(Boxes_Of([&] { EXPECT_FALSE(row.fails(quiet)); }), Boxes()) << row.why;
        quiet = loud;
        EXPECT_EQ(Boxes_Of([&] { EXPECT_FALSE(row.fails(quiet)); }), Boxes{row.text})
            << row.why << ": a copy of one that is loud";
        EXPECT_EQ(Boxes_Of([&] { EXPECT_FALSE(loud.Read(nullptr, 0)); }), Boxes()) << row.why;
    }
}

// Windows has no category manager where COM is not initialised, Linux none over a damaged registry.
// A number that is none asks for neither.
TEST(RVRegCategory, TellsWhenThereIsNoCategoryManager) {
    const ScratchDirectory scratch;
    const Environment registry("RVUTILS_REGISTRY", scratch / "damaged");
    Write_File(scratch / "damaged", "no registry");
    testing::internal::CaptureStderr();
    const RVRegCategory plug_in(GUID{1, 2, 3, {}});
    const std::string there =
        "Registration Error: CLSID_StdComponentCategoriesMgr was not found!  ";
    EXPECT_EQ(Boxes_Of([&] { EXPECT_FALSE(plug_in.Register_For_Application(1)); }),
              Boxes{there + "Unable to register as a plug-in."});
    EXPECT_EQ(Boxes_Of([&] { EXPECT_FALSE(plug_in.Unregister_For_Application(10)); }),
              Boxes{there + "Unable to un-register as a plug-in."});
    EXPECT_EQ(Boxes_Of([&] {
                  EXPECT_FALSE(plug_in.Register_For_Application(0));
                  EXPECT_FALSE(plug_in.Unregister_For_Application(11));
              }),
              Boxes());
    testing::internal::GetCapturedStderr();
}

}  // namespace
