#include "XmlItems.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace rv {

namespace {

// What one CString can hold.
constexpr std::size_t kLongestRun = INT_MAX - 1;

}  // namespace

XmlBytes::~XmlBytes() {
    for (const Block& block : m_Blocks)
        Heap_Free(block.data);
}

void XmlBytes::Reserve(std::size_t bytes) {
    Add_Block(bytes);
}

void XmlBytes::Free_Extra() noexcept {
    if (m_Blocks.empty()) return;
    Block& last = m_Blocks.back();
    const auto run = m_Run - m_Block;
    const auto shared = m_Shared - m_Block;
    const auto end = m_End - m_Block;
    const auto used = static_cast<std::size_t>(end);
    if (void* const data = Heap_Reallocate(last.data, used + kSlack)) {
        last.data = static_cast<char*>(data);
        last.size = used;
        Use_Last_Block();
        m_Run = m_Block + run;
        m_Shared = m_Block + shared;
        m_End = m_Block + end;
    }
}

XmlBytes::Place XmlBytes::Share() noexcept {
    if (m_Run == m_End) return {};
    m_Shared = m_End;
    return {m_Block_Index, static_cast<std::uint32_t>(m_Run - m_Block)};
}

void XmlBytes::Move_Bytes(char* to, const char* from, std::size_t count) noexcept {
    if (count > 0) std::memmove(to, from, count);
}

void XmlBytes::Use_Last_Block() noexcept {
    m_Block_Index = static_cast<std::uint32_t>(m_Blocks.size() - 1);
    m_Block = m_Blocks.back().data;
    m_Limit = m_Block + m_Blocks.back().size;
}

// Makes room for `count` more bytes. A run that has its block to itself grows with the block;
// another one moves to a new block, and what others share of it stays behind.
void XmlBytes::Grow(std::size_t count) {
    const auto length = static_cast<std::size_t>(m_End - m_Run);
    if (count > kLongestRun - length) AfxThrowMemoryException();
    const std::size_t needed = length + count;
    if (!m_Blocks.empty() && m_Run == m_Block) {
        // Never larger, so that no run outgrows the limit unseen.
        Resize_Last(std::min(std::max(needed, m_Blocks.back().size * 2), kLongestRun));
        return;
    }
    const char* const run = m_Run;
    Add_Block(std::max(needed, m_Next_Block));
    m_Next_Block = std::min(m_Next_Block * 2, m_Largest_Block);
    Move_Bytes(m_End, run, length);
    m_End += length;
}

void XmlBytes::Add_Block(std::size_t size) {
    m_Blocks.push_back({});
    char* const data = static_cast<char*>(Heap_Allocate(size + kSlack));
    if (!data) {
        m_Blocks.pop_back();
        AfxThrowMemoryException();
    }
    if (m_Blocks.size() > 1)
        m_Blocks[m_Block_Index].used = static_cast<std::size_t>(m_Run - m_Block);
    m_Blocks.back() = {data, size, 0};
    Use_Last_Block();
    m_Run = m_Shared = m_End = m_Block;
}

void XmlBytes::Resize_Last(std::size_t size) {
    char* const data = static_cast<char*>(Heap_Reallocate(m_Block, size + kSlack));
    if (!data) AfxThrowMemoryException();
    m_Blocks.back() = {data, size, 0};
    m_Shared = data + (m_Shared - m_Run);
    m_End = data + (m_End - m_Run);
    m_Run = data;
    Use_Last_Block();
}

XmlItems::~XmlItems() {
    for (const Block& block : m_Blocks)
        Heap_Free(block.data);
}

void XmlItems::Add_Block() {
    const std::size_t count = m_Next_Block / sizeof(XmlItem);
    m_Blocks.push_back({});
    auto* const data = static_cast<XmlItem*>(Heap_Allocate(count * sizeof(XmlItem)));
    if (!data) {
        m_Blocks.pop_back();
        AfxThrowMemoryException();
    }
    m_Blocks.back() = {data, data + count};
    m_Free = data;
    m_Free_End = data + count;
    m_Next_Block = std::min(m_Next_Block * 2, m_Largest_Block);
}

void XmlItems::Reset() noexcept {
    m_Current = m_Blocks.empty() ? nullptr : m_Blocks.front().data;
    m_Current_Block = 0;
    m_Names = {};
}

void XmlItems::Advance_Block() noexcept {
    m_Current = ++m_Current_Block < m_Blocks.size() ? m_Blocks[m_Current_Block].data : nullptr;
}

}  // namespace rv
