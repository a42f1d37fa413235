// The loader, over a manager that writes down what it is asked.
#include <RVUtils/CBitmap.h>
#include <RVUtils/RVResourceLoader.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "allocation_sweep.h"
#include "recording_manager.h"
#include "report_recorder.h"
#include "test_ids.h"

namespace {

using rv_test::The_Recording;
using Calls = std::vector<std::string>;

constexpr unsigned short kEnglish = 0x409, kFinnish = 0x40B;

HINSTANCE Own_Module() {
    return GetModuleHandleA(nullptr);
}

class ResourceLoader : public testing::Test {
protected:
    ResourceLoader() { The_Recording() = {}; }

    Calls Take() { return The_Recording().Take(); }

    rv_test::ReportRecorder m_Reports;
};

std::string Load(RVResourceLoader& loader, ULONG string, ULONG module) {
    RVString text("what was there");
    const bool found = loader.Load_String(text, string, module);
    EXPECT_EQ(found, !text.IsEmpty());
    return text.GetString();
}

std::pair<unsigned short, ULONG> Config_Of(const RVResourceLoader& loader) {
    unsigned short language = 99;
    ULONG module = 99;
    loader.Get_Config(language, module);
    return {language, module};
}

using Config = std::pair<unsigned short, ULONG>;

TEST_F(ResourceLoader, Configurations) {
    The_Recording().languages = {{"dir", 0x407}, {"dir", 0x40B}};
    std::optional<RVResourceLoader> loader(std::in_place, "dir", "tag", 0x407, 5, nullptr);
    EXPECT_EQ(Take(), (Calls{"make dir|tag", "open 407 1 1"}));
    EXPECT_EQ(Config_Of(*loader), Config(0x407, 5));
    EXPECT_NE(loader->Get_Lang_Mgr(), nullptr);

    EXPECT_FALSE(loader->Set_Config(kEnglish));
    EXPECT_EQ(Config_Of(*loader), Config(0x407, 5)) << "the language before";
    EXPECT_TRUE(loader->Set_Config(kFinnish));
    loader->Set_Config(ULONG{6});
    EXPECT_EQ(Config_Of(*loader), Config(0x40B, 6));
    EXPECT_EQ(Take(), (Calls{"open 409 1 1", "open 40b 1 1"}));

    EXPECT_FALSE(loader->Set_Config("none", "tag", 0x407, 7, nullptr));
    EXPECT_EQ(Take(), (Calls{"end", "make none|tag", "open 407 1 1"}));
    EXPECT_NE(loader->Get_Lang_Mgr(), nullptr) << "it is asked all the same";
    EXPECT_EQ(Config_Of(*loader), Config(0x40B, 7));

    RVLanguageManager borrowed("dir", "lent");
    Take();
    loader->Set_Config(&borrowed, 8, nullptr);
    EXPECT_EQ(Take(), (Calls{"end"})) << "its own, once";
    EXPECT_EQ(loader->Get_Lang_Mgr(), &borrowed);
    EXPECT_EQ(Config_Of(*loader), Config(0x40B, 8));
    loader.reset();
    EXPECT_EQ(Take(), Calls{}) << "not the borrowed one";

    loader.emplace("dir", "tag", 0x409, 5, nullptr);
    EXPECT_EQ(Config_Of(*loader), Config(0, 5)) << "none has opened";
    loader.reset();
    EXPECT_EQ(Take(), (Calls{"make dir|tag", "open 409 1 1", "end"}));
    EXPECT_EQ(m_Reports.Take(), rv_test::Reports{});
}

TEST_F(ResourceLoader, WithoutAManager) {
    RVResourceLoader loader;
    EXPECT_EQ(Config_Of(loader), Config(0, 0));
    EXPECT_EQ(loader.Get_Lang_Mgr(), nullptr);
    EXPECT_FALSE(loader.Set_Config(kEnglish));
    EXPECT_EQ(Config_Of(loader), Config(0, 0));
    EXPECT_EQ(Load(loader, IDS_FIRST, 0), "the first") << "the application's own";
    HBITMAP bitmap = nullptr;
    EXPECT_FALSE(loader.Load_Bitmap(bitmap, IDB_FLAG)) << "of no module";
    EXPECT_EQ(Take(), Calls{});
}

TEST_F(ResourceLoader, Strings) {
    RVLanguageManager manager("dir", "tag");
    RVResourceLoader loader(&manager, 5, Own_Module());
    The_Recording().texts = {
        {{5, IDS_FIRST}, "stored"}, {{6, IDS_FIRST}, "named"}, {{5, IDS_JOINED}, ""}};
    Take();
    constexpr struct {
        ULONG string, module;
        const char *text, *call;
    } kRows[] = {
        {IDS_FIRST, 0, "stored", "string 5/1"},
        {IDS_FIRST, 6, "named", "string 6/1"},
        {IDS_FIRST, 0xFFFFFFFF, "the first", "string 4294967295/1"},
        {IDS_JOINED, 5, "one text of two", "string 5/100"},  // an empty translation
        {IDS_LAST, 0, "the last", "string 5/65535"},
        {3, 0, "", "string 5/3"},
        {4000000000, 0, "", "string 5/4000000000"},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(Load(loader, row.string, row.module), row.text);
        EXPECT_EQ(Take(), Calls{row.call});
    }
}

TEST_F(ResourceLoader, Images) {
    RVLanguageManager manager("dir", "tag");
    RVResourceLoader loader(&manager, 5, Own_Module());
    HBITMAP const translated = LoadBitmapA(Own_Module(), MAKEINTRESOURCEA(IDB_FLAG));
    auto* const other = reinterpret_cast<HICON>(translated);
    The_Recording().images = {{0x20000 + IDB_FLAG, translated}, {7, other}};
    Take();
    HBITMAP bitmap = translated;
    EXPECT_TRUE(loader.Load_Bitmap(bitmap, IDB_FLAG));
    EXPECT_NE(bitmap, translated) << "the module's";
    EXPECT_TRUE(DeleteObject(bitmap));
    EXPECT_TRUE(loader.Load_Bitmap(bitmap, 0x10000 + IDB_FLAG)) << "its low 16 bits";
    EXPECT_TRUE(DeleteObject(bitmap));
    EXPECT_TRUE(loader.Load_Bitmap(bitmap, 0x20000 + IDB_FLAG));
    EXPECT_EQ(bitmap, translated);
    EXPECT_FALSE(loader.Load_Bitmap(bitmap, 6));
    EXPECT_EQ(bitmap, nullptr);
    EXPECT_EQ(Take(), (Calls{"image 130", "image 65666", "image 131202", "image 6"}));

    HICON icon = other, cursor = other;
    EXPECT_TRUE(loader.Load_Icon(icon, 0xFFFF0000 + IDI_DISC));
    EXPECT_EQ(icon, LoadIconA(Own_Module(), MAKEINTRESOURCEA(IDI_DISC)));
    EXPECT_TRUE(loader.Load_Cursor(cursor, IDC_POINTER));
    EXPECT_EQ(cursor, LoadCursorA(Own_Module(), MAKEINTRESOURCEA(IDC_POINTER)));
    EXPECT_FALSE(loader.Load_Icon(icon, IDC_POINTER));
    EXPECT_FALSE(loader.Load_Cursor(cursor, IDI_DISC));
    EXPECT_EQ(icon, nullptr);
    EXPECT_EQ(cursor, nullptr);
    EXPECT_TRUE(loader.Load_Icon(icon, 7) && icon == other);
    EXPECT_TRUE(loader.Load_Cursor(cursor, 7) && cursor == other);

    CBitmap object;
    EXPECT_FALSE(loader.Load_Bitmap(object, 6));
    EXPECT_EQ(object.GetSafeHandle(), nullptr);
    EXPECT_TRUE(loader.Load_Bitmap(object, 0x20000 + IDB_FLAG));
    EXPECT_EQ(object.GetSafeHandle(), translated);
    EXPECT_FALSE(loader.Load_Bitmap(object, IDB_FLAG)) << "it has one";
    EXPECT_EQ(object.GetSafeHandle(), translated);
}

TEST_F(ResourceLoader, ThreadsAskOneAfterTheOther) {
    RVLanguageManager manager("dir", "tag");
    RVResourceLoader loader(&manager, 5, Own_Module());
    The_Recording().texts = {{{5, 1}, "translated"}};
    std::atomic<int> inside = 0, most = 0;
    The_Recording().while_asked = [&] {
        const int now = ++inside;
        if (now > most) most = now;
        std::this_thread::yield();
        --inside;
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 200; ++round)
                EXPECT_EQ(Load(loader, 1, 0), "translated");
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(most, 1);
}

TEST_F(ResourceLoader, AManagerThatHangsStopsNobodyForGood) {
    RVLanguageManager manager("dir", "tag");
    RVResourceLoader loader(&manager, 5, Own_Module());
    The_Recording().texts = {{{5, 1}, "translated"}};
    std::promise<void> hangs, goes_on;
    std::atomic<bool> first = true;
    The_Recording().while_asked = [&] {
        if (!first.exchange(false)) return;
        hangs.set_value();
        goes_on.get_future().wait();
    };
    std::thread hanging([&] { EXPECT_EQ(Load(loader, 1, 0), "translated"); });
    hangs.get_future().wait();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Load(loader, 1, 0), "translated");
    const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - start;
    EXPECT_GE(waited.count(), 0.9);
    EXPECT_LT(waited.count(), 10);
    goes_on.set_value();
    hanging.join();
    const auto again = std::chrono::steady_clock::now();
    EXPECT_EQ(Load(loader, 1, 0), "translated");
    EXPECT_LT(std::chrono::steady_clock::now() - again, std::chrono::milliseconds(900));
}

TEST_F(ResourceLoader, ExhaustedMemory) {
    int without_mutex = 0;
    rv_test::Sweep_Allocations([&] {
        RVResourceLoader loader("dir", "tag", 0x407, 5, Own_Module());
        for (const auto& report : m_Reports.Take()) {
            EXPECT_EQ(report, (std::pair<unsigned int, std::string>(23, "ResLoad")));
            ++without_mutex;
        }
        try {
            EXPECT_EQ(Load(loader, IDS_FIRST, 0), "the first");
        } catch (CMemoryException* exception) {
            exception->Delete();
        }
    });
    EXPECT_GE(without_mutex, 1);
    // As many as were made.
    const Calls calls = Take();
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "end"),
              std::count(calls.begin(), calls.end(), "make dir|tag"));
}

}  // namespace
