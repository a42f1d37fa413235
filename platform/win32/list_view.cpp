#include "list_view.h"

#include <algorithm>
#include <utility>

#include "growing_array.h"
#include "header.h"
#include "input.h"
#include "list_rows.h"
#include "paint.h"
#include "rectangle.h"
#include "scroll_bars.h"
#include "text_metrics.h"
#include "window_data.h"
#include "window_place.h"
#include "window_state.h"
#include "window_update.h"

namespace {

using rv::ListRow;

constexpr int kRowHeight = rv::kLineHeight + 4;
constexpr int kMargin = 4;

class ListView final : public rv::Window {
public:
    LRESULT Receive(UINT message, WPARAM first, LPARAM second) noexcept override {
        if (message >= LVM_SETIMAGELIST && message <= LVM_GETEXTENDEDLISTVIEWSTYLE)
            return Receive_Own(message, first, second);
        switch (message) {
            case WM_CREATE:
                return Is_Report() && !Header() ? -1 : 0;
            case WM_NCDESTROY:
                End_Images();
                return 0;
            case WM_SIZE:
                Place_Header();
                Fit();
                return 0;
            case WM_STYLECHANGED:
                if (Is_Report()) Header();
                Place_Header();
                Fit_Columns();
                rv::Invalidate(*this, true);
                return 0;
            case WM_NOTIFY:
                return Hear(first, *reinterpret_cast<NMHDR*>(second));
            case WM_PAINT:
                Paint();
                return 0;
            case WM_LBUTTONDOWN:
                SetFocus(Handle());
                Click(Row_At(rv::Place_Of(second)), (first & MK_CONTROL) != 0);
                return 0;
            case WM_LBUTTONUP: {
                NMLISTVIEW notice = {};
                notice.iItem = static_cast<int>(Row_At(rv::Place_Of(second)));
                rv::Send_Notice(*this, NM_CLICK, notice.hdr);
                return 0;
            }
            case WM_KEYDOWN:
                if (first == VK_UP || first == VK_DOWN) Step(first == VK_UP ? -1 : 1);
                return 0;
            case WM_SETFOCUS:
            case WM_KILLFOCUS:
            case WM_ENABLE:
                rv::Invalidate(*this, true);
                return 0;
            default:
                return Default(message, first, second);
        }
    }

private:
    LRESULT Receive_Own(UINT message, WPARAM first, LPARAM second) noexcept {
        switch (message) {
            case LVM_GETITEMCOUNT:
                return static_cast<LRESULT>(m_Rows.Count());
            case LVM_GETITEMA:
            case LVM_SETITEMA:
            case LVM_INSERTITEMA:
                return second ? Whole_Item(message, *reinterpret_cast<LVITEMA*>(second)) : 0;
            case LVM_SETITEMSTATE:
            case LVM_GETITEMTEXTA:
            case LVM_SETITEMTEXTA:
                return second ? Part_Of_Item(message, first, *reinterpret_cast<LVITEMA*>(second))
                              : 0;
            case LVM_GETITEMSTATE:
                return m_Rows.Has(first) ? m_Rows[first].state & static_cast<UINT>(second) : 0;
            case LVM_GETSELECTEDCOUNT:
                return static_cast<LRESULT>(m_SelectedCount);
            case LVM_DELETEITEM:
                return m_Rows.Has(first) && !m_IsSorting && Delete(first);
            case LVM_DELETEALLITEMS:
                return !m_IsSorting && Delete_All();
            case LVM_SORTITEMS:
                return second && !m_IsSorting &&
                       Sort(reinterpret_cast<PFNLVCOMPARE>(second), static_cast<LPARAM>(first));
            case LVM_GETNEXTITEM:
                return Next(static_cast<int>(first), static_cast<UINT>(second));
            case LVM_FINDITEMA:
                return second ? Find(static_cast<int>(first),
                                     *reinterpret_cast<const LVFINDINFOA*>(second))
                              : -1;
            case LVM_GETITEMRECT:
                if (!m_Rows.Has(first) || !second) return FALSE;
                *reinterpret_cast<RECT*>(second) = Place_Of(first);
                return TRUE;
            case LVM_SETIMAGELIST:
                return Set_Images(first, reinterpret_cast<HIMAGELIST>(second));
            case LVM_GETEXTENDEDLISTVIEWSTYLE:
                return m_Extended;
            case LVM_SETEXTENDEDLISTVIEWSTYLE:
                return Set_Extended(static_cast<DWORD>(first), static_cast<DWORD>(second));
            default:
                return Receive_Of_Columns(message, first, second);
        }
    }

    LRESULT Receive_Of_Columns(UINT message, WPARAM first, LPARAM second) noexcept {
        auto* const record = reinterpret_cast<LVCOLUMNA*>(second);
        switch (message) {
            case LVM_GETHEADER:
                return reinterpret_cast<LRESULT>(Is_Report() ? Header() : m_Header);
            case LVM_INSERTCOLUMNA:
                return record ? Insert_Column(static_cast<int>(first), *record) : -1;
            case LVM_DELETECOLUMN:
                return first < m_Formats.Size() && Delete_Column(first);
            case LVM_GETCOLUMNA:
                return record && first < m_Formats.Size() && Get_Column(first, *record);
            case LVM_GETCOLUMNWIDTH:
                return first < m_Formats.Size() ? Width_Of_Column(first) : 0;
            case LVM_SETCOLUMNWIDTH:
                return first < m_Formats.Size() && Set_Width(first, static_cast<SHORT>(second));
            default:
                return 0;
        }
    }

    bool Is_Report() const noexcept { return (m_Style & LVS_TYPEMASK) == LVS_REPORT; }

    // ---- Rows ----

    LRESULT Whole_Item(UINT message, LVITEMA& item) noexcept {
        const auto row = static_cast<WPARAM>(item.iItem);
        switch (message) {
            case LVM_GETITEMA:
                return m_Rows.Has(row) && Get(row, item);
            case LVM_SETITEMA:
                return m_Rows.Has(row) && Set(row, item);
            default:
                return Insert(item);
        }
    }

    LRESULT Part_Of_Item(UINT message, WPARAM row, LVITEMA& item) noexcept {
        if (message == LVM_SETITEMSTATE && static_cast<int>(row) == -1)
            return Set_State_Of_All(item.state, item.stateMask);
        if (!m_Rows.Has(row)) return 0;
        switch (message) {
            case LVM_SETITEMSTATE:
                return Set_State(row, item.state, item.stateMask);
            case LVM_GETITEMTEXTA:
                return Get_Text(row, item);
            default:
                return Set_Text(row, item);
        }
    }

    bool Get(std::size_t row, LVITEMA& item) const noexcept {
        const ListRow& found = m_Rows[row];
        if (item.mask & LVIF_TEXT) Get_Text(row, item);
        if (item.mask & LVIF_PARAM) item.lParam = found.data;
        if (item.mask & LVIF_IMAGE) item.iImage = found.image;
        if (item.mask & LVIF_STATE) item.state = found.state & item.stateMask;
        return true;
    }

    int Get_Text(std::size_t row, const LVITEMA& item) const noexcept {
        // A column that is none has empty texts.
        return rv::Hand_Out(m_Rows.Text(row, static_cast<std::size_t>(item.iSubItem)), item.pszText,
                            static_cast<std::size_t>(std::max(item.cchTextMax, 0)));
    }

    bool Set_Text(std::size_t row, const LVITEMA& item) noexcept {
        const auto column = static_cast<std::size_t>(item.iSubItem);
        if (column != 0 && column >= m_Formats.Size()) return false;
        rv::Invalidate(*this, true);
        return m_Rows.Set_Text(row, column, item.pszText);
    }

    bool Set(std::size_t row, const LVITEMA& item) noexcept {
        const bool is_of_row = (item.mask & ~LVIF_TEXT) != 0;
        if (is_of_row && item.iSubItem != 0) return false;
        if ((item.mask & LVIF_TEXT) && !Set_Text(row, item)) return false;
        if (item.mask & LVIF_PARAM) m_Rows.Set_Data(row, item.lParam);
        if (item.mask & LVIF_IMAGE) m_Rows[row].image = item.iImage;
        rv::Invalidate(*this, true);
        return !(item.mask & LVIF_STATE) || Set_State(row, item.state, item.stateMask);
    }

    LRESULT Insert(const LVITEMA& item) noexcept {
        if (item.iItem < 0 || item.iSubItem != 0 || m_IsSorting) return -1;
        const std::size_t row = std::min(static_cast<std::size_t>(item.iItem), m_Rows.Count());
        const LPARAM data = item.mask & LVIF_PARAM ? item.lParam : 0;
        if (!m_Rows.Insert(row, data)) return -1;
        if ((item.mask & LVIF_TEXT) && !Set_Text(row, item)) {
            m_Rows.Erase(row);
            return -1;
        }
        if (item.mask & LVIF_IMAGE) m_Rows[row].image = item.iImage;
        if (m_Focused >= static_cast<INT_PTR>(row)) ++m_Focused;
        rv::Invalidate(*this, true);
        if (item.mask & LVIF_STATE) Set_State(row, item.state, item.stateMask);
        Tell(LVN_INSERTITEM, static_cast<int>(row), data);
        Fit();
        return static_cast<LRESULT>(row);
    }

    bool Delete(std::size_t row) noexcept {
        const ListRow* const deleted = &m_Rows[row];
        if (deleted->state & LVIS_SELECTED) Set_State(row, 0, LVIS_SELECTED);
        if (m_Rows.Has(row) && &m_Rows[row] == deleted)
            Tell(LVN_DELETEITEM, static_cast<int>(row), deleted->data);
        // What was told may have deleted it.
        if (m_Rows.Has(row) && &m_Rows[row] == deleted) Erase(row);
        return true;
    }

    void Erase(std::size_t row) noexcept {
        if (m_Rows[row].state & LVIS_SELECTED) --m_SelectedCount;
        if (m_Focused == static_cast<INT_PTR>(row))
            m_Focused = -1;
        else if (m_Focused > static_cast<INT_PTR>(row))
            --m_Focused;
        m_Rows.Erase(row);
        rv::Invalidate(*this, true);
        Fit();
    }

    bool Delete_All() noexcept {
        const bool tells = Tell(LVN_DELETEALLITEMS, -1, 0) == 0;
        // From the last one, and no more than there were: a parent may delete or insert meanwhile.
        for (std::size_t left = m_Rows.Count(); left-- > 0 && m_Rows.Count() != 0;) {
            const std::size_t row = m_Rows.Count() - 1;
            const ListRow* const deleted = &m_Rows[row];
            if (tells) Tell(LVN_DELETEITEM, static_cast<int>(row), deleted->data);
            if (m_Rows.Has(row) && &m_Rows[row] == deleted) Erase(row);
        }
        return true;
    }

    bool Sort(PFNLVCOMPARE compare, LPARAM parameter) noexcept {
        const ListRow* const focused =
            m_Focused >= 0 ? &m_Rows[static_cast<std::size_t>(m_Focused)] : nullptr;
        m_IsSorting = true;
        const bool is_done = m_Rows.Sort(compare, parameter);
        m_IsSorting = false;
        for (std::size_t row = 0; focused && row < m_Rows.Count(); ++row) {
            if (&m_Rows[row] == focused) m_Focused = static_cast<INT_PTR>(row);
        }
        rv::Invalidate(*this, true);
        return is_done;
    }

    LRESULT Next(int start, UINT wanted) const noexcept {
        UINT state = wanted & LVNI_SELECTED ? LVIS_SELECTED : 0;
        if (wanted & LVNI_FOCUSED) state |= LVIS_FOCUSED;
        if (start < -1) return -1;
        for (auto row = static_cast<std::size_t>(INT_PTR{start} + 1); m_Rows.Has(row); ++row) {
            if ((m_Rows[row].state & state) == state) return static_cast<LRESULT>(row);
        }
        return -1;
    }

    LRESULT Find(int start, const LVFINDINFOA& wanted) noexcept {
        return wanted.flags == LVFI_PARAM ? m_Rows.Find(wanted.lParam, start) : -1;
    }

    // ---- States ----

    bool Set_State_Of_All(UINT state, UINT mask) noexcept {
        // Only one row can have the focus.
        const UINT all = mask & ~LVIS_FOCUSED;
        for (std::size_t row = 0; row < m_Rows.Count(); ++row)
            Set_State(row, state, all);
        return true;
    }

    bool Set_State(std::size_t row, UINT state, UINT mask) noexcept {
        ListRow* const changed = &m_Rows[row];
        const UINT before = changed->state;
        const UINT after = (before & ~mask) | (state & mask);
        if (Tell_State(LVN_ITEMCHANGING, row, before, after) != 0) return false;
        if (before == after) return true;
        const UINT gained = after & ~before;
        if (gained & LVIS_FOCUSED) Take_From_Others(LVIS_FOCUSED, row);
        if ((gained & LVIS_SELECTED) && (m_Style & LVS_SINGLESEL))
            Take_From_Others(LVIS_SELECTED, row);
        // What was told may have deleted it, or changed it as well.
        if (!m_Rows.Has(row) || &m_Rows[row] != changed || changed->state != before) return false;
        changed->state = after;
        if (gained & LVIS_FOCUSED) m_Focused = static_cast<INT_PTR>(row);
        if (before & ~after & LVIS_FOCUSED) m_Focused = -1;
        if (gained & LVIS_SELECTED) ++m_SelectedCount;
        if (before & ~after & LVIS_SELECTED) --m_SelectedCount;
        rv::Invalidate(*this, true);
        Tell_State(LVN_ITEMCHANGED, row, before, after);
        return true;
    }

    void Take_From_Others(UINT state, std::size_t but) noexcept {
        if (state == LVIS_FOCUSED) {
            if (m_Focused >= 0) Set_State(static_cast<std::size_t>(m_Focused), 0, state);
            return;
        }
        for (std::size_t row = 0; m_SelectedCount != 0 && m_Rows.Has(row); ++row) {
            if (row != but && (m_Rows[row].state & state)) Set_State(row, 0, state);
        }
    }

    LRESULT Tell_State(UINT code, std::size_t row, UINT before, UINT after) noexcept {
        NMLISTVIEW notice = {};
        notice.iItem = static_cast<int>(row);
        notice.uNewState = after;
        notice.uOldState = before;
        notice.uChanged = LVIF_STATE;
        notice.lParam = m_Rows[row].data;
        return rv::Send_Notice(*this, code, notice.hdr);
    }

    LRESULT Tell(UINT code, int row, LPARAM data) noexcept {
        NMLISTVIEW notice = {};
        notice.iItem = row;
        notice.lParam = data;
        return rv::Send_Notice(*this, code, notice.hdr);
    }

    // ---- Columns ----

    // Made when it is first needed; null without memory.
    HWND Header() noexcept {
        if (!m_Header) {
            const DWORD buttons = m_Style & LVS_NOSORTHEADER ? 0 : HDS_BUTTONS;
            m_Header = CreateWindowExA(0, WC_HEADERA, nullptr, WS_CHILD | buttons, 0, 0, 0, 0,
                                       Handle(), nullptr, nullptr, nullptr);
            Place_Header();
        }
        return m_Header;
    }

    bool Shows_Header() const noexcept {
        return m_Header && Is_Report() && !(m_Style & LVS_NOCOLUMNHEADER);
    }

    void Place_Header() noexcept {
        if (!m_Header) return;
        MoveWindow(m_Header, 0, 0, rv::Inside_Of(*this).right, rv::kHeaderHeight, TRUE);
        ShowWindow(m_Header, Shows_Header() ? SW_SHOW : SW_HIDE);
    }

    LRESULT Ask_Header(UINT message, WPARAM item, HDITEMA* record) const noexcept {
        return SendMessageA(m_Header, message, item, reinterpret_cast<LPARAM>(record));
    }

    LRESULT Insert_Column(int wanted, const LVCOLUMNA& record) noexcept {
        if (wanted < 0 || !Header()) return -1;
        const std::size_t place = std::min(static_cast<std::size_t>(wanted), m_Formats.Size());
        const bool is_aligned = place != 0 && (record.mask & LVCF_FMT);
        const int format = is_aligned ? record.fmt & LVCFMT_JUSTIFYMASK : LVCFMT_LEFT;
        if (!m_Formats.Insert(place, format)) return -1;
        const LRESULT added = Insert_Heading(place, format, record);
        // What was told may have deleted it.
        if (added < 0 && place < m_Formats.Size()) m_Formats.Erase(place);
        rv::Invalidate(*this, true);
        Fit_Columns();
        return added;
    }

    LRESULT Insert_Heading(std::size_t place, int format, const LVCOLUMNA& record) noexcept {
        HDITEMA item = {};
        item.mask = HDI_FORMAT | HDI_WIDTH;
        item.fmt = HDF_STRING | format;
        if (record.mask & LVCF_WIDTH) item.cxy = record.cx;
        if (record.mask & LVCF_TEXT) {
            item.mask |= HDI_TEXT;
            item.pszText = record.pszText;
        }
        const LRESULT added = Ask_Header(HDM_INSERTITEMA, place, &item);
        if (added < 0) return -1;
        // What stands in the first column of rows without columns is the first column's.
        if (m_Formats.Size() == 1 || m_Rows.Insert_Column(place)) return added;
        Ask_Header(HDM_DELETEITEM, place, nullptr);
        return -1;
    }

    bool Delete_Column(std::size_t column) noexcept {
        if (!Ask_Header(HDM_DELETEITEM, column, nullptr)) return false;
        m_Rows.Erase_Column(column);
        m_Formats.Erase(column);
        rv::Invalidate(*this, true);
        Fit_Columns();
        return true;
    }

    bool Get_Column(std::size_t column, LVCOLUMNA& record) const noexcept {
        HDITEMA item = {};
        item.mask = HDI_WIDTH;
        if (record.mask & LVCF_TEXT) item.mask |= HDI_TEXT;
        item.pszText = record.pszText;
        item.cchTextMax = record.cchTextMax;
        if (!Ask_Header(HDM_GETITEMA, column, &item)) return false;
        if (record.mask & LVCF_FMT) record.fmt = m_Formats[column];
        if (record.mask & LVCF_WIDTH) record.cx = item.cxy;
        if (record.mask & LVCF_SUBITEM) record.iSubItem = static_cast<int>(column);
        return true;
    }

    int Width_Of_Column(std::size_t column) const noexcept {
        HDITEMA item = {};
        item.mask = HDI_WIDTH;
        Ask_Header(HDM_GETITEMA, column, &item);
        return item.cxy;
    }

    bool Set_Width(std::size_t column, int width) noexcept {
        HDITEMA item = {};
        item.mask = HDI_WIDTH;
        item.cxy = width;
        return width >= 0 && Ask_Header(HDM_SETITEMA, column, &item);
    }

    // What the header tells.
    LRESULT Hear(WPARAM id, NMHDR& notice) noexcept {
        if (notice.code == HDN_ITEMCHANGEDA) {
            rv::Invalidate(*this, true);
            Fit_Columns();
            return 0;
        }
        if (notice.code == HDN_ITEMCLICKA) {
            NMLISTVIEW click = {};
            click.iItem = -1;
            click.iSubItem = reinterpret_cast<const NMHEADERA&>(notice).iItem;
            rv::Send_Notice(*this, LVN_COLUMNCLICK, click.hdr);
        }
        return Parent() ? rv::Send(*Parent(), WM_NOTIFY, id, reinterpret_cast<LPARAM>(&notice)) : 0;
    }

    // ---- The user ----

    int Top_Of_Rows() const noexcept { return Shows_Header() ? rv::kHeaderHeight : 0; }

    INT_PTR Shown_Rows() const noexcept {
        return std::max((rv::Inside_Of(*this).bottom - Top_Of_Rows()) / kRowHeight, 1);
    }

    void Fit_Columns() noexcept {
        LONGLONG width = 0;
        for (std::size_t column = 0; column < m_Formats.Size(); ++column)
            width += Width_Of_Column(column);
        m_RowWidth = static_cast<int>(std::min<LONGLONG>(width, 1 << 30));
        Fit();
    }

    // No room is left empty that a row above could fill.
    void Fit() noexcept {
        const auto last_top = static_cast<INT_PTR>(m_Rows.Count()) - Shown_Rows();
        m_Top = std::clamp<INT_PTR>(m_Top, 0, std::max<INT_PTR>(last_top, 0));
        const int rows = rv::Height_Of_Rows(m_Rows.Count(), kRowHeight);
        const SIZE content = {Is_Report() ? m_RowWidth : 0, rows != 0 ? Top_Of_Rows() + rows : 0};
        rv::Fit_Scroll_Bars(*this, content, static_cast<int>(m_Top) * kRowHeight);
    }

    RECT Place_Of(std::size_t row) const noexcept {
        const int top =
            Top_Of_Rows() + (static_cast<int>(row) - static_cast<int>(m_Top)) * kRowHeight;
        return {0, top, m_RowWidth, top + kRowHeight};
    }

    // -1 for none.
    INT_PTR Row_At(POINT at) const noexcept {
        if (at.y < Top_Of_Rows()) return -1;
        const INT_PTR row = m_Top + (at.y - Top_Of_Rows()) / kRowHeight;
        return m_Rows.Has(static_cast<WPARAM>(row)) ? row : -1;
    }

    void Click(INT_PTR row, bool keeps_others) noexcept {
        if (!keeps_others) {
            for (std::size_t other = 0; m_SelectedCount != 0 && m_Rows.Has(other); ++other) {
                if (static_cast<INT_PTR>(other) != row && (m_Rows[other].state & LVIS_SELECTED))
                    Set_State(other, 0, LVIS_SELECTED);
            }
        }
        if (row < 0 || !m_Rows.Has(static_cast<WPARAM>(row))) return;
        const auto clicked = static_cast<std::size_t>(row);
        const bool selects = !keeps_others || !(m_Rows[clicked].state & LVIS_SELECTED);
        Set_State(clicked, LVIS_FOCUSED | (selects ? LVIS_SELECTED : 0),
                  LVIS_FOCUSED | LVIS_SELECTED);
    }

    void Step(int by) noexcept {
        const INT_PTR row = m_Focused + by;
        if (row < 0 || !m_Rows.Has(static_cast<WPARAM>(row))) return;
        Click(row, false);
        m_Top = std::clamp(m_Top, std::max<INT_PTR>(row - Shown_Rows() + 1, 0), row);
        Fit();
    }

    // ---- Images and looks ----

    void Paint() noexcept {
        const rv::Painting painting(*this);
        HDC const context = painting.Context();
        const RECT inside = rv::Inside_Of(*this);
        rv::Fill(context, inside, COLOR_WINDOW);
        for (auto row = static_cast<std::size_t>(m_Top); m_Rows.Has(row); ++row) {
            const RECT place = Place_Of(row);
            if (place.top >= inside.bottom) break;
            Paint_Row(context, row, place);
        }
    }

    void Paint_Row(HDC context, std::size_t row, RECT place) noexcept {
        const bool has_focus = GetFocus() == Handle();
        const bool is_marked = (m_Rows[row].state & LVIS_SELECTED) != 0 &&
                               (has_focus || (m_Style & LVS_SHOWSELALWAYS) != 0);
        int text_color = rv::Is_Disabled(*this) ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT;
        if (is_marked) {
            RECT mark = place;
            if (!(m_Extended & LVS_EX_FULLROWSELECT)) mark.right = First_Right();
            rv::Fill(context, mark, has_focus ? COLOR_HIGHLIGHT : COLOR_BTNFACE);
            if (has_focus) text_color = COLOR_HIGHLIGHTTEXT;
        }
        for (std::size_t column = 0; column < std::max<std::size_t>(m_Formats.Size(), 1);
             ++column) {
            place.right = column == 0 ? First_Right() : place.left + Width_Of_Column(column);
            const bool is_on_mark = column == 0 || (m_Extended & LVS_EX_FULLROWSELECT) != 0;
            SetTextColor(context, GetSysColor(is_on_mark ? text_color : COLOR_WINDOWTEXT));
            Paint_Cell(context, row, column, place);
            place.left = place.right;
        }
    }

    int First_Right() const noexcept {
        return m_Formats.Is_Empty() ? rv::Inside_Of(*this).right : Width_Of_Column(0);
    }

    void Paint_Cell(HDC context, std::size_t row, std::size_t column, const RECT& place) noexcept {
        RECT line = {place.left + kMargin, place.top, place.right - kMargin, place.bottom};
        int width = 0, height = 0;
        HIMAGELIST const images = column == 0 ? m_Images[LVSIL_SMALL] : nullptr;
        if (images && ImageList_GetIconSize(images, &width, &height)) {
            ImageList_Draw(images, m_Rows[row].image, context, line.left,
                           line.top + (kRowHeight - height) / 2, ILD_NORMAL);
            line.left += width + kMargin;
        }
        const int format = m_Formats.Is_Empty() ? LVCFMT_LEFT : m_Formats[column];
        if (line.left < line.right)
            rv::Draw_Line(context, line, m_Rows.Text(row, column), rv::Align_Of(format));
    }

    LRESULT Set_Images(WPARAM kind, HIMAGELIST images) noexcept {
        if (kind > LVSIL_STATE) return 0;
        if (kind == LVSIL_SMALL && m_Header)
            SendMessageA(m_Header, HDM_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images));
        rv::Invalidate(*this, true);
        return reinterpret_cast<LRESULT>(std::exchange(m_Images[kind], images));
    }

    void End_Images() noexcept {
        for (HIMAGELIST& images : m_Images) {
            if (images && !(m_Style & LVS_SHAREIMAGELISTS)) ImageList_Destroy(images);
            images = nullptr;
        }
    }

    DWORD Set_Extended(DWORD mask, DWORD style) noexcept {
        rv::Invalidate(*this, true);
        const DWORD after = mask == 0 ? style : (m_Extended & ~mask) | (style & mask);
        return std::exchange(m_Extended, after);
    }

    rv::ListRows m_Rows;
    rv::GrowingArray<int> m_Formats;  // of the columns, whatever their headings have
    std::size_t m_SelectedCount = 0;
    INT_PTR m_Focused = -1;  // a row
    INT_PTR m_Top = 0;       // the first row that is shown
    int m_RowWidth = 0;      // all columns
    HWND m_Header = nullptr;
    HIMAGELIST m_Images[LVSIL_STATE + 1] = {};
    DWORD m_Extended = 0;
    bool m_IsSorting = false;
};

}  // namespace

rv::Window* rv::Make_List_View() noexcept {
    return new (std::nothrow) ListView;
}
