// A file descriptor with one owner.
#pragma once

#include <unistd.h>

#include <utility>

namespace rv {

class Descriptor {
public:
    // -1 for none.
    explicit Descriptor(int value = -1) noexcept : m_Value(value) {}
    Descriptor(Descriptor&& other) noexcept : m_Value(other.Give_Up()) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_Value, other.m_Value);
        return *this;
    }
    ~Descriptor() {
        if (m_Value != -1) close(m_Value);
    }

    int Value() const noexcept { return m_Value; }
    int Give_Up() noexcept { return std::exchange(m_Value, -1); }

private:
    int m_Value;
};

}  // namespace rv
