// Documents for the benchmarks of the XML reader, made anew for every size, and what a reader has
// to find in them.
#pragma once

#include <RVUtils/RVString.h>

#include <cstddef>
#include <cstdint>

namespace rv_bench {

// What a walk over a document counts; two readers that agree on it have done the same work.
struct Counts {
    std::uint64_t elements = 0;
    std::uint64_t name_bytes = 0;
    std::uint64_t value_bytes = 0;

    bool operator==(const Counts&) const = default;
};

struct Document {
    RVString text;
    Counts counts;
};

// About `bytes` of small elements, three deep, with a line and an indentation each, or none.
Document Make_Small_Elements(std::size_t bytes, bool indented);
// `count` elements that hold a CDATA section of `length` bytes each.
Document Make_Sections(std::size_t count, std::size_t length);
// One section that holds `depth` sections within each other.
Document Make_Nested_Sections(std::size_t depth);
// `depth` elements within each other.
Document Make_Nested_Elements(std::size_t depth);

}  // namespace rv_bench
