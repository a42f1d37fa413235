#include "caption.h"

rv::Caption::Caption(std::string_view marked) noexcept
    : m_Text(static_cast<char*>(Heap_Allocate(marked.size()))) {
    if (!m_Text) return;
    bool is_marked = false;
    for (const char character : marked) {
        if (character == '&' && !is_marked) {
            is_marked = true;
            continue;
        }
        if (is_marked && character != '&') m_Marked = m_Length;
        is_marked = false;
        m_Text[m_Length++] = character;
    }
}
