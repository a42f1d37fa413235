// What a list view keeps of its rows.
#pragma once

#include "growing_array.h"
#include "list_view.h"
#include "nothrow_object.h"
#include "owned_text.h"

namespace rv {

// Stays where it is for as long as it lives.
struct ListRow : NothrowObject {
    LPARAM data;
    UINT state;
    int image;
    GrowingArray<OwnedText> cells;  // those behind them are empty
};

// A caller who asks for one row after the other.
class InTurn {
public:
    // Whether `row` is the next one. One that is asked for once more does not end the turn.
    [[nodiscard]] bool Goes_On(std::size_t row) noexcept {
        constexpr std::size_t kNear = 4;
        if (m_Farthest - row < kNear) return false;
        return row == std::exchange(m_Farthest, row) + 1;
    }

private:
    std::size_t m_Farthest = 0;
};

// Nothing here throws; what needs memory and gets none gives false or null, with the rows as they
// were.
class ListRows {
public:
    ListRows() = default;
    ListRows(const ListRows&) = delete;
    ListRows& operator=(const ListRows&) = delete;
    ~ListRows();

    [[nodiscard]] std::size_t Count() const noexcept { return m_Rows.Size(); }
    [[nodiscard]] bool Has(WPARAM row) const noexcept { return row < m_Rows.Size(); }
    ListRow& operator[](std::size_t row) const noexcept {
        if (m_RowsInTurn.Goes_On(row)) Fetch_Row(row);
        return *m_Rows[row];
    }

    [[nodiscard]] bool Insert(std::size_t row, LPARAM data) noexcept;
    void Erase(std::size_t row) noexcept;
    void Set_Data(std::size_t row, LPARAM data) noexcept;

    [[nodiscard]] std::string_view Text(std::size_t row, std::size_t column) const noexcept;
    [[nodiscard]] bool Set_Text(std::size_t row, std::size_t column, LPCSTR text) noexcept;

    // Moves the texts behind it to the right or the left.
    [[nodiscard]] bool Insert_Column(std::size_t column) noexcept;
    void Erase_Column(std::size_t column) noexcept;

    // The first row behind `start` (-1: of all) that has the data; -1 for none. A table of all data
    // is made at the first call, and again after changes; without memory, the rows are walked.
    [[nodiscard]] INT_PTR Find(LPARAM data, INT_PTR start) noexcept;

    // Rows that go together stay as they were. The rows must not come or go meanwhile.
    [[nodiscard]] bool Sort(PFNLVCOMPARE compare, LPARAM parameter) noexcept;

private:
    [[nodiscard]] bool Index_Data() noexcept;
    std::size_t Bucket_Of(LPARAM data) const noexcept;
    void Forget_Index() noexcept { m_IsIndexed = false; }

    // Sorted rows lie anywhere in memory. These fetch what is behind one before it is asked for.
    // Always inline: a function that does nothing else has no effect that a compiler sees.
    [[gnu::always_inline]] void Fetch_Row(std::size_t row) const noexcept {
        const std::size_t later = row + 8;
        if (later >= m_Rows.Size()) return;
        __builtin_prefetch(m_Rows[later]);
        __builtin_prefetch(m_Rows[later] + 1);
    }
    void Fetch_Text(std::size_t row, std::size_t column) const noexcept;

    using Place = std::uint32_t;
    static constexpr Place kNone = ~Place{0};

    GrowingArray<ListRow*> m_Rows;
    // The first row of each bucket, and of each row the next one in its bucket.
    GrowingArray<Place> m_First;
    GrowingArray<Place> m_Next;
    bool m_IsIndexed = false;
    mutable InTurn m_RowsInTurn, m_TextsInTurn;
};

}  // namespace rv
