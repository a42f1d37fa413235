// A document's elements with their places in the tree.
#pragma once

#include <RVUtils/XmlParser.h>

#include <cstdint>
#include <string>
#include <vector>

namespace attachments {

struct Element {
    RVString name;
    RVString value;
    bool closed = true;     // it was ended before the document was
    ULONG children = 0;     // 0 for an element that was not
    std::size_t depth = 0;  // 0 for an outermost one
    bool last = false;      // the last child of its parent; false for an outermost one
};

// Hands out the elements that a parser has read, and works out from the child counts, which is all
// that the parser tells of the tree, where each one stands.
class TreeWalk {
public:
    explicit TreeWalk(RVXmlParser& parser) : m_Parser(parser) {}

    // False: there is no further element; `element` is as it was.
    [[nodiscard]] bool Next(Element& element);

private:
    RVXmlParser& m_Parser;
    // How many children each element that holds the present place has still to come.
    std::vector<std::uint64_t> m_Remaining;
};

}  // namespace attachments
