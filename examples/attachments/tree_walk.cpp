#include "tree_walk.h"

#include <limits>

namespace attachments {
namespace {

// What the parser leaves in the count of an element that was never ended: nobody knows how many
// children it would have had, so everything behind it is below it.
constexpr ULONG kNotCounted = std::numeric_limits<ULONG>::max();
constexpr std::uint64_t kEndless = std::numeric_limits<std::uint64_t>::max();

}  // namespace

bool TreeWalk::Next(Element& element) {
    ULONG children = kNotCounted;
    if (!m_Parser.Next(element.name, element.value, children)) return false;
    element.closed = children != kNotCounted;
    element.children = element.closed ? children : 0;
    element.depth = m_Remaining.size();
    if (!m_Remaining.empty() && m_Remaining.back() != kEndless) --m_Remaining.back();
    element.last = !m_Remaining.empty() && m_Remaining.back() == 0;
    m_Remaining.push_back(element.closed ? children : kEndless);
    while (!m_Remaining.empty() && m_Remaining.back() == 0)
        m_Remaining.pop_back();
    return true;
}

}  // namespace attachments
