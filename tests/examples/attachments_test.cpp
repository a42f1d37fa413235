// The attachments program as its users meet it: calls, exit codes, one line for each fault, and
// nothing left behind.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

#include "environment.h"
#include "scratch.h"

#if !defined(_WIN32)
#include <sys/wait.h>
#endif

namespace {

namespace fs = std::filesystem;
using rv_test::Read_File;
using rv_test::Write_File;

struct Outcome {
    int code;
    std::string out;
    std::string err;
};

int Run_Command(const std::string& command) {
#if defined(_WIN32)
    // The command interpreter takes the outer quotes off.
    return std::system(("\"" + command + "\"").c_str());
#else
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
#endif
}

std::string Bytes(int count) {
    std::string bytes(static_cast<std::size_t>(count), '\0');
    unsigned state = 12345;
    for (char& byte : bytes) {
        state = state * 1103515245 + 12345;
        byte = static_cast<char>(state >> 16);
    }
    return bytes;
}

// Each test runs in a directory of its own, so that names are short.
class Attachments : public testing::Test {
protected:
    Attachments() : m_Temp(m_Scratch / "temp") {
        fs::current_path(m_Scratch.Path());
        fs::create_directory("temp");
    }
    ~Attachments() override { fs::current_path(m_Before); }

    // Calls the program with `arguments`, as one types them.
    Outcome Call(const std::string& arguments, const std::string& before = "") {
        const std::string out = m_Outside / "out";
        const std::string err = m_Outside / "err";
        const int code = Run_Command(before + '"' + m_Program + "\" " + arguments + " >\"" + out +
                                     "\" 2>\"" + err + '"');
        Outcome outcome{code, Read_File(out), Read_File(err)};
        std::erase(outcome.out, '\r');
        std::erase(outcome.err, '\r');
        return outcome;
    }
    // A call that must not fail, with what it writes.
    std::string Expect_Success(const std::string& arguments) {
        const Outcome outcome = Call(arguments);
        EXPECT_EQ(outcome.code, 0) << arguments << ": " << outcome.err;
        return outcome.out;
    }

    // Everything there is, temporary files among it.
    static std::set<std::string> Everything() {
        std::set<std::string> paths;
        for (const auto& entry : fs::recursive_directory_iterator("."))
            paths.insert(entry.path().generic_string());
        return paths;
    }

    // A call that must fail: with this code, one line on standard error that holds `why`, and
    // without a trace.
    void Expect_Failure(const std::string& arguments, int code, const std::string& why,
                        const std::string& before = "") {
        const std::set<std::string> there = Everything();
        const Outcome outcome = Call(arguments, before);
        SCOPED_TRACE(arguments + ": " + outcome.err);
        EXPECT_EQ(outcome.code, code);
        EXPECT_TRUE(outcome.err.starts_with("attachments: "));
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1);
        EXPECT_NE(outcome.err.find(why), std::string::npos);
        EXPECT_EQ(Everything(), there);
    }

    const fs::path m_Before = fs::current_path();
    const std::string m_Program = fs::absolute(ATTACHMENTS_PROGRAM).make_preferred().string();
    rv_test::ScratchDirectory m_Scratch;
    rv_test::ScratchDirectory m_Outside;  // for what the test itself needs
    rv_test::TempDirectory m_Temp;
};

std::string Attachment(const std::string& name, const std::string& parts) {
    return "<attachment><name>" + name + "</name>" + parts + "</attachment>";
}

std::string Document(const std::string& attachments) {
    return "<?xml version=\"1.0\"?>\n<attachments>\n" + attachments + "</attachments>\n";
}

// "hi" with its size and checksum.
constexpr char kHi[] = "<content><![CDATA[aGk=]]></content><size>2</size><crc32>d8932aac</crc32>";

TEST_F(Attachments, GiveEveryByteBack) {
    std::string pack = "pack \"" + m_Scratch / "out.xml" + '"';
    const auto lengths = {0, 1, 2, 3, 4, 255, 786431, 786432, 786433, 1048577, 1572864};
    const auto name = [](int length) { return std::to_string(length) + " a&b.bin"; };
    for (const int length : lengths) {
        Write_File(name(length), Bytes(length));
        pack += " \"" + name(length) + '"';
    }
    Expect_Success(pack);
    const std::string document = Read_File("out.xml");
    Expect_Success("unpack out.xml \"" + m_Scratch / "deep/dir" + '"');
    for (const int length : lengths)
        EXPECT_TRUE(Read_File("deep/dir/" + name(length)) == Bytes(length)) << length;
    EXPECT_TRUE(Read_File("out.xml") == document) << "the user's document changed";
    EXPECT_TRUE(fs::is_empty("temp"));
}

TEST_F(Attachments, NestDocumentsAndDrawTheTree) {
    Write_File("a", "hi");
    Write_File("b", Bytes(1280));
    Expect_Success("pack inner.xml a b");
    Expect_Success("pack mid.xml inner.xml a");
    Expect_Success("pack out.xml b mid.xml inner.xml");
    EXPECT_NE(Read_File("out.xml").find(Read_File("mid.xml")), std::string::npos);

    // Without the sizes of the documents, which hang on the layout.
    std::string tree = Expect_Success("list out.xml");
    for (std::size_t at = 0; at < tree.size(); at = tree.find('\n', at) + 1)
        if (tree.substr(at, tree.find('\n', at) - at).ends_with("attachments)"))
            tree.replace(at, 15, 15, ' ');
    EXPECT_EQ(tree,
              "                 out.xml (3 attachments)\n"
              "          1,280  |-- b\n"
              "                 |-- mid.xml (2 attachments)\n"
              "                 |   |-- inner.xml (2 attachments)\n"
              "              2  |   |   |-- a\n"
              "          1,280  |   |   `-- b\n"
              "              2  |   `-- a\n"
              "                 `-- inner.xml (2 attachments)\n"
              "              2      |-- a\n"
              "          1,280      `-- b\n");

    Expect_Success("unpack out.xml d");
    for (const std::string file : {"mid.xml", "inner.xml", "b"})
        EXPECT_TRUE(Read_File("d/" + file) == Read_File(file)) << file;
    EXPECT_TRUE(Read_File("d/mid.xml.contents/inner.xml.contents/b") == Bytes(1280));
    EXPECT_EQ(Read_File("d/inner.xml.contents/a"), "hi");
    EXPECT_TRUE(fs::is_empty("temp"));
}

TEST_F(Attachments, CarryWhatCannotBeNestedAsBytes) {
    const std::string whole = Document(Attachment("a", kHi));
    std::string damaged = whole;
    damaged.replace(damaged.find("<size>2"), 7, "<size>9");
    for (const std::string& odd :
         {whole.substr(0, 50), whole + '\0', whole + "]]>", whole + "<![CDATA[", damaged}) {
        Write_File("odd.xml", odd);
        Expect_Success("pack out.xml odd.xml");
        Expect_Success("unpack out.xml d");
        EXPECT_EQ(Read_File("d/odd.xml"), odd);
        EXPECT_FALSE(fs::exists("d/odd.xml.contents")) << odd;
        fs::remove_all("d");
        fs::remove("out.xml");
    }
}

TEST_F(Attachments, ListAnyDocument) {
    Write_File("any.xml",
               "<a>x<b/>yy<c><f><![CDATA[zzz]]></f></c><g/></a><h><i/></h><d><e></e><k>");
    EXPECT_EQ(Expect_Success("list any.xml"),
              "              0  a\n"
              "              1  |-- b\n"
              "              0  |-- c\n"
              "              3  |   `-- f\n"
              "              0  `-- g\n"
              "              0  h\n"
              "              0  `-- i\n"
              "              0  d (never ended)\n"
              "              0  |-- e\n"
              "              0  |-- k (never ended)\n");
    Write_File("text", "no tags");
    Expect_Failure("list text", 3, "no element");
}

TEST_F(Attachments, RefuseBadCalls) {
    Write_File("file", "x");
    fs::create_directories("dir/sub");
    Write_File("dir/file", "y");
    Write_File("good.xml", Document(Attachment("new", kHi) + Attachment("file", kHi)));
    constexpr struct {
        const char* arguments;
        int code;
        const char* why;
    } kRows[] = {
        {"", 2, "call it as"},
        {"eat file", 2, "call it as"},
        {"pack out.xml", 2, "call it as"},
        {"list good.xml file", 2, "call it as"},
        {"unpack good.xml \"\"", 2, "call it as"},
        {"pack out.xml file nope", 1, "does not exist"},
        {"pack out.xml dir", 1, "folder"},
        {"pack out.xml file dir/file", 1, "another file is named"},
        {"pack good.xml file", 1, "exists already"},
        {"pack nope/out.xml file", 1, "folder does not exist"},
        {"list nope", 1, "does not exist"},
        {"unpack dir new", 1, "folder"},
        {"unpack good.xml file", 1, "cannot make the folder"},
        {"unpack good.xml dir", 1, "exists already"},
    };
    for (const auto& row : kRows)
        Expect_Failure(row.arguments, row.code, row.why);
    EXPECT_EQ(Read_File("dir/file"), "y");
}

TEST_F(Attachments, RefuseBadDocuments) {
    Write_File("precious", "aGk=");
    const std::string outside = "<content>FILE://" + m_Scratch / "precious" +
                                "</content><size>2</size><crc32>d8932aac</crc32>";
    const struct {
        const char* label;
        std::string content;
        const char* why;
    } rows[] = {
        {"nothing", "", "carries no attachments"},
        {"no tags", "just text", "carries no attachments"},
        {"tags that do not fit", "<a></b>", "do not fit"},
        {"no attachments", "<a></a>", "carries no attachments"},
        {"an escaped way out", Document(Attachment("..%2Fx", kHi)), "leads out"},
        {"an empty name", Document(Attachment("", kHi)), "empty"},
        {"a broken escape", Document(Attachment("a%4", kHi)), "number 1"},
        {"two files of one name", Document(Attachment("x", kHi) + Attachment("x", kHi)),
         "two files"},
        {"no content", Document(Attachment("x", "<size>2</size><crc32>0</crc32>")), "not complete"},
        {"two names", Document(Attachment("x", std::string("<name>y</name>") + kHi)), "number 1"},
        {"a size that is none", Document(Attachment("x", "<size>two</size>")), "number 1"},
        {"a foreign element", Document("<other></other>"), "other"},
        {"a reference to the user's file", Document(Attachment("x", outside)), "number 1"},
        {"two roots", Document("") + "<attachments></attachments>", "attachments"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.label);
        Write_File("bad.xml", row.content);
        Expect_Failure("unpack bad.xml new", 3, row.why);
    }
    EXPECT_EQ(Read_File("precious"), "aGk=");
}

TEST_F(Attachments, LeaveOutWhatIsDamagedAndGiveTheRest) {
    Write_File("a", Bytes(300));
    Write_File("b", Bytes(200));
    Expect_Success("pack out.xml a b");
    const std::string good = Read_File("out.xml");
    const std::size_t place = good.find("CDATA[") + 106;
    for (const char damage : {'A', '=', '#', '\n'}) {
        std::string bad = good;
        bad[place] = bad[place] == damage ? 'B' : damage;
        Write_File("bad.xml", bad);
        EXPECT_EQ(Call("unpack bad.xml d").code, 3);
        EXPECT_FALSE(fs::exists("d/a")) << "damage " << damage;
        EXPECT_EQ(Read_File("d/b"), Bytes(200)) << "damage " << damage;
        EXPECT_TRUE(fs::is_empty("temp"));
        fs::remove_all("d");
    }
}

TEST_F(Attachments, SurviveADocumentCutAnywhere) {
    Write_File("a", Bytes(40));
    Expect_Success("pack inner.xml a");
    Expect_Success("pack out.xml a inner.xml");
    const std::string good = Read_File("out.xml");
    for (std::size_t cut = 0; cut + 2 < good.size(); cut += 29) {
        SCOPED_TRACE(cut);
        Write_File("cut.xml", good.substr(0, cut));
        Expect_Failure("unpack cut.xml new", 3, "cut.xml");
    }
}

#if !defined(_WIN32)
// A file size limit is the full disk that a test can have.
TEST_F(Attachments, LeaveNoHalfFileWhereThereIsNoRoom) {
    Write_File("large", Bytes(3'000'000));
    Write_File("small", "hi");
    Expect_Success("pack small.xml small");
    Expect_Success("pack large.xml large");
    Expect_Failure("pack out.xml small large", 1, "no room", "ulimit -f 100; ");
    Expect_Failure("unpack large.xml d", 1, "no room", "ulimit -f 100; ");
}
#endif

}  // namespace
