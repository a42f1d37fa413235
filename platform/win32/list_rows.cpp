#include "list_rows.h"

#include <bit>

namespace {

using rv::ListRow;

void Free(ListRow* row) noexcept {
    for (const rv::OwnedText text : row->cells)
        rv::Heap_Free(text);
    delete row;
}

struct SortEntry {
    LPARAM data;
    ListRow* row;
};

// The order is a stranger's: whatever it answers, no step leaves the rows, and none is lost.
class MergeSort {
public:
    MergeSort(PFNLVCOMPARE compare, LPARAM parameter) noexcept
        : m_Compare(compare), m_Parameter(parameter) {}

    // Sorts `count` entries, with room for as many.
    void Sort(SortEntry* entries, SortEntry* room, std::size_t count) noexcept {
        if (count < 2) return;
        const std::size_t half = count / 2;
        Sort(entries, room, half);
        Sort(entries + half, room, count - half);
        if (!Goes_Before(entries[half], entries[half - 1])) return;
        std::memcpy(room, entries, count * sizeof *entries);
        const Run first = {room, room + half}, second = {room + half, room + count};
        if (!Merge_From_Both_Ends(first, second, entries)) Merge(first, second, entries);
    }

private:
    struct Run {
        const SortEntry* begin;
        const SortEntry* end;
    };

    bool Goes_Before(const SortEntry& left, const SortEntry& right) noexcept {
        return m_Compare(left.data, right.data, m_Parameter) < 0;
    }

    // So that the answers about one end need not wait for those about the other. The second run is
    // as long as the first or longer by one: within as many steps as the first has entries no end
    // leaves its run. False when the ends have not met, since the answers contradict each other.
    bool Merge_From_Both_Ends(Run first, Run second, SortEntry* target) noexcept {
        SortEntry* target_end = target + (first.end - first.begin) + (second.end - second.begin);
        for (auto steps = first.end - first.begin; steps > 0; --steps) {
            Take_Front(first, second, *target++);
            const bool is_first = Goes_Before(second.end[-1], first.end[-1]);
            *--target_end = *((is_first ? first.end : second.end) - 1);
            first.end -= is_first;
            second.end -= !is_first;
        }
        if (first.begin > first.end || second.begin > second.end) return false;
        if (target != target_end) *target = *(first.begin != first.end ? first : second).begin;
        return true;
    }

    void Merge(Run first, Run second, SortEntry* target) noexcept {
        while (first.begin != first.end && second.begin != second.end)
            Take_Front(first, second, *target++);
        target = std::copy(first.begin, first.end, target);
        std::copy(second.begin, second.end, target);
    }

    // Which of two goes before is anybody's guess, so that no jump depends on it.
    void Take_Front(Run& first, Run& second, SortEntry& target) noexcept {
        const bool is_second = Goes_Before(*second.begin, *first.begin);
        target = *(is_second ? second.begin : first.begin);
        second.begin += is_second;
        first.begin += !is_second;
    }

    const PFNLVCOMPARE m_Compare;
    const LPARAM m_Parameter;
};

}  // namespace

rv::ListRows::~ListRows() {
    for (ListRow* const row : m_Rows)
        Free(row);
}

bool rv::ListRows::Insert(std::size_t row, LPARAM data) noexcept {
    auto* const added = new (std::nothrow) ListRow{{}, data, 0, 0, {}};
    if (!added) return false;
    if (!m_Rows.Insert(row, added)) {
        Free(added);
        return false;
    }
    Forget_Index();
    return true;
}

void rv::ListRows::Erase(std::size_t row) noexcept {
    Free(m_Rows[row]);
    m_Rows.Erase(row);
    if (m_Rows.Is_Empty()) m_Rows.Clear();
    Forget_Index();
}

void rv::ListRows::Set_Data(std::size_t row, LPARAM data) noexcept {
    m_Rows[row]->data = data;
    Forget_Index();
}

// A step for each of what leads to the text.
[[gnu::always_inline]] inline void rv::ListRows::Fetch_Text(std::size_t row,
                                                            std::size_t column) const noexcept {
    Fetch_Row(row);
    if (const std::size_t later = row + 4; later < m_Rows.Size())
        __builtin_prefetch(m_Rows[later]->cells.begin() + column);
    if (const std::size_t later = row + 2; later < m_Rows.Size()) {
        const auto& cells = m_Rows[later]->cells;
        if (column < cells.Size()) __builtin_prefetch(cells[column]);
    }
}

std::string_view rv::ListRows::Text(std::size_t row, std::size_t column) const noexcept {
    if (m_TextsInTurn.Goes_On(row)) Fetch_Text(row, column);
    const auto& cells = m_Rows[row]->cells;
    return column < cells.Size() ? View_Of(cells[column]) : std::string_view();
}

bool rv::ListRows::Set_Text(std::size_t row, std::size_t column, LPCSTR text) noexcept {
    auto& cells = m_Rows[row]->cells;
    if (column >= cells.Size() && !cells.Resize(column + 1)) return false;
    return Replace_Text(cells[column], text);
}

bool rv::ListRows::Insert_Column(std::size_t column) noexcept {
    for (ListRow* const row : m_Rows) {
        auto& cells = row->cells;
        // One that is empty at the end takes the place of the new one.
        if (column < cells.Size() && cells[cells.Size() - 1] && !cells.Resize(cells.Size() + 1))
            return false;
    }
    for (ListRow* const row : m_Rows) {
        auto& cells = row->cells;
        if (column < cells.Size()) std::rotate(&cells[column], cells.end() - 1, cells.end());
    }
    return true;
}

void rv::ListRows::Erase_Column(std::size_t column) noexcept {
    for (ListRow* const row : m_Rows) {
        if (column >= row->cells.Size()) continue;
        Heap_Free(row->cells[column]);
        row->cells.Erase(column);
    }
}

std::size_t rv::ListRows::Bucket_Of(LPARAM data) const noexcept {
    // Data are often numbers in a row, or addresses.
    const std::uint64_t mixed = static_cast<std::uint64_t>(data) * 0x9E3779B97F4A7C15;
    return mixed >> (64 - std::countr_zero(m_First.Size()));
}

bool rv::ListRows::Index_Data() noexcept {
    if (m_IsIndexed) return true;
    const std::size_t count = m_Rows.Size();
    if (count >= kNone || !m_First.Resize(std::bit_ceil(count + 2)) || !m_Next.Resize(count))
        return false;
    std::ranges::fill(m_First, kNone);
    for (std::size_t row = count; row-- > 0;) {
        Place& first = m_First[Bucket_Of(m_Rows[row]->data)];
        m_Next[row] = std::exchange(first, static_cast<Place>(row));
    }
    m_IsIndexed = true;
    return true;
}

INT_PTR rv::ListRows::Find(LPARAM data, INT_PTR start) noexcept {
    const auto count = static_cast<INT_PTR>(m_Rows.Size());
    const auto has_data = [&](auto row) {
        return m_Rows[static_cast<std::size_t>(row)]->data == data;
    };
    if (start >= count || start < -1) return -1;
    if (!Index_Data()) {
        INT_PTR row = start + 1;
        while (row < count && !has_data(row))
            ++row;
        return row < count ? row : -1;
    }
    // Of several rows with the same data, one leads to the next.
    Place at = start >= 0 && has_data(start) ? m_Next[static_cast<std::size_t>(start)]
                                             : m_First[Bucket_Of(data)];
    while (at != kNone && (static_cast<INT_PTR>(at) <= start || !has_data(at)))
        at = m_Next[at];
    return at == kNone ? -1 : static_cast<INT_PTR>(at);
}

bool rv::ListRows::Sort(PFNLVCOMPARE compare, LPARAM parameter) noexcept {
    const std::size_t count = m_Rows.Size();
    GrowingArray<SortEntry> entries;
    if (!entries.Resize(2 * count)) return false;
    for (std::size_t row = 0; row < count; ++row)
        entries[row] = {m_Rows[row]->data, m_Rows[row]};
    MergeSort(compare, parameter).Sort(entries.begin(), entries.begin() + count, count);
    for (std::size_t row = 0; row < count; ++row)
        m_Rows[row] = entries[row].row;
    Forget_Index();
    return true;
}
