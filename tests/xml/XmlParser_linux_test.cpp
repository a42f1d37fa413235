// What can be brought about only where we know the system: limits, modes, links, odd files.
#include <RVUtils/XmlParser.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <ctime>

#include "environment.h"
#include "file_size_limit.h"
#include "platform/file_support.h"
#include "report_recorder.h"
#include "scratch.h"
#include "xml_support.h"

namespace {

using namespace rv_test;
namespace fs = std::filesystem;

class XmlParserOnLinux : public testing::Test {
protected:
    bool Load(std::string_view document) {
        Write_File(m_File, document);
        return m_Parser.Load_File(Reference(m_File));
    }
    auto Bodies() const { return std::distance(fs::directory_iterator(m_Temp.Path()), {}); }

    const ScratchDirectory m_Scratch;
    const ScratchDirectory m_Temp;
    const TempDirectory m_Directory{m_Temp.Path().string()};
    const std::string m_File = m_Scratch / "document.xml";
    ReportRecorder m_Recorder;
    RVXmlParser m_Parser;
};

// A body that fits into the read block, and one that is written while its end is searched.
constexpr std::size_t kBodySizes[] = {5000, 3000000};

std::string With_Body(std::size_t size) {
    return "<a><![CDATA[" + std::string(size, 'x') + "]]></a>";
}

TEST_F(XmlParserOnLinux, BodiesThatCannotBeWrittenWhole) {
    for (const std::size_t size : kBodySizes) {
        SCOPED_TRACE(size);
        const auto load_limited = [&] {
            const FileSizeLimit limit(4096);
            EXPECT_FALSE(m_Parser.Load_File(Reference(m_File))) << "must not come back";
        };
        Write_File(m_File, With_Body(size));
        EXPECT_EQ(Catch(load_limited).cause, CFileException::diskFull);
        EXPECT_TRUE(fs::exists(m_File));
        EXPECT_EQ(Bodies(), 0) << "nothing half-written stays";
        EXPECT_TRUE(m_Parser.Load_File(Reference(m_File))) << "and with room it is read";
        EXPECT_EQ(Walk(m_Parser)[0].value, LiteralReader::Filed(std::string(size, 'x')));
        fs::remove_all(*fs::directory_iterator(m_Temp.Path()));
    }
    // What looked like a body but has no end fails for nothing.
    Write_File(m_File, "<![CDATA[xa>" + std::string(3000000, 'x') + "<b/>");
    const FileSizeLimit limit(4096);
    EXPECT_TRUE(m_Parser.Load_File(Reference(m_File)));
    EXPECT_EQ(Walk(m_Parser).size(), 2u);
    EXPECT_EQ(Bodies(), 0);
}

TEST_F(XmlParserOnLinux, NoTemporaryDirectory) {
    const TempDirectory directory(m_Scratch / "none");
    for (const std::size_t size : kBodySizes) {
        EXPECT_FALSE(Load(With_Body(size)));
        EXPECT_EQ(m_Recorder.Take(), (Reports{{25, "XmlParser"}})) << size;
        EXPECT_TRUE(fs::exists(m_File));
    }
}

// The names that come next are taken by links to a file that must stay as it is.
TEST_F(XmlParserOnLinux, BodiesArePrivateAndFollowNoLink) {
    const std::string treasure = m_Scratch / "treasure";
    Write_File(treasure, "untouched");
    ASSERT_TRUE(Load("<a><![CDATA[the first]]></a>"));
    std::tm local{};
    strptime(fs::directory_iterator(m_Temp.Path())->path().filename().c_str(),
             "ZORTmp_%Y%m%d%H%M%S.tmp", &local);
    local.tm_isdst = -1;
    const std::time_t first = std::mktime(&local);
    for (std::time_t second = first + 1; second < first + 400; ++second) {
        char name[64];
        std::strftime(name, sizeof name, "ZORTmp_%Y%m%d%H%M%S.tmp", localtime_r(&second, &local));
        fs::create_symlink(second % 2 ? treasure : m_Scratch / "dangling", m_Temp.Path() / name);
    }
    const mode_t mask = umask(0);
    EXPECT_TRUE(Load("<a><![CDATA[body]]></a>"));
    umask(mask);
    EXPECT_EQ(Read_File(treasure), "untouched");
    EXPECT_FALSE(fs::exists(m_Scratch / "dangling"));
    RVString name, value;
    ULONG children = 0;
    ASSERT_TRUE(m_Parser.Next(name, value, children));
    const std::string path = Text(value).substr(7);
    struct stat status {};
    ASSERT_EQ(lstat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode, S_IFREG | 0600u);
    EXPECT_EQ(Read_File(path), "body");
}

TEST_F(XmlParserOnLinux, ProcessesKeepTheirBodiesApart) {
    constexpr int kBodies = 200;
    std::vector<pid_t> children;
    for (int process = 0; process < 3; ++process) {
        children.push_back(fork());
        ASSERT_GE(children.back(), 0);
        if (children.back() > 0) continue;
        const std::string file = m_File + std::to_string(process);
        Write_File(file, Numbered_Bodies(process, kBodies));
        const bool loaded = m_Parser.Load_File(Reference(file));
        _exit(loaded && Holds_Numbered_Bodies(m_Parser, process, kBodies) ? 0 : 1);
    }
    for (const pid_t child : children) {
        int status = -1;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(Bodies(), 3 * kBodies);
}

// A file that ends before its length, as one that is cut while it is read; the system keeps some.
TEST_F(XmlParserOnLinux, FileCutShort) {
    const fs::path file = "/sys/devices/system/cpu/online";
    ASSERT_GT(fs::file_size(file), Read_File(file).size());
    EXPECT_FALSE(m_Parser.Load_File(Reference(file)));
    EXPECT_EQ(m_Recorder.Take(), (Reports{{25, "XmlParser"}}));
}

}  // namespace
