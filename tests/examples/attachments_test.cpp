// The attachments program as its users meet it: calls, exit codes, one line for each fault, and
// nothing left behind.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

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

std::string Bytes(std::size_t count) {
    std::string bytes(count, '\0');
    unsigned state = 12345;
    for (char& byte : bytes) {
        state = state * 1103515245 + 12345;
        byte = static_cast<char>(state >> 16);
    }
    return bytes;
}

class Attachments : public testing::Test {
protected:
    Attachments() : m_Temp(m_Scratch / "temp") { fs::create_directory(m_Scratch / "temp"); }

    std::string At(const std::string& name) const { return m_Scratch / name; }

    // Calls the program with arguments that are names below the scratch directory, but for the verb
    // and for what begins with "=".
    Outcome Call(const std::vector<std::string>& arguments, const std::string& before = "") {
        std::string command =
            before + '"' + fs::path(ATTACHMENTS_PROGRAM).make_preferred().string() + '"';
        for (std::size_t index = 0; index < arguments.size(); ++index) {
            const std::string& argument = arguments[index];
            const bool plain = index == 0 || argument.starts_with("=");
            command += " \"" +
                       (plain ? argument.substr(argument.starts_with("=") ? 1 : 0) : At(argument)) +
                       '"';
        }
        command += " >\"" + m_Outside / "out" + "\" 2>\"" + m_Outside / "err" + '"';
        const int code = Run_Command(command);
        Outcome outcome{code, Read_File(m_Outside / "out"), Read_File(m_Outside / "err")};
        std::erase(outcome.out, '\r');
        std::erase(outcome.err, '\r');
        return outcome;
    }

    // Everything below the scratch directory, temporary files among it.
    std::set<std::string> Everything() const {
        std::set<std::string> paths;
        for (const auto& entry : fs::recursive_directory_iterator(m_Scratch.Path()))
            paths.insert(entry.path().lexically_relative(m_Scratch.Path()).generic_string());
        return paths;
    }

    // A call that must fail: with this code, one line on standard error that holds `why`, and
    // without a trace.
    void Expect_Failure(const std::string& label, const std::vector<std::string>& arguments,
                        int code, const std::string& why) {
        const std::set<std::string> before = Everything();
        const Outcome outcome = Call(arguments);
        EXPECT_EQ(outcome.code, code) << label << ": " << outcome.err;
        EXPECT_TRUE(outcome.err.starts_with("attachments: ")) << label << ": " << outcome.err;
        EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1)
            << label << ": " << outcome.err;
        EXPECT_NE(outcome.err.find(why), std::string::npos) << label << ": " << outcome.err;
        EXPECT_EQ(Everything(), before) << label;
    }

    bool Nothing_Temporary() const { return fs::is_empty(m_Scratch / "temp"); }

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
    const std::vector<std::size_t> lengths = {0,      1,      2,      3,       4,      255,
                                              786431, 786432, 786433, 1048577, 1572864};
    std::vector<std::string> pack = {"pack", "out.xml"};
    for (const std::size_t length : lengths) {
        pack.push_back(std::to_string(length) + " a&b.bin");
        Write_File(At(pack.back()), Bytes(length));
    }
    EXPECT_EQ(Call(pack).code, 0);
    const std::string document = Read_File(At("out.xml"));
    const Outcome outcome = Call({"unpack", "out.xml", "deep/dir"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    for (const std::size_t length : lengths)
        EXPECT_TRUE(Read_File(At("deep/dir/" + std::to_string(length) + " a&b.bin")) ==
                    Bytes(length))
            << length;
    EXPECT_TRUE(Read_File(At("out.xml")) == document) << "the user's document changed";
    EXPECT_TRUE(Nothing_Temporary());
}

TEST_F(Attachments, NestDocumentsAndDrawTheTree) {
    Write_File(At("a"), "hi");
    Write_File(At("b"), Bytes(1280));
    EXPECT_EQ(Call({"pack", "inner.xml", "a", "b"}).code, 0);
    EXPECT_EQ(Call({"pack", "mid.xml", "inner.xml", "a"}).code, 0);
    EXPECT_EQ(Call({"pack", "out.xml", "b", "mid.xml", "inner.xml"}).code, 0);
    EXPECT_NE(Read_File(At("out.xml")).find(Read_File(At("mid.xml"))), std::string::npos);

    // Without the sizes of the documents, which hang on the layout.
    std::string tree = Call({"list", "out.xml"}).out;
    const std::string path = At("out.xml");
    tree.replace(tree.find(path), path.size(), "out.xml");
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

    EXPECT_EQ(Call({"unpack", "out.xml", "d"}).code, 0);
    for (const char* const file : {"mid.xml", "inner.xml", "b"})
        EXPECT_TRUE(Read_File(At(std::string("d/") + file)) == Read_File(At(file))) << file;
    EXPECT_TRUE(Read_File(At("d/mid.xml.contents/inner.xml.contents/b")) == Bytes(1280));
    EXPECT_EQ(Read_File(At("d/inner.xml.contents/a")), "hi");
    EXPECT_TRUE(Nothing_Temporary());
}

TEST_F(Attachments, CarryWhatCannotBeNestedAsBytes) {
    const struct {
        const char* label;
        std::string content;
    } rows[] = {
        {"cut short", Document("").substr(0, 50)},
        {"a NUL byte", Document(Attachment("a", kHi)) + std::string(1, '\0')},
        {"an end of a section", Document(Attachment("a", kHi)) + "]]>"},
        {"a section that is open", Document(Attachment("a", kHi)) + "<![CDATA["},
        {"a damaged length", Document(Attachment("a",
                                                 "<content><![CDATA[aGk=]]></content>"
                                                 "<size>9</size><crc32>d8932aac</crc32>"))},
    };
    for (const auto& row : rows) {
        Write_File(At("odd.xml"), row.content);
        EXPECT_EQ(Call({"pack", "out.xml", "odd.xml"}).code, 0) << row.label;
        EXPECT_EQ(Call({"unpack", "out.xml", "d"}).code, 0) << row.label;
        EXPECT_EQ(Read_File(At("d/odd.xml")), row.content) << row.label;
        EXPECT_FALSE(fs::exists(At("d/odd.xml.contents"))) << row.label;
        fs::remove_all(At("d"));
        fs::remove(At("out.xml"));
    }
}

TEST_F(Attachments, ListAnyDocument) {
    Write_File(At("any.xml"), "<a>x<b/>yy<c><![CDATA[zzz]]></c></a><d><e>");
    const Outcome outcome = Call({"list", "any.xml"});
    EXPECT_EQ(outcome.code, 0);
    EXPECT_EQ(outcome.out,
              "              0  a\n"
              "              1  |-- b\n"
              "              3  `-- c\n"
              "              0  d (never ended)\n"
              "              0  |-- e (never ended)\n");
    Write_File(At("text"), "no tags");
    Expect_Failure("no tags", {"list", "text"}, 3, "no element");
}

TEST_F(Attachments, RefuseBadCalls) {
    Write_File(At("file"), "x");
    fs::create_directories(At("dir/sub"));
    Write_File(At("dir/file"), "y");
    Write_File(At("good.xml"), Document(Attachment("new", kHi) + Attachment("file", kHi)));
    const struct {
        const char* label;
        std::vector<std::string> arguments;
        int code;
        const char* why;
    } rows[] = {
        {"no verb", {}, 2, "call it as"},
        {"unknown verb", {"eat", "file"}, 2, "call it as"},
        {"nothing to pack", {"pack", "out.xml"}, 2, "call it as"},
        {"too much to list", {"list", "good.xml", "file"}, 2, "call it as"},
        {"empty folder name", {"unpack", "good.xml", "="}, 2, "call it as"},
        {"no such file", {"pack", "out.xml", "file", "nope"}, 1, "does not exist"},
        {"a folder as file", {"pack", "out.xml", "dir"}, 1, "folder"},
        {"one name twice", {"pack", "out.xml", "file", "dir/file"}, 1, "another file is named"},
        {"a document that exists", {"pack", "good.xml", "file"}, 1, "exists already"},
        {"a document in no folder", {"pack", "nope/out.xml", "file"}, 1, "folder does not exist"},
        {"no such document", {"list", "nope"}, 1, "does not exist"},
        {"a folder as document", {"unpack", "dir", "new"}, 1, "folder"},
        {"a file as folder", {"unpack", "good.xml", "file"}, 1, "cannot make the folder"},
        {"a name that is taken", {"unpack", "good.xml", "dir"}, 1, "exists already"},
    };
    for (const auto& row : rows)
        Expect_Failure(row.label, row.arguments, row.code, row.why);
    EXPECT_EQ(Read_File(At("dir/file")), "y");
}

TEST_F(Attachments, RefuseBadDocuments) {
    Write_File(At("precious"), "aGk=");
    const std::string outside =
        "<content>FILE://" + At("precious") + "</content><size>2</size><crc32>d8932aac</crc32>";
    const struct {
        const char* label;
        std::string content;
        const char* why;
    } rows[] = {
        {"nothing", "", "carries no attachments"},
        {"no tags", "just text", "carries no attachments"},
        {"tags that do not fit", "<a></b>", "do not fit"},
        {"no attachments", "<a></a>", "carries no attachments"},
        {"a name that leads out", Document(Attachment("../x", kHi)), "leads out"},
        {"an escaped way out", Document(Attachment("..%2Fx", kHi)), "leads out"},
        {"a way out for Windows", Document(Attachment("..\\x", kHi)), "leads out"},
        {"an absolute name", Document(Attachment("/x", kHi)), "leads out"},
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
        Write_File(At("bad.xml"), row.content);
        Expect_Failure(row.label, {"unpack", "bad.xml", "new"}, 3, row.why);
    }
    EXPECT_EQ(Read_File(At("precious")), "aGk=");
}

TEST_F(Attachments, LeaveOutWhatIsDamagedAndGiveTheRest) {
    Write_File(At("a"), Bytes(300));
    Write_File(At("b"), Bytes(200));
    EXPECT_EQ(Call({"pack", "out.xml", "a", "b"}).code, 0);
    const std::string good = Read_File(At("out.xml"));
    const std::size_t content = good.find("CDATA[") + 6;
    for (const char damage : {'A', '=', '#', '\n'}) {
        std::string bad = good;
        bad[content + 100] = bad[content + 100] == damage ? 'B' : damage;
        Write_File(At("bad.xml"), bad);
        const Outcome outcome = Call({"unpack", "bad.xml", "d"});
        EXPECT_EQ(outcome.code, 3);
        EXPECT_FALSE(fs::exists(At("d/a"))) << "damage " << damage;
        EXPECT_EQ(Read_File(At("d/b")), Bytes(200)) << "damage " << damage;
        EXPECT_TRUE(Nothing_Temporary());
        fs::remove_all(At("d"));
    }
}

TEST_F(Attachments, SurviveADocumentCutAnywhere) {
    Write_File(At("a"), Bytes(40));
    EXPECT_EQ(Call({"pack", "inner.xml", "a"}).code, 0);
    EXPECT_EQ(Call({"pack", "out.xml", "a", "inner.xml"}).code, 0);
    const std::string good = Read_File(At("out.xml"));
    for (std::size_t cut = 0; cut + 2 < good.size(); cut += 29) {
        Write_File(At("cut.xml"), good.substr(0, cut));
        Expect_Failure("cut at " + std::to_string(cut), {"unpack", "cut.xml", "new"}, 3, "cut.xml");
    }
}

#if !defined(_WIN32)
// A file size limit is the full disk that a test can have.
TEST_F(Attachments, LeaveNoHalfFileWhereThereIsNoRoom) {
    Write_File(At("large"), Bytes(3'000'000));
    Write_File(At("small"), "hi");
    EXPECT_EQ(Call({"pack", "small.xml", "small"}).code, 0);
    EXPECT_EQ(Call({"pack", "large.xml", "large"}).code, 0);
    const std::set<std::string> before = Everything();
    const struct {
        const char* label;
        std::vector<std::string> arguments;
        const char* limit;
    } rows[] = {
        {"the document", {"pack", "out.xml", "small", "large"}, "ulimit -f 100; "},
        {"the copy", {"unpack", "large.xml", "d"}, "ulimit -f 100; "},
    };
    for (const auto& row : rows) {
        const Outcome outcome = Call(row.arguments, row.limit);
        EXPECT_EQ(outcome.code, 1) << row.label << outcome.err;
        EXPECT_NE(outcome.err.find("no room"), std::string::npos) << row.label << outcome.err;
        EXPECT_EQ(Everything(), before) << row.label;
    }
}
#endif

}  // namespace
