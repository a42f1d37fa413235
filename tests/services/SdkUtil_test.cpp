// Paths and numbers as text.
#include <RVUtils/CException.h>
#include <RVUtils/SdkUtil.h>
#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "allocation_sweep.h"
#include "environment.h"
#include "report_recorder.h"
#include "scratch.h"
#if !defined(_WIN32)
#include "test_locales.h"
#endif

namespace {

using namespace rv_test;
namespace fs = std::filesystem;

TEST(CombineFilePath, PutsOneBackslashBetweenTheParts) {
    const struct {
        const char *first, *second, *expected;  // null stands for null
        unsigned int code = 0;                  // 0: none
    } kRows[] = {{"C:\\a", "b.txt", "C:\\a\\b.txt"},
                 {"C:\\a\\", "b.txt", "C:\\a\\b.txt"},
                 {"C:\\a", "\\b.txt", "C:\\a\\b.txt"},
                 {"C:\\a\\", "\\b.txt", "C:\\a\\b.txt"},
                 {"C:\\a\\", "\\\\b.txt", "C:\\a\\\\b.txt"},
                 {"C:\\a", "\\", "C:\\a\\"},
                 {"C:/a/", "/b\xFC.txt", "C:/a/\\/b\xFC.txt"},
                 {"C:\\a", "", "C:\\a", 13},
                 {"", "b.txt", "", 13},
                 {"C:\\a", nullptr, "C:\\a", 12},
                 {nullptr, "b.txt", "", 12}};
    ReportRecorder reports;
    for (const auto& row : kRows) {
        RVString first(row.first), second(row.second);
        EXPECT_STREQ(
            pCombine_File_Path(row.first ? &first : nullptr, row.second ? &second : nullptr),
            row.expected);
        EXPECT_EQ(reports.Take(), row.code ? Reports({{row.code, "SdkUtil"}}) : Reports());
    }
}

// Under a locale with another point and another mark of thousands.
TEST(SqlDoubleToString, AgreesWithDecimalArithmetic) {
#if defined(_WIN32)
    ASSERT_TRUE(std::setlocale(LC_NUMERIC, "German"));
#else
    const char* const kNames[] = {"de_DE.UTF-8"};
    const TestLocales locales(kNames);
    ASSERT_TRUE(std::setlocale(LC_NUMERIC, kNames[0]));
#endif
    const char* const other = std::getenv("RVUTILS_NUMBER_TEXTS");
    std::ifstream vectors(other ? other : RVUTILS_TEST_NUMBER_TEXTS);
    std::string bits, expected;
    int count = 0, wrong = 0;
    RVString text("what was there before, and was longer than the text that comes");
    for (; vectors >> bits >> expected && wrong < 20; ++count) {
        const std::uint64_t number = std::stoull(bits, nullptr, 16);
        EXPECT_TRUE(pSQL_Double_To_String(text, std::bit_cast<double>(number)));
        EXPECT_EQ(text.GetString(), expected) << bits;
        wrong += expected != text.GetString();
    }
    std::setlocale(LC_NUMERIC, "C");
    EXPECT_GT(count, 300);
    RecordProperty("doubles", count);
}

// What this machine has for all users: of the system's own on Windows, which the test leaves alone
// where an application has been before.
class AppDataPath : public testing::Test {
protected:
    ~AppDataPath() override { fs::remove_all(m_Mine); }

    ReportRecorder m_Reports;
    ScratchDirectory m_Scratch;
#if defined(_WIN32)
    fs::path m_Common = std::string(std::getenv("ProgramData"));
#else
    fs::path m_Common = m_Scratch.Path() / "all users";
    Environment m_Variable{"RVUTILS_APPDATA", m_Common.string() + "/"};
#endif
    fs::path m_Mine = fs::exists(m_Common / "ZOR") ? fs::path() : m_Common / "ZOR";
    std::string m_Expected = m_Common.string() + "\\ZOR\\Trellis Workbench";
    RVString m_Path = "before";
};

TEST_F(AppDataPath, IsMadeOnceAndFoundThen) {
    for (int call = 0; call < 2; ++call) {
        EXPECT_TRUE(pGet_App_Data_Path(m_Path));
        EXPECT_EQ(std::exchange(m_Path, "before").GetString(), m_Expected);
        EXPECT_TRUE(fs::is_directory(m_Common / "ZOR" / "Trellis Workbench"));
    }
    EXPECT_TRUE(m_Reports.Take().empty());
    Sweep_Allocations([&] {
        try {
            pGet_App_Data_Path(m_Path);
        } catch (CMemoryException* exception) {
            exception->Delete();
            EXPECT_STREQ(m_Path, "before");
        }
        m_Path = "before";
    });
}

TEST_F(AppDataPath, IsToldWhereItCannotBeMade) {
    if (m_Mine.empty()) GTEST_SKIP() << "the folder of this machine is left alone";
    fs::create_directories(m_Common);
    Write_File(m_Mine.string(), "");
    EXPECT_FALSE(pGet_App_Data_Path(m_Path));
    EXPECT_EQ(m_Path.GetString(), m_Expected);
    EXPECT_EQ(m_Reports.Take(), (Reports{{25, "SdkUtil"}}));
#if !defined(_WIN32)
    for (const std::string& folder : {m_Mine.string() + "/below", std::string(260, 'x')}) {
        const Environment variable("RVUTILS_APPDATA", folder);
        EXPECT_FALSE(pGet_App_Data_Path(m_Path = "before"));
        EXPECT_STREQ(m_Path, "before");
    }
#endif
}

}  // namespace
