// Finding the ends of sections, in time linear to the document.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "../platform/mfc/Allocation.h"
#include "XmlSource.h"

namespace rv {

// Answers for one document where the section ends whose body begins at an offset.
//
// Sections nest: each further opening marker needs its closing one. The nesting depth is 16 bits
// wide; where it wraps to 0, the section ends at the next closing marker, however deep.
//
// A search that fails has seen the rest of the document, and the next opening marker would have to
// see it again. So after the first failure the rest is read once more, backwards, and what is
// remembered at a few places of it answers for every later marker.
class XmlSections {
public:
    explicit XmlSections(XmlSource& source) noexcept : m_Source(source) {}

    // The offset of the section's closing marker; none: it has no end.
    std::optional<std::uint64_t> Find_End(std::uint64_t body);

private:
    enum class Mark : std::uint8_t { kNone, kNul, kOpen, kClose };
    enum class Wanted { kBoth, kClose };
    struct Found {
        Mark mark = Mark::kNone;
        std::uint64_t at = 0;
    };

    // What the markers behind a place leave for those before it. Counted from the document's end.
    struct Balance {
        void Take(Mark mark) noexcept;

        std::uint64_t closers = 0;  // closing markers that no opening one behind the place uses
        std::uint64_t depth = 0;    // deepest nesting behind the place that a closing one follows
        bool close_follows = false;
    };

    struct Checkpoint {
        std::uint64_t at;
        Balance behind;
    };

    enum class Known { kNothing, kNotHere, kEnds, kEndless };

    std::optional<std::uint64_t> Search(std::uint64_t body);
    Found Next_Mark(std::uint64_t anchor, std::uint64_t from, Wanted wanted);
    static Found Find_Mark(const char* begin, const char* end, Wanted wanted) noexcept;

    Known Look_Up(std::uint64_t body);
    void Learn(std::uint64_t from);
    void Read_Marks(std::uint64_t begin, std::uint64_t end);
    void Learn_Endless(std::size_t segment);

    XmlSource& m_Source;
    std::uint64_t m_Search_End = 0;  // where the last failed search stopped

    std::uint64_t m_Known_From = 0;   // there are checkpoints from here
    std::uint64_t m_Known_Until = 0;  // up to here,
    std::uint64_t m_Exact_From = 0;   // and no NUL from here on
    std::uint64_t m_Last_Close = 0;   // one behind the last closing marker's place
    std::vector<Checkpoint, HeapAllocator<Checkpoint>> m_Checkpoints;  // the last one comes first

    std::vector<Found, HeapAllocator<Found>> m_Marks;  // of one segment
    std::vector<std::uint64_t, HeapAllocator<std::uint64_t>>
        m_Endless;              // its bodies without an end
    std::size_t m_Segment = 0;  // which one, from the last
};

}  // namespace rv
