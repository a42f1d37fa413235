// Walks every path behind an exhausted heap: the first allocation fails, then the second, and so
// on.
#pragma once

#include <RVUtils/Allocation.h>
#include <RVUtils/CException.h>

#include <atomic>

namespace rv_test {

// While one lives, the allocation with the given number (0 is the next one) fails, or that one and
// all behind it.
class FailingAllocation {
public:
    enum class Mode { kOnce, kFromThereOn };

    explicit FailingAllocation(int number, Mode mode = Mode::kOnce) {
        s_Countdown = number;
        s_Mode = mode;
        s_Failed = false;
        m_Before = AfxSetAllocHook(&Permit);
    }
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation() { AfxSetAllocHook(m_Before); }

    // Whether the allocation has come and failed.
    static bool Failed() { return s_Failed; }

private:
    static BOOL Permit(std::size_t, BOOL, LONG) {
        const int number = s_Countdown--;
        const bool fails = number == 0 || (number < 0 && s_Mode == Mode::kFromThereOn);
        if (fails) s_Failed = true;
        return !fails;
    }

    static inline std::atomic<int> s_Countdown = 0;
    static inline std::atomic<bool> s_Failed = false;
    static inline Mode s_Mode = Mode::kOnce;
    AFX_ALLOC_HOOK m_Before;
};

// Calls `operation` with the first allocation failing, then the second, until it runs through
// without a failure, and gives the number of failures that it went through.
template <class Operation>
int Sweep_Allocations(Operation operation,
                      FailingAllocation::Mode mode = FailingAllocation::Mode::kOnce) {
    for (int number = 0;; ++number) {
        FailingAllocation failing(number, mode);
        operation();
        if (!FailingAllocation::Failed()) return number;
    }
}

// The same for an operation that throws CMemoryException where an allocation fails; behind each
// exception comes `check`.
template <class Operation, class Check = void (*)()>
int Sweep_Exceptions(
    Operation operation, Check check = [] {},
    FailingAllocation::Mode mode = FailingAllocation::Mode::kOnce) {
    const auto attempt = [&] {
        try {
            operation();
        } catch (CMemoryException* exception) {
            exception->Delete();
            check();
        }
    };
    return Sweep_Allocations(attempt, mode);
}

}  // namespace rv_test
