#include "button.h"

#include <algorithm>

#include "input.h"
#include "owned_text.h"
#include "paint.h"
#include "rectangle.h"
#include "text_metrics.h"
#include "window_place.h"
#include "window_state.h"
#include "window_update.h"

namespace {

constexpr DWORD kTypeMask = 0xF;
// As large as a box for a check.
constexpr std::string_view kDisk =
    "....##### ..######### .########### .########### ############# ############# ############# "
    "############# ############# .########### .########### ..######### ....#####";
constexpr std::string_view kRing =
    "....##### ..##.....## .#.........# .#.........# #...........# #...........# #...........# "
    "#...........# #...........# .#.........# .#.........# ..##.....## ....#####";
constexpr std::string_view kDot = ".###. ##### ##### ##### .###.";

class Button final : public rv::Window {
public:
    LRESULT Receive(UINT message, WPARAM first, LPARAM second) noexcept override {
        switch (message) {
            case BM_GETCHECK:
                return m_IsChecked;
            case BM_SETCHECK:
                Set_Check(first == BST_CHECKED);
                return 0;
            case BM_SETSTYLE:
                m_Style = (m_Style & ~kTypeMask) | (static_cast<DWORD>(first) & kTypeMask);
                if (second) rv::Invalidate(*this, true);
                return 0;
            case BM_CLICK:
                Receive(WM_LBUTTONDOWN, MK_LBUTTON, 0);
                if (!Has_Ended()) Receive(WM_LBUTTONUP, 0, 0);
                return 0;
            case WM_PAINT:
                Paint();
                return 0;
            case WM_LBUTTONDOWN:
                SetFocus(Handle());
                Push(true);
                return 0;
            case WM_LBUTTONUP:
                Release(Is_Inside(second));
                return 0;
            case WM_KEYDOWN:
                if (first == VK_SPACE) Push(true);
                return 0;
            case WM_KEYUP:
                if (first == VK_SPACE) Release(true);
                return 0;
            case WM_SETFOCUS:
            case WM_ENABLE:
                rv::Invalidate(*this, false);
                return 0;
            case WM_KILLFOCUS:
                Push(false);
                return 0;
            default:
                return Default(message, first, second);
        }
    }

private:
    DWORD Type() const noexcept { return m_Style & kTypeMask; }

    bool Is_Inside(LPARAM second) const noexcept {
        const POINT place = rv::Place_Of(second);
        return rv::Contains(rv::Inside_Of(*this), place.x, place.y);
    }

    void Set_Check(bool check) noexcept {
        m_IsChecked = check;
        rv::Invalidate(*this, false);
    }

    void Push(bool push) noexcept {
        m_IsPushed = push;
        rv::Invalidate(*this, false);
    }

    void Release(bool click) noexcept {
        if (!m_IsPushed) return;
        Push(false);
        if (!click) return;
        if (Type() == BS_AUTOCHECKBOX) Set_Check(!m_IsChecked);
        if (Type() == BS_AUTORADIOBUTTON) Choose();
        rv::Send_Command(*this, BN_CLICKED);
    }

    // Of neighbouring radio buttons, one is checked.
    void Choose() noexcept {
        for (Window* at = Previous_Sibling(); Clear(at); at = at->Previous_Sibling()) {
        }
        for (Window* at = Next_Sibling(); Clear(at); at = at->Next_Sibling()) {
        }
        Set_Check(true);
    }

    // False at the end of the group.
    static bool Clear(Window* window) noexcept {
        auto* const button = dynamic_cast<Button*>(window);
        if (!button || button->Type() != BS_AUTORADIOBUTTON) return false;
        button->Set_Check(false);
        return true;
    }

    void Paint() noexcept {
        const rv::Painting painting(*this);
        HDC const context = painting.Context();
        const DWORD type = Type();
        if (type == BS_OWNERDRAW) return Let_Parent_Paint(context);
        const bool is_push = type == BS_PUSHBUTTON || type == BS_DEFPUSHBUTTON;
        const RECT inside = rv::Inside_Of(*this);
        HBRUSH const brush =
            rv::Ask_Colors(*this, is_push ? WM_CTLCOLORBTN : WM_CTLCOLORSTATIC, context);
        FillRect(context, &inside, brush);
        if (rv::Is_Disabled(*this)) SetTextColor(context, GetSysColor(COLOR_GRAYTEXT));
        const rv::Caption caption(rv::View_Of(m_Text.get()));
        if (is_push)
            Paint_Push(context, inside, caption);
        else if (type == BS_GROUPBOX)
            Paint_Group(context, inside, brush, caption);
        else
            Paint_Check(context, inside, caption);
    }

    void Let_Parent_Paint(HDC context) noexcept {
        if (!Parent()) return;
        DRAWITEMSTRUCT item = {};
        item.CtlType = ODT_BUTTON;
        item.CtlID = static_cast<UINT>(m_Id);
        item.itemAction = ODA_DRAWENTIRE;
        if (m_IsPushed) item.itemState |= ODS_SELECTED;
        if (rv::Is_Disabled(*this)) item.itemState |= ODS_DISABLED;
        if (Has_Focus()) item.itemState |= ODS_FOCUS;
        item.hwndItem = Handle();
        item.hDC = context;
        item.rcItem = rv::Inside_Of(*this);
        rv::Send(*Parent(), WM_DRAWITEM, item.CtlID, reinterpret_cast<LPARAM>(&item));
    }

    bool Has_Focus() const noexcept { return GetFocus() == Handle(); }

    void Paint_Push(HDC context, const RECT& inside, const rv::Caption& caption) noexcept {
        RECT box = inside;
        if (Type() == BS_DEFPUSHBUTTON) {
            rv::Draw_Frame(context, box, COLOR_WINDOWFRAME);
            box = rv::Shrunk(box, 1);
        }
        DrawEdge(context, &box, m_IsPushed ? EDGE_SUNKEN : EDGE_RAISED, BF_RECT);
        if (Has_Focus()) rv::Draw_Frame(context, rv::Shrunk(inside, 4), COLOR_BTNSHADOW);
        const int by = m_IsPushed ? 1 : 0;
        rv::Draw_Line(context, rv::Moved(rv::Shrunk(inside, 5), by, by), caption.Text(),
                      rv::Align::kCenter, caption.Marked());
    }

    // The text interrupts the frame.
    static void Paint_Group(HDC context, const RECT& inside, HBRUSH brush,
                            const rv::Caption& caption) noexcept {
        RECT frame = inside;
        frame.top += rv::kLineHeight / 2;
        DrawEdge(context, &frame, EDGE_ETCHED, BF_RECT);
        if (caption.Text().empty()) return;
        RECT line = {inside.left + 8, inside.top, inside.right - 8, inside.top + rv::kLineHeight};
        line.right = std::min(line.right, line.left + rv::Width_Of(caption.Text()) + 4);
        FillRect(context, &line, brush);
        line.left += 2;
        rv::Draw_Line(context, line, caption.Text(), rv::Align::kLeft, caption.Marked());
    }

    bool Is_Radio() const noexcept {
        return Type() == BS_RADIOBUTTON || Type() == BS_AUTORADIOBUTTON;
    }

    void Paint_Check(HDC context, const RECT& inside, const rv::Caption& caption) noexcept {
        const int top = inside.top + (rv::Height_Of(inside) - rv::kBox) / 2;
        const int mark_color = rv::Is_Disabled(*this) ? COLOR_GRAYTEXT : COLOR_WINDOWTEXT;
        if (Is_Radio())
            Paint_Ring(context, inside.left, top, mark_color);
        else
            rv::Draw_Check_Box(context, inside.left, top, m_IsChecked, mark_color);
        const RECT line = {inside.left + rv::kBox + 5, inside.top, inside.right, inside.bottom};
        rv::Draw_Line(context, line, caption.Text(), rv::Align::kLeft, caption.Marked());
        if (!Has_Focus()) return;
        const int right = std::min(line.left + rv::Width_Of(caption.Text()) + 1, int{line.right});
        rv::Draw_Frame(context, {line.left - 2, top - 1, right, top + rv::kBox + 1},
                       COLOR_BTNSHADOW);
    }

    void Paint_Ring(HDC context, int x, int y, int mark_color) const noexcept {
        rv::Draw_Figure(context, x, y, kDisk, COLOR_WINDOW);
        rv::Draw_Figure(context, x, y, kRing, COLOR_BTNSHADOW);
        if (m_IsChecked) rv::Draw_Figure(context, x + 4, y + 4, kDot, mark_color);
    }

    bool m_IsChecked = false;
    bool m_IsPushed = false;
};

}  // namespace

rv::Window* rv::Make_Button() noexcept {
    return new (std::nothrow) Button;
}
