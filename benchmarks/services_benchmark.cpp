// Locks and memory between processes, beside what the C library and Boost have for it.

#include <RVUtils/RVMutex.h>
#include <RVUtils/RVSharedMemory.h>
#include <benchmark/benchmark.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <mutex>
#include <new>
#include <string>
#include <tuple>
#include <unordered_map>
#include <utility>
#include <vector>

#if defined(BENCH_WITH_BOOST)
#include <boost/interprocess/sync/named_mutex.hpp>
#endif

#include "ratio_main.h"

namespace {

using rv_bench::At_Most_Times;
using rv_bench::Set_Bar;

constexpr GUID kGuid = {0x5E4B1C9D, 0x1234, 0xABCD, {0, 1, 2, 3, 4, 5, 6, 7}};

// Zeros that this process shares with those that it forks, to its end.
void* Shared_Zeros(std::size_t bytes) {
    return mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
}

// The C library's lock with the same promises.
class RobustMutex {
public:
    RobustMutex() {
        pthread_mutexattr_t kind;
        pthread_mutexattr_init(&kind);
        pthread_mutexattr_setpshared(&kind, PTHREAD_PROCESS_SHARED);
        pthread_mutexattr_setrobust(&kind, PTHREAD_MUTEX_ROBUST);
        pthread_mutexattr_settype(&kind, PTHREAD_MUTEX_RECURSIVE);
        pthread_mutex_init(&m_Mutex, &kind);
        pthread_mutexattr_destroy(&kind);
    }

    void Lock() {
        if (pthread_mutex_lock(&m_Mutex) == EOWNERDEAD) pthread_mutex_consistent(&m_Mutex);
    }
    void Unlock() { pthread_mutex_unlock(&m_Mutex); }

private:
    pthread_mutex_t m_Mutex;
};

RobustMutex& The_Robust_Mutex() {
    static auto* const mutex = new (Shared_Zeros(sizeof(RobustMutex))) RobustMutex;
    return *mutex;
}

// That lock behind the interface of RVMutex: by the name that a GUID gives, held as long as the
// object lives. Its locks are known beforehand.
class RobustScope {
public:
    explicit RobustScope(const GUID& guid) {
        wchar_t text[128];
        StringFromGUID2(guid, text, 128);
        m_Name.assign(text, text + 38);
        m_Name += " : MUTEX";
        m_Mutex = &Find(m_Name);
        m_Mutex->Lock();
    }
    RobustScope(const RobustScope&) = delete;
    RobustScope& operator=(const RobustScope&) = delete;
    ~RobustScope() { m_Mutex->Unlock(); }

private:
    static RobustMutex& Find(const std::string& name) {
        static std::mutex lock;
        static std::unordered_map<std::string, RobustMutex*> known;
        const std::lock_guard hold(lock);
        RobustMutex*& mutex = known[name];
        if (!mutex) mutex = &The_Robust_Mutex();
        return *mutex;
    }

    RobustMutex* m_Mutex;
    std::string m_Name;
};

template <class Scope>
void Make_And_Destroy(benchmark::State& state) {
    for (auto _ : state) {
        const Scope scope(kGuid);
        benchmark::DoNotOptimize(&scope);
    }
    state.SetItemsProcessed(state.iterations());
}

#if defined(BENCH_WITH_BOOST)
void Make_And_Destroy_Boost(benchmark::State& state) {
    using boost::interprocess::named_mutex;
    constexpr char kName[] = "rvutils_bench";
    {
        named_mutex known(boost::interprocess::open_or_create, kName);
        for (auto _ : state) {
            named_mutex mutex(boost::interprocess::open_or_create, kName);
            mutex.lock();
            mutex.unlock();
        }
    }
    named_mutex::remove(kName);
    state.SetItemsProcessed(state.iterations());
}
#endif

// --- two processes -------------------------------------------------------------------------------

constexpr int kBatch = 20'000;

struct Rounds {
    std::atomic<long> started;
    std::atomic<long> ended;
    long count;  // under the lock
};

template <class Scope>
void Run_Batch(Rounds& rounds) {
    for (int turn = 0; turn < kBatch; ++turn) {
        const Scope scope(kGuid);
        ++rounds.count;
    }
}

// The one process's part of all batches; it is killed in the end.
template <class Scope>
[[noreturn]] void Run_Batches(Rounds& rounds) {
    for (long batch = 1;; ++batch) {
        while (rounds.started.load() < batch)
            usleep(10);
        Run_Batch<Scope>(rounds);
        rounds.ended.store(batch);
    }
}

// Both take the lock equally often, as fast as they can.
template <class Scope>
void Contend(benchmark::State& state) {
    auto& rounds = *new (Shared_Zeros(sizeof(Rounds))) Rounds{};
    { const Scope made(kGuid); }
    const pid_t child = fork();
    if (child == 0) Run_Batches<Scope>(rounds);
    for (auto _ : state) {
        const long batch = rounds.started.fetch_add(1) + 1;
        Run_Batch<Scope>(rounds);
        while (rounds.ended.load() < batch)
            usleep(10);
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    if (rounds.count != state.iterations() * 2 * kBatch) state.SkipWithError("lost a round");
    munmap(&rounds, sizeof rounds);
    state.SetItemsProcessed(state.iterations() * 2 * kBatch);
}

// --- copies --------------------------------------------------------------------------------------

enum class Direction { kRead, kWrite };

void Copy(benchmark::State& state, Direction direction, ULONG bytes) {
    RVSharedMemory block(true);
    if (!block.Create("rvutils_bench", bytes)) state.SkipWithError("no block");
    std::vector<char> buffer(bytes, 'x');
    for (auto _ : state) {
        const bool done = direction == Direction::kRead ? block.Read(buffer.data(), bytes)
                                                        : block.Write(buffer.data(), bytes);
        if (!done) state.SkipWithError("no copy");
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations());
}

void Copy_Under_Robust_Mutex(benchmark::State& state, Direction direction, ULONG bytes) {
    void* const block = Shared_Zeros(bytes);
    std::memset(block, 0, bytes);
    std::vector<char> buffer(bytes, 'x');
    RobustMutex& mutex = The_Robust_Mutex();
    for (auto _ : state) {
        mutex.Lock();
        if (direction == Direction::kRead)
            std::memcpy(buffer.data(), block, bytes);
        else
            std::memcpy(block, buffer.data(), bytes);
        mutex.Unlock();
        benchmark::ClobberMemory();
    }
    munmap(block, bytes);
    state.SetItemsProcessed(state.iterations());
}

const bool g_Registered = [] {
    const auto add = [](const std::string& name, auto... run) {
        return benchmark::RegisterBenchmark(name.c_str(), run...);
    };
    const std::string making = "make and destroy a lock, known GUID";
    add(making + "/ours", Make_And_Destroy<RVMutex>);
    add(making + "/robust pthread mutex", Make_And_Destroy<RobustScope>);
#if defined(BENCH_WITH_BOOST)
    add(making + "/boost named_mutex", Make_And_Destroy_Boost);
    Set_Bar({making, 4, 0, {"boost named_mutex"}});
#endif
    const std::string contending = "two processes on one lock";
    add(contending + "/ours", Contend<RVMutex>)->UseRealTime();
    add(contending + "/robust pthread mutex", Contend<RobustScope>)->UseRealTime();
    Set_Bar({contending, 1, 0, {}});
    for (const auto& [name, direction] :
         {std::pair{"Read", Direction::kRead}, std::pair{"Write", Direction::kWrite}}) {
        for (const auto& [size, bytes, times] :
             {std::tuple{", 64 bytes", ULONG{64}, 5.0}, std::tuple{", 64 KB", ULONG{65536}, 1.1}}) {
            const std::string work = std::string(name) + size;
            add(work + "/ours", Copy, direction, bytes);
            add(work + "/robust pthread mutex and memcpy", Copy_Under_Robust_Mutex, direction,
                bytes);
            Set_Bar({work, At_Most_Times(times), 0, {}});
        }
    }
    return true;
}();

}  // namespace
