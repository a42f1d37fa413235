// What mutexes and memory blocks with a name promise.
#include <RVUtils/CMutex.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>
#include <thread>

namespace {

HANDLE Block(const std::string& name, DWORD size = 1) {
    return CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, size, name.c_str());
}

// Ends a handle that is to be there; gives the error where it is not.
DWORD Outcome(HANDLE handle) {
    const DWORD error = GetLastError();
    return handle && CloseHandle(handle) ? ERROR_SUCCESS : error;
}

TEST(NamedObject, TakesNamesAndRefusesThem) {
    const std::string longest(MAX_PATH - 1, '\xFC');
    const struct {
        const char* why;
        std::string name;
        bool is_taken;
    } kRows[] = {
        {"plain", "rv_test name", true},
        {"punctuation", "rv_test %41/../{*?}\n\x01\xFF", true},
        {"dots", "..", true},
        {"of all users", "Global\\rv_test name", true},
        {"of the own user", "Local\\rv_test name", true},
        {"as long as possible", longest, true},
        {"a backslash inside", "rv_test\\name", false},
        {"longer", std::string(300, 'x'), false},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(Outcome(Block(row.name)) == ERROR_SUCCESS, row.is_taken) << row.why;
        EXPECT_EQ(Outcome(CreateMutexA(nullptr, FALSE, row.name.c_str())) == ERROR_SUCCESS,
                  row.is_taken)
            << row.why;
    }
}

TEST(NamedObject, IsOneByItsNameAndScope) {
    const std::string longest(MAX_PATH - 1, 'x');
    const struct {
        const char* why;
        std::string name, other;
        bool is_same;
    } kRows[] = {
        {"the same", "rv_test a", "rv_test a", true},
        {"with its prefix", "rv_test a", "Local\\rv_test a", true},
        {"case", "rv_test a", "rv_test A", false},
        {"the end", longest, longest.substr(1) + 'y', false},
#if !defined(_WIN32)  // Wine has one name space for both
        {"of all users", "rv_test a", "Global\\rv_test a", false},
#endif
    };
    for (const auto& row : kRows) {
        HANDLE const block = Block(row.name);
        EXPECT_EQ(Outcome(OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, row.other.c_str())),
                  row.is_same ? ERROR_SUCCESS : ERROR_FILE_NOT_FOUND)
            << row.why;
        EXPECT_EQ(Outcome(CreateMutexA(nullptr, FALSE, row.other.c_str())),
                  row.is_same ? ERROR_INVALID_HANDLE : ERROR_SUCCESS)
            << row.why << ": a mutex";
        CloseHandle(block);
        HANDLE const mutex = CreateMutexA(nullptr, FALSE, row.name.c_str());
        EXPECT_EQ(Outcome(Block(row.other)), row.is_same ? ERROR_INVALID_HANDLE : ERROR_SUCCESS)
            << row.why << ": a block";
        CloseHandle(mutex);
        EXPECT_EQ(Outcome(Block(row.name)), ERROR_SUCCESS) << row.why << ": without the mutex";
    }
}

TEST(NamedObject, RefusesHandlesOfAnotherKind) {
    HANDLE const block = Block("rv_test block");
    CMutex mutex(FALSE, "rv_test mutex");
    EXPECT_EQ(MapViewOfFile(mutex.m_hObject, FILE_MAP_ALL_ACCESS, 0, 0, 0), nullptr);
    for (HANDLE const handle : {block, HANDLE{nullptr}, INVALID_HANDLE_VALUE}) {
        EXPECT_FALSE(ReleaseMutex(handle));
        EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    }
    EXPECT_EQ(WaitForSingleObject(nullptr, INFINITE), WAIT_FAILED);
    EXPECT_FALSE(UnmapViewOfFile(&mutex));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_ADDRESS);
    CloseHandle(block);
    CMutex nothing(FALSE, "rv\\test");
    EXPECT_EQ(nothing.m_hObject, nullptr);
    EXPECT_FALSE(nothing.Lock() || nothing.Unlock());
}

TEST(NamedObject, ViewKeepsABlockWithoutItsHandle) {
    HANDLE const first = Block("rv_test block", 5000), second = Block("rv_test block");
    auto* const view = static_cast<char*>(MapViewOfFile(first, FILE_MAP_ALL_ACCESS, 0, 0, 0));
    auto* const other = static_cast<char*>(MapViewOfFile(second, FILE_MAP_ALL_ACCESS, 0, 0, 0));
    MEMORY_BASIC_INFORMATION facts;
    ASSERT_EQ(VirtualQuery(other, &facts, sizeof facts), sizeof facts);
    EXPECT_EQ(facts.RegionSize, 8192U);
    EXPECT_TRUE(CloseHandle(first) && CloseHandle(second));
    EXPECT_NE(other, view);
    view[8191] = 'x';
    EXPECT_EQ(other[8191], 'x');
    EXPECT_TRUE(UnmapViewOfFile(view) && UnmapViewOfFile(other));
    EXPECT_FALSE(UnmapViewOfFile(view));
    EXPECT_EQ(Outcome(OpenFileMappingA(FILE_MAP_ALL_ACCESS, FALSE, "rv_test block")),
              ERROR_FILE_NOT_FOUND);
}

// What another thread gets of a mutex, which it releases again.
DWORD Elsewhere(HANDLE mutex, DWORD milliseconds) {
    return std::async(std::launch::async,
                      [=] {
                          const DWORD outcome = WaitForSingleObject(mutex, milliseconds);
                          EXPECT_EQ(ReleaseMutex(mutex) != FALSE, outcome != WAIT_TIMEOUT);
                          EXPECT_FALSE(ReleaseMutex(mutex));
                          EXPECT_EQ(GetLastError(), ERROR_NOT_OWNER);
                          return outcome;
                      })
        .get();
}

TEST(Mutex, IsHeldByOneThreadAsOftenAsItTookIt) {
    CMutex first(FALSE, "rv_test mutex"), second(FALSE, "rv_test mutex");
    CSingleLock lock(&first), other(&second);
    EXPECT_EQ(Elsewhere(first.m_hObject, 0), WAIT_OBJECT_0);
    EXPECT_TRUE(lock.Lock(0) && other.Lock(0) && first.Lock());
    EXPECT_EQ(Elsewhere(first.m_hObject, 0), WAIT_TIMEOUT);
    EXPECT_TRUE(lock.Unlock() && second.Unlock());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Elsewhere(second.m_hObject, 30), WAIT_TIMEOUT);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(29));
    auto waiting = std::async(std::launch::async, Elsewhere, second.m_hObject, INFINITE);
    EXPECT_EQ(waiting.wait_for(std::chrono::milliseconds(1100)), std::future_status::timeout);
    EXPECT_TRUE(other.Unlock());
    EXPECT_EQ(waiting.get(), WAIT_OBJECT_0);
}

TEST(Mutex, PassesOnWhatAThreadEndedWith) {
    CMutex mutex(FALSE, "rv_test mutex"), inner(FALSE, "rv_test inner");
    std::thread([&] {
        CMutex between(FALSE, "rv_test between");
        EXPECT_TRUE(mutex.Lock() && between.Lock() && inner.Lock());
        EXPECT_TRUE(mutex.Lock() && between.Unlock());
    }).join();
    EXPECT_EQ(Elsewhere(mutex.m_hObject, 1000), WAIT_ABANDONED);
    EXPECT_EQ(Elsewhere(mutex.m_hObject, 1000), WAIT_OBJECT_0);
    EXPECT_EQ(WaitForSingleObject(inner.m_hObject, 1000), WAIT_ABANDONED);
    EXPECT_TRUE(inner.Unlock());
    // Without its handle a held mutex stays held, whatever else is used meanwhile.
    std::thread([] {
        CMutex(FALSE, "rv_test held").Lock();
        for (int other = 0; other < 100; ++other) {
            CMutex brief(FALSE, ("rv_test " + std::to_string(other)).c_str());
            EXPECT_TRUE(brief.Lock() && brief.Unlock());
        }
    }).join();
    CMutex held(FALSE, "rv_test held");
    EXPECT_TRUE(held.Lock(1000) && held.Unlock());
}

}  // namespace
