// Which applications a plug-in serves, as the registry tells.
#include <RVUtils/RVRegCategory.h>
#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "allocation_sweep.h"
#include "test_registry.h"

namespace {

using rv_test::TestKey;

constexpr GUID kClass = {0x0A1B2C3D, 0x0E0F, 0x1234, {0x01, 2, 3, 4, 5, 6, 7, 0xAB}};
const std::string kClassPath = "CLSID\\{0A1B2C3D-0E0F-1234-0102-0304050607AB}";
const std::string kListPath = kClassPath + "\\Implemented Categories";

bool Is_There(const std::string& path) {
    HKEY key = nullptr;
    const LSTATUS status = RegOpenKeyExA(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, &key);
    if (status == ERROR_SUCCESS) RegCloseKey(key);
    return status == ERROR_SUCCESS;
}

class RegCategory : public testing::Test {
protected:
    RVRegCategory m_Plug_In{kClass};

private:
    struct Com {
        Com() { CoInitialize(nullptr); }
        ~Com() { CoUninitialize(); }
    } m_Com;
    rv_test::TestRegistry m_Registry{HKEY_CLASSES_ROOT, kClassPath};
};

TEST_F(RegCategory, EntersTheClassUnderEachApplication) {
    const struct {
        short application;
        std::string category, description;
    } kRows[] = {
        {1, "{FC46E63A-6B62-11D1-A7EF-0080C83BFCEB}", "ZOR Plant Workbench Application"},
        {2, "{FC46E63B-6B62-11D1-A7EF-0080C83BFCEB}", "ZOR Plant Sentinel Application"},
        {3, "{FC46E63C-6B62-11D1-A7EF-0080C83BFCEB}", "ZOR Plant Records Extension"},
        {4, "{79436EED-46EE-40D2-880A-500DE9341D0E}", "ZOR Plant Walkdown Application"},
        {5, "{7233E09D-64DF-4D96-9776-3E109F51910D}", "ZOR Plant Viewpoint Application"},
        {6, "{FC46E63D-6B62-11D1-A7EF-0080C83BFCEB}", "ZOR Plant Estate Application"},
        {7, "{C967A136-53A2-4F65-A63C-6A0E01DA6209}", "ZOR Plant Workbench Entry Application"},
        {8, "{72C1DAF8-8985-4B89-BFA8-E431902D1184}", "ZOR Plant Sentinel Server"},
        {9, "{E1203930-22C2-4791-BF75-590B1186B046}", "ZOR Plant Remote Client Application"},
        {10, "{7EC1322D-FF99-49B2-9C20-0521A101E0F5}",
         "ZOR Plant Workbench Field Partner Application"},
    };
    for (const auto& row : kRows) {
        const RVRegCategory copy = m_Plug_In;
        EXPECT_TRUE(copy.Register_For_Application(row.application)) << row.application;
        EXPECT_TRUE(Is_There(kListPath + '\\' + row.category)) << row.application;
        EXPECT_EQ(TestKey(HKEY_CLASSES_ROOT, "Component Categories\\" + row.category, KEY_READ)
                      .Get("409"),
                  "1:" + row.description + '\0');
    }
    for (const auto& row : kRows) {
        EXPECT_TRUE(Is_There(kListPath)) << row.application;
        EXPECT_TRUE(m_Plug_In.Unregister_For_Application(row.application));
        EXPECT_FALSE(Is_There(kListPath + '\\' + row.category)) << row.application;
        EXPECT_TRUE(Is_There("Component Categories\\" + row.category)) << row.application;
    }
    EXPECT_FALSE(Is_There(kListPath));
    EXPECT_TRUE(Is_There(kClassPath));
}

TEST_F(RegCategory, BearsWhatIsThereAlreadyOrNotThere) {
    EXPECT_TRUE(m_Plug_In.Unregister_For_Application(5));
    EXPECT_FALSE(Is_There(kClassPath));
    TestKey(HKEY_CLASSES_ROOT, kClassPath);
    EXPECT_TRUE(m_Plug_In.Unregister_For_Application(5));
    EXPECT_TRUE(m_Plug_In.Register_For_Application(5));
    EXPECT_TRUE(m_Plug_In.Register_For_Application(5));
    TestKey(HKEY_CLASSES_ROOT, kListPath).Set("somebody's", REG_SZ, "");
    EXPECT_TRUE(m_Plug_In.Unregister_For_Application(5));
    EXPECT_TRUE(Is_There(kListPath)) << "a value is left";
    for (const short none : std::initializer_list<short>{0, 11, -1, -32768}) {
        EXPECT_FALSE(m_Plug_In.Register_For_Application(none)) << none;
        EXPECT_FALSE(m_Plug_In.Unregister_For_Application(none)) << none;
    }
}

TEST_F(RegCategory, FailsWithoutMemory) {
    testing::internal::CaptureStderr();  // the boxes
    const int failures = rv_test::Sweep_Allocations([&] {
        const bool done = m_Plug_In.Register_For_Application(1);
        EXPECT_TRUE(!done || Is_There(kListPath + "\\{FC46E63A-6B62-11D1-A7EF-0080C83BFCEB}"));
    });
    testing::internal::GetCapturedStderr();
    EXPECT_TRUE(failures == 0 || failures > 20) << failures;  // Windows has memory of its own
}

}  // namespace
