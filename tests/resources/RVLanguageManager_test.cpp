// The language manager that stands in for the suite's.
#include <RVUtils/CBitmap.h>
#include <RVUtils/RVLanguageManager.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "allocation_sweep.h"
#include "picture.h"
#include "report_recorder.h"
#include "scratch.h"

namespace {

using rv_test::ReportRecorder;
using rv_test::Reports;
using rv_test::ScratchDirectory;
using rv_test::Write_File;

constexpr unsigned short kAustrian = 0xC07, kGerman = 0x407, kFinnish = 0x40B;
constexpr ULONG kApp = 0xFFFFFFFF;

// "(none)" when there is no translation.
std::string Text_Of(RVLanguageManager& manager, ULONG module, ULONG string,
                    ULONG* language = nullptr) {
    RVString text("(none)");
    manager.Get_Translated_Item(module, string, text, language);
    return text.GetString();
}

class LanguageManager : public testing::Test {
protected:
    LanguageManager() {
        Write_File(m_Scratch / "abcd_0407.txt", "app/1 = Januar\napp/2 = Sessel\n7/1 = sieben\n");
        Write_File(m_Scratch / "abcd_0c07.txt", "app/1 = J\xC3\xA4nner\napp/2 =\n");
    }

    std::string Directory() const { return m_Scratch.Path().string(); }

    ScratchDirectory m_Scratch;
    RVLanguageManager m_Manager{Directory().c_str(), "abcd"};
    ReportRecorder m_Reports;
};

TEST_F(LanguageManager, FindsTextsAndFallsBack) {
    EXPECT_EQ(Text_Of(m_Manager, kApp, 1), "(none)") << "nothing is open";
    ASSERT_TRUE(m_Manager.Open_Language(kAustrian, true, true));
    ULONG language = 0;
    const std::string january = Text_Of(m_Manager, kApp, 1, &language);
    EXPECT_TRUE(january == "J\xC3\xA4nner" || january == "J\xE4nner") << january;
    EXPECT_EQ(language, kAustrian);
    EXPECT_EQ(Text_Of(m_Manager, kApp, 2, &language), "Sessel") << "the base's";
    EXPECT_EQ(language, kGerman);
    EXPECT_EQ(Text_Of(m_Manager, 7, 1), "sieben");
    language = 77;
    for (const auto& [module, string] : {std::pair{kApp, 3U}, {7U, 2U}, {0U, 1U}, {kApp, 0x10001U}})
        EXPECT_EQ(Text_Of(m_Manager, module, string, &language), "(none)");
    EXPECT_EQ(language, 77U);

    EXPECT_FALSE(m_Manager.Open_Language(kFinnish, true, true));
    EXPECT_EQ(Text_Of(m_Manager, 7, 1), "sieben") << "what was open stays so";
    ASSERT_TRUE(m_Manager.Open_Language(kAustrian, false, true));
    EXPECT_EQ(Text_Of(m_Manager, kApp, 2), "(none)") << "without the base";
    EXPECT_FALSE(m_Manager.Open_Language(0x807, false, true));
    EXPECT_TRUE(m_Manager.Open_Language(0x807, true, true)) << "the base alone";
    EXPECT_EQ(Text_Of(m_Manager, kApp, 1), "Januar");
    EXPECT_EQ(m_Reports.Take_Traces(), Reports{});
}

TEST_F(LanguageManager, DirectoriesAndTags) {
    const struct {
        std::string directory, tag;
        bool opens;
    } kRows[] = {{Directory() + "/", "abcd", true}, {Directory() + "\\.\\", "abcd", true},
                 {Directory(), "", false},          {Directory(), "abcde", false},
                 {Directory(), "../abcd", false},   {Directory() + "/none", "abcd", false},
                 {Directory(), "ab*d", false},      {Directory(), std::string(5000, 'a'), false}};
    for (const auto& row : kRows) {
        RVLanguageManager manager(row.directory.c_str(), row.tag.c_str());
        EXPECT_EQ(manager.Open_Language(kGerman, true, true), row.opens)
            << row.directory << row.tag;
    }
}

TEST_F(LanguageManager, ADamagedFileIsRefused) {
    ASSERT_TRUE(m_Manager.Open_Language(kGerman, true, true));
    const std::string path = m_Scratch / "abcd_040b.txt";
    Write_File(path, "app/1 = tammikuu\nperkele\n");
    EXPECT_FALSE(m_Manager.Open_Language(kFinnish, true, true));
    EXPECT_EQ(m_Reports.Take_Traces(),
              (Reports{{1, path + ":2: the line is no item; write MODULE/STRING = TEXT, or a # in "
                                  "front of a comment"}}));
    EXPECT_EQ(Text_Of(m_Manager, kApp, 1), "Januar");
}

TEST_F(LanguageManager, Images) {
    const auto copy = [this](const char* from, const char* to) {
        Write_File(m_Scratch / to,
                   rv_test::Read_File(std::string(RESOURCES_DIRECTORY) + '/' + from));
    };
    copy("flag.bmp", "abcd_0c07_130.bmp");
    copy("flag.bmp", "abcd_0407_4294967295.bmp");
    copy("disc.ico", "abcd_0c07_131.ico");
    copy("arrow.cur", "abcd_0c07_132.cur");
    Write_File(m_Scratch / "abcd_0c07_133.bmp", "BM");
    ASSERT_TRUE(m_Manager.Open_Language(kAustrian, true, true));
    const auto find = [this](ULONG id, unsigned int expected) {
        void* handle = nullptr;
        unsigned int kind = 99;
        const bool found = m_Manager.Get_Translated_Item(id, &handle, &kind);
        EXPECT_EQ(found, handle != nullptr) << id;
        EXPECT_EQ(kind, expected) << id;
        return handle;
    };
    CBitmap first, second, base;
    EXPECT_TRUE(first.Attach(find(130, IMAGE_BITMAP)));
    EXPECT_TRUE(second.Attach(find(130, IMAGE_BITMAP))) << "a new one each time";
    EXPECT_TRUE(base.Attach(find(4294967295, IMAGE_BITMAP)));
    EXPECT_EQ(rv_test::Picture_Of(second), "bbbww\nbbwwr\nbwwrr\n");
    void* const icon = find(131, IMAGE_ICON);
    EXPECT_NE(icon, nullptr);
    EXPECT_EQ(find(131, IMAGE_ICON), icon) << "the manager's own";
    EXPECT_NE(find(132, IMAGE_CURSOR), nullptr);
    EXPECT_EQ(find(134, 99), nullptr);
    EXPECT_EQ(m_Reports.Take_Traces(), Reports{});
    EXPECT_EQ(find(133, 99), nullptr);
    EXPECT_EQ(m_Reports.Take_Traces(),
              (Reports{{1, (m_Scratch / "abcd_0c07_133.bmp") +
                               ": the file is cut off; take a whole copy"}}));
    ASSERT_TRUE(m_Manager.Open_Language(kAustrian, true, false));
    EXPECT_EQ(find(131, 99), nullptr) << "without images";
}

// Whether the text becomes the one expected within some seconds.
bool Becomes(RVLanguageManager& manager, const std::string& expected) {
    for (int round = 0; round < 100; ++round) {
        if (Text_Of(manager, kApp, 1) == expected) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    return false;
}

TEST_F(LanguageManager, LiveUpdate) {
    const std::string path = m_Scratch / "abcd_0407.txt";
    ASSERT_TRUE(m_Manager.Open_Language(kAustrian, true, true));
    ASSERT_TRUE(m_Manager.Open_Language(kGerman, true, true));
    RV_file_info2 info;
    Write_File(path, "app/1 = neu\n");
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_EQ(Text_Of(m_Manager, kApp, 1), "Januar") << "the mode is off";
    EXPECT_FALSE(m_Manager.Set_Live_Update_Mode(true));
    EXPECT_TRUE(Becomes(m_Manager, "neu"));
    Write_File(path, "app/1 = half a li");
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(Text_Of(m_Manager, kApp, 1), "neu") << "until it is whole";
    EXPECT_EQ(m_Reports.Take_Traces().size(), 1U) << "one report";
    Write_File(path, "app/1 = whole line\n");
    EXPECT_TRUE(Becomes(m_Manager, "whole line"));
    EXPECT_TRUE(m_Manager.Set_Live_Update_Mode(false));
    Write_File(path, "app/1 = at a tool's wish\napp/2 = two\n");
    ASSERT_TRUE(m_Manager.Get_Translation_Info(info));
    EXPECT_EQ(Text_Of(m_Manager, kApp, 1), "at a tool's wish");
    EXPECT_STREQ(info.m_Path, path.c_str());
    EXPECT_EQ(info.m_Language, kGerman);
    EXPECT_EQ(info.m_Strings, 2U);
}

TEST_F(LanguageManager, MessagesOfTheTools) {
    const unsigned int message = rvGet_Language_Tools_Message_Id();
    EXPECT_GE(message, 0xC000U);
    EXPECT_EQ(rvGet_Language_Tools_Message_Id(), message);
    EXPECT_FALSE(m_Manager.Is_Language_Message(message, 0, 0)) << "nothing is open";
    RV_file_info2 info;
    info.m_Strings = 5;
    EXPECT_FALSE(m_Manager.Get_Translation_Info(info));
    EXPECT_EQ(info.m_Strings, 0U);
    ASSERT_TRUE(m_Manager.Open_Language(kAustrian, true, true));
    const struct {
        unsigned int message, first;
        bool is_ours;
    } kRows[] = {{message, 0x00010000, true},        {message, 0x00020000 | kAustrian, true},
                 {message, 0x10000 | kGerman, true}, {message, 0x00010000 | kFinnish, false},
                 {message + 1, 0x00010000, false},   {0, 0, false}};
    for (const auto& row : kRows)
        EXPECT_EQ(m_Manager.Is_Language_Message(row.message, row.first, -1), row.is_ours)
            << row.first;
}

TEST_F(LanguageManager, ThreadsAskWhileFilesChange) {
    ASSERT_TRUE(m_Manager.Open_Language(kGerman, true, true));
    std::atomic<bool> stop = false;
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            while (!stop) {
                const std::string text = Text_Of(m_Manager, kApp, 1);
                EXPECT_TRUE(text == "Januar" || text == "neu") << text;
            }
        });
    }
    RV_file_info2 info;
    for (int round = 0; round < 50; ++round) {
        Write_File(m_Scratch / "abcd_0407.txt", round % 2 ? "app/1 = neu\n" : "app/1 = Januar\n");
        EXPECT_TRUE(m_Manager.Get_Translation_Info(info));
    }
    stop = true;
    for (std::thread& thread : threads)
        thread.join();
}

TEST_F(LanguageManager, ExhaustedMemory) {
    const std::string long_text(100, 'x');
    Write_File(m_Scratch / "abcd_0407.txt", "app/1 = " + long_text + '\n');
    const int failures = rv_test::Sweep_Allocations([&] {
        bool opened = false;
        try {
            RVLanguageManager manager(Directory().c_str(), "abcd");
            ASSERT_TRUE(manager.Open_Language(kAustrian, true, true));
            opened = true;
            ASSERT_TRUE(manager.Open_Language(kGerman, true, true));
            EXPECT_EQ(Text_Of(manager, kApp, 1), long_text);
        } catch (CMemoryException* exception) {
            exception->Delete();
            EXPECT_TRUE(rv_test::FailingAllocation::Failed()) << opened;
        }
    });
    EXPECT_GE(failures, 5);
}

}  // namespace
