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
// see it again. So after the first failure its markers are walked once more, and what is remembered
// at a few places of the walk answers for every marker that stood on it. In a file, NUL bytes can
// hide a marker from that walk; where a closing marker follows, such a one is searched by itself,
// at the cost of one short read for each search block of the rest.
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

    // What the markers behind a place leave for those before it. Counted from the walk's end.
    struct Balance {
        void Take(Mark mark) noexcept;

        std::uint64_t closers = 0;  // closing markers that no opening one behind the place uses
        std::uint64_t depth = 0;    // deepest nesting behind the place that a closing one follows
        bool close_follows = false;
    };

    // A stretch of the document, as the walk of the failed search goes through it.
    struct Segment {
        Found first;     // none: it passes over the segment
        Balance behind;  // of the walk behind the segment
    };

    struct Answer {
        std::uint64_t at;  // of an opening marker
        bool ends;
    };

    enum class Known { kNothing, kNotHere, kEnds, kEndless };

    std::optional<std::uint64_t> Search(std::uint64_t body);
    Found Next_Mark(std::uint64_t anchor, std::uint64_t from, Wanted wanted);
    static Found Find_Mark(const char* begin, const char* end, Wanted wanted) noexcept;
    static std::uint64_t Behind(const Found& found) noexcept;

    Known Look_Up(std::uint64_t body);
    void Learn(std::uint64_t from);
    void Find_Last_Close();
    void Read_Marks(std::size_t segment);
    void Learn_Answers(std::size_t segment);

    XmlSource& m_Source;
    std::uint64_t m_Search_End = 0;  // where the last failed search stopped

    std::uint64_t m_Known_From = 0;   // the walk begins here
    std::uint64_t m_Known_Until = 0;  // and ends here
    std::uint64_t m_Last_Close = 0;   // one behind the last closing marker's place, hidden or not
    std::vector<Segment, HeapAllocator<Segment>> m_Segments;

    std::vector<Found, HeapAllocator<Found>> m_Marks;      // of one segment
    std::vector<Answer, HeapAllocator<Answer>> m_Answers;  // for its opening markers, in order
    std::size_t m_Answered = 0;                            // which segment that is
};

}  // namespace rv
