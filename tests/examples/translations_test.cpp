// The translators' tool and the program that they translate, as their users call them.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "environment.h"
#include "scratch.h"

namespace {

namespace fs = std::filesystem;
using rv_test::Read_File;
using rv_test::Write_File;

// Each test runs in a directory of its own, so that names are short.
class Translations : public testing::Test {
protected:
    Translations() { fs::current_path(m_Scratch.Path()); }
    ~Translations() override { fs::current_path(m_Before); }

    // The exit code; what the program wrote is in m_Out.
    int Call(const std::string& program, const std::string& arguments = "") {
        // What stands in front keeps the command interpreter from taking quotes off.
        const int status =
            std::system(("cd . && \"" + fs::absolute(program).make_preferred().string() + "\" " +
                         arguments + " >out 2>&1")
                            .c_str());
        m_Out = Read_File("out");
        std::erase(m_Out, '\r');
        return status > 0xFF ? status >> 8 : status;
    }

    const fs::path m_Before = fs::current_path();
    const std::string m_Greeting = fs::absolute(GREETING_PROGRAM).string();
    const std::string m_Translate = fs::absolute(TRANSLATE_PROGRAM).string();
    const std::string m_Items = '"' + fs::absolute(ITEMS_LIBRARY).make_preferred().string() + '"';
    rv_test::ScratchDirectory m_Scratch;
    std::string m_Out;
};

TEST_F(Translations, ExportAndCheck) {
    EXPECT_EQ(Call(m_Translate, "export " + m_Items + " fi.txt"), 0) << m_Out;
    std::string text = Read_File("fi.txt");
    EXPECT_NE(text.find("# Greeting\napp/1 =\n\n# Good day, and welcome!\napp/2 =\n"), text.npos)
        << text;
    EXPECT_EQ(Call(m_Translate, "export " + m_Items + " fi.txt"), 1) << "it is there";
    EXPECT_EQ(Read_File("fi.txt"), text);
    EXPECT_EQ(Call(m_Translate, "check " + m_Items + " fi.txt"), 3);
    EXPECT_EQ(m_Out,
              "app/1: not translated: Greeting\n"
              "app/2: not translated: Good day, and welcome!\n"
              "app/3: not translated: Set LANG to see another language.\n");
    Write_File("fi.txt", "app/1 = a\napp/3 = c\napp/4 = d\\n\n7/9 = other\n");
    EXPECT_EQ(Call(m_Translate, "check " + m_Items + " fi.txt"), 3);
    EXPECT_EQ(m_Out,
              "app/2: not translated: Good day, and welcome!\n"
              "app/4: not in the library: d\\n\n");
    Write_File("fi.txt", "7/1 = a\n7/2 = b\n7/3 = c\n");
    EXPECT_EQ(Call(m_Translate, "check " + m_Items + " fi.txt 7"), 0) << m_Out;
    EXPECT_EQ(m_Out, "");
}

TEST_F(Translations, GreetInThreeLanguages) {
    for (const fs::directory_entry& file : fs::directory_iterator(GREETING_LANGUAGES))
        fs::copy_file(file, file.path().filename());
    const rv_test::Environment none("LC_ALL", ""), messages("LC_MESSAGES", "");
    const struct {
        const char* locale;
        const char* greeting;
        const char* flag;  // its first row
    } kRows[] = {
#if !defined(_WIN32)  // where the language is no matter of the environment
        {"fi_FI.UTF-8", "Hyv\xC3\xA4\xC3\xA4 p\xC3\xA4iv\xC3\xA4\xC3\xA4 ja tervetuloa!\n",
         "         ##           \n"},
        {"de_AT.UTF-8", "Guten Tag und herzlich willkommen!\n", "    ##################\n"},
#endif
        {"sv_SE.UTF-8", "Good day, and welcome!\n", "            %%        \n"},
    };
    for (const auto& row : kRows) {
        const rv_test::Environment language("LANG", row.locale);
        EXPECT_EQ(Call(m_Greeting), 0);
        EXPECT_NE(m_Out.find(std::string(row.greeting) + row.flag), m_Out.npos) << m_Out;
    }
}

TEST_F(Translations, FaultsAreOneLine) {
    Write_File("bad.txt", "app/1 = a");
    const struct {
        std::string arguments;
        int code;
        const char* out;
    } kRows[] = {
        {"", 2, "translate: call it as "},
        {"import a b", 2, "translate: call it as "},
        {"check " + m_Items + " fi.txt x", 2, "translate: x: is no module's number"},
        {"check " + m_Items + " fi.txt", 1, "translate: fi.txt: does not exist"},
        {"check " + m_Items + " bad.txt", 3, "translate: bad.txt:1: the line has no line end"},
        {"check ./bad.txt fi.txt", 1, "translate: ./bad.txt: cannot be loaded"},
        {"export " + m_Items + " none/fi.txt", 1, "translate: none/fi.txt: cannot be made"},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(Call(m_Translate, row.arguments), row.code) << row.arguments;
        EXPECT_TRUE(m_Out.starts_with(row.out)) << m_Out;
        EXPECT_EQ(m_Out.find('\n'), m_Out.size() - 1) << m_Out;
    }
}

}  // namespace
