#include "../large_pages.h"

#include <sys/mman.h>

#include <cstdint>

namespace rv {

namespace {

constexpr std::size_t kLargePage = std::size_t{2} << 20;

// Below this the pages at the two ends, which stay small, are too many of them.
constexpr std::size_t kWorthIt = 2 * kLargePage;

}  // namespace

void Prefer_Large_Pages(void* block, std::size_t bytes) noexcept {
    if (!block || bytes < kWorthIt) return;
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t first = (address + kLargePage - 1) / kLargePage * kLargePage;
    const std::uintptr_t last = (address + bytes) / kLargePage * kLargePage;
    madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
}

}  // namespace rv
