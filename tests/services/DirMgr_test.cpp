// The current directory: every kind of place, the ways there, and the way back.
#include <RVUtils/CException.h>
#include <RVUtils/DirMgr.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string>

#include "allocation_sweep.h"
#include "environment.h"
#include "report_recorder.h"
#include "scratch.h"
#if !defined(_WIN32)
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

using namespace rv_test;
namespace fs = std::filesystem;

// Each test stands in a directory of its own, in which are the directory "there" and the file
// "file", and nothing is reported.
class DirMgr : public testing::Test {
protected:
    DirMgr() { Stand_In(m_Scratch.Path()); }
    ~DirMgr() override {
        fs::current_path(m_Before);
        EXPECT_TRUE(m_Reports.Take().empty());
    }
    void Stand_In(const fs::path& directory) {
        fs::create_directories(directory / "there");
        Write_File((directory / "file").string(), "");
        fs::current_path(directory);
        m_Start = fs::current_path();
    }
    static bool Go(const std::string& path, bool create) {
        return RVDirMgr(false).Set_Current_Dir(path.c_str(), create);
    }

    fs::path m_Before = fs::current_path();
    ScratchDirectory m_Scratch;
    ReportRecorder m_Reports;
    fs::path m_Start;
};

std::string With_Backslashes(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

// In the bytes that the library is given; those of the standard library are others on Windows.
std::string Current() {
    char text[1024];
    return _getcwd(text, sizeof text) ? text : "";
}

bool Is_Loaded() {
    return GetModuleHandleA("dbghelp.dll") != nullptr;
}

TEST_F(DirMgr, GoesBackToWhereItWasMade) {
    const fs::path there = m_Start / "there";
    {
        RVDirMgr directory, missing("missing", true);
        for (int time = 0; time < 2; ++time) {
            EXPECT_TRUE(Go("there", false));
            EXPECT_TRUE(directory.Restore_Dir());
            EXPECT_EQ(fs::current_path(), m_Start);
        }
        EXPECT_TRUE(Go("there", false));
    }
    EXPECT_EQ(fs::current_path(), m_Start);
    {
        std::optional<RVDirMgr> from_start(std::in_place, "there", false), copy(from_start);
        std::optional<RVDirMgr> assigned(std::in_place);
        from_start.reset();
        EXPECT_TRUE(copy->Restore_Dir());
        assigned = copy;
        copy.reset();
        EXPECT_TRUE(Go("there", false));
        EXPECT_TRUE(Is_Loaded());
    }
    EXPECT_FALSE(Is_Loaded()) << "copies share what is loaded, and the last one ends it";
    EXPECT_EQ(fs::current_path(), there) << "what is assigned does not restore, as its source";
    RVString text;
    EXPECT_TRUE(RVDirMgr(false).Get_Current_Dir(text));
    EXPECT_EQ(text.GetString(), there.string());
}

TEST_F(DirMgr, TakesEveryKindOfPath) {
    const std::string kOdd = "a b\\\xC3\xA4.x y\\.z", kLong(258, '\\');
    const struct {
        std::string path;  // "@" at its beginning stands for the start
        bool create, expected;
        std::string current;  // below the start
    } kRows[] = {{"", true, false, ""},
                 {"there", false, true, "there"},
                 {"@\\there\\", false, true, "there"},
                 {"@\\missing", false, false, ""},
                 {"@\\New\\Sub", true, true, "New\\Sub"},
                 {"@\\New\\Sub\\", true, true, "New\\Sub"},
                 {"@\\there\\New\\..\\other", true, true, "there\\other"},
                 {"@\\" + kOdd, true, true, kOdd},
                 {kOdd, true, true, kOdd},
                 {"a\\\\b\\", true, true, "a\\b"},
                 {"there\\..\\a\\.\\b", true, true, "a\\b"},
                 // That the last level is no directory is not told.
                 {"file", true, true, ""},
                 {"@\\there\\..\\file", true, true, ""},
                 // What is below a file must not be made elsewhere.
                 {"there\\..\\file\\a", true, false, ""},
                 {"@\\file\\a", true, false, ""},
                 // With parts that just find room, and that do not.
                 {"a" + kLong + "b", true, true, "a\\b"},
                 {"a" + kLong + "\\b", true, false, ""},
                 {"." + std::string(256, 'n'), true, false, ""}};
    int number = 0;
    for (const auto& row : kRows) {
        Stand_In(m_Scratch.Path() / std::to_string(number++));
        const std::string start = With_Backslashes(m_Start.string());
        const std::string path = row.path.starts_with('@') ? start + row.path.substr(1) : row.path;
        EXPECT_EQ(Go(path, row.create), row.expected) << path;
        EXPECT_EQ(With_Backslashes(Current()),
                  row.current.empty() ? start : start + '\\' + row.current);
        const auto entries = std::distance(fs::directory_iterator(m_Start), {});
        EXPECT_TRUE(row.expected || entries == 2) << path << " made something";
    }
}

TEST_F(DirMgr, MakesSureOfDirectoriesInTheNetworkWithoutEnteringThem) {
    // What this machine has of the kind. Wine's path maker takes the first level of such a path for
    // a directory that it has to make, and makes nothing.
    const bool is_wine = m_Start.has_root_name();
    const std::string start = (is_wine ? "\\\\?\\" : "\\") + With_Backslashes(m_Start.string());
    EXPECT_FALSE(Go(start + "\\file\\a", true));
    for (const bool create : {false, true})
        EXPECT_EQ(Go(start + "\\a\\b", create), !is_wine);
    EXPECT_EQ(fs::is_directory("a/b"), !is_wine);
    EXPECT_EQ(Current(), m_Start.string());
}

TEST_F(DirMgr, StaysWhereItIsWithoutMemory) {
    const std::string path = (m_Start / "there").string();
    const int failures = Sweep_Allocations([&] {
        try {
            RVDirMgr directory, copy(directory);
            directory.Set_Current_Dir(path.c_str(), false);
        } catch (CMemoryException* exception) {
            exception->Delete();
        }
        const bool is_back = fs::current_path() == m_Start;
        // The way back needs memory, too.
        EXPECT_TRUE(is_back || fs::current_path() == path);
        fs::current_path(m_Start);
        EXPECT_FALSE(Is_Loaded());
    });
    EXPECT_GE(failures, 4);
}

#if !defined(_WIN32)

TEST_F(DirMgr, ChangesDrivesAndComesBack) {
    const ScratchDirectory drives;
    fs::create_directory_symlink(m_Start / "there", drives.Path() / "Q");
    const Environment variable("RVUTILS_DRIVES", drives.Path().string());
    const int before = _getdrive();
    for (const char* const path : {"q:\\New\\Sub", "Q:/New/Sub", "Q:New\\Sub\\"}) {
        {
            RVDirMgr directory;
            EXPECT_TRUE(directory.Set_Current_Dir(path, true)) << path;
            EXPECT_FALSE(directory.Set_Current_Dir("P:\\New", true));
            EXPECT_FALSE(directory.Set_Current_Dir("Q:\\missing", false));
            EXPECT_EQ(fs::current_path(), m_Start / "there/New/Sub");
            EXPECT_EQ(_getdrive(), 'Q' - '@');
        }
        EXPECT_EQ(_getdrive(), before);
        EXPECT_EQ(fs::current_path(), m_Start);
        fs::remove_all(m_Start / "there" / "New");
    }
}

TEST_F(DirMgr, FollowsLinksAndIsHeldUpByRights) {
    fs::create_directory_symlink("there", "link");
    fs::create_directory_symlink("nowhere", "dangling");
    EXPECT_FALSE(Go("dangling\\a", true));
    EXPECT_TRUE(Go("link\\a\\b", true));
    EXPECT_EQ(fs::current_path(), m_Start / "there/a/b");
    fs::current_path(m_Start);
    chmod("there", 0555);
    // The administrator's rights would not be looked at.
    constexpr uid_t kNobody = 65534;
    const uid_t user = geteuid();
    ASSERT_EQ(seteuid(user == 0 ? kNobody : user), 0);
    EXPECT_FALSE(Go("there\\new\\sub", true));
    EXPECT_FALSE(Go((m_Start / "there/new").string(), true));
    ASSERT_EQ(seteuid(user), 0);
    chmod("there", 0755);
}

TEST_F(DirMgr, KnowsNoPlaceThatIsTooLongOrGone) {
    std::string place = (m_Start / "there").string() + "/";
    place.append(259 - place.size(), 'l');
    for (const std::string& where : {place, place + "l", m_Start.string() + "/gone"}) {
        const bool is_known = where == place;
        fs::create_directories(where);
        fs::current_path(where);
        if (where.ends_with("gone")) fs::remove(where);
        RVDirMgr directory;
        RVString text("before");
        EXPECT_EQ(directory.Get_Current_Dir(text), is_known);
        EXPECT_EQ(text.GetString(), is_known ? place : "before");
        fs::current_path(m_Start);
        EXPECT_EQ(directory.Restore_Dir(), is_known);
        EXPECT_EQ(fs::current_path(), is_known ? fs::path(place) : m_Start);
    }
}

#endif

}  // namespace
