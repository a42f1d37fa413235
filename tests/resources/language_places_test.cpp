// The start of an application's language with files, and with values in a registry.
#include <RVUtils/LanguageSupport.h>
#include <RVUtils/SuiteConstants.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "allocation_sweep.h"
#include "test_registry.h"

namespace {

namespace fs = std::filesystem;

// Each place that may hold the language files, in the order in which they are looked at.
constexpr const char* kPlaces[] = {"lri", "app/bin/x64", "app/language", "cwd/bin/x64",
                                   "cwd/language"};

class LanguagePlaces : public testing::Test {
protected:
    LanguagePlaces() {
        for (const char* const place : kPlaces)
            fs::create_directories(m_Scratch / place);
        const rv_test::TestKey section(
            HKEY_LOCAL_MACHINE, std::string(rv::kSuiteKey) + '\\' + rv::kApplicationSettings);
        section.Set(rv::kLanguagePath, REG_SZ, m_Scratch / "lri" + '\0');
        section.Set(rv::kApplicationPath, REG_SZ, m_Scratch / "app/bin/x64" + '\0');
        fs::current_path(m_Scratch / "cwd/bin/x64");
    }
    ~LanguagePlaces() override {
        pCleanup_Language_Support(m_Loader, m_Manager);
        fs::current_path(m_Before);
    }

    void Write(const std::string& place, const std::string& name, const std::string& text) {
        rv_test::Write_File(m_Scratch / (place + '/' + name), text);
    }
    bool Init() {
        return pInit_Language_Support(m_Loader, m_Manager, "abcd", GetModuleHandleA(nullptr));
    }
    std::string Text() {
        RVString text;
        m_Loader.Load_String(text, 60000);
        return text.GetString();
    }

    RVResourceLoader m_Loader;
    RVLanguageManager* m_Manager = nullptr;

private:
    rv_test::ScratchDirectory m_Scratch;
    rv_test::TestRegistry m_Registry{HKEY_LOCAL_MACHINE, rv::kSuiteKey};
    fs::path m_Before = fs::current_path();
};

TEST_F(LanguagePlaces, AreLookedAtInTheirOrder) {
    EXPECT_FALSE(Init());
    EXPECT_EQ(m_Manager, nullptr);
    for (std::size_t at = std::size(kPlaces); at-- > 0;) {
        Write(kPlaces[at], "abcd_0409.txt", std::string("app/60000 = ") + kPlaces[at] + '\n');
        ASSERT_TRUE(Init()) << kPlaces[at];
        EXPECT_EQ(Text(), kPlaces[at]);
        EXPECT_FALSE(m_Manager->Set_Live_Update_Mode(false));
        pCleanup_Language_Support(m_Loader, m_Manager);
        EXPECT_EQ(Text(), "");
    }
    Write(kPlaces[0], "custom.ini", "[Translation]\nLiveMode=1\n");
    ASSERT_TRUE(Init());
    EXPECT_TRUE(m_Manager->Set_Live_Update_Mode(false));
}

TEST_F(LanguagePlaces, AreNoneWithoutMemory) {
    Write(kPlaces[4], "abcd_0409.txt", "app/60000 = text\n");
    const int failures = rv_test::Sweep_Exceptions(
        [&] {
            // Where the manager itself finds no room, the result tells.
            if (Init()) pCleanup_Language_Support(m_Loader, m_Manager);
        },
        [&] {
            EXPECT_EQ(m_Manager, nullptr);
            EXPECT_EQ(m_Loader.Get_Lang_Mgr(), nullptr);
        });
    EXPECT_GT(failures, 30);
}

}  // namespace
