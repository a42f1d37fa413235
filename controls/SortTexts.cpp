#include "SortTexts.h"

#include <algorithm>
#include <bit>
#include <string_view>
#include <utility>

namespace rv {

namespace {

constexpr std::size_t kMostPlacesARow = 4;
constexpr std::size_t kLeadBytes = 8;

// The eight bytes at `bytes` as a number that orders as they do; bytes behind the end count as 0.
std::uint64_t Lead(const char* bytes, std::size_t length) noexcept {
    std::uint64_t lead = 0;
    for (std::size_t at = 0; at < kLeadBytes; ++at)
        lead = lead << 8 | (at < length ? static_cast<unsigned char>(bytes[at]) : 0U);
    return lead;
}

}  // namespace

void SortTexts::Add(LPARAM data, CString& text) {
    if (m_Folded) text.MakeLower();
    const char* const bytes = text.GetString();
    const std::size_t offset = m_Bytes.size();
    m_Bytes.insert(m_Bytes.end(), bytes, bytes + text.GetLength());
    m_Entries.push_back({0, data, offset, text.GetLength()});
}

void SortTexts::Finish() {
    if (m_Entries.empty()) return;
    if (m_Folded) Set_Leads();
    const std::size_t places = Set_Scale();
    const Vector<Entry> rows = std::exchange(m_Entries, {});
    m_Entries.resize(places, kFree);
    for (const Entry& row : rows)
        m_Entries[Place_Of(row.data)] = row;
}

void SortTexts::Set_Leads() noexcept {
    const Entry& first = m_Entries.front();
    const char* const common = m_Bytes.data() + first.offset;
    m_Common = static_cast<std::size_t>(first.length);
    for (const Entry& entry : m_Entries) {
        const char* const bytes = m_Bytes.data() + entry.offset;
        const std::size_t most = std::min(m_Common, static_cast<std::size_t>(entry.length));
        m_Common =
            static_cast<std::size_t>(std::mismatch(common, common + most, bytes).first - common);
    }
    for (Entry& entry : m_Entries)
        entry.lead = Lead(m_Bytes.data() + entry.offset + m_Common,
                          static_cast<std::size_t>(entry.length) - m_Common);
}

// Gives the number of places.
std::size_t SortTexts::Set_Scale() noexcept {
    const auto below = [](const Entry& left, const Entry& right) { return left.data < right.data; };
    m_Least = static_cast<std::uint64_t>(
        std::min_element(m_Entries.begin(), m_Entries.end(), below)->data);
    std::uint64_t all_bits = 0, farthest = 0;
    for (const Entry& entry : m_Entries) {
        const std::uint64_t distance = static_cast<std::uint64_t>(entry.data) - m_Least;
        all_bits |= distance;
        farthest = std::max(farthest, distance);
    }
    m_Unit_Bits = all_bits != 0 ? std::countr_zero(all_bits) : 0;
    const std::uint64_t range = farthest >> m_Unit_Bits;
    if (range < kMostPlacesARow * m_Entries.size()) return static_cast<std::size_t>(range + 1);
    m_Hash_Bits = static_cast<int>(std::bit_width(2 * m_Entries.size()));
    return std::size_t{1} << m_Hash_Bits;
}

// Where the item data stand, or would stand; behind the end for what can have no place.
std::size_t SortTexts::Place_Of(LPARAM data) const noexcept {
    const std::uint64_t distance = static_cast<std::uint64_t>(data) - m_Least;
    if (m_Hash_Bits == 0) {
        const std::uint64_t place = std::rotr(distance, m_Unit_Bits);
        return static_cast<std::size_t>(std::min<std::uint64_t>(place, m_Entries.size()));
    }
    // By the golden ratio, which spreads neighbours evenly.
    std::size_t place = distance * std::uint64_t{0x9E3779B97F4A7C15} >> (64 - m_Hash_Bits);
    while (m_Entries[place].length >= 0 && m_Entries[place].data != data)
        place = (place + 1) & (m_Entries.size() - 1);
    return place;
}

const SortTexts::Entry* SortTexts::Find(LPARAM data) const noexcept {
    if (m_Entries.empty()) return nullptr;
    const std::size_t place = Place_Of(data);
    const bool found = place < m_Entries.size() && m_Entries[place].length >= 0;
    return found ? &m_Entries[place] : nullptr;
}

CString SortTexts::Text_Of(const Entry& entry) const {
    return {m_Bytes.data() + entry.offset, entry.length};
}

int SortTexts::Compare(const Entry& left, const Entry& right) const noexcept {
    if (left.lead != right.lead) return left.lead < right.lead ? -1 : 1;
    const auto rest = static_cast<std::size_t>(std::min(left.length, right.length)) - m_Common;
    const std::string_view left_rest(m_Bytes.data() + left.offset + m_Common, rest);
    const std::string_view right_rest(m_Bytes.data() + right.offset + m_Common, rest);
    if (const int order = left_rest.compare(right_rest); order != 0) return order < 0 ? -1 : 1;
    return left.length < right.length ? -1 : left.length > right.length;
}

}  // namespace rv
