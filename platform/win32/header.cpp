#include "header.h"

#include <algorithm>

#include "growing_array.h"
#include "input.h"
#include "owned_text.h"
#include "paint.h"
#include "rectangle.h"
#include "text_metrics.h"
#include "window_place.h"
#include "window_update.h"

namespace {

// How near to an edge the user takes hold of it.
constexpr int kGrip = 4;

constexpr int kMargin = 6;
constexpr int kGap = 4;  // between text and image

struct Item {
    rv::OwnedText text;
    int width;
    int format;
    int image;
    LPARAM data;
};

class Header final : public rv::Window {
public:
    ~Header() override {
        for (const Item& item : m_Items)
            rv::Heap_Free(item.text);
    }

    LRESULT Receive(UINT message, WPARAM first, LPARAM second) noexcept override {
        auto* const record = reinterpret_cast<HDITEMA*>(second);
        switch (message) {
            case HDM_GETITEMCOUNT:
                return static_cast<LRESULT>(m_Items.Size());
            case HDM_INSERTITEMA:
                return record ? Insert(static_cast<int>(first), *record) : -1;
            case HDM_DELETEITEM:
                return Is_Item(first) && Erase(first);
            case HDM_GETITEMA:
                return record && Is_Item(first) && Get(m_Items[first], *record);
            case HDM_SETITEMA:
                return record && Is_Item(first) && Set(first, *record);
            case HDM_GETITEMRECT:
                if (!Is_Item(first)) return FALSE;
                *reinterpret_cast<RECT*>(second) = Place_Of(first);
                return TRUE;
            case HDM_SETIMAGELIST:
                rv::Invalidate(*this, true);
                return reinterpret_cast<LRESULT>(
                    std::exchange(m_Images, reinterpret_cast<HIMAGELIST>(second)));
            case HDM_GETIMAGELIST:
                return reinterpret_cast<LRESULT>(m_Images);
            case WM_PAINT:
                Paint();
                return 0;
            case WM_LBUTTONDOWN:
                Take_Hold(rv::Place_Of(second));
                return 0;
            case WM_MOUSEMOVE:
                if (m_Hold == Hold::kEdge) Drag_To(rv::Place_Of(second).x);
                return 0;
            case WM_LBUTTONUP:
                Let_Go(rv::Place_Of(second));
                return 0;
            default:
                return Default(message, first, second);
        }
    }

private:
    enum class Hold { kNothing, kItem, kEdge };

    bool Is_Item(WPARAM item) const noexcept { return item < m_Items.Size(); }

    LRESULT Insert(int wanted, const HDITEMA& record) noexcept {
        if (wanted < 0) return -1;
        const std::size_t place = std::min(static_cast<std::size_t>(wanted), m_Items.Size());
        if (!m_Items.Insert(place, {})) return -1;
        if (Set(place, record)) return static_cast<LRESULT>(place);
        m_Items.Erase(place);
        return -1;
    }

    bool Erase(std::size_t place) noexcept {
        rv::Heap_Free(m_Items[place].text);
        m_Items.Erase(place);
        rv::Invalidate(*this, true);
        return true;
    }

    static bool Get(const Item& item, HDITEMA& record) noexcept {
        if (record.mask & HDI_WIDTH) record.cxy = item.width;
        if (record.mask & HDI_FORMAT) record.fmt = item.format;
        if (record.mask & HDI_LPARAM) record.lParam = item.data;
        if (record.mask & HDI_IMAGE) record.iImage = std::max(item.image, 0);
        if (record.mask & HDI_TEXT) {
            rv::Hand_Out(rv::View_Of(item.text), record.pszText,
                         static_cast<std::size_t>(std::max(record.cchTextMax, 0)));
        }
        return true;
    }

    bool Set(std::size_t place, const HDITEMA& record) noexcept {
        Item& item = m_Items[place];
        if ((record.mask & HDI_TEXT) && !rv::Replace_Text(item.text, record.pszText)) return false;
        if (record.mask & HDI_TEXT) item.format |= HDF_STRING;
        if (record.mask & HDI_WIDTH) item.width = std::max(record.cxy, 0);
        if (record.mask & HDI_FORMAT) item.format = record.fmt;
        if (record.mask & HDI_LPARAM) item.data = record.lParam;
        if (record.mask & HDI_IMAGE) item.image = record.iImage;
        rv::Invalidate(*this, true);
        // Rows below the headings stand by their widths.
        if (record.mask & HDI_WIDTH) Tell(HDN_ITEMCHANGEDA, static_cast<int>(place));
        return true;
    }

    RECT Place_Of(std::size_t place) const noexcept {
        int left = 0;
        for (std::size_t before = 0; before < place; ++before)
            left += m_Items[before].width;
        return {left, 0, left + m_Items[place].width, rv::Inside_Of(*this).bottom};
    }

    // Of two items, the left one's edge is at hand, also on the right side of it.
    void Take_Hold(POINT at) noexcept {
        int edge = 0;
        m_Hold = Hold::kNothing;
        for (std::size_t place = 0; place < m_Items.Size(); ++place) {
            const int left = edge;
            edge += m_Items[place].width;
            if (at.x >= edge + kGrip || at.x < left) continue;
            m_Held = place;
            m_Start = at.x - m_Items[place].width;
            m_Hold = at.x > edge - kGrip ? Hold::kEdge : Hold::kItem;
            return;
        }
    }

    void Drag_To(int x) noexcept {
        HDITEMA change = {};
        change.mask = HDI_WIDTH;
        change.cxy = std::max(x - m_Start, 0);
        if (Is_Item(m_Held)) Set(m_Held, change);
    }

    void Let_Go(POINT at) noexcept {
        const Hold hold = std::exchange(m_Hold, Hold::kNothing);
        if (hold == Hold::kNothing || !Is_Item(m_Held)) return;
        const int held = static_cast<int>(m_Held);
        if (hold == Hold::kEdge) {
            Drag_To(at.x);
            Tell(HDN_ENDTRACKA, held);
            return;
        }
        const RECT place = Place_Of(m_Held);
        const bool is_on_it =
            at.x >= place.left && at.x < place.right && at.y >= place.top && at.y < place.bottom;
        if (is_on_it && (m_Style & HDS_BUTTONS)) Tell(HDN_ITEMCLICKA, held);
    }

    void Paint() noexcept {
        const rv::Painting painting(*this);
        HDC const context = painting.Context();
        RECT rest = rv::Inside_Of(*this);
        SetTextColor(context, GetSysColor(COLOR_BTNTEXT));
        for (std::size_t place = 0; place < m_Items.Size(); ++place) {
            const RECT box = Place_Of(place);
            Paint_Box(context, box);
            Paint_Item(context, box, m_Items[place]);
            rest.left = box.right;
        }
        if (!rv::Is_Empty(rest)) Paint_Box(context, rest);
    }

    static void Paint_Box(HDC context, RECT box) noexcept {
        rv::Fill(context, box, COLOR_BTNFACE);
        DrawEdge(context, &box, EDGE_RAISED, BF_RECT);
    }

    // The image stands behind the text, which gives way to it.
    void Paint_Item(HDC context, const RECT& box, const Item& item) noexcept {
        RECT line = {box.left + kMargin, box.top, box.right - kMargin, box.bottom};
        int width = 0, height = 0;
        const bool has_image = (item.format & HDF_IMAGE) != 0 && m_Images &&
                               ImageList_GetIconSize(m_Images, &width, &height);
        if (has_image) line.right -= width + kGap;
        const std::string_view text =
            item.format & HDF_STRING ? rv::View_Of(item.text) : std::string_view();
        if (line.left < line.right) rv::Draw_Line(context, line, text, rv::Align_Of(item.format));
        if (!has_image) return;
        const int behind = rv::Align_Of(item.format) == rv::Align::kLeft
                               ? std::min(line.left + rv::Width_Of(text), int{line.right})
                               : int{line.right};
        const int y = box.top + (rv::Height_Of(box) - height) / 2;
        ImageList_Draw(m_Images, item.image, context, behind + kGap, y, ILD_NORMAL);
    }

    void Tell(UINT code, int item) noexcept {
        NMHEADERA notice = {{}, item, 0, nullptr};
        rv::Send_Notice(*this, code, notice.hdr);
    }

    rv::GrowingArray<Item> m_Items;
    HIMAGELIST m_Images = nullptr;
    Hold m_Hold = Hold::kNothing;
    std::size_t m_Held = 0;
    int m_Start = 0;  // where the pointer would stand for a width of 0
};

}  // namespace

rv::Window* rv::Make_Header() noexcept {
    return new (std::nothrow) Header;
}
