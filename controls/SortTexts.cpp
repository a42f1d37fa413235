#include "SortTexts.h"

#include <algorithm>
#include <bit>
#include <numeric>

namespace rv {

namespace {

constexpr std::size_t kMostPlacesARow = 4;
constexpr std::size_t kLeadBytes = 8;

// The first eight bytes as a number that orders as they do; bytes behind the end count as 0.
std::uint64_t Lead_Of(std::string_view text) noexcept {
    std::uint64_t lead = 0;
    for (std::size_t at = 0; at < kLeadBytes; ++at)
        lead = lead << 8 | (at < text.size() ? static_cast<unsigned char>(text[at]) : 0U);
    return lead;
}

}  // namespace

void SortTexts::Add(LPARAM data, CString& text) {
    if (m_Folded) text.MakeLower();
    const char* const bytes = text.GetString();
    const std::size_t offset = m_Bytes.size();
    m_Bytes.insert(m_Bytes.end(), bytes, bytes + text.GetLength());
    m_Entries.push_back({data, offset, text.GetLength()});
}

void SortTexts::Finish() {
    if (m_Entries.empty()) return;
    const Vector<int> numbers = Numbers_By_Row();
    const std::size_t places = Set_Scale();
    m_Numbers.resize(places, kFree);
    if (m_Hash_Bits != 0) m_Data.resize(places);
    for (std::size_t row = 0; row < m_Entries.size(); ++row) {
        const LPARAM data = m_Entries[row].data;
        const std::size_t place = Place_Of(data);
        m_Numbers[place] = numbers[row];
        if (m_Hash_Bits != 0) m_Data[place] = data;
    }
}

// Sorting once by what is at hand costs less than looking texts up for each comparison.
SortTexts::Vector<int> SortTexts::Numbers_By_Row() const {
    Vector<int> numbers(m_Entries.size());
    if (!m_Folded) {
        std::iota(numbers.begin(), numbers.end(), 0);
        return numbers;
    }
    const std::size_t common = Common_Length();
    const Vector<Key> keys = Sorted_Keys(common);
    int number = 0;
    for (std::size_t at = 1; at < keys.size(); ++at) {
        const Key &before = keys[at - 1], &key = keys[at];
        if (key.lead != before.lead || Rest_Of(key.row, common) != Rest_Of(before.row, common))
            ++number;
        numbers[key.row] = number;
    }
    return numbers;
}

// How many bytes all texts begin with alike.
std::size_t SortTexts::Common_Length() const noexcept {
    std::string_view common = Rest_Of(0, 0);
    for (std::size_t row = 1; row < m_Entries.size(); ++row) {
        const std::string_view text = Rest_Of(row, 0);
        const auto ends = std::mismatch(common.begin(), common.end(), text.begin(), text.end());
        common = {common.begin(), ends.first};
    }
    return common.size();
}

SortTexts::Vector<SortTexts::Key> SortTexts::Sorted_Keys(std::size_t common) const {
    Vector<Key> keys(m_Entries.size());
    for (std::size_t row = 0; row < keys.size(); ++row)
        keys[row] = {Lead_Of(Rest_Of(row, common)), row};
    std::sort(keys.begin(), keys.end(), [&](const Key& left, const Key& right) {
        if (left.lead != right.lead) return left.lead < right.lead;
        return Rest_Of(left.row, common) < Rest_Of(right.row, common);
    });
    return keys;
}

std::string_view SortTexts::Rest_Of(std::size_t row, std::size_t common) const noexcept {
    const Entry& entry = m_Entries[row];
    return {m_Bytes.data() + entry.offset + common,
            static_cast<std::size_t>(entry.length) - common};
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

// Where the item data stand, or would stand. After the places have been made.
std::size_t SortTexts::Hashed_Place_Of(LPARAM data) const noexcept {
    const std::uint64_t distance = static_cast<std::uint64_t>(data) - m_Least;
    // By the golden ratio, which spreads neighbours evenly.
    std::size_t place = distance * std::uint64_t{0x9E3779B97F4A7C15} >> (64 - m_Hash_Bits);
    while (m_Numbers[place] >= 0 && m_Data[place] != data)
        place = (place + 1) & (m_Numbers.size() - 1);
    return place;
}

CString SortTexts::Text_Of(int number) const {
    const Entry& entry = m_Entries[static_cast<std::size_t>(number)];
    return {m_Bytes.data() + entry.offset, entry.length};
}

}  // namespace rv
