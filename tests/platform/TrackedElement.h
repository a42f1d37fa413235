// An element that knows when it is made and ended, and whose copies can fail.
#pragma once

#include <set>

namespace rv_test {

// Every object that lives is in one set; one that is made twice in a place, or ended without having
// been made, counts as a fault. A test begins with Reset and ends with Live() and Faults() at 0.
class Tracked {
public:
    explicit Tracked(int id = 0) : m_Id(id) { Enter(); }
    Tracked(const Tracked& other) : m_Id(other.m_Id) {
        Pay();
        Enter();
    }
    Tracked& operator=(const Tracked& other) {
        Pay();
        if (!s_Live.contains(this)) ++s_Faults;
        m_Id = other.m_Id;
        return *this;
    }
    ~Tracked() {
        if (s_Live.erase(this) != 1) ++s_Faults;
    }

    bool operator==(const Tracked& other) const { return m_Id == other.m_Id; }
    int Id() const { return m_Id; }

    // The copy with this number fails, 0 being the next one; none below 0.
    static void Fail_Copy(int number) { s_CopiesLeft = number; }
    static void Reset() {
        s_Faults = 0;
        s_CopiesLeft = -1;
    }
    static int Live() { return static_cast<int>(s_Live.size()); }
    static int Faults() { return s_Faults; }

    struct CopyFailed {};

private:
    void Enter() {
        if (!s_Live.insert(this).second) ++s_Faults;
    }
    static void Pay() {
        if (s_CopiesLeft >= 0 && s_CopiesLeft-- == 0) throw CopyFailed();
    }

    int m_Id;
    static inline std::set<const Tracked*> s_Live;
    static inline int s_Faults = 0;
    static inline int s_CopiesLeft = -1;
};

// Runs `operation` with the first copy failing, then the second, until none fails; `after_failure`
// looks at what a failure has left.
template <class Operation, class Check>
int Sweep_Copies(Operation operation, Check after_failure) {
    for (int number = 0;; ++number) {
        Tracked::Fail_Copy(number);
        try {
            operation();
            Tracked::Fail_Copy(-1);
            return number;
        } catch (Tracked::CopyFailed) {
            Tracked::Fail_Copy(-1);
            after_failure();
        }
    }
}

}  // namespace rv_test
