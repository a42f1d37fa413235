#include "tab_control.h"

#include <algorithm>
#include <utility>

#include "growing_array.h"
#include "input.h"
#include "owned_text.h"
#include "paint.h"
#include "rectangle.h"
#include "text_metrics.h"
#include "window_place.h"
#include "window_update.h"

namespace {

constexpr int kTabHeight = rv::kLineHeight + 6;
constexpr int kMargin = 8;

struct Tab {
    rv::OwnedText text;
    LPARAM data;
};

class TabControl final : public rv::Window {
public:
    ~TabControl() override {
        for (const Tab& tab : m_Tabs)
            rv::Heap_Free(tab.text);
    }

    LRESULT Receive(UINT message, WPARAM first, LPARAM second) noexcept override {
        auto* const record = reinterpret_cast<TCITEMA*>(second);
        switch (message) {
            case TCM_GETITEMCOUNT:
                return static_cast<LRESULT>(m_Tabs.Size());
            case TCM_GETITEMA:
                return record && Is_Tab(first) && Get(m_Tabs[first], *record);
            case TCM_SETITEMA:
                return record && Is_Tab(first) && Set(m_Tabs[first], *record);
            case TCM_INSERTITEMA:
                return record ? Insert(static_cast<int>(first), *record) : -1;
            case TCM_GETITEMRECT:
                if (!Is_Tab(first)) return FALSE;
                *reinterpret_cast<RECT*>(second) = Place_Of(first);
                return TRUE;
            case TCM_GETCURSEL:
                return m_Chosen;
            case TCM_SETCURSEL:
                return Is_Tab(first) ? Choose(static_cast<int>(first)) : -1;
            case WM_PAINT:
                Paint();
                return 0;
            case WM_LBUTTONDOWN:
                Choose_By_User(rv::Place_Of(second));
                return 0;
            default:
                return Default(message, first, second);
        }
    }

private:
    bool Is_Tab(WPARAM tab) const noexcept { return tab < m_Tabs.Size(); }

    static bool Get(const Tab& tab, TCITEMA& record) noexcept {
        if (record.mask & TCIF_PARAM) record.lParam = tab.data;
        if (record.mask & TCIF_TEXT) {
            rv::Hand_Out(rv::View_Of(tab.text), record.pszText,
                         static_cast<std::size_t>(std::max(record.cchTextMax, 0)));
        }
        return true;
    }

    bool Set(Tab& tab, const TCITEMA& record) noexcept {
        if ((record.mask & TCIF_TEXT) && !rv::Replace_Text(tab.text, record.pszText)) return false;
        if (record.mask & TCIF_PARAM) tab.data = record.lParam;
        rv::Invalidate(*this, true);
        return true;
    }

    LRESULT Insert(int wanted, const TCITEMA& record) noexcept {
        if (wanted < 0) return -1;
        Tab tab = {};
        if (!Set(tab, record)) return -1;
        const std::size_t place = std::min(static_cast<std::size_t>(wanted), m_Tabs.Size());
        if (!m_Tabs.Insert(place, tab)) {
            rv::Heap_Free(tab.text);
            return -1;
        }
        if (m_Chosen < 0 || m_Chosen >= static_cast<int>(place)) ++m_Chosen;
        return static_cast<LRESULT>(place);
    }

    RECT Place_Of(std::size_t tab) const noexcept {
        int left = 2;
        for (std::size_t before = 0; before < tab; ++before)
            left += Width_Of_Tab(before);
        return {left, 2, left + Width_Of_Tab(tab), 2 + kTabHeight};
    }

    int Width_Of_Tab(std::size_t tab) const noexcept {
        return rv::Width_Of(rv::View_Of(m_Tabs[tab].text)) + 2 * kMargin;
    }

    int Choose(int tab) noexcept {
        rv::Invalidate(*this, true);
        return std::exchange(m_Chosen, tab);
    }

    void Choose_By_User(POINT at) noexcept {
        int hit = 0;
        while (Is_Tab(static_cast<WPARAM>(hit)) &&
               !rv::Contains(Place_Of(static_cast<std::size_t>(hit)), at.x, at.y))
            ++hit;
        if (!Is_Tab(static_cast<WPARAM>(hit)) || hit == m_Chosen) return;
        NMHDR notice;
        if (rv::Send_Notice(*this, TCN_SELCHANGING, notice) != 0) return;
        // It may have been changed meanwhile.
        if (!Is_Tab(static_cast<WPARAM>(hit))) return;
        Choose(hit);
        rv::Send_Notice(*this, TCN_SELCHANGE, notice);
    }

    // The chosen tab is the last, higher than the others and in one with the page.
    void Paint() noexcept {
        const rv::Painting painting(*this);
        HDC const context = painting.Context();
        RECT page = rv::Inside_Of(*this);
        rv::Fill(context, page, COLOR_BTNFACE);
        page.top = 2 + kTabHeight;
        DrawEdge(context, &page, EDGE_RAISED, BF_RECT);
        SetTextColor(context, GetSysColor(COLOR_BTNTEXT));
        for (std::size_t tab = 0; tab < m_Tabs.Size(); ++tab) {
            if (static_cast<int>(tab) != m_Chosen) Paint_Tab(context, tab, Place_Of(tab));
        }
        if (m_Chosen < 0) return;
        const auto chosen = static_cast<std::size_t>(m_Chosen);
        RECT place = Place_Of(chosen);
        place = {place.left - 2, place.top - 2, place.right + 2, place.bottom + 2};
        rv::Fill(context, place, COLOR_BTNFACE);
        Paint_Tab(context, chosen, place);
    }

    void Paint_Tab(HDC context, std::size_t tab, RECT place) noexcept {
        DrawEdge(context, &place, EDGE_RAISED, BF_LEFT | BF_TOP | BF_RIGHT);
        rv::Draw_Line(context, place, rv::View_Of(m_Tabs[tab].text), rv::Align::kCenter);
    }

    rv::GrowingArray<Tab> m_Tabs;
    int m_Chosen = -1;
};

}  // namespace

rv::Window* rv::Make_Tab_Control() noexcept {
    return new (std::nothrow) TabControl;
}
