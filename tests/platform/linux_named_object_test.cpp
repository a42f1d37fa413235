// Named objects as files: who may use them, what others do to them, and what is left of them.
#include <RVUtils/CMutex.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <string>
#include <vector>

#include "scratch.h"

namespace {

const std::string kOwn = "/dev/shm/rvutils-object-" + std::to_string(geteuid()) + "-";
const std::string kGlobal = "/dev/shm/rvutils-object-global-";

HANDLE Block(const char* name) {
    return CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 1, name);
}

// Runs `part` in a forked child, which ends at once: with what it gives, or by a signal.
template <class Part>
int In_Child(Part part) {
    const pid_t child = fork();
    if (child == 0) _exit(part() ? 0 : 1);
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

TEST(LinuxNamedObject, IsAFileForThoseWhoMayUseIt) {
    const struct {
        const char* name;
        std::string path;
        mode_t mode;
    } kRows[] = {
        {"rv_test", kOwn + "rv_test", 0600},
        {"Local\\rv_test", kOwn + "rv_test", 0600},
        {"{a} /.\xFF%", kOwn + "%7Ba%7D%20%2F.%FF%25", 0600},
        {"Global\\rv_test", kGlobal + "rv_test", 0666},
    };
    const mode_t before = umask(077);
    for (const auto& row : kRows) {
        HANDLE const block = Block(row.name);
        struct stat facts = {};
        EXPECT_EQ(stat(row.path.c_str(), &facts), 0) << row.name;
        EXPECT_EQ(facts.st_mode, S_IFREG | row.mode) << row.name;
        EXPECT_TRUE(CloseHandle(block));
        EXPECT_FALSE(std::filesystem::exists(row.path)) << row.name;
    }
    umask(before);
}

TEST(LinuxNamedObject, RefusesWhatSomebodyPutInItsPlace) {
    const std::string path = kOwn + "rv_test";
    const rv_test::ScratchDirectory scratch;
    rv_test::Write_File(scratch / "victim", "victim");
    const struct {
        const char* why;
        void (*put)(const char* path, const char* victim);
        DWORD error;
    } kRows[] = {
        {"link", [](const char* at, const char* to) { symlink(to, at); },
         ERROR_CANT_RESOLVE_FILENAME},
        {"second name", [](const char* at, const char* to) { link(to, at); }, ERROR_ACCESS_DENIED},
        {"pipe", [](const char* at, const char*) { mkfifo(at, 0600); }, ERROR_ACCESS_DENIED},
        {"directory", [](const char* at, const char*) { mkdir(at, 0700); }, ERROR_ACCESS_DENIED},
    };
    for (const auto& row : kRows) {
        row.put(path.c_str(), (scratch / "victim").c_str());
        if (!std::filesystem::exists(std::filesystem::symlink_status(path))) continue;
        EXPECT_EQ(Block("rv_test"), nullptr) << row.why;
        EXPECT_EQ(GetLastError(), row.error) << row.why;
        remove(path.c_str());
    }
    EXPECT_EQ(rv_test::Read_File(scratch / "victim"), "victim");
    if (geteuid() != 0) return;
    rv_test::Write_File(path, "");
    EXPECT_EQ(chown(path.c_str(), 1, 1), 0);
    EXPECT_EQ(Block("rv_test"), nullptr) << "another user's";
    remove(path.c_str());
}

TEST(LinuxNamedObject, RefusesASpoiledFileAndStartsAnewFromADeadOne) {
    const std::string path = kOwn + "rv_test";
    HANDLE const block = Block("rv_test");
    const std::string whole = rv_test::Read_File(path);
    EXPECT_EQ(In_Child([&] { return OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, "rv_test"); }), 0);
    std::vector<std::string> spoiled = {"", whole.substr(0, 20), whole.substr(1), whole + 'x'};
    for (const std::size_t place :
         std::initializer_list<std::size_t>{0, 8, 12, 17, 24}) {  // magic, kind, length, size, name
        spoiled.push_back(whole);
        spoiled.back()[place] = 'x';
    }
    for (const std::string& content : spoiled) {
        EXPECT_EQ(In_Child([&] {
                      const int file = open(path.c_str(), O_RDWR | O_TRUNC);
                      return write(file, content.data(), content.size()) == std::ssize(content) &&
                             !OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, "rv_test") &&
                             !Block("rv_test");
                  }),
                  0);
    }
    CloseHandle(block);
    rv_test::Write_File(path, whole + "rest");
    EXPECT_EQ(OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, "rv_test"), nullptr);
    EXPECT_FALSE(std::filesystem::exists(path));
    rv_test::Write_File(path, std::string(3, 'x'));
    HANDLE const again = Block("rv_test");
    EXPECT_EQ(rv_test::Read_File(path), whole);
    CloseHandle(again);
}

TEST(LinuxNamedObject, SharedWordIsAllThatASpoiledMutexReaches) {
    HANDLE const handle = CreateMutexA(nullptr, FALSE, "rv_test");
    const int file = open((kOwn + "rv_test").c_str(), O_RDWR);
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* const memory = mmap(nullptr, page, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    EXPECT_EQ(WaitForSingleObject(handle, 0), WAIT_OBJECT_0);
    std::memset(memory, 0xFF, page);
    EXPECT_TRUE(ReleaseMutex(handle));
    EXPECT_FALSE(ReleaseMutex(handle));
    std::memset(memory, 0xFF, page);
    EXPECT_EQ(WaitForSingleObject(handle, 20), WAIT_TIMEOUT);
    std::memset(memory, 0, page);
    EXPECT_EQ(WaitForSingleObject(handle, 0), WAIT_OBJECT_0);
    EXPECT_TRUE(ReleaseMutex(handle));
    munmap(memory, page);
    close(file);
    CloseHandle(handle);
}

TEST(LinuxNamedObject, ForkedChildHoldsNothingOfItsParents) {
    CMutex mutex(FALSE, "rv_test mutex");
    HANDLE const block = Block("rv_test");
    void* const view = MapViewOfFile(block, FILE_MAP_ALL_ACCESS, 0, 0, 0);
    ASSERT_TRUE(mutex.Lock());
    EXPECT_EQ(In_Child([&] {
                  CMutex own(FALSE, "rv_test mutex");
                  return !mutex.Unlock() && !own.Lock(10) && UnmapViewOfFile(view) &&
                         CloseHandle(block);
              }),
              0);
    EXPECT_TRUE(std::filesystem::exists(kOwn + "rv_test"));
    EXPECT_TRUE(mutex.Unlock());
    UnmapViewOfFile(view);
    CloseHandle(block);
    EXPECT_FALSE(std::filesystem::exists(kOwn + "rv_test"));
    // What a killed process leaves may be swept at once, by any process of the machine.
    EXPECT_TRUE(WIFSIGNALED(In_Child([] {
        return CMutex(FALSE, "rv_test mutex").Lock() && Block("rv_test") &&
               std::filesystem::exists(kOwn + "rv_test") && raise(SIGKILL) == 0;
    })));
    EXPECT_TRUE(mutex.Lock(1000) && mutex.Unlock());
    EXPECT_EQ(In_Child([] { return CMutex(FALSE, "rv_test other").Lock(); }), 0);
    EXPECT_FALSE(std::filesystem::exists(kOwn + "rv_test")) << "the next process sweeps";
    EXPECT_TRUE(std::filesystem::exists(kOwn + "rv_test%20mutex")) << "but not what is in use";
}

}  // namespace
