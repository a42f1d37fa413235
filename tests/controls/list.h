// A list control for tests, with what a user does to it.
#pragma once

#include <RVUtils/RVListCtrl.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "dialog.h"

namespace rv_test {

// Shown as columns, without any.
template <class List>
struct ShownList {
    template <class... Arguments>
    explicit ShownList(const Arguments&... arguments) : list(arguments...) {
        EXPECT_TRUE(list.Create(LVS_REPORT | WS_VISIBLE, kListPlace, &dialog, 1));
    }

    static constexpr RECT kListPlace = {0, 0, 350, 250};

    Dialog dialog;
    List list;
};

inline HWND Header_Of(const CListCtrl& list) {
    const CHeaderCtrl* const header = list.GetHeaderCtrl();
    return header ? header->m_hWnd : nullptr;
}

inline std::vector<int> Widths_Of(const CListCtrl& list) {
    std::vector<int> widths;
    const CHeaderCtrl* const header = list.GetHeaderCtrl();
    for (int index = 0; header && index < header->GetItemCount(); ++index) {
        HDITEMA item = {};
        item.mask = HDI_WIDTH;
        EXPECT_TRUE(header->GetItem(index, &item));
        widths.push_back(item.cxy);
    }
    return widths;
}

// A character for each header: '^' or 'v' for an arrow, '-' for none.
inline std::string Arrows_Of(const CListCtrl& list) {
    std::string arrows;
    for (std::size_t index = 0; index < Widths_Of(list).size(); ++index) {
        HDITEMA item = {};
        item.mask = HDI_FORMAT | HDI_IMAGE;
        list.GetHeaderCtrl()->GetItem(static_cast<int>(index), &item);
        constexpr int kArrow = HDF_IMAGE | HDF_BITMAP_ON_RIGHT;
        arrows += (item.fmt & kArrow) != kArrow ? '-' : item.iImage == 1 ? '^' : 'v';
    }
    return arrows;
}

inline void Click(const CListCtrl& list, int column) {
    RECT place = {};
    Send(Header_Of(list), HDM_GETITEMRECT, static_cast<WPARAM>(column),
         reinterpret_cast<LPARAM>(&place));
    const LPARAM middle =
        MAKELPARAM((place.left + place.right) / 2, (place.top + place.bottom) / 2);
    Send(Header_Of(list), WM_LBUTTONDOWN, MK_LBUTTON, middle);
    Send(Header_Of(list), WM_LBUTTONUP, 0, middle);
}

// The rows from the top, by their item data.
inline std::vector<LPARAM> Data_Of(const CListCtrl& list) {
    std::vector<LPARAM> data;
    for (int row = 0; row < list.GetItemCount(); ++row)
        data.push_back(static_cast<LPARAM>(list.GetItemData(row)));
    return data;
}

}  // namespace rv_test
