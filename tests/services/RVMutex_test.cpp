// Scope locks between threads and processes, also with processes that are killed.
#include <RVUtils/CMutex.h>
#include <RVUtils/RVMutex.h>
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <optional>
#include <random>
#include <thread>
#include <vector>

#include "allocation_sweep.h"
#include "services_support.h"

namespace {

using namespace rv_test;

// Whether a thread that holds nothing can have the mutex; `name` as it must be.
bool Is_Free(const char* name) {
    return std::async(std::launch::async,
                      [name] {
                          CMutex mutex(FALSE, name);
                          return mutex.Lock(0) && mutex.Unlock();
                      })
        .get();
}

constexpr char kName1[] = "{00000001-1234-ABCD-0001-0203FCFDFEFF} : MUTEX";
constexpr char kName2[] = "{00000002-1234-ABCD-0001-0203FCFDFEFF} : MUTEX";
constexpr char kNameOfZeros[] = "{00000000-0000-0000-0000-000000000000} : MUTEX";

TEST(RVMutex, IsHeldUnderItsNameUntilTheLastObjectIsGone) {
    {
        const RVMutex zeros(GUID{});
        EXPECT_FALSE(Is_Free(kNameOfZeros));
        std::optional<RVMutex> first(Guid_Of(1)), again(Guid_Of(1));
        std::optional<RVMutex> copy(*first), assigned(Guid_Of(2));
        EXPECT_FALSE(Is_Free(kName1) || Is_Free(kName2));
        assigned = *copy;
        EXPECT_TRUE(Is_Free(kName2)) << "what an assignment overwrites is given back";
        *assigned = *assigned;
        first.reset();
        copy.reset();
        EXPECT_FALSE(Is_Free(kName1));
        assigned.reset();
        EXPECT_FALSE(Is_Free(kName1)) << "the second object of the thread";
        again.reset();
        EXPECT_TRUE(Is_Free(kName1));
    }
    EXPECT_TRUE(Is_Free(kNameOfZeros));
}

TEST(RVMutex, WaitsForAnotherProcessAndForNoOtherGuid) {
    ChildProcess holder = Start_Holding("hold", 7);
    const RVMutex other(Guid_Of(2));
    auto waiting = std::async(std::launch::async, [] {
        const RVMutex mutex(Guid_Of(kArenaGuid));
        Open_Arena()->inside = 8;
    });
    EXPECT_EQ(waiting.wait_for(std::chrono::milliseconds(100)), std::future_status::timeout);
    holder.Write('q');
    EXPECT_EQ(holder.Wait(), 0) << "the other one entered with it";
    waiting.get();
}

TEST(RVMutex, IsThereUnguardedWhereTheMutexCannotBeHad) {
    HANDLE const block =
        CreateFileMappingA(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, 1, kName2);
    ASSERT_TRUE(block);
    { const RVMutex first(Guid_Of(2)), copy(first); }
    CloseHandle(block);
    EXPECT_TRUE(Is_Free(kName2));
}

TEST(RVMutex, HoldsNothingAfterAFailedAllocation) {
    const int failures = Sweep_Allocations([] {
        try {
            const RVMutex mutex(Guid_Of(1)), copy(mutex);
        } catch (CMemoryException* exception) {
            exception->Delete();
        }
        AfxSetAllocHook(nullptr);
        EXPECT_TRUE(Is_Free(kName1));
    });
    EXPECT_GE(failures, 2);
}

// Whether every worker has entered once more than `before` tells.
bool All_Go_On(Arena& arena, const std::vector<ULONG>& before) {
    const auto end = std::chrono::steady_clock::now() + kLimit;
    for (std::size_t at = 0; at < before.size(); ++at) {
        while (arena.entered[at] == before[at]) {
            if (std::chrono::steady_clock::now() > end) return false;
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        }
    }
    return true;
}

// Whether a victim may be killed anywhere, not only where it stands still inside of the lock: Wine
// passes the mutex on before the killed process stops.
#if defined(_WIN32)
constexpr bool kAnywhere = false;
#else
constexpr bool kAnywhere = true;
#endif

TEST(RVMutex, PassesOnWhatKilledProcessesHeld) {
    Arena& arena = *Open_Arena();
    arena.collisions = 0;
    std::vector<ChildProcess> workers;
    while (workers.size() < kMostWorkers - 1)
        workers.push_back(Start_Holding("work", static_cast<ULONG>(workers.size())));
    std::mt19937 random(1);
    for (ULONG round = 0; round < RVUTILS_TEST_KILLS; ++round) {
        const char* const command = kAnywhere && round % 2 == 1 ? "work" : "hold";
        ChildProcess victim = Start_Holding(command, kMostWorkers * (round + 2) - 1);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 300));
        victim.Kill();
        std::vector<ULONG> before(arena.entered, arena.entered + workers.size());
        ASSERT_TRUE(All_Go_On(arena, before)) << round;
        ASSERT_EQ(arena.collisions, 0U) << round;
    }
}

}  // namespace
