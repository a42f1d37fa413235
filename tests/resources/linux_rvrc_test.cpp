// What the resource compiler says about scripts that are wrong.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "scratch.h"

namespace {

using rv_test::ScratchDirectory;

// The line that it ends with, without the directory; empty when it made a table.
std::string Compile(const ScratchDirectory& scratch, const std::string& script) {
    rv_test::Write_File(scratch / "app.i", script);
    const std::string command = std::string(RVRC_PROGRAM) + " '" + (scratch / "app.i") + "' '" +
                                (scratch / "app.rc") + "' '" + (scratch / "app.cpp") + "' '" +
                                (scratch / "app.d") + "' 2>'" + (scratch / "told") + "'";
    const bool done = std::system(command.c_str()) == 0;
    std::string told = rv_test::Read_File(scratch / "told");
    EXPECT_EQ(done, told.empty());
    const std::string directory = scratch / "";
    for (std::size_t at; (at = told.find(directory)) != told.npos;)
        told.erase(at, directory.size());
    return told;
}

TEST(ResourceCompiler, TellsWhatIsWrongInOneLine) {
    const ScratchDirectory scratch;
    rv_test::Write_File(scratch / "cut.bmp", "BM");
    const struct {
        const char* script;
        const char* told;
    } kRows[] = {
        {"\n\nmain ICON \"a.ico\"", "app.rc:3: \"main\" is no number and no statement; resources"},
        {"1 DIALOG",
         "app.rc:1: a resource \"DIALOG\" is not known on this platform; put it between"},
        {"STRINGTABLE BEGIN\n1 \"a\n", "app.rc:2: a text has no end; close it"},
        {"STRINGTABLE BEGIN 1 \"a\"\n", "app.rc:2: the end of the file stands where a number"},
        {"STRINGTABLE 1", "app.rc:1: STRINGTABLE is followed by \"1\"; put BEGIN"},
        {"STRINGTABLE {1 \"a\" 1 \"b\"}", "app.rc:1: string 1 is there twice; take"},
        {"STRINGTABLE {65536 \"a\"}", "app.rc:1: the number 65536 is too large; take"},
        {"STRINGTABLE {4294967296 \"a\"}", "app.rc:1: \"4294967296\" is no number of 32 bits"},
        {"STRINGTABLE {IDS_A \"a\"}", "app.rc:1: \"IDS_A\" stands where a number should; define"},
        {"STRINGTABLE {(1 \"a\"}", "app.rc:1: a bracket is not closed"},
        {"STRINGTABLE {1 \"\\q\"}", "app.rc:1: the text has a \"\\q\", which is not known"},
        {"STRINGTABLE {1 \"Gr\xF6\xDF\x65\"}", "app.rc:1: the text is not in UTF-8; save"},
        {"STRINGTABLE {1 2}", "app.rc:1: string 1 is followed by \"2\"; put its text"},
        {"1 BITMAP \"none.bmp\"", "app.rc:1: cannot open \"none.bmp\"; check"},
        {"1 BITMAP \"cut.bmp\"", "app.rc:1: \"cut.bmp\": the file is cut off; take a whole copy"},
        {"1 ICON \"cut.bmp\"", "app.rc:1: \"cut.bmp\": the file is no icon; save"},
        {"1 BITMAP flag", "app.rc:1: BITMAP 1 is followed by \"flag\"; put a file name"},
        {"LANGUAGE 9 1", "app.rc:1: LANGUAGE takes two numbers; put a comma"},
        {"# 41 \"app.h\" 1\n\nx", "app.h:42: \"x\" is no number and no statement"},
    };
    for (const auto& row : kRows) {
        const std::string told = Compile(scratch, row.script);
        EXPECT_TRUE(told.starts_with(row.told)) << told << row.script;
        EXPECT_EQ(told.find('\n'), told.size() - 1) << told;
    }
    EXPECT_NE(Compile(scratch, std::string(100'000, '(')), "") << "no end of the stack";
    EXPECT_EQ(Compile(scratch, "STRINGTABLE {1 | 2 + (3 - 1), \"a\"}"), "");
    EXPECT_NE(rv_test::Read_File(scratch / "app.cpp").find("{5, "), std::string::npos);
}

}  // namespace
