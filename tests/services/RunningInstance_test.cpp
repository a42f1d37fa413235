// The second start of an application, and what it finds of the first: real processes.
#include <RVUtils/RunningInstance.h>
#include <RVUtils/winapi.h>
#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "child_process.h"

namespace {

using rv_test::ChildProcess;

constexpr char kMain[] = "RVUtilsRunningInstance";
constexpr char kOther[] = "RVUtilsOtherApplication";
constexpr char kDialog[] = "RVUtilsRunningInstanceDialog";

// Returns when its windows are open. `state`: letters, as the program knows them.
ChildProcess Start(const char* main_class, const char* state) {
    ChildProcess child("tests_application", {main_class, kDialog, state});
    EXPECT_EQ(child.Read(), 'r');
    return child;
}

// The other process does its part when it comes to it.
bool Comes_Forward(HWND window) {
    for (int turn = 0; turn < 500 && GetForegroundWindow() != window; ++turn)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return GetForegroundWindow() == window;
}

TEST(FindRunningInstance, BringsWhatWasActiveLastToTheUser) {
    constexpr struct {
        const char* why;
        const char* state;
        const char* foreground;
    } kRows[] = {
        {"as it was", "", kMain},
        {"minimised", "m", kMain},
        {"with a dialog", "d", kDialog},
        {"minimised with a dialog", "dm", kDialog},
    };
    for (const auto& row : kRows) {
        const ChildProcess first = Start(kMain, row.state);
        const ChildProcess other = Start(kOther, "");
        HWND const main = FindWindowA(kMain, nullptr);
        HWND const expected = FindWindowA(row.foreground, nullptr);
        ASSERT_TRUE(main && expected) << row.why;
        SetForegroundWindow(FindWindowA(kOther, nullptr));
        EXPECT_TRUE(Comes_Forward(FindWindowA(kOther, nullptr))) << row.why;
        EXPECT_EQ(IsIconic(main) != FALSE, std::string(row.state).find('m') != std::string::npos);
        EXPECT_TRUE(pFind_Running_Instance(kMain)) << row.why;
        EXPECT_TRUE(Comes_Forward(expected)) << row.why;
        EXPECT_TRUE(IsWindowVisible(main) && !IsIconic(main)) << row.why;
        EXPECT_TRUE(pFind_Running_Instance(kMain)) << row.why;
        EXPECT_TRUE(Comes_Forward(expected)) << row.why;
    }
}

TEST(FindRunningInstance, FindsNoneThatIsNotThere) {
    EXPECT_FALSE(pFind_Running_Instance(kMain));
    const ChildProcess other = Start(kOther, "m");
    EXPECT_FALSE(pFind_Running_Instance(kMain) || pFind_Running_Instance(""));
    EXPECT_TRUE(IsIconic(FindWindowA(kOther, nullptr)));
}

TEST(FindRunningInstance, LeavesNoGhostOfAKilledProcess) {
    for (int round = 0; round < 3; ++round) {
        ChildProcess killed = Start(kMain, "d");
        EXPECT_TRUE(pFind_Running_Instance(kMain));
        ChildProcess second = Start(kMain, "");
        killed.Kill();
        EXPECT_TRUE(pFind_Running_Instance(kMain)) << "the other one of two";
        EXPECT_FALSE(pFind_Running_Instance(kDialog));
        EXPECT_TRUE(second.Write('q'));
        EXPECT_EQ(second.Wait(), 0);
        EXPECT_FALSE(pFind_Running_Instance(kMain));
    }
}

}  // namespace
