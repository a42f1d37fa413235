// A lock that threads of different processes take.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "types.h"

namespace rv {

// What this process keeps of a lock. Of the lock itself the processes share one word and nothing
// else: the kernel's number of the thread that has it. Whoever spoils that word can let two in or
// keep all out, but reaches nothing else of this process.
//
// While a thread has the lock, the object is in the list of which the kernel releases what a thread
// leaves behind, however it ends. It must stay where it is until then.
class RobustLock {
public:
    enum class Outcome { kTaken, kAbandoned, kTimedOut };

    // The shared word stands so far before the object, as the kernel expects it.
    static constexpr std::ptrdiff_t kWordDistance = 24;

    // False when the system keeps no such lists, or has them in another form.
    [[nodiscard]] static bool Is_Supported() noexcept;
    // In a child that fork has made: its thread is none of its parent's.
    static void Forget_Thread() noexcept;

    // Waits until the calling thread has it, but no longer than so many milliseconds, or without
    // limit for INFINITE. A thread that has it may take it again; each taking needs its own
    // release. kAbandoned when it was taken from a thread that ended without releasing it. Makes no
    // system call when the lock is free.
    [[nodiscard]] Outcome Take(DWORD milliseconds) noexcept;
    // False when the calling thread does not have it.
    [[nodiscard]] bool Release() noexcept;
    // Whether a thread of this process had it when it was last seen.
    [[nodiscard]] bool Is_In_Use() const noexcept {
        return m_Holder.load(std::memory_order_relaxed) != 0;
    }

private:
    using Word = std::atomic<std::uint32_t>;
    class Announcement;
    class Deadline;

    Word& Shared() noexcept {
        return *reinterpret_cast<Word*>(reinterpret_cast<char*>(this) - kWordDistance);
    }
    bool Try(std::uint32_t seen, std::uint32_t wanted) noexcept;
    bool Wait(std::uint32_t seen, const Deadline& deadline) noexcept;
    Outcome Take_From_Others(DWORD milliseconds) noexcept;
    void Enter() noexcept;
    void Leave() noexcept;

    // Neighbours in the thread's list, addresses of their m_Next, in the order that the C library
    // has for its own.
    std::atomic<void*> m_Previous = nullptr;
    std::atomic<void*> m_Next = nullptr;
    std::atomic<std::uint64_t> m_Holder = 0;  // a thread of this process, 0 for none
    std::atomic<std::uint32_t> m_Depth = 0;
};

}  // namespace rv
