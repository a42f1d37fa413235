#include "list_box.h"

#include <strings.h>

#include <algorithm>
#include <utility>

#include "growing_array.h"
#include "input.h"
#include "owned_text.h"
#include "paint.h"
#include "rectangle.h"
#include "scroll_bars.h"
#include "text_metrics.h"
#include "window_object.h"
#include "window_place.h"
#include "window_state.h"
#include "window_update.h"

namespace {

constexpr int kRowHeight = rv::kLineHeight + 2;
constexpr int kMargin = 2;

class ListBox final : public rv::Window {
public:
    ~ListBox() override { Free_Rows(); }

    LRESULT Receive(UINT message, WPARAM first, LPARAM second) noexcept override {
        switch (message) {
            case LB_ADDSTRING:
            case LB_INSERTSTRING:
            case LB_DELETESTRING:
            case LB_RESETCONTENT:
                return Change_And_Fit(message, static_cast<INT_PTR>(first), second);
            case LB_GETTEXT:
            case LB_GETTEXTLEN:
            case LB_GETITEMRECT:
                return Is_Row(first) ? Read(message, first, second) : LB_ERR;
            case LB_GETCOUNT:
                return static_cast<LRESULT>(m_Rows.Size());
            case LB_SETCURSEL:
                return Choose(static_cast<INT_PTR>(static_cast<int>(first)));
            case LB_GETCURSEL:
                return m_Chosen;
            case LB_GETHORIZONTALEXTENT:
                return m_Extent;
            case LB_SETHORIZONTALEXTENT:
                m_Extent = static_cast<int>(first);
                Fit();
                return 0;
            case WM_CREATE:
            case WM_SIZE:
                Shrink_To_Rows();
                Fit();
                return 0;
            case WM_PAINT:
                Paint();
                return 0;
            case WM_LBUTTONDOWN:
                SetFocus(Handle());
                Choose_By_User(m_Top + rv::Place_Of(second).y / kRowHeight);
                return 0;
            case WM_KEYDOWN:
                if (first == VK_UP || first == VK_DOWN)
                    Choose_By_User(m_Chosen + (first == VK_UP ? -1 : 1));
                return 0;
            case WM_ENABLE:
                rv::Invalidate(*this, true);
                return 0;
            default:
                return Default(message, first, second);
        }
    }

private:
    LRESULT Change_And_Fit(UINT message, INT_PTR row, LPARAM text) noexcept {
        const LRESULT answer = Change(message, row, text);
        Fit();
        return answer;
    }

    // None is cut at the bottom.
    void Shrink_To_Rows() noexcept {
        if (m_Style & LBS_NOINTEGRALHEIGHT) return;
        const int height = rv::Inside_Of(*this).bottom;
        if (height < kRowHeight || height % kRowHeight == 0) return;
        SetWindowPos(Handle(), nullptr, 0, 0, rv::Width_Of(m_Place),
                     rv::Height_Of(m_Place) - height % kRowHeight, SWP_NOMOVE | SWP_NOZORDER);
    }

    // No room is left empty that a row above could fill.
    void Fit() noexcept {
        const auto last_top = static_cast<INT_PTR>(m_Rows.Size()) - Shown_Rows();
        m_Top = std::clamp<INT_PTR>(m_Top, 0, std::max<INT_PTR>(last_top, 0));
        SIZE content = {};
        if (m_Style & WS_HSCROLL) content.cx = m_Extent;
        if (m_Style & WS_VSCROLL) content.cy = rv::Height_Of_Rows(m_Rows.Size(), kRowHeight);
        rv::Fit_Scroll_Bars(*this, content, static_cast<int>(m_Top) * kRowHeight);
    }

    bool Is_Row(WPARAM row) const noexcept { return row < m_Rows.Size(); }

    LRESULT Change(UINT message, INT_PTR row, LPARAM text) noexcept {
        rv::Invalidate(*this, true);
        const auto count = static_cast<INT_PTR>(m_Rows.Size());
        switch (message) {
            case LB_ADDSTRING:
                return Insert(Place_For(reinterpret_cast<LPCSTR>(text)), text);
            case LB_INSERTSTRING:
                row = static_cast<int>(row);
                return row < -1 || row > count ? LB_ERR : Insert(row == -1 ? count : row, text);
            case LB_DELETESTRING:
                return row < 0 || row >= count ? LB_ERR : Erase(row);
            default:
                Free_Rows();
                m_Rows.Clear();
                m_Chosen = LB_ERR;
                m_Top = 0;
                return 0;
        }
    }

    // Behind all that are no greater, in a list that is sorted.
    INT_PTR Place_For(LPCSTR text) const noexcept {
        if (!(m_Style & LBS_SORT)) return static_cast<INT_PTR>(m_Rows.Size());
        const auto is_less = [](LPCSTR left, LPCSTR right) {
            return strcasecmp(left ? left : "", right ? right : "") < 0;
        };
        return std::upper_bound(m_Rows.begin(), m_Rows.end(), text, is_less) - m_Rows.begin();
    }

    LRESULT Insert(INT_PTR row, LPARAM text) noexcept {
        rv::OwnedText copy = nullptr;
        if (!rv::Copy_Text(reinterpret_cast<LPCSTR>(text), copy)) return LB_ERRSPACE;
        if (!m_Rows.Insert(static_cast<std::size_t>(row), copy)) {
            rv::Heap_Free(copy);
            return LB_ERRSPACE;
        }
        if (m_Chosen >= row) ++m_Chosen;
        return row;
    }

    LRESULT Erase(INT_PTR row) noexcept {
        rv::Heap_Free(m_Rows[static_cast<std::size_t>(row)]);
        m_Rows.Erase(static_cast<std::size_t>(row));
        if (m_Chosen == row)
            m_Chosen = LB_ERR;
        else if (m_Chosen > row)
            --m_Chosen;
        return static_cast<LRESULT>(m_Rows.Size());
    }

    LRESULT Read(UINT message, std::size_t row, LPARAM target) const noexcept {
        const std::string_view text = rv::View_Of(m_Rows[row]);
        switch (message) {
            case LB_GETTEXT:
                return rv::Hand_Out(text, reinterpret_cast<LPSTR>(target), text.size() + 1);
            case LB_GETTEXTLEN:
                return static_cast<LRESULT>(text.size());
            default:
                *reinterpret_cast<RECT*>(target) = Place_Of(row);
                return 1;
        }
    }

    RECT Place_Of(std::size_t row) const noexcept {
        const int top = (static_cast<int>(row) - static_cast<int>(m_Top)) * kRowHeight;
        return {0, top, rv::Inside_Of(*this).right, top + kRowHeight};
    }

    void Paint() noexcept {
        const rv::Painting painting(*this);
        HDC const context = painting.Context();
        const RECT inside = rv::Inside_Of(*this);
        FillRect(context, &inside, rv::Ask_Colors(*this, WM_CTLCOLORLISTBOX, context));
        if (rv::Is_Disabled(*this)) SetTextColor(context, GetSysColor(COLOR_GRAYTEXT));
        const COLORREF color = GetTextColor(context);
        for (auto row = static_cast<std::size_t>(m_Top); row < m_Rows.Size(); ++row) {
            RECT place = Place_Of(row);
            if (place.top >= inside.bottom) break;
            const bool is_chosen = static_cast<INT_PTR>(row) == m_Chosen;
            if (is_chosen) rv::Fill(context, place, COLOR_HIGHLIGHT);
            SetTextColor(context, is_chosen ? GetSysColor(COLOR_HIGHLIGHTTEXT) : color);
            place.left += kMargin;
            rv::Draw_Line(context, place, rv::View_Of(m_Rows[row]), rv::Align::kLeft);
        }
    }

    LRESULT Choose(INT_PTR row) noexcept {
        const bool is_row = row >= 0 && Is_Row(static_cast<WPARAM>(row));
        m_Chosen = is_row ? row : LB_ERR;
        if (is_row) Show_Row(row);
        rv::Invalidate(*this, true);
        return m_Chosen;
    }

    INT_PTR Shown_Rows() const noexcept {
        return std::max(rv::Inside_Of(*this).bottom / kRowHeight, 1);
    }

    void Show_Row(INT_PTR row) noexcept {
        m_Top = std::clamp(m_Top, std::max<INT_PTR>(row - Shown_Rows() + 1, 0), row);
        Fit();
    }

    void Choose_By_User(INT_PTR row) noexcept {
        if (row < 0 || !Is_Row(static_cast<WPARAM>(row))) return;
        Choose(row);
        if (m_Style & LBS_NOTIFY) rv::Send_Command(*this, LBN_SELCHANGE);
    }

    void Free_Rows() noexcept {
        for (const rv::OwnedText text : m_Rows)
            rv::Heap_Free(text);
    }

    rv::GrowingArray<rv::OwnedText> m_Rows;
    INT_PTR m_Chosen = LB_ERR;
    INT_PTR m_Top = 0;  // the first row that is shown
    int m_Extent = 0;
};

}  // namespace

rv::Window* rv::Make_List_Box() noexcept {
    return new (std::nothrow) ListBox;
}
