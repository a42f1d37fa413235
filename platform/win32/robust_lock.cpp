// The user's side of the kernel's robust futexes.
//
// The kernel has one list a thread of the locks that it holds, and the C library keeps it for its
// own. Ours enter the same list in the same form. While a lock is on its way into the list or out
// of it, it stands in `list_op_pending` beside it, so that a thread may be killed at any point.
#include "robust_lock.h"

#include <linux/futex.h>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>

#include "wait.h"

namespace {

struct Thread {
    std::uint32_t id = 0;      // the kernel's
    std::uint64_t serial = 0;  // of no other thread of this process, neither before nor after it
    robust_list_head* locks = nullptr;
};

std::atomic<std::uint64_t> g_Serials = 0;
// In the block of every thread from its start on: found without a call.
[[gnu::tls_model("initial-exec")]] thread_local constinit Thread t_Thread;

Thread& This_Thread() noexcept {
    if (t_Thread.id == 0) {
        std::size_t size = 0;
        t_Thread.id = static_cast<std::uint32_t>(gettid());
        t_Thread.serial = g_Serials.fetch_add(1, std::memory_order_relaxed) + 1;
        if (syscall(SYS_get_robust_list, 0, &t_Thread.locks, &size) != 0) t_Thread.locks = nullptr;
    }
    return t_Thread;
}

// The `next` that an address in the list stands for; the low bit is a mark of the C library's.
std::atomic<void*>* Link_At(void* address) noexcept {
    return reinterpret_cast<std::atomic<void*>*>(reinterpret_cast<std::uintptr_t>(address) &
                                                 ~std::uintptr_t{1});
}

std::atomic<void*>& Head() noexcept {
    return *reinterpret_cast<std::atomic<void*>*>(&t_Thread.locks->list.next);
}

// The one that stands before a `next` in memory. The head has none.
void Set_Previous(void* of, void* previous) noexcept {
    std::atomic<void*>* const link = Link_At(of);
    if (link != &Head()) link[-1].store(previous, std::memory_order_relaxed);
}

// What the kernel is to see in this order when it ends the thread in between.
void In_Order() noexcept {
    std::atomic_signal_fence(std::memory_order_seq_cst);
}

// Kernels before 6.2 can swallow the waking up when two threads end at the wrong moment, and one
// that took the lock in passing wakes nobody; so whoever sleeps has a look at times.
constexpr timespec kLongestSleep = {1, 0};

// Most locks are free again sooner than the thread would be asleep.
constexpr int kPatience = 20;

void Pause() noexcept {
#if defined(__x86_64__)
    __builtin_ia32_pause();
#endif
}

timespec Now() noexcept {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return now;
}

}  // namespace

// Tells the kernel of a lock that is taken or released.
class rv::RobustLock::Announcement {
public:
    explicit Announcement(RobustLock& lock) noexcept {
        Set(reinterpret_cast<robust_list*>(&lock.m_Next));
    }
    Announcement(const Announcement&) = delete;
    Announcement& operator=(const Announcement&) = delete;
    ~Announcement() { Set(nullptr); }

private:
    static void Set(robust_list* lock) noexcept {
        In_Order();
        t_Thread.locks->list_op_pending = lock;
        In_Order();
    }
};

class rv::RobustLock::Deadline {
public:
    explicit Deadline(DWORD milliseconds) noexcept : m_IsNever(milliseconds == INFINITE) {
        if (m_IsNever) return;
        m_End = Now();
        m_End.tv_sec += milliseconds / 1000;
        m_End.tv_nsec += milliseconds % 1000 * 1000000L;
    }

    // How long to sleep at most; all zeros when the time is over.
    timespec Sleep() const noexcept {
        if (m_IsNever) return kLongestSleep;
        const timespec now = Now();
        const long long left =
            (m_End.tv_sec - now.tv_sec) * 1000000000LL + (m_End.tv_nsec - now.tv_nsec);
        if (left >= 1000000000LL) return kLongestSleep;
        return {0, static_cast<long>(std::max(left, 0LL))};
    }

private:
    bool m_IsNever;
    timespec m_End = {};
};

bool rv::RobustLock::Is_Supported() noexcept {
    const Thread& self = This_Thread();
    return self.locks && self.locks->futex_offset ==
                             -kWordDistance - static_cast<long>(offsetof(RobustLock, m_Next));
}

void rv::RobustLock::Forget_Thread() noexcept {
    t_Thread = {};
}

rv::RobustLock::Outcome rv::RobustLock::Take(DWORD milliseconds) noexcept {
    const Thread& self = This_Thread();
    if (m_Holder.load(std::memory_order_relaxed) == self.serial) {
        m_Depth.store(m_Depth.load(std::memory_order_relaxed) + 1, std::memory_order_relaxed);
        return Outcome::kTaken;
    }
    const Announcement announcement(*this);
    if (Try(0, self.id)) return Outcome::kTaken;
    return Take_From_Others(milliseconds);
}

bool rv::RobustLock::Release() noexcept {
    if (m_Holder.load(std::memory_order_relaxed) != This_Thread().serial) return false;
    const std::uint32_t depth = m_Depth.load(std::memory_order_relaxed) - 1;
    m_Depth.store(depth, std::memory_order_relaxed);
    if (depth > 0) return true;
    const Announcement announcement(*this);
    Leave();
    if (Shared().exchange(0, std::memory_order_release) & FUTEX_WAITERS)
        syscall(SYS_futex, &Shared(), FUTEX_WAKE, 1, nullptr, nullptr, 0);
    return true;
}

bool rv::RobustLock::Try(std::uint32_t seen, std::uint32_t wanted) noexcept {
    if (!Shared().compare_exchange_strong(seen, wanted, std::memory_order_acquire,
                                          std::memory_order_relaxed))
        return false;
    Enter();
    return true;
}

// False when the time is over.
bool rv::RobustLock::Wait(std::uint32_t seen, const Deadline& deadline) noexcept {
    const timespec sleep = deadline.Sleep();
    if (sleep.tv_sec == 0 && sleep.tv_nsec == 0) return false;
    const std::uint32_t awaited = seen | FUTEX_WAITERS;
    if (seen == awaited || Shared().compare_exchange_strong(seen, awaited))
        syscall(SYS_futex, &Shared(), FUTEX_WAIT, awaited, &sleep, nullptr, 0);
    return true;
}

rv::RobustLock::Outcome rv::RobustLock::Take_From_Others(DWORD milliseconds) noexcept {
    const Deadline deadline(milliseconds);
    std::uint32_t others = 0;  // FUTEX_WAITERS when there may be some
    for (int turn = 0;; ++turn) {
        const std::uint32_t seen = Shared().load(std::memory_order_relaxed);
        if ((seen & FUTEX_TID_MASK) == 0) {
            if (Try(seen, t_Thread.id | others | (seen & FUTEX_WAITERS)))
                return seen & FUTEX_OWNER_DIED ? Outcome::kAbandoned : Outcome::kTaken;
        } else if (turn < kPatience) {
            Pause();
        } else {
            if (!Wait(seen, deadline)) return Outcome::kTimedOut;
            others = FUTEX_WAITERS;
        }
    }
}

void rv::RobustLock::Enter() noexcept {
    m_Holder.store(t_Thread.serial, std::memory_order_relaxed);
    m_Depth.store(1, std::memory_order_relaxed);
    void* const first = Head().load(std::memory_order_relaxed);
    m_Next.store(first, std::memory_order_relaxed);
    m_Previous.store(&Head(), std::memory_order_relaxed);
    Set_Previous(first, &m_Next);
    In_Order();
    Head().store(&m_Next, std::memory_order_relaxed);
}

void rv::RobustLock::Leave() noexcept {
    m_Holder.store(0, std::memory_order_relaxed);
    void* const next = m_Next.load(std::memory_order_relaxed);
    void* const previous = m_Previous.load(std::memory_order_relaxed);
    Set_Previous(next, previous);
    Link_At(previous)->store(next, std::memory_order_relaxed);
}
