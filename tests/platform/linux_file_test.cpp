// Files and paths where the layer supplies them itself: links, modes, devices, limits, drives.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <optional>
#include <string>
#include <thread>

#include "environment.h"
#include "file_size_limit.h"
#include "file_support.h"
#include "scratch.h"

namespace {

namespace fs = std::filesystem;

using rv_test::Catch;
using rv_test::Open;
using rv_test::Read_File;

TEST(LinuxFile, PipesSocketsAndDirectoriesAreRefusedWithoutWaiting) {
    const rv_test::ScratchDirectory scratch;
    ASSERT_EQ(mkfifo((scratch / "pipe").c_str(), 0600), 0);
    fs::create_symlink("pipe", scratch / "link");
    fs::create_directory(scratch / "directory");
    sockaddr_un address = {AF_UNIX, {}};
    (scratch / "socket").copy(address.sun_path, sizeof(address.sun_path) - 1);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
    for (const std::string name : {"pipe", "link", "socket", "directory"}) {
        for (const DWORD access : {GENERIC_READ, GENERIC_WRITE, GENERIC_READ | GENERIC_WRITE})
            for (const DWORD disposition : {CREATE_ALWAYS, OPEN_EXISTING}) {
                EXPECT_EQ(Open(scratch / name, disposition, access), INVALID_HANDLE_VALUE);
                EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED) << name << ' ' << access;
            }
        EXPECT_EQ(DeleteFileA((scratch / name).c_str()), name == "link") << name;
        EXPECT_EQ(fs::exists(fs::symlink_status(scratch / name)), name != "link") << name;
    }
    close(listener);
}

TEST(LinuxFile, LinksAreFollowedExceptByWhatMustBeNew) {
    const rv_test::ScratchDirectory scratch;
    rv_test::Write_File(scratch / "target", "text");
    fs::create_symlink("target", scratch / "link");
    fs::create_symlink("nowhere", scratch / "dangling");
    fs::create_symlink("loop", scratch / "loop");
    const struct {
        const char* name;
        DWORD disposition;
        DWORD error;
    } rows[] = {{"link", CREATE_NEW, ERROR_FILE_EXISTS},
                {"dangling", CREATE_NEW, ERROR_FILE_EXISTS},
                {"loop", CREATE_NEW, ERROR_FILE_EXISTS},
                {"dangling", OPEN_EXISTING, ERROR_FILE_NOT_FOUND},
                {"loop", OPEN_EXISTING, ERROR_CANT_RESOLVE_FILENAME}};
    for (const auto& row : rows) {
        EXPECT_EQ(Open(scratch / row.name, row.disposition, GENERIC_WRITE), INVALID_HANDLE_VALUE);
        EXPECT_EQ(GetLastError(), row.error) << row.name;
    }
    CFile((scratch / "link").c_str(), CFile::modeWrite).Write("TEXT", 4);
    EXPECT_TRUE(DeleteFileA((scratch / "link").c_str()));
    EXPECT_EQ(Read_File(scratch / "target"), "TEXT");
}

TEST(LinuxFile, ATemporaryFileIsPrivateWhateverTheMask) {
    const rv_test::ScratchDirectory scratch;
    const auto mode_of = [&](const char* name, DWORD attributes) {
        const mode_t before = umask(002);
        CloseHandle(Open(scratch / name, CREATE_NEW, GENERIC_WRITE, attributes));
        umask(before);
        return static_cast<mode_t>(fs::status(scratch / name).permissions());
    };
    EXPECT_EQ(mode_of("usual", FILE_ATTRIBUTE_NORMAL), mode_t{0664});
    EXPECT_EQ(mode_of("temporary", FILE_ATTRIBUTE_TEMPORARY), mode_t{0600});
}

TEST(LinuxFile, LimitsAndFullDisksAreErrors) {
    const rv_test::ScratchDirectory scratch;
    const std::string bytes(10000, 'x');
    CFile file((scratch / "file").c_str(), CFile::modeCreate | CFile::modeWrite);
    CFile full("/dev/full", CFile::modeReadWrite);
    for (CFile* const target : {&file, &file, &full}) {
        // The default of the signal for this limit is the end of the process.
        const rv_test::FileSizeLimit limit(4096);
        const auto thrown = Catch([&] { target->Write(bytes.data(), 10000); });
        EXPECT_EQ(thrown.cause, CFileException::diskFull);
        EXPECT_EQ(thrown.os_error, ERROR_DISK_FULL);
    }
    EXPECT_EQ(file.GetPosition(), 4096u) << "what fitted";

    sigset_t signal;
    sigset_t before;
    sigemptyset(&signal);
    sigaddset(&signal, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &signal, &before);
    EXPECT_EQ(sigismember(&before, SIGXFSZ), 0) << "the mask is as it was";
    const timespec now = {};
    EXPECT_EQ(sigtimedwait(&signal, nullptr, &now), -1) << "no signal waits";
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST(LinuxFile, CountsBeyondTheSystemsCalls) {
    // Never touched, and so no memory.
    constexpr UINT kBytes = 0xF0000000;
    constexpr int kFlags = MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE;
    void* const bytes = mmap(nullptr, kBytes, PROT_READ, kFlags, -1, 0);
    ASSERT_NE(bytes, MAP_FAILED);
    CFile sink("/dev/null", CFile::modeWrite);
    EXPECT_EQ(Catch([&] { sink.Write(bytes, kBytes); }).cause, -1);
    munmap(bytes, kBytes);
}

TEST(LinuxFile, ReadingATerminalWaitsThroughSignals) {
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    ASSERT_TRUE(master >= 0 && grantpt(master) == 0 && unlockpt(master) == 0);
    CFile terminal(ptsname(master), CFile::modeRead);
    struct sigaction interrupting = {};
    interrupting.sa_handler = [](int) {};
    sigaction(SIGUSR1, &interrupting, nullptr);
    std::thread sender([master, reader = pthread_self()] {
        for (int i = 0; i < 50; ++i) {
            pthread_kill(reader, SIGUSR1);
            usleep(1000);
        }
        EXPECT_EQ(write(master, "line\n", 5), 5);
    });
    std::string line;
    EXPECT_EQ(Catch([&] { line = rv_test::Read(terminal); }).cause, -1);
    EXPECT_EQ(line, "line\n") << "what there is, and no waiting for more";
    sender.join();
    std::signal(SIGUSR1, SIG_DFL);
    EXPECT_EQ(Catch([&] { terminal.Seek(0, CFile::begin); }).cause, CFileException::badSeek);
    close(master);
}

// The absolute form of a path, "(error <number>)" without one.
std::string Full_Path(const std::string& path) {
    char buffer[1000];
    SetLastError(0);
    if (GetFullPathNameA(path.c_str(), sizeof(buffer), buffer, nullptr) != 0) return buffer;
    return "(error " + std::to_string(GetLastError()) + ")";
}

TEST(LinuxPath, SeparatorsAndDrives) {
    const rv_test::ScratchDirectory scratch;
    fs::create_directories(scratch / "drives/E");
    fs::create_directory_symlink("E", scratch / "drives/D");
    fs::create_directory(scratch / "drives/x");
    rv_test::Write_File(scratch / "drives/F", "no directory");
    std::optional<rv_test::Environment> drives(std::in_place, "RVUTILS_DRIVES", scratch / "drives");
    const std::string here = fs::current_path();
    const struct {
        const char* path;
        std::string expected;
    } rows[] = {
        {"\\level\\name", "/level/name"},
        {"/level\\name", "/level/name"},
        {"\\\\level//\\name\\", "/level/name/"},
        {"C:\\level\\name", "/level/name"},
        {"c:/level", "/level"},
        {"C:", "/"},
        {"C:name", "/name"},
        {"D:\\name", scratch / "drives/D/name"},
        {"d:name", scratch / "drives/D/name"},
        {"E:\\", scratch / "drives/E/"},
        {"X:\\name", scratch / "drives/x/name"},
        {"F:\\name", "(error 3)"},
        {".\\z:\\name", here + "/z:/name"},
        {".", here},
        {"a\\.\\..\\.b\\b.\\...", here + "/a/../.b/b./..."},
        {"\\.\\.", "/"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(Full_Path(row.path), row.expected) << row.path;

    CFile("D:\\made", CFile::modeCreate | CFile::modeWrite).Write("x", 1);
    EXPECT_EQ(Read_File(scratch / "drives/E/made"), "x");
    EXPECT_EQ(Catch([] { CFile none("Z:\\none", CFile::modeRead); }).cause,
              CFileException::badPath);
    drives.reset();
    EXPECT_EQ(Full_Path("D:\\name"), "(error 3)") << "no drives but C:";
}

TEST(LinuxPath, TheTemporaryDirectory) {
    const auto answer = [](const char* directory) -> std::string {
        const rv_test::Environment variable("TMPDIR", directory);
        char buffer[1000];
        return GetTempPathA(sizeof(buffer), buffer) != 0 ? buffer : "(none)";
    };
    EXPECT_EQ(answer(""), "/tmp/");
    EXPECT_EQ(answer("/nowhere//"), "/nowhere/");
    EXPECT_EQ(answer("C:\\nowhere"), "/nowhere/");
    EXPECT_EQ(answer("here"), fs::current_path() / "here/") << "good when the directory changes";
}

TEST(LinuxPath, NoLengthOfTheCurrentDirectoryIsTooLong) {
    const rv_test::ScratchDirectory scratch;
    const fs::path before = fs::current_path();
    fs::path deep = fs::canonical(scratch.Path());
    for (int i = 0; i < 10; ++i)
        deep /= std::string(200, 'x');
    fs::create_directories(deep);
    fs::current_path(deep);
    CFile file("file", CFile::modeCreate | CFile::modeWrite);
    EXPECT_EQ(file.GetFilePath(), (deep / "file").c_str());
    EXPECT_EQ(Catch([] { CFile(std::string(5000, 'x').c_str(), CFile::modeRead); }).os_error,
              ERROR_FILENAME_EXCED_RANGE);
    fs::current_path(before);
}

}  // namespace
