#include "XmlSections.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "XmlByteRules.h"
#include "XmlScan.h"

namespace rv {

namespace {

// Small, since one segment's markers are held at a time.
constexpr std::uint64_t kSegment = 65536;

// Where a nesting depth of 16 bits wraps to 0.
constexpr std::uint64_t kWrap = 65536;

constexpr std::size_t kOverlap = kSectionOpen.size() - 1;

}  // namespace

std::optional<std::uint64_t> XmlSections::Find_End(std::uint64_t body) {
    const Known known = Look_Up(body);
    if (known == Known::kEndless) return std::nullopt;
    // A search that may jump about in the document cannot hand its bytes on.
    if (known != Known::kNotHere) m_Source.Begin_Body(body);
    const std::optional<std::uint64_t> end = Search(body);
    if (!end) {
        m_Source.Drop_Body();
        if (known == Known::kNothing) Learn(body);
    }
    return end;
}

std::optional<std::uint64_t> XmlSections::Search(std::uint64_t body) {
    std::uint16_t depth = 1;
    std::uint64_t anchor = body;
    for (;;) {
        const Found found = Next_Mark(anchor, anchor, Wanted::kBoth);
        if (found.mark == Mark::kNone) return std::nullopt;
        if (found.mark == Mark::kClose) {
            if (--depth == 0) return found.at;
            anchor = found.at + kSectionClose.size();
            continue;
        }
        const std::uint64_t behind = found.at + kSectionOpen.size();
        if (++depth == 0) {
            const Found close = Next_Mark(anchor, behind, Wanted::kClose);
            if (close.mark == Mark::kNone) return std::nullopt;
            return close.at;
        }
        anchor = behind;
    }
}

// The next marker at or behind `from` that no NUL hides in a search that began at `anchor`.
XmlSections::Found XmlSections::Next_Mark(std::uint64_t anchor, std::uint64_t from, Wanted wanted) {
    for (std::uint64_t at = from;;) {
        const XmlRun run = m_Source.At(at, kSectionOpen.size());
        const Found found = Find_Mark(run.begin, run.end, wanted);
        m_Search_End = at + run.Size();
        if (found.mark == Mark::kNul) {
            m_Search_End = at + found.at;
            const std::uint64_t window = m_Source.Window();
            if (window == 0) return {};
            at = anchor + ((m_Search_End - anchor) / window + 1) * window;
        } else if (found.mark != Mark::kNone) {
            return {found.mark, at + found.at};
        } else if (run.last) {
            return {};
        } else {
            at += run.Size() - kOverlap;
        }
    }
}

// The first marker, or NUL, that stands whole in the bytes, by its index.
XmlSections::Found XmlSections::Find_Mark(const char* begin, const char* end,
                                          Wanted wanted) noexcept {
    const auto test = [&](const char* at) -> Found {
        const auto index = static_cast<std::uint64_t>(at - begin);
        if (*at == '\0') return {Mark::kNul, index};
        if (*at == ']') {
            if (end - at >= 3 && at[1] == ']' && at[2] == '>') return {Mark::kClose, index};
        } else if (wanted == Wanted::kBoth && index >= kOverlap &&
                   std::memcmp(at - kOverlap, kSectionOpen.data(), kSectionOpen.size()) == 0) {
            return {Mark::kOpen, index - kOverlap};
        }
        return {};
    };
    const char* at = begin;
    for (; end - at >= static_cast<std::ptrdiff_t>(XmlVector::kSize); at += XmlVector::kSize)
        for (std::uint32_t mask = XmlVector::Load(at).Section_Specials(); mask; mask &= mask - 1)
            if (const Found found = test(at + std::countr_zero(mask)); found.mark != Mark::kNone)
                return found;
    for (; at != end; ++at)
        if (*at == '\0' || *at == '[' || *at == ']')
            if (const Found found = test(at); found.mark != Mark::kNone) return found;
    return {};
}

std::uint64_t XmlSections::Behind(const Found& found) noexcept {
    return found.at + (found.mark == Mark::kOpen ? kSectionOpen : kSectionClose).size();
}

XmlSections::Known XmlSections::Look_Up(std::uint64_t body) {
    const std::uint64_t mark = body - kSectionOpen.size();
    if (mark < m_Known_From || mark >= m_Known_Until) return Known::kNothing;
    if (mark >= m_Last_Close) return Known::kEndless;
    const auto segment = static_cast<std::size_t>((mark - m_Known_From) / kSegment);
    if (segment >= m_Segments.size()) return Known::kNotHere;
    if (segment != m_Answered) Learn_Answers(segment);
    const auto answer =
        std::lower_bound(m_Answers.begin(), m_Answers.end(), mark,
                         [](const Answer& one, std::uint64_t at) { return one.at < at; });
    if (answer == m_Answers.end() || answer->at != mark) return Known::kNotHere;
    return answer->ends ? Known::kEnds : Known::kEndless;
}

// Walks the markers that the failed search from `from` on has seen once more, notes where the walk
// enters each segment, and then sums them up from the back.
void XmlSections::Learn(std::uint64_t from) {
    m_Known_From = from;
    m_Last_Close = 0;
    m_Answered = ~std::size_t{0};
    m_Segments.clear();
    for (Found found = Next_Mark(from, from, Wanted::kBoth); found.mark != Mark::kNone;
         found = Next_Mark(Behind(found), Behind(found), Wanted::kBoth)) {
        const auto segment = static_cast<std::size_t>((found.at - from) / kSegment);
        if (segment >= m_Segments.size()) {
            m_Segments.resize(segment + 1);
            m_Segments[segment].first = found;
        }
        if (found.mark == Mark::kClose) m_Last_Close = found.at + 1;
    }
    m_Known_Until = std::max(m_Search_End, from);
    if (m_Source.Window() != 0) Find_Last_Close();
    Balance balance;
    for (std::size_t segment = m_Segments.size(); segment-- > 0;) {
        m_Segments[segment].behind = balance;
        Read_Marks(segment);
        for (auto found = m_Marks.rbegin(); found != m_Marks.rend(); ++found)
            balance.Take(found->mark);
    }
}

// Behind the last closing marker nothing has an end, whatever NUL bytes hide.
void XmlSections::Find_Last_Close() {
    for (std::uint64_t at = m_Known_From;;) {
        const XmlRun run = m_Source.At(at, kSectionOpen.size());
        const std::size_t found = std::string_view(run.begin, run.Size()).rfind(kSectionClose);
        if (found != std::string_view::npos) m_Last_Close = at + found + 1;
        if (run.last) return;
        at += run.Size() - kOverlap;
    }
}

// Gathers the markers of a segment that the walk goes by.
void XmlSections::Read_Marks(std::size_t segment) {
    m_Marks.clear();
    const std::uint64_t end = m_Known_From + (segment + 1) * kSegment;
    for (Found found = m_Segments[segment].first; found.mark != Mark::kNone && found.at < end;
         found = Next_Mark(Behind(found), Behind(found), Wanted::kBoth))
        m_Marks.push_back(found);
}

// Sorts out which opening markers of a segment have an end.
void XmlSections::Learn_Answers(std::size_t segment) {
    Read_Marks(segment);
    Balance balance = m_Segments[segment].behind;
    m_Answers.clear();
    for (auto found = m_Marks.rbegin(); found != m_Marks.rend(); ++found) {
        const bool closes = balance.closers > 0;
        balance.Take(found->mark);
        if (found->mark == Mark::kOpen)
            m_Answers.push_back({found->at, closes || balance.depth >= kWrap});
    }
    std::reverse(m_Answers.begin(), m_Answers.end());
    m_Answered = segment;
}

void XmlSections::Balance::Take(Mark mark) noexcept {
    if (mark == Mark::kClose) {
        ++closers;
        close_follows = true;
        if (depth > 0) --depth;
    } else if (mark == Mark::kOpen) {
        if (closers > 0) --closers;
        if (close_follows) ++depth;
    }
}

}  // namespace rv
