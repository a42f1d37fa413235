// Column widths from run to run, and the settings component that keeps them.
#include <RVUtils/CComBSTR.h>
#include <RVUtils/RVSettings.h>
#include <RVUtils/SettingsHost.h>
#include <gtest/gtest.h>

#include <string>

#include "child_process.h"
#include "test_registry.h"

namespace {

using namespace rv_test;

constexpr char kSettings[] = "Software\\ZOR Asset Care\\ZOR Plant Workbench\\Settings";

// What a run of the application finds before it drags a border.
std::string Widths_Of_A_Run(const char* pixels) {
    ChildProcess run("tests_list_child", {pixels});
    std::string widths;
    while (const auto byte = run.Read())
        widths += *byte;
    EXPECT_EQ(run.Wait(), 0);
    return widths;
}

TEST(Settings, KeepWidthsFromRunToRun) {
    const TestRegistry registry(HKEY_CURRENT_USER, kSettings);
    EXPECT_EQ(Widths_Of_A_Run("25"), "60 70 80 ");
    {
        const TestKey key(HKEY_CURRENT_USER, kSettings);
        EXPECT_EQ(key.Get("ListCtrlColWidthkept"), std::string("1:85\\70\\80\0", 11));
        EXPECT_EQ(key.Set("ListCtrlColWidthkept", REG_SZ, std::string("85\\90\0", 6)), 0);
    }
    EXPECT_EQ(Widths_Of_A_Run("-20"), "85 90 80 ");
    EXPECT_EQ(Widths_Of_A_Run("0"), "65 90 80 ");
}

TEST(Settings, KeepTextsByKey) {
    const TestRegistry registry(HKEY_CURRENT_USER, kSettings);
    IUnknown* const host = pCreate_Settings_Host();
    IRVHostServices* services = nullptr;
    IRVSettingsStore* store = nullptr;
    ASSERT_EQ(host->QueryInterface(IID_IRVHostServices, reinterpret_cast<void**>(&services)), S_OK);
    void* refused = &store;
    EXPECT_LT(host->QueryInterface(IID_IRVSettingsStore, &refused), 0);
    EXPECT_EQ(refused, nullptr);
    refused = &store;
    EXPECT_LT(services->Get_Service(IID_IRVHostServices, &refused), 0);
    EXPECT_EQ(refused, nullptr);
    ASSERT_EQ(services->Get_Service(IID_IRVSettingsStore, reinterpret_cast<void**>(&store)), S_OK);
    services->Release();
    EXPECT_EQ(host->Release(), 0U);

    const CComBSTR key(L"one"), same_key(L"ONE");
    BSTR text = nullptr;
    EXPECT_LT(store->Get_Text(key, 0, &text), 0) << "no text yet";
    for (const std::size_t length : {0U, 1U, 255U, 256U, 257U, 5000U}) {
        const std::wstring expected(length, L'x');
        EXPECT_EQ(store->Set_Text(key, 0, CComBSTR(expected.c_str())), S_OK);
        EXPECT_EQ(store->Has_Text(same_key, 0), S_OK);
        ASSERT_EQ(store->Get_Text(same_key, 0, &text), S_OK) << length;
        EXPECT_EQ(std::wstring(text, SysStringLen(text)), expected);
        SysFreeString(text);
    }
    EXPECT_EQ(store->Remove_Text(key, 0), S_OK);
    EXPECT_EQ(store->Has_Text(key, 0), S_FALSE);
    EXPECT_LT(store->Remove_Text(key, 0), 0);
    EXPECT_LT(store->Get_Text(key, 0, &text), 0);
    EXPECT_EQ(text, nullptr);
    EXPECT_EQ(store->Release(), 0U);
}

}  // namespace
