#include <RVUtils/CException.h>
#include <RVUtils/CWinApp.h>
#include <RVUtils/RVWaitCursor.h>
#include <gtest/gtest.h>

#include <optional>
#include <regex>
#include <string>

namespace {

struct Failure : CException {
    explicit Failure(const char* text) : m_Text(text) { ++s_Count; }
    ~Failure() override { --s_Count; }
    BOOL GetErrorMessage(char* text, UINT room) const noexcept override {
        EXPECT_EQ(room, 512U);
        return m_Text && std::string(m_Text).copy(text, room) && !(text[4] = 0);
    }

    static inline int s_Count = 0;
    const char* const m_Text;
};

struct Application : CWinApp {
    void DoWaitCursor(int code) override {
        codes.push_back(code);
        CWinApp::DoWaitCursor(code);
        if (code < 0 && fails) throw new Failure(text);
    }
    int DoMessageBox(const char* message, UINT, UINT) override {
        shown = message;
        return 1;
    }

    std::vector<int> codes;
    bool fails = false;
    const char* text = nullptr;
    std::string shown;
};

TEST(WaitCursor, LastsForItsScope) {
    HCURSOR const before = GetCursor();
    { RVWaitCursor without_application; }
    EXPECT_EQ(GetCursor(), before);
    Application application;
    {
        RVWaitCursor wait;
        HCURSOR const waiting = GetCursor();
        EXPECT_NE(waiting, before);
        { const RVWaitCursor inner; }
        EXPECT_EQ(GetCursor(), waiting);
        SetCursor(before);
        wait.Restore();
        EXPECT_EQ(GetCursor(), before);
        SetCursor(waiting);
    }
    EXPECT_EQ(GetCursor(), before);
    EXPECT_EQ(application.codes, (std::vector<int>{1, 1, -1, -1}));
    application.EndWaitCursor();
    EXPECT_EQ(GetCursor(), before) << "an end without a beginning";
}

TEST(WaitCursor, ShowsWhatEndsItAndLetsNothingOut) {
    Application application;
    application.fails = true;
    { const RVWaitCursor wait; }
    const std::string what = R"(Exception thrown in destructor \(WaitCursor:[0-9]+\))";
    EXPECT_TRUE(std::regex_match(application.shown, std::regex(what))) << application.shown;
    application.text = "why?";
    { const RVWaitCursor wait; }
    EXPECT_TRUE(std::regex_match(application.shown, std::regex(what + "\nwhy\\?")))
        << application.shown;
    EXPECT_EQ(Failure::s_Count, 0);
    std::optional<Application> newer(std::in_place);
    const RVWaitCursor wait;
    newer.reset();  // the end goes to the application that is left
    application.fails = false;
    application.codes.clear();
}

}  // namespace
