// The start of an application's language, over a manager and a registry that write down what they
// are asked.
#include <RVUtils/LanguageSupport.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "recording_manager.h"
#include "report_recorder.h"
#include "scratch.h"

namespace {

using rv_test::ReportRecorder;
using rv_test::Reports;
using rv_test::The_Recording;
using Calls = std::vector<std::string>;

constexpr char kLriPath[] = "Application Settings/LriPath";
constexpr char kAppPath[] = "Application Settings/AppPath";

class LanguageSupport : public testing::Test {
protected:
    LanguageSupport() { The_Recording() = {}; }
    ~LanguageSupport() override { delete m_Manager; }

    bool Init(const char* tag = "abcd") {
        return pInit_Language_Support(m_Loader, m_Manager, tag, GetModuleHandleA(nullptr));
    }
    Calls Take() { return The_Recording().Take(); }

    ReportRecorder m_Reports;
    RVResourceLoader m_Loader;
    RVLanguageManager* m_Manager = nullptr;
};

// What a directory in which nothing opens is asked.
Calls All_Calls(const std::vector<std::string>& directories) {
    Calls calls = {R"(registry 80000002 Software\ZOR Asset Care\ZOR Plant Workbench)",
                   "value LriPath|Application Settings|1", "value AppPath|Application Settings|1"};
    for (const std::string& directory : directories)
        for (const std::string& call :
             {"make " + directory + "|abcd", std::string("open 407 1 1"),
              std::string("open 40c 1 1"), std::string("open 409 1 1"), std::string("end")})
            calls.push_back(call);
    return calls;
}

TEST_F(LanguageSupport, EveryDirectoryInItsOrder) {
    const struct {
        const char *lri, *app;
        std::vector<std::string> directories;
    } kRows[] = {
        {"", "", {R"(.\)", R"(..\..\language)"}},
        {R"(C:\lri)", "", {R"(C:\lri\.\)", R"(.\)", R"(..\..\language)"}},
        {"",
         R"(C:\app)",
         {R"(C:\app\.\)", R"(C:\app\..\..\language)", R"(.\)", R"(..\..\language)"}},
        {R"(C:\lri\)",
         "/app",
         {R"(C:\lri\\.\)", R"(/app\.\)", R"(/app\..\..\language)", R"(.\)", R"(..\..\language)"}},
    };
    for (const auto& row : kRows) {
        The_Recording().registry = {{kLriPath, row.lri}, {kAppPath, row.app}};
        RVLanguageManager* const untouched = m_Loader.Get_Lang_Mgr();
        EXPECT_FALSE(Init());
        EXPECT_EQ(m_Manager, nullptr);
        EXPECT_EQ(m_Loader.Get_Lang_Mgr(), untouched);
        EXPECT_EQ(Take(), All_Calls(row.directories));
        // The same calls as far as the place that serves.
        for (std::size_t i = 0; i < row.directories.size(); ++i) {
            const std::vector<std::string> before(row.directories.begin(),
                                                  row.directories.begin() + static_cast<int>(i));
            Calls expected = All_Calls(before);
            expected.push_back("make " + row.directories[i] + "|abcd");
            for (const char* const call : {"open 407 1 1", "open 40c 1 1", "open 409 1 1"}) {
                expected.push_back(call);
                const auto language = static_cast<unsigned short>(
                    std::stoul(std::string(call).substr(5, 3), nullptr, 16));
                The_Recording().languages = {{row.directories[i], language}};
                EXPECT_TRUE(Init());
                EXPECT_EQ(m_Loader.Get_Lang_Mgr(), m_Manager);
                EXPECT_EQ(Take(), expected);
                pCleanup_Language_Support(m_Loader, m_Manager);
                EXPECT_EQ(Take(), Calls{"end"});
            }
        }
        The_Recording().languages.clear();
    }
    EXPECT_EQ(m_Reports.Take(), Reports{});
}

TEST_F(LanguageSupport, EqualLanguagesAreTriedTwice) {
    The_Recording().user = The_Recording().system = 0x409;
    The_Recording().languages = {{R"(..\..\language)", 0x409}};
    EXPECT_TRUE(Init());
    EXPECT_EQ(Take(),
              (Calls{R"(registry 80000002 Software\ZOR Asset Care\ZOR Plant Workbench)",
                     "value LriPath|Application Settings|1", "value AppPath|Application Settings|1",
                     R"(make .\|abcd)", "open 409 1 1", "open 409 1 1", "open 409 1 1", "end",
                     R"(make ..\..\language|abcd)", "open 409 1 1"}));
    unsigned short language = 99;
    ULONG module = 0;
    m_Loader.Get_Config(language, module);
    EXPECT_EQ(language, 0) << "not the one that opened";
    EXPECT_EQ(module, 0xFFFFFFFF);
    RVString text;
    m_Loader.Load_String(text, 5, 0);
    EXPECT_EQ(Take(), Calls{"string 4294967295/5"});

    pCleanup_Language_Support(m_Loader, m_Manager);
    EXPECT_EQ(m_Manager, nullptr);
    EXPECT_EQ(m_Loader.Get_Lang_Mgr(), nullptr);
    m_Loader.Get_Config(language, module);
    EXPECT_EQ(module, 0U);
    RVLanguageManager other("dir", "tag");
    m_Loader.Set_Config(&other, 5, nullptr);
    Take();
    pCleanup_Language_Support(m_Loader, m_Manager);
    EXPECT_EQ(Take(), Calls{}) << "nothing to end";
    EXPECT_EQ(m_Loader.Get_Lang_Mgr(), nullptr);
}

TEST_F(LanguageSupport, Arguments) {
    The_Recording().languages = {{"*", 0x407}};
    const struct {
        const char* tag;
        bool with_instance;
        Reports reports;
        const char* made;
    } kRows[] = {
        {"a", true, {}, R"(make .\|a)"},
        {"abcd", true, {}, R"(make .\|abcd)"},
        {"abcde", true, {{13, "langsprt"}}, R"(make .\|abcde)"},
        {"", true, {{13, "langsprt"}}, R"(make .\|)"},
        {"a", false, {{11, "langsprt"}}, R"(make .\|a)"},
        {nullptr, false, {{11, "langsprt"}, {12, "langsprt"}}, R"(make .\|)"},
    };
    for (const auto& row : kRows) {
        HINSTANCE const instance = row.with_instance ? GetModuleHandleA(nullptr) : nullptr;
        EXPECT_TRUE(pInit_Language_Support(m_Loader, m_Manager, row.tag, instance));
        EXPECT_EQ(m_Reports.Take(), row.reports);
        const Calls calls = Take();
        ASSERT_EQ(calls.size(), 5U);
        EXPECT_EQ(calls[3], row.made);
        pCleanup_Language_Support(m_Loader, m_Manager);
        Take();
    }
}

TEST_F(LanguageSupport, LiveUpdateAsTheDirectoryThatServesSays) {
    const rv_test::ScratchDirectory first, second;
    const std::string lri = first.Path().string(), app = second.Path().string();
    The_Recording().registry = {{kLriPath, lri}, {kAppPath, app}};
    The_Recording().languages = {{app + "\\.\\", 0x407}};
    rv_test::Write_File(first / "custom.ini", "[Translation]\nLiveMode=1\n");
    const struct {
        const char* file;  // null for none
        bool live;
    } kRows[] = {{nullptr, false},
                 {"", false},
                 {"[Translation]\nLiveMode=0\n", false},
                 {"[Other]\nLiveMode=1\n", false},
                 {"[Translation]\nLiveMode=1\n", true},
                 {"[Translation]\nLiveMode=-3\n", true}};
    for (const auto& row : kRows) {
        if (row.file) rv_test::Write_File(second / "custom.ini", row.file);
        ASSERT_TRUE(Init());
        EXPECT_EQ(Take().back(), row.live ? "live 1" : "open 407 1 1")
            << (row.file ? row.file : "");
        pCleanup_Language_Support(m_Loader, m_Manager);
        Take();
    }
}

TEST_F(LanguageSupport, Messages) {
    EXPECT_FALSE(pHandle_Language_Message(nullptr, 0x10000, 0));
    EXPECT_EQ(m_Reports.Take(), (Reports{{12, "langsprt"}}));
    EXPECT_EQ(Take(), Calls{});
    RVLanguageManager manager("dir", "tag");
    const struct {
        bool known;
        ULONG first, second;
        Calls calls;
    } kRows[] = {{false, 0x10000, 5, {"message c123 10000 5"}},
                 {true, 0x10407, 0xFFFFFFFF, {"message c123 10407 -1", "info"}},
                 {true, 0x20407, 0, {"message c123 20407 0"}},
                 {true, 1, 0, {"message c123 1 0"}},
                 {true, 0x80010000, 0, {"message c123 80010000 0"}}};
    for (const auto& row : kRows) {
        Take();
        The_Recording().knows_messages = row.known;
        EXPECT_EQ(pHandle_Language_Message(&manager, row.first, row.second), row.known);
        EXPECT_EQ(Take(), row.calls) << row.first;
    }
    EXPECT_EQ(m_Reports.Take(), Reports{});
}

}  // namespace
