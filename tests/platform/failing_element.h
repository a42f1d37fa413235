// Elements whose copies can fail, and operations that meet failures at random.
#pragma once

#include <RVUtils/CException.h>

#include <random>

#include "../allocation_sweep.h"

namespace rv_test {

// An element that is counted while it lives.
class Element {
public:
    struct CopyFailed {};

    explicit Element(int id = 0) : m_Id(id) { ++s_Live; }
    Element(const Element& other) : m_Id(other.m_Id) {
        Pay();
        ++s_Live;
    }
    Element& operator=(const Element& other) {
        Pay();
        m_Id = other.m_Id;
        return *this;
    }
    ~Element() { --s_Live; }

    operator int() const { return m_Id; }

    static inline int s_Live = 0;
    static inline int s_CopiesLeft = -1;  // that succeed; below 0: all

private:
    static void Pay() {
        if (s_CopiesLeft >= 0 && s_CopiesLeft-- == 0) throw CopyFailed();
    }

    int m_Id;
};

// Runs `operation`, now and then with one of its first allocations or copies failing, and tells
// whether it came through.
template <class Operation>
bool Survives(std::mt19937& random, Operation operation) {
    const FailingAllocation failing(static_cast<int>(random() % 8) - 6);
    Element::s_CopiesLeft = static_cast<int>(random() % 8) - 6;
    try {
        operation();
        Element::s_CopiesLeft = -1;
        return true;
    } catch (CMemoryException* exception) {
        exception->Delete();
    } catch (Element::CopyFailed) {
    }
    Element::s_CopiesLeft = -1;
    return false;
}

}  // namespace rv_test
