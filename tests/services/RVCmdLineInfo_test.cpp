// The command line, word by word.
#include <RVUtils/CWinApp.h>
#include <RVUtils/RVCmdLineInfo.h>
#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace {

using Words = std::vector<std::string>;

class Listener : public CCommandLineInfo {
public:
    void ParseParam(const char* word, BOOL flag, BOOL last) override {
        m_AreLast.push_back(last != FALSE);
        CCommandLineInfo::ParseParam(word, flag, last);
    }

    std::vector<bool> m_AreLast;
};

TEST(CommandLine, GoesToParseParamWordByWord) {
    EXPECT_TRUE(std::strstr(__argv[0], "tests_services")) << __argv[0];
    EXPECT_FALSE(__argv[__argc]);
    const struct {
        Words line, elements;
        std::string file;
    } kRows[] = {
        {{}, {}, ""},
        {{"-program"}, {}, ""},
        {{"program", "/open", "report.dat", "-v"}, {"-open", "report.dat", "-v"}, "report.dat"},
        {{"program", "-", "/", "a-b/c", "--x", "", "/a/b"},
         {"-", "-", "a-b/c", "--x", "", "-a/b"},
         "a-b/c"}};
    for (const auto& [line, elements, file] : kRows) {
        std::vector<char*> words;
        for (const std::string& word : line)
            words.push_back(const_cast<char*>(word.c_str()));
        const int count = std::exchange(__argc, static_cast<int>(words.size()));
        char** const before = std::exchange(__argv, words.data());
        CStringArray array;
        array.Add("before");
        RVCmdLineInfo info(array);
        Listener base;
        CWinApp().ParseCommandLine(base);
        CWinApp().ParseCommandLine(info);
        __argc = count;
        __argv = before;
        ASSERT_EQ(array.GetSize(), 1 + std::ssize(elements));
        for (std::size_t at = 0; at < elements.size(); ++at)
            EXPECT_EQ(array[static_cast<INT_PTR>(at) + 1].GetString(), elements[at]);
        std::vector<bool> are_last(elements.size());
        if (!elements.empty()) are_last.back() = true;
        EXPECT_EQ(base.m_AreLast, are_last);
        EXPECT_EQ(base.m_strFileName.GetString(), file);
        EXPECT_EQ(base.m_nShellCommand == CCommandLineInfo::FileOpen, !file.empty());
        EXPECT_EQ(info.m_nShellCommand, CCommandLineInfo::FileNew);
    }
}

}  // namespace
