// What can be brought about only where we know the system: limits, modes, links, odd files.
#include <RVUtils/XmlParser.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>

#include "environment.h"
#include "report_recorder.h"
#include "scratch.h"
#include "xml_support.h"

namespace {

using namespace rv_test;
namespace fs = std::filesystem;

std::size_t Entries(const fs::path& directory) {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(directory), fs::directory_iterator()));
}

// No file may grow beyond this while one lives.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &m_Before);
        const rlimit limit{bytes, m_Before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &m_Before); }

private:
    rlimit m_Before;
};

// A body that fits into the read block, and one that is written while its end is searched.
TEST(XmlParserOnLinux, BodiesThatCannotBeWrittenWhole) {
    const ScratchDirectory scratch;
    const std::string file = scratch / "document.xml";
    for (const std::size_t size : {std::size_t{5000}, std::size_t{3000000}}) {
        SCOPED_TRACE(size);
        const ScratchDirectory temp;
        const TempDirectory directory(temp.Path().string());
        const std::string body(size, 'x');
        Write_File(file, "<a><![CDATA[" + body + "]]></a>");
        RVXmlParser parser;
        int cause = CFileException::none;
        {
            const FileSizeLimit limit(4096);
            try {
                EXPECT_FALSE(parser.Load_File(Reference(file))) << "must not come back";
            } catch (CFileException* error) {
                cause = error->m_cause;
                error->Delete();
            }
        }
        EXPECT_EQ(cause, CFileException::diskFull);
        EXPECT_TRUE(fs::exists(file));
        EXPECT_EQ(Entries(temp.Path()), 0u) << "nothing half-written stays";
        EXPECT_TRUE(parser.Load_File(Reference(file))) << "and with room it is read";
        EXPECT_EQ(Walk(parser)[0].value, LiteralReader::Filed(body));
    }
}

// What looked like a body but has no end fails for nothing.
TEST(XmlParserOnLinux, SectionWithoutAnEndNeedsNoFile) {
    const ScratchDirectory scratch;
    const ScratchDirectory temp;
    const TempDirectory directory(temp.Path().string());
    const std::string file = scratch / "document.xml";
    Write_File(file, "<![CDATA[xa>" + std::string(3000000, 'x') + "<b/>");
    RVXmlParser parser;
    const FileSizeLimit limit(4096);
    EXPECT_TRUE(parser.Load_File(Reference(file)));
    EXPECT_EQ(Walk(parser).size(), 2u);
    EXPECT_EQ(Entries(temp.Path()), 0u);
}

TEST(XmlParserOnLinux, NoTemporaryDirectory) {
    const ScratchDirectory scratch;
    const TempDirectory directory(scratch / "none");
    const std::string file = scratch / "document.xml";
    for (const std::size_t size : {std::size_t{10}, std::size_t{3000000}}) {
        Write_File(file, "<a><![CDATA[" + std::string(size, 'x') + "]]></a>");
        ReportRecorder recorder;
        RVXmlParser parser;
        EXPECT_FALSE(parser.Load_File(Reference(file)));
        EXPECT_EQ(recorder.Take(), (Reports{{25, "XmlParser"}})) << size;
        EXPECT_TRUE(fs::exists(file));
    }
}

// The names of the coming seconds are taken by links to a file that must stay as it is.
TEST(XmlParserOnLinux, BodiesArePrivateAndFollowNoLink) {
    const ScratchDirectory scratch;
    const ScratchDirectory temp;
    const TempDirectory directory(temp.Path().string());
    const std::string treasure = scratch / "treasure";
    Write_File(treasure, "untouched");
    const std::time_t now = std::time(nullptr);
    for (std::time_t second = now - 5; second < now + 400; ++second) {
        char name[64];
        std::tm local{};
        std::strftime(name, sizeof name, "ZORTmp_%Y%m%d%H%M%S.tmp", localtime_r(&second, &local));
        fs::create_symlink(second % 2 ? treasure : scratch / "dangling", temp.Path() / name);
    }
    const std::string file = scratch / "document.xml";
    Write_File(file, "<a><![CDATA[body]]></a>");
    RVXmlParser parser;
    const mode_t mask = umask(0);
    EXPECT_TRUE(parser.Load_File(Reference(file)));
    umask(mask);
    EXPECT_EQ(Read_File(treasure), "untouched");
    EXPECT_FALSE(fs::exists(scratch.Path() / "dangling"));
    RVString name, value;
    ULONG children = 0;
    ASSERT_TRUE(parser.Next(name, value, children));
    const std::string path = Text(value).substr(7);
    struct stat status {};
    ASSERT_EQ(lstat(path.c_str(), &status), 0);
    EXPECT_TRUE(S_ISREG(status.st_mode));
    EXPECT_EQ(status.st_mode & 0777u, 0600u);
    EXPECT_EQ(Read_File(path), "body");
}

TEST(XmlParserOnLinux, ProcessesKeepTheirBodiesApart) {
    constexpr int kProcesses = 3;
    constexpr int kBodies = 200;
    const ScratchDirectory scratch;
    const ScratchDirectory temp;
    const TempDirectory directory(temp.Path().string());
    std::string document;
    for (int i = 0; i < kBodies; ++i)
        document += "<a><![CDATA[" + std::to_string(i) + "]]></a>";
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process) {
        const std::string file = scratch / std::to_string(process);
        Write_File(file, document);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            RVXmlParser parser;
            bool kept = parser.Load_File(Reference(file));
            const auto items = Walk(parser);
            for (int i = 0; i < kBodies && kept; ++i)
                kept = items[static_cast<std::size_t>(i)].value ==
                       LiteralReader::Filed(std::to_string(i));
            _exit(kept ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(Entries(temp.Path()), static_cast<std::size_t>(kProcesses * kBodies));
}

// A file that ends before its length, as one that is cut while it is read; the system keeps some.
TEST(XmlParserOnLinux, FileCutShort) {
    const fs::path file = "/sys/devices/system/cpu/online";
    ASSERT_GT(fs::file_size(file), Read_File(file).size());
    ReportRecorder recorder;
    RVXmlParser parser;
    EXPECT_FALSE(parser.Load_File(Reference(file)));
    EXPECT_EQ(recorder.Take(), (Reports{{25, "XmlParser"}}));
}

}  // namespace
